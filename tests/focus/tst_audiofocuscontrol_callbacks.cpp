#include "focusstackaccess.h"
#include "recordingdispatcher.h"

#include <QtTest/QtTest>

#include <functional>
#include <utility>

namespace
{

const QString clientA = QStringLiteral("A");
const QString clientB = QStringLiteral("B");
const QString clientC = QStringLiteral("C");
const QString clientD = QStringLiteral("D");

/// Answers the next change that a client is told of by doing something with the stack.
class AnsweringDispatcher : public RecordingDispatcher
{
public:
    void answerOnce(const QString &clientId, std::function<void()> answer)
    {
        m_clientId = clientId;
        m_answer = std::move(answer);
    }

    void dispatchAudioFocusChange(int focusChange, const QString &clientId) override
    {
        RecordingDispatcher::dispatchAudioFocusChange(focusChange, clientId);
        if (m_answer && clientId == m_clientId)
            std::exchange(m_answer, nullptr)();
    }

private:
    QString m_clientId;
    std::function<void()> m_answer;
};

} // namespace

/// Clients that ask, abandon or leave while they are told of a change.
class FocusCallbacksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void leavingDuringALoss();
    void leavingDuringAGain_data();
    void leavingDuringAGain();
    void abandoningDuringAGain();
    void leavingToOthersDuringAGain();
    void anotherLeavesDuringALoss();
    void askingTwiceAtOnce();

private:
    int request(const QString &id, int hint) { return control.requestAudioFocus(3, hint, &dispatcher, id); }
    QStringList stack() { return stackTexts(control); }

    AudioFocusControl control;
    AnsweringDispatcher dispatcher;
};

void FocusCallbacksTest::init()
{
    focusStackOf(control).clear();
    dispatcher.take();
}

/// What the leaving one was told is not booked on the one that has moved to its place.
void FocusCallbacksTest::leavingDuringALoss()
{
    request(clientA, 1);
    request(clientB, 3);
    dispatcher.take();
    dispatcher.answerOnce(clientA, [this] { control.unregisterAudioFocusClient(clientA); });
    request(clientC, 2);
    request(clientD, 2);
    QStringList told = dispatcher.take();
    QCOMPARE(told.takeFirst(), QStringLiteral("-2 A"));
    QCOMPARE(told.count(QStringLiteral("-2 B")), 1);
    QCOMPARE(told.count(QStringLiteral("-2 C")), 1);
    QCOMPARE(told.size(), 2);
    QCOMPARE(stack(), (QStringList{QStringLiteral("B 3 3 -2"), QStringLiteral("C 3 2 -2"), QStringLiteral("D 3 2 0")}));
}

void FocusCallbacksTest::leavingDuringAGain_data()
{
    QTest::addColumn<bool>("isSomebodyBelow");
    QTest::newRow("the last one") << false;
    QTest::newRow("one above another") << true;
}

/// Who unregisters hands the focus to nobody: the one below keeps its loss.
void FocusCallbacksTest::leavingDuringAGain()
{
    QFETCH(bool, isSomebodyBelow);
    if (isSomebodyBelow)
        request(clientB, 1);
    request(clientA, 2);
    request(clientC, 2);
    dispatcher.take();
    dispatcher.answerOnce(clientA, [this] { control.unregisterAudioFocusClient(clientA); });
    QCOMPARE(control.abandonAudioFocus(clientC), 0);
    QCOMPARE(dispatcher.take(), QStringList(QStringLiteral("1 A")));
    QCOMPARE(stack(), isSomebodyBelow ? QStringList(QStringLiteral("B 3 1 -2")) : QStringList());
}

void FocusCallbacksTest::abandoningDuringAGain()
{
    request(clientB, 1);
    request(clientA, 2);
    request(clientC, 2);
    dispatcher.take();
    dispatcher.answerOnce(clientA, [this] { control.abandonAudioFocus(clientA); });
    QCOMPARE(control.abandonAudioFocus(clientC), 0);
    QCOMPARE(dispatcher.take(), (QStringList{QStringLiteral("1 A"), QStringLiteral("1 B")}));
    QCOMPARE(stack(), QStringList(QStringLiteral("B 3 1 0")));
}

/// The loss of the one that stands in its place by then stays.
void FocusCallbacksTest::leavingToOthersDuringAGain()
{
    request(clientA, 2);
    request(clientC, 2);
    dispatcher.take();
    dispatcher.answerOnce(clientA, [this] {
        control.unregisterAudioFocusClient(clientA);
        request(clientB, 2);
        request(clientD, 2);
    });
    QCOMPARE(control.abandonAudioFocus(clientC), 0);
    QCOMPARE(dispatcher.take(), (QStringList{QStringLiteral("1 A"), QStringLiteral("-2 B")}));
    QCOMPARE(stack(), (QStringList{QStringLiteral("B 3 2 -2"), QStringLiteral("D 3 2 0")}));
}

/// Who was about to be told is not told any more.
void FocusCallbacksTest::anotherLeavesDuringALoss()
{
    request(clientB, 1);
    request(clientA, 2);
    dispatcher.take();
    dispatcher.answerOnce(clientB, [this] { control.unregisterAudioFocusClient(clientA); });
    request(clientC, 1);
    QCOMPARE(dispatcher.take(), QStringList(QStringLiteral("-1 B")));
    QCOMPARE(stack(), (QStringList{QStringLiteral("B 3 1 -1"), QStringLiteral("C 3 1 0")}));
}

/// A's request tells B, which answers with a request for A: A then stands twice above B, the lower one with a loss. The next request by A takes both away, and
/// B is not told of a gain in between.
void FocusCallbacksTest::askingTwiceAtOnce()
{
    request(clientB, 1);
    dispatcher.answerOnce(clientB, [this] { request(clientA, 2); });
    request(clientA, 2);
    QCOMPARE(stack(), (QStringList{QStringLiteral("B 3 1 -2"), QStringLiteral("A 3 2 -2"), QStringLiteral("A 3 2 0")}));
    dispatcher.take();
    QCOMPARE(request(clientA, 3), 0);
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(stack(), (QStringList{QStringLiteral("B 3 1 -2"), QStringLiteral("A 3 3 0")}));
}

QTEST_GUILESS_MAIN(FocusCallbacksTest)

#include "tst_audiofocuscontrol_callbacks.moc"
