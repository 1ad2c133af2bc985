#ifndef FOCUSMODEL_H
#define FOCUSMODEL_H

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

/**
 * Audio focus in a few rules, to compare the library with: a list of who is waiting, the last one holds focus.
 *
 * Shares nothing with the library, not even its codes: how hard a loss is, is a number that only grows.
 */
class FocusModel
{
public:
    struct Entry
    {
        std::string client;
        int stream;
        int hint;
        int audience; ///< whom to tell, -1 for nobody
        int hardness; ///< of the loss told last: 0 none, 1 duck, 2 for a time, 3 for good
    };

    struct News
    {
        int audience;
        int code;
        std::string client;

        friend bool operator==(const News &a, const News &b) { return a.audience == b.audience && a.code == b.code && a.client == b.client; }
    };

    static int codeOfLoss(int hardness)
    {
        constexpr int codes[] = {0, -3, -2, -1};
        return codes[hardness];
    }

    bool isTakeable() const { return waiting.empty() || waiting.back().client != "IN_VOICE_COMM_FOCUS_ID"; }
    int currentHint() const { return waiting.empty() ? 0 : waiting.back().hint; }

    bool request(const std::string &client, int stream, int hint, int audience)
    {
        if (!isTakeable())
            return false;
        if (!waiting.empty() && waiting.back().client == client && waiting.back().hint == hint)
            return true;
        forget(client);
        everybodyLoses(hint);
        waiting.push_back({client, stream, hint, audience, 0});
        return true;
    }

    void leave(const std::string &client, bool nextIsTold)
    {
        const bool wasHolder = !waiting.empty() && waiting.back().client == client;
        forget(client);
        if (wasHolder && nextIsTold)
            holderGains();
    }

    void holderGains()
    {
        if (waiting.empty() || !isTakeable())
            return;
        tell(waiting.back(), 1);
        waiting.back().hardness = 0;
    }

    void everybodyLoses(int hint)
    {
        for (Entry &entry : waiting)
            lose(entry, hint < 1 || hint > 4 ? 0 : std::max(entry.hardness, hint == 1 ? 3 : hint == 3 ? 1 : 2));
    }

    void holderIsThrownOut()
    {
        if (waiting.empty())
            return;
        Entry holder = waiting.back();
        waiting.pop_back();
        lose(holder, 3);
    }

    std::vector<News> takeNews() { return std::exchange(news, {}); }

    std::vector<Entry> waiting;

private:
    void forget(const std::string &client)
    {
        waiting.erase(std::remove_if(waiting.begin(), waiting.end(), [&client](const Entry &entry) { return entry.client == client; }), waiting.end());
    }

    void lose(Entry &entry, int hardness)
    {
        if (entry.hardness != hardness)
            tell(entry, codeOfLoss(hardness));
        entry.hardness = hardness;
    }

    void tell(const Entry &entry, int code)
    {
        if (entry.audience >= 0)
            news.push_back({entry.audience, code, entry.client});
    }

    std::vector<News> news;
};

#endif
