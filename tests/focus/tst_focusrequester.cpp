#include "recordingdispatcher.h"

#include <logrecorder.h>
#include <qzaudio/focusrequester.h>

#include <QtTest/QtTest>

#include <limits>

namespace
{

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

QString dispatchLine(const char *operation, const char *change, const char *id)
{
    return QStringLiteral("[DBG] THREAD void FocusRequester::%1(int) LINE -- dispatching  \"%2\"  to  \"%3\"")
        .arg(QLatin1String(operation), QLatin1String(change), QLatin1String(id));
}

QString invalidLine(int gainRequest)
{
    return QStringLiteral("[ERR] THREAD int FocusRequester::focusLossForGainRequest(int) LINE -- Invalid focus request  %1").arg(gainRequest);
}

} // namespace

class FocusRequesterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultConstructed();
    void constructed();
    void copies();
    void sameClient_data();
    void sameClient();
    void changeNames_data();
    void changeNames();
    void changeCodes();
    void lossForGain_data();
    void lossForGain();
    void lossForGainLeavesEntryAlone();
    void invalidGain_data();
    void invalidGain();
    void gain_data();
    void gain();
    void gainWithoutDispatcher();
    void loss_data();
    void loss();
    void lossTwice();
    void lossWithoutDispatcher();
    void externalGain_data();
    void externalGain();
    void stateIsSetAfterDispatching();
    void dump_data();
    void dump();
    void silentWithoutLogging();
};

void FocusRequesterTest::defaultConstructed()
{
    const FocusRequester entry;
    QCOMPARE(entry.streamType, 0);
    QCOMPARE(entry.durationHint, 0);
    QCOMPARE(entry.focusLossReceived, 0);
    QVERIFY(entry.clientId.isEmpty());
    QVERIFY(!entry.dispatcher);
}

void FocusRequesterTest::constructed()
{
    RecordingDispatcher dispatcher;
    const FocusRequester entry(3, 4, &dispatcher, QStringLiteral("music"));
    QCOMPARE(entry.streamType, 3);
    QCOMPARE(entry.durationHint, 4);
    QCOMPARE(entry.focusLossReceived, 0);
    QCOMPARE(entry.clientId, QStringLiteral("music"));
    QCOMPARE(entry.dispatcher, &dispatcher);
}

void FocusRequesterTest::copies()
{
    RecordingDispatcher dispatcher;
    FocusRequester original(3, 4, &dispatcher, QStringLiteral("music"));
    original.handleFocusLoss(AUDIOFOCUS_LOSS_TRANSIENT);
    FocusRequester copy(original);
    QCOMPARE(copy.streamType, 3);
    QCOMPARE(copy.durationHint, 4);
    QCOMPARE(copy.focusLossReceived, -2);
    QCOMPARE(copy.clientId, QStringLiteral("music"));
    QCOMPARE(copy.dispatcher, &dispatcher);

    // Neither sees what happens to the other.
    copy.handleFocusGain(AUDIOFOCUS_GAIN);
    copy.clientId = QStringLiteral("phone");
    QCOMPARE(original.focusLossReceived, -2);
    QCOMPARE(original.clientId, QStringLiteral("music"));

    FocusRequester assigned;
    assigned = original;
    QCOMPARE(assigned.focusLossReceived, -2);
    QCOMPARE(assigned.clientId, QStringLiteral("music"));
}

void FocusRequesterTest::sameClient_data()
{
    QTest::addColumn<QString>("own");
    QTest::addColumn<QString>("other");
    QTest::addColumn<bool>("same");
    QTest::newRow("equal") << QStringLiteral("ABC") << QStringLiteral("ABC") << true;
    QTest::newRow("other case") << QStringLiteral("ABC") << QStringLiteral("abc") << false;
    QTest::newRow("prefix") << QStringLiteral("ABC") << QStringLiteral("AB") << false;
    QTest::newRow("longer") << QStringLiteral("ABC") << QStringLiteral("ABC ") << false;
    QTest::newRow("empty and null") << QString(QLatin1String("")) << QString() << true;
    QTest::newRow("empty and not") << QString(QLatin1String("")) << QStringLiteral("ABC") << false;
}

void FocusRequesterTest::sameClient()
{
    QFETCH(QString, own);
    QFETCH(QString, other);
    const FocusRequester entry(0, 1, nullptr, own);
    QTEST(entry.hasSameClient(other), "same");
}

void FocusRequesterTest::changeNames_data()
{
    QTest::addColumn<int>("focusChange");
    QTest::addColumn<QString>("name");
    QTest::newRow("-3") << -3 << QStringLiteral("LOSS_TRANSIENT_CAN_DUCK");
    QTest::newRow("-2") << -2 << QStringLiteral("LOSS_TRANSIENT");
    QTest::newRow("-1") << -1 << QStringLiteral("LOSS");
    QTest::newRow("0") << 0 << QStringLiteral("NONE");
    QTest::newRow("1") << 1 << QStringLiteral("GAIN");
    QTest::newRow("2") << 2 << QStringLiteral("GAIN_TRANSIENT");
    QTest::newRow("3") << 3 << QStringLiteral("GAIN_TRANSIENT_MAY_DUCK");
    QTest::newRow("4") << 4 << QStringLiteral("GAIN_TRANSIENT_EXCLUSIVE");
    QTest::newRow("above") << 5 << QStringLiteral("[invalid focus change 5]");
    QTest::newRow("below") << -4 << QStringLiteral("[invalid focus change -4]");
    QTest::newRow("highest") << highest << QStringLiteral("[invalid focus change 2147483647]");
    QTest::newRow("lowest") << lowest << QStringLiteral("[invalid focus change -2147483648]");
}

void FocusRequesterTest::changeNames()
{
    QFETCH(int, focusChange);
    QTEST(FocusRequester::focusChangeToString(focusChange), "name");
}

void FocusRequesterTest::changeCodes()
{
    QCOMPARE(int(AUDIOFOCUS_LOSS_TRANSIENT_CAN_DUCK), -3);
    QCOMPARE(int(AUDIOFOCUS_LOSS_TRANSIENT), -2);
    QCOMPARE(int(AUDIOFOCUS_LOSS), -1);
    QCOMPARE(int(AUDIOFOCUS_NONE), 0);
    QCOMPARE(int(AUDIOFOCUS_GAIN), 1);
    QCOMPARE(int(AUDIOFOCUS_GAIN_TRANSIENT), 2);
    QCOMPARE(int(AUDIOFOCUS_GAIN_TRANSIENT_MAY_DUCK), 3);
    QCOMPARE(int(AUDIOFOCUS_GAIN_TRANSIENT_EXCLUSIVE), 4);
}

void FocusRequesterTest::lossForGain_data()
{
    QTest::addColumn<int>("gainRequest");
    QTest::addColumn<int>("received");
    QTest::addColumn<int>("loss");
    QTest::newRow("GAIN on NONE") << 1 << 0 << -1;
    QTest::newRow("GAIN on LOSS") << 1 << -1 << -1;
    QTest::newRow("GAIN on LOSS_TRANSIENT") << 1 << -2 << -1;
    QTest::newRow("GAIN on LOSS_TRANSIENT_CAN_DUCK") << 1 << -3 << -1;
    QTest::newRow("GAIN_TRANSIENT on NONE") << 2 << 0 << -2;
    QTest::newRow("GAIN_TRANSIENT on LOSS") << 2 << -1 << -1;
    QTest::newRow("GAIN_TRANSIENT on LOSS_TRANSIENT") << 2 << -2 << -2;
    QTest::newRow("GAIN_TRANSIENT on LOSS_TRANSIENT_CAN_DUCK") << 2 << -3 << -2;
    QTest::newRow("GAIN_TRANSIENT_MAY_DUCK on NONE") << 3 << 0 << -3;
    QTest::newRow("GAIN_TRANSIENT_MAY_DUCK on LOSS") << 3 << -1 << -1;
    QTest::newRow("GAIN_TRANSIENT_MAY_DUCK on LOSS_TRANSIENT") << 3 << -2 << -2;
    QTest::newRow("GAIN_TRANSIENT_MAY_DUCK on LOSS_TRANSIENT_CAN_DUCK") << 3 << -3 << -3;
    QTest::newRow("GAIN_TRANSIENT_EXCLUSIVE on NONE") << 4 << 0 << -2;
    QTest::newRow("GAIN_TRANSIENT_EXCLUSIVE on LOSS") << 4 << -1 << -1;
    QTest::newRow("GAIN_TRANSIENT_EXCLUSIVE on LOSS_TRANSIENT") << 4 << -2 << -2;
    QTest::newRow("GAIN_TRANSIENT_EXCLUSIVE on LOSS_TRANSIENT_CAN_DUCK") << 4 << -3 << -2;
}

void FocusRequesterTest::lossForGain()
{
    QFETCH(int, gainRequest);
    QFETCH(int, received);
    FocusRequester entry(3, 1, nullptr, QStringLiteral("music"));
    entry.focusLossReceived = received;
    LogRecorder log;
    QTEST(entry.focusLossForGainRequest(gainRequest), "loss");
    QCOMPARE(log.takeTexts(), QStringList());
}

void FocusRequesterTest::lossForGainLeavesEntryAlone()
{
    RecordingDispatcher dispatcher;
    FocusRequester entry(3, 1, &dispatcher, QStringLiteral("music"));
    QCOMPARE(entry.focusLossForGainRequest(1), -1);
    QCOMPARE(entry.focusLossReceived, 0);
    QCOMPARE(dispatcher.take(), QStringList());
}

void FocusRequesterTest::invalidGain_data()
{
    QTest::addColumn<int>("gainRequest");
    QTest::addColumn<int>("received");
    QTest::newRow("request 0") << 0 << 0;
    QTest::newRow("request 5") << 5 << 0;
    QTest::newRow("request -1") << -1 << -2;
    QTest::newRow("request lowest") << lowest << 0;
    QTest::newRow("request highest") << highest << 0;
    QTest::newRow("corrupt entry 1") << 1 << 1;
    QTest::newRow("corrupt entry -4") << 3 << -4;
    QTest::newRow("corrupt entry lowest") << 2 << lowest;
    QTest::newRow("corrupt entry highest") << 4 << highest;
    QTest::newRow("both") << 5 << -4;
}

void FocusRequesterTest::invalidGain()
{
    QFETCH(int, gainRequest);
    QFETCH(int, received);
    FocusRequester entry(3, 1, nullptr, QStringLiteral("music"));
    entry.focusLossReceived = received;
    LogRecorder log;
    QCOMPARE(entry.focusLossForGainRequest(gainRequest), 0);
    const QList<LogRecorder::Line> lines = log.take();
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().level, QtCriticalMsg);
    // Once more for the text: the request is named, even where the entry is at fault.
    QCOMPARE(entry.focusLossForGainRequest(gainRequest), 0);
    QCOMPARE(log.takeTexts(), QStringList(invalidLine(gainRequest)));
    QCOMPARE(entry.focusLossReceived, received);
}

void FocusRequesterTest::gain_data()
{
    QTest::addColumn<int>("focusGain");
    QTest::addColumn<QString>("name");
    QTest::newRow("GAIN") << 1 << QStringLiteral("GAIN");
    QTest::newRow("GAIN_TRANSIENT") << 2 << QStringLiteral("GAIN_TRANSIENT");
    QTest::newRow("no gain at all") << -7 << QStringLiteral("[invalid focus change -7]");
}

void FocusRequesterTest::gain()
{
    QFETCH(int, focusGain);
    QFETCH(QString, name);
    RecordingDispatcher dispatcher;
    FocusRequester entry(3, 1, &dispatcher, QStringLiteral("music"));
    entry.focusLossReceived = -2;
    LogRecorder log;
    entry.handleFocusGain(focusGain);
    QCOMPARE(dispatcher.take(), QStringList(RecordingDispatcher::text(focusGain, QStringLiteral("music"))));
    QCOMPARE(log.takeTexts(), QStringList(dispatchLine("handleFocusGain", name.toLatin1().constData(), "music")));
    QCOMPARE(entry.focusLossReceived, 0);

    // A gain is never suppressed.
    entry.handleFocusGain(focusGain);
    QCOMPARE(dispatcher.take().size(), 1);
    const QList<LogRecorder::Line> lines = log.take();
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().level, QtDebugMsg);
}

void FocusRequesterTest::gainWithoutDispatcher()
{
    FocusRequester entry(3, 1, nullptr, QStringLiteral("music"));
    entry.focusLossReceived = -3;
    LogRecorder log;
    entry.handleFocusGain(1);
    QCOMPARE(entry.focusLossReceived, 0);
    QCOMPARE(log.takeTexts(), QStringList());
}

void FocusRequesterTest::loss_data()
{
    QTest::addColumn<int>("received");
    QTest::addColumn<int>("focusLoss");
    QTest::addColumn<QString>("name"); // empty: nothing is told
    const char *const names[] = {"NONE", "LOSS", "LOSS_TRANSIENT", "LOSS_TRANSIENT_CAN_DUCK"};
    for (int received = 0; received >= -3; --received) {
        for (int focusLoss = 0; focusLoss >= -3; --focusLoss) {
            QTest::addRow("%s after %s", names[-focusLoss], names[-received])
                << received << focusLoss << (received == focusLoss ? QString() : QString::fromLatin1(names[-focusLoss]));
        }
    }
    QTest::newRow("unknown code") << 0 << -9 << QStringLiteral("[invalid focus change -9]");
    QTest::newRow("unknown code repeated") << -9 << -9 << QString();
}

void FocusRequesterTest::loss()
{
    QFETCH(int, received);
    QFETCH(int, focusLoss);
    QFETCH(QString, name);
    RecordingDispatcher dispatcher;
    FocusRequester entry(3, 1, &dispatcher, QStringLiteral("music"));
    entry.focusLossReceived = received;
    LogRecorder log;
    entry.handleFocusLoss(focusLoss);
    QStringList changes;
    QStringList lines;
    if (!name.isEmpty()) {
        changes.append(RecordingDispatcher::text(focusLoss, QStringLiteral("music")));
        lines.append(dispatchLine("handleFocusLoss", name.toLatin1().constData(), "music"));
    }
    QCOMPARE(dispatcher.take(), changes);
    QCOMPARE(log.takeTexts(), lines);
    QCOMPARE(entry.focusLossReceived, focusLoss);
}

void FocusRequesterTest::lossTwice()
{
    RecordingDispatcher dispatcher;
    FocusRequester entry(3, 1, &dispatcher, QStringLiteral("music"));
    entry.handleFocusLoss(-1);
    entry.handleFocusLoss(-1);
    QCOMPARE(dispatcher.take(), QStringList(QStringLiteral("-1 music")));
}

void FocusRequesterTest::lossWithoutDispatcher()
{
    FocusRequester entry(3, 1, nullptr, QStringLiteral("music"));
    LogRecorder log;
    entry.handleFocusLoss(-2);
    QCOMPARE(entry.focusLossReceived, -2);
    RecordingDispatcher dispatcher;
    entry.dispatcher = &dispatcher;
    entry.handleFocusLoss(-2);
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(log.takeTexts(), QStringList());
}

void FocusRequesterTest::externalGain_data()
{
    QTest::addColumn<int>("received");
    QTest::addColumn<int>("gainRequest");
    QTest::addColumn<int>("receivedAfter");
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<QStringList>("lines");
    const auto told = [](int loss) { return QStringList(RecordingDispatcher::text(loss, QStringLiteral("music"))); };
    const auto line = [](const char *change) { return QStringList(dispatchLine("handleFocusLoss", change, "music")); };
    QTest::newRow("first loss") << 0 << 1 << -1 << told(-1) << line("LOSS");
    QTest::newRow("harder loss") << -3 << 4 << -2 << told(-2) << line("LOSS_TRANSIENT");
    QTest::newRow("ducking repeated") << -3 << 3 << -3 << QStringList() << QStringList();
    QTest::newRow("never softer") << -2 << 3 << -2 << QStringList() << QStringList();
    QTest::newRow("lost for good") << -1 << 2 << -1 << QStringList() << QStringList();
    QTest::newRow("invalid request, nothing lost") << 0 << 0 << 0 << QStringList() << QStringList(invalidLine(0));
    QTest::newRow("invalid request after a loss") << -2 << 9 << 0 << told(0) << (QStringList(invalidLine(9)) + line("NONE"));
    QTest::newRow("corrupt entry") << 7 << 1 << 0 << told(0) << (QStringList(invalidLine(1)) + line("NONE"));
}

void FocusRequesterTest::externalGain()
{
    QFETCH(int, received);
    QFETCH(int, gainRequest);
    RecordingDispatcher dispatcher;
    FocusRequester entry(3, 1, &dispatcher, QStringLiteral("music"));
    entry.focusLossReceived = received;
    LogRecorder log;
    entry.handleExternalFocusGain(gainRequest);
    QTEST(dispatcher.take(), "changes");
    QTEST(log.takeTexts(), "lines");
    QTEST(entry.focusLossReceived, "receivedAfter");
}

void FocusRequesterTest::stateIsSetAfterDispatching()
{
    struct Observer : IAudioFocusDispatcher
    {
        void dispatchAudioFocusChange(int, const QString &) override { seen.append(entry->focusLossReceived); }
        FocusRequester *entry = nullptr;
        QList<int> seen;
    };
    Observer observer;
    FocusRequester entry(3, 1, &observer, QStringLiteral("music"));
    observer.entry = &entry;
    entry.handleFocusLoss(-2);
    entry.handleFocusGain(1);
    QCOMPARE(observer.seen, (QList<int>{0, -2}));
}

void FocusRequesterTest::dump_data()
{
    QTest::addColumn<int>("streamType");
    QTest::addColumn<int>("durationHint");
    QTest::addColumn<int>("received");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("gainName");
    QTest::addColumn<QString>("lossName");
    QTest::newRow("holder") << 3 << 1 << 0 << QStringLiteral("music") << QStringLiteral("GAIN") << QStringLiteral("NONE");
    QTest::newRow("ducked") << -5 << 4 << -3 << QStringLiteral("navi 1") << QStringLiteral("GAIN_TRANSIENT_EXCLUSIVE")
                            << QStringLiteral("LOSS_TRANSIENT_CAN_DUCK");
    QTest::newRow("corrupt") << 0 << 9 << 9 << QString() << QStringLiteral("[invalid focus change 9]") << QStringLiteral("[invalid focus change 9]");
}

void FocusRequesterTest::dump()
{
    QFETCH(int, streamType);
    QFETCH(int, durationHint);
    QFETCH(int, received);
    QFETCH(QString, id);
    QFETCH(QString, gainName);
    QFETCH(QString, lossName);
    FocusRequester entry(streamType, durationHint, nullptr, id);
    entry.focusLossReceived = received;
    LogRecorder log;
    entry.dump();
    const QString expected
        = QStringLiteral("[DBG] THREAD void FocusRequester::dump() LINE --  -- client:  \"%1\" \n -- gain:  \"%2\" \n -- loss:  \"%3\" \n -- stream:  %4")
              .arg(id, gainName, lossName)
              .arg(streamType);
    QCOMPARE(log.takeTexts(), QStringList(expected));
}

void FocusRequesterTest::silentWithoutLogging()
{
    RecordingDispatcher dispatcher;
    FocusRequester entry(3, 1, &dispatcher, QStringLiteral("music"));
    LogRecorder log;
    QLoggingCategory::setFilterRules(QStringLiteral("default=false"));
    entry.handleFocusLoss(-1);
    entry.handleFocusGain(1);
    entry.handleExternalFocusGain(9);
    entry.dump();
    QLoggingCategory::setFilterRules(QString());
    QCOMPARE(log.takeTexts(), QStringList());
    QCOMPARE(dispatcher.take(), (QStringList{QStringLiteral("-1 music"), QStringLiteral("1 music")}));
}

QTEST_GUILESS_MAIN(FocusRequesterTest)
#include "tst_focusrequester.moc"
