#include "workloads.h"

#include <qzaudio/audiofocuscontrol.h>
#include <qzaudio/iaudiofocusdispatcher.h>

#include <algorithm>
#include <vector>

namespace
{

class CountingDispatcher final : public IAudioFocusDispatcher
{
public:
    void dispatchAudioFocusChange(int, const QString &) override { ++count; }

    int count = 0;
};

constexpr int musicStream = 3;
constexpr int promptStream = 5;

/// As long as that of the prompt, so that comparing them takes more than a look at the length.
QString idOfMusic(int number)
{
    return QStringLiteral("tavi.client.%1").arg(number, 4, 10, QLatin1Char('0'));
}

QString idOfPrompt()
{
    return QStringLiteral("tavi.client.9999");
}

template<int depth>
AudioFocusControl &filledControl(IAudioFocusDispatcher *dispatcher)
{
    auto *const control = new AudioFocusControl;
    for (int i = 0; i < depth; ++i)
        control->requestAudioFocus(musicStream, AUDIOFOCUS_GAIN, dispatcher, idOfMusic(i));
    return *control;
}

IAudioFocusDispatcher *theDispatcher()
{
    static CountingDispatcher dispatcher;
    return &dispatcher;
}

template<int depth, bool isDispatching>
AudioFocusControl &control()
{
    static AudioFocusControl &only = filledControl<depth>(isDispatching ? theDispatcher() : nullptr);
    return only;
}

template<int depth, bool isDispatching>
void prepareControl()
{
    control<depth, isDispatching>();
}

/// A prompt over so many entries, and back.
template<int depth, bool isDispatching>
void requestAndAbandon(int rounds)
{
    AudioFocusControl &stack = control<depth, isDispatching>();
    IAudioFocusDispatcher *const dispatcher = isDispatching ? theDispatcher() : nullptr;
    const QString prompt = idOfPrompt();
    for (int i = 0; i < rounds; ++i) {
        stack.requestAudioFocus(promptStream, AUDIOFOCUS_GAIN_TRANSIENT_MAY_DUCK, dispatcher, prompt);
        stack.abandonAudioFocus(prompt);
    }
}

/// The same decisions on a bare vector.
class BareStack
{
public:
    /// @param dispatcher is told of each change; null: nobody is
    explicit BareStack(IAudioFocusDispatcher *dispatcher)
        : m_dispatcher(dispatcher)
    {
    }

    int request(int type, int hint, const QString &id)
    {
        if (!canReassign())
            return 1;
        if (!m_entries.empty() && m_entries.back().id == id) {
            if (m_entries.back().hint == hint)
                return 0;
            m_entries.pop_back();
        }
        remove(id);
        for (Entry &entry : m_entries)
            setLoss(entry, lossForGain[hint - 1][-entry.loss]);
        m_entries.push_back({type, hint, 0, id});
        return 0;
    }

    void abandon(const QString &id)
    {
        if (m_entries.empty() || !(m_entries.back().id == id)) {
            remove(id);
            return;
        }
        m_entries.pop_back();
        if (!m_entries.empty() && canReassign())
            setLoss(m_entries.back(), 0);
    }

private:
    struct Entry
    {
        int type;
        int hint;
        int loss;
        QString id;
    };

    static constexpr int lossForGain[4][4] = {
        {-1, -1, -1, -1},
        {-2, -1, -2, -2},
        {-3, -1, -2, -3},
        {-2, -1, -2, -2},
    };

    void setLoss(Entry &entry, int loss)
    {
        if (m_dispatcher && entry.loss != loss) {
            const QString id = entry.id; // who is told may take the entry away
            m_dispatcher->dispatchAudioFocusChange(loss, id);
        }
        entry.loss = loss;
    }

    bool canReassign() const { return m_entries.empty() || !(m_entries.back().id == QLatin1String("IN_VOICE_COMM_FOCUS_ID")); }

    void remove(const QString &id)
    {
        m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(), [&id](const Entry &entry) { return entry.id == id; }), m_entries.end());
    }

    IAudioFocusDispatcher *m_dispatcher;
    std::vector<Entry> m_entries;
};

template<int depth>
BareStack filledStack(IAudioFocusDispatcher *dispatcher)
{
    BareStack stack(dispatcher);
    for (int i = 0; i < depth; ++i)
        stack.request(musicStream, AUDIOFOCUS_GAIN, idOfMusic(i));
    return stack;
}

template<int depth, bool isDispatching>
void requestAndAbandonFloor(int rounds)
{
    static BareStack stack = filledStack<depth>(isDispatching ? theDispatcher() : nullptr);
    const QString prompt = idOfPrompt();
    for (int i = 0; i < rounds; ++i) {
        stack.request(promptStream, AUDIOFOCUS_GAIN_TRANSIENT_MAY_DUCK, prompt);
        stack.abandon(prompt);
    }
}

template<int depth, bool isDispatching>
Workload workloadOf(const char *name)
{
    return {name, false, prepareControl<depth, isDispatching>, requestAndAbandon<depth, isDispatching>, requestAndAbandonFloor<depth, isDispatching>};
}

} // namespace

const Workloads &focusWorkloads()
{
    static const Workloads workloads = {
        workloadOf<1, false>("focus/requestAndAbandon/1"),
        workloadOf<10, false>("focus/requestAndAbandon/10"),
        workloadOf<100, false>("focus/requestAndAbandon/100"),
        workloadOf<1000, false>("focus/requestAndAbandon/1000"),
        workloadOf<1, true>("focus/requestAndAbandon/1/dispatched"),
        workloadOf<10, true>("focus/requestAndAbandon/10/dispatched"),
        workloadOf<100, true>("focus/requestAndAbandon/100/dispatched"),
        workloadOf<1000, true>("focus/requestAndAbandon/1000/dispatched"),
    };
    return workloads;
}
