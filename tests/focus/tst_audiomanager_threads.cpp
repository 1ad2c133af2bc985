#include "recordinglistener.h"

#include <logrecorder.h>
#include <qzaudio/audiomanager.h>

#include <QtTest/QtTest>

#include <algorithm>
#include <atomic>
#include <memory>
#include <set>
#include <thread>
#include <vector>

namespace
{

constexpr int threadCount = 8;

/// Lets all threads begin at once.
class StartingGate
{
public:
    void wait()
    {
        ++m_arrived;
        while (m_arrived < threadCount)
            std::this_thread::yield();
    }

private:
    std::atomic<int> m_arrived{0};
};

std::vector<std::unique_ptr<RecordingListener>> makeListeners()
{
    std::vector<std::unique_ptr<RecordingListener>> listeners;
    listeners.reserve(threadCount);
    for (int number = 0; number < threadCount; ++number)
        listeners.push_back(std::make_unique<RecordingListener>(QStringLiteral("client %1").arg(number)));
    return listeners;
}

} // namespace

class AudioManagerThreadsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneInstance();
    void requestsFromAllThreads_data();
    void requestsFromAllThreads();
    void ownThreadIsToldAtOnce();
    void sharedClientId();
};

/// First, while there is no instance yet.
void AudioManagerThreadsTest::oneInstance()
{
    AudioManager *seen[threadCount] = {};
    StartingGate gate;
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (AudioManager *&mine : seen) {
        threads.emplace_back([&mine, &gate] {
            gate.wait();
            mine = AudioManager::instance();
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QVERIFY(seen[0]);
    QCOMPARE(std::set<AudioManager *>(std::begin(seen), std::end(seen)).size(), std::size_t(1));
    QCOMPARE(AudioManager::instance(), seen[0]);
}

void AudioManagerThreadsTest::requestsFromAllThreads_data()
{
    QTest::addColumn<bool>("managersThreadTakesPart");
    QTest::newRow("eight other threads") << false;
    QTest::newRow("seven others and the manager's own") << true;
}

void AudioManagerThreadsTest::requestsFromAllThreads()
{
    QFETCH(bool, managersThreadTakesPart);
    constexpr int rounds = 500;
    const LogRecorder log; // the lines of eight threads would hide everything else
    AudioManager manager;
    const auto listeners = makeListeners();
    StartingGate gate;
    std::atomic<int> refused{0};
    const auto work = [&](int number) {
        RecordingListener *const listener = listeners[static_cast<std::size_t>(number)].get();
        gate.wait();
        for (int round = 0; round < rounds; ++round) {
            if (manager.requestAudioFocus(number, 1 + (round + number) % 4, listener) != 0)
                ++refused;
            if (manager.abandonAudioFocus(listener) != 0)
                ++refused;
        }
        // In the end everybody is in the stack, with a loss for all but the last one.
        if (manager.requestAudioFocus(number, 1, listener) != 0)
            ++refused;
    };
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int number = managersThreadTakesPart ? 1 : 0; number < threadCount; ++number)
        threads.emplace_back(work, number);
    if (managersThreadTakesPart)
        work(0);
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(refused.load(), 0);

    // What other threads caused waits in this thread's event queue, behind what this thread caused and was told at once.
    QCoreApplication::sendPostedEvents();
    int lost = 0;
    for (const auto &listener : listeners) {
        const QList<int> changes = listener->take();
        for (const int change : changes)
            QVERIFY2(change == 1 || (change <= -1 && change >= -3), QByteArray::number(change).constData());
        if (!changes.isEmpty() && changes.last() == -1)
            ++lost;
    }
    // All but the holder lost it for good in the end. The holder may have, too, before it asked again.
    if (!managersThreadTakesPart)
        QVERIFY2(lost >= threadCount - 1, QByteArray::number(lost).constData());

    // The stack is whole: whoever abandons hands over to exactly one other, until nobody is left. Who is on top is not known,
    // so everybody asks again, which puts them in order.
    for (const auto &listener : listeners)
        QCOMPARE(manager.requestAudioFocus(0, 1, listener.get()), 0);
    for (const auto &listener : listeners)
        listener->take();
    for (std::size_t number = listeners.size(); number-- > 0;) {
        QCOMPARE(manager.abandonAudioFocus(listeners[number].get()), 0);
        for (std::size_t other = 0; other < listeners.size(); ++other)
            QCOMPARE(listeners[other]->take(), other + 1 == number ? QList<int>{1} : QList<int>());
    }
}

void AudioManagerThreadsTest::ownThreadIsToldAtOnce()
{
    const LogRecorder log;
    AudioManager manager;
    RecordingListener music(QStringLiteral("music"));
    RecordingListener prompt(QStringLiteral("prompt"));
    manager.requestAudioFocus(0, 1, &music);
    int result = -1;
    std::thread([&] { result = manager.requestAudioFocus(0, 3, &prompt); }).join();
    QCOMPARE(result, 0);
    QCOMPARE(music.take(), QList<int>()); // not on the other thread
    QCoreApplication::sendPostedEvents();
    QCOMPARE(music.take(), QList<int>{-3});
    manager.abandonAudioFocus(&prompt);
    QCOMPARE(music.take(), QList<int>{1}); // before the call returned
}

void AudioManagerThreadsTest::sharedClientId()
{
    constexpr int rounds = 300;
    const LogRecorder log;
    AudioManager manager;
    std::vector<std::unique_ptr<RecordingListener>> listeners;
    listeners.reserve(threadCount);
    for (int number = 0; number < threadCount; ++number)
        listeners.push_back(std::make_unique<RecordingListener>(QStringLiteral("everybody")));
    StartingGate gate;
    std::atomic<int> refused{0};
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (const auto &listener : listeners) {
        threads.emplace_back([&, mine = listener.get()] {
            gate.wait();
            for (int round = 0; round < rounds; ++round) {
                if (manager.requestAudioFocus(0, 1 + round % 4, mine) != 0)
                    ++refused;
                if (manager.abandonAudioFocus(mine) != 0)
                    ++refused;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(refused.load(), 0);
    QCoreApplication::sendPostedEvents();
    for (const auto &listener : listeners)
        QCOMPARE(listener->take(), QList<int>()); // one client alone is told nothing
}

QTEST_GUILESS_MAIN(AudioManagerThreadsTest)
#include "tst_audiomanager_threads.moc"
