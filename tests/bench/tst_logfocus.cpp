#include <explain/logstory.h>
#include <explain/logsummary.h>

#include <QtTest/QtTest>

namespace
{

struct Told
{
    QStringList texts;
    QVector<qint64> processes;
};

/// Hears of focus.
class FocusListener : public LogStoryListener
{
public:
    void request(const LoggedRequest & /*request*/) override { }
    void note(qint64 /*time*/, quint64 /*line*/, const QString & /*text*/) override { }
    void focus(const FocusChange &change) override
    {
        told.texts.append(change.text);
        told.processes.append(change.process);
    }
    void heading(qint64 /*time*/, quint64 /*line*/, const QString & /*text*/) override { }
    void reboot() override { }

    Told told;
};

QString traced(const char *signature, const QString &words, double seconds, int process)
{
    return QStringLiteral("[%1] unit player[%2]: [DBG] %2 %3 1 -- %4").arg(seconds, 12, 'f', 6).arg(process).arg(QLatin1String(signature), words);
}

QString lost(const char *client, double seconds, const char *loss = "LOSS_TRANSIENT", int process = 5)
{
    const QString words = QStringLiteral("dispatching  \"%1\"  to  \"%2\"").arg(QLatin1String(loss), QLatin1String(client));
    return traced("void FocusRequester::handleFocusLoss(int)", words, seconds, process);
}

QString gained(const char *client, double seconds, int process = 5)
{
    const QString words = QStringLiteral("dispatching  \"GAIN\"  to  \"%1\"").arg(QLatin1String(client));
    return traced("void FocusRequester::handleFocusGain(int)", words, seconds, process);
}

QString passedOn(const char *client, double seconds)
{
    const QString words = QStringLiteral("dispathing \"LOSS\" to \"%1\"").arg(QLatin1String(client));
    return traced("virtual void AudioService::dispatchAudioFocusChange(int, const QString&)", words, seconds, 5);
}

QString removed(const char *client, double seconds)
{
    const QString words = QStringLiteral("AudioFocus  removeFocusStackEntry(): removing entry for  \"%1\"").arg(QLatin1String(client));
    return traced("void AudioFocusControl::removeFocusStackEntry(const QString&, bool)", words, seconds, 5);
}

QString dumped(const char *client, double seconds)
{
    return traced("void FocusRequester::dump()", QStringLiteral(" -- client:  \"%1\"").arg(QLatin1String(client)), seconds, 5);
}

QString said(const char *text, double seconds)
{
    return QStringLiteral("[%1] unit qzaudio-focusd[5]: qzaudio-focusd: %2").arg(seconds, 12, 'f', 6).arg(QLatin1String(text));
}

QString started(double seconds)
{
    return traced("ZelAudioManager::ZelAudioManager(QObject*)", QString(), seconds, 5);
}

void read(const QStringList &log, LogClock &clock, LogStoryListener &listener)
{
    LogFrames frames;
    LogStory story(frames, clock, listener);
    quint64 number = 0;
    for (const QString &line : log) {
        const std::string text = line.toStdString();
        story.add(text, ++number, false);
    }
    story.finish();
}

Told toldOf(const QStringList &log)
{
    FocusListener listener;
    LogClock clock;
    read(log, clock, listener);
    return listener.told;
}

} // namespace

class LogFocusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whoHasFocusIsTold_data();
    void whoHasFocusIsTold();
    void processesHaveStacksOfTheirOwn();
    void theEndOfARunEndsFocus_data();
    void theEndOfARunEndsFocus();
    void withoutTimesLinesAreNamed();
    void strangeClientsAreBounded();
    void theSummaryCounts();
};

void LogFocusTest::whoHasFocusIsTold_data()
{
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<QStringList>("texts");

    const auto row = [](const char *name, const QStringList &log, const QStringList &texts) { QTest::newRow(name) << log << texts; };
    row("taken by somebody who is never named",
        {lost("music", 1)},
        {QStringLiteral("\"music\" loses focus: LOSS_TRANSIENT"),
         QStringLiteral("in the end somebody unknown has focus, taken from \"music\" (1.000 s) and never given back"),
         QStringLiteral("in the end without focus: \"music\" since 1.000 s (LOSS_TRANSIENT)")});
    row("taken and given back",
        {lost("music", 1), gained("music", 2)},
        {QStringLiteral("\"music\" loses focus: LOSS_TRANSIENT"),
         QStringLiteral("\"music\" has focus again"),
         QStringLiteral("in the end \"music\" has focus, since 2.000 s")});
    row("the taker is named when it loses focus itself",
        {lost("music", 1, "LOSS"), lost("news", 2), gained("news", 3)},
        {QStringLiteral("\"music\" loses focus: LOSS"),
         QStringLiteral("\"news\" loses focus: LOSS_TRANSIENT; it had it since 1.000 s, from \"music\""),
         QStringLiteral("\"news\" has focus again"),
         QStringLiteral("in the end \"news\" has focus, since 3.000 s"),
         QStringLiteral("in the end without focus: \"music\" since 1.000 s (LOSS)")});
    row("the service's own line says nothing more",
        {lost("music", 1, "LOSS"), passedOn("music", 1), gained("music", 2)},
        {QStringLiteral("\"music\" loses focus: LOSS"),
         QStringLiteral("\"music\" has focus again"),
         QStringLiteral("in the end \"music\" has focus, since 2.000 s")});
    row("a loss that becomes a longer one",
        {lost("music", 1), lost("music", 2, "LOSS"), lost("news", 2)},
        {QStringLiteral("\"music\" loses focus: LOSS_TRANSIENT"),
         QStringLiteral("\"music\", which is without focus already, loses it: LOSS"),
         QStringLiteral("\"news\" loses focus: LOSS_TRANSIENT; it had it since 1.000 s, from \"music\""),
         QStringLiteral("in the end somebody unknown has focus, taken from \"news\" (2.000 s) and never given back"),
         QStringLiteral("in the end without focus: \"music\" since 1.000 s (LOSS), \"news\" since 2.000 s (LOSS_TRANSIENT)")});
    row("one who asks again takes it",
        {lost("music", 1), removed("music", 2), passedOn("news", 2), lost("news", 2, "LOSS")},
        {QStringLiteral("\"music\" loses focus: LOSS_TRANSIENT"),
         QStringLiteral("\"music\" is removed from the stack, or asks again"),
         QStringLiteral("\"news\" loses focus to \"music\", which asked again: LOSS; it had it since 1.000 s, from \"music\""),
         QStringLiteral("in the end \"music\" has focus, taken from \"news\" (2.000 s) and never given back"),
         QStringLiteral("in the end without focus: \"news\" since 2.000 s (LOSS)")});
    row("one who was removed a while ago does not",
        {lost("music", 1), removed("music", 2), lost("news", 2.2, "LOSS")},
        {QStringLiteral("\"music\" loses focus: LOSS_TRANSIENT"),
         QStringLiteral("\"music\" is removed from the stack, or asks again"),
         QStringLiteral("\"news\" loses focus: LOSS; it had it since 1.000 s, from \"music\""),
         QStringLiteral("in the end somebody unknown has focus, taken from \"news\" (2.200 s) and never given back"),
         QStringLiteral("in the end without focus: \"news\" since 2.200 s (LOSS)")});
    row("given back by one who is known",
        {lost("music", 1), removed("radio", 2), lost("news", 2), gained("news", 3)},
        {QStringLiteral("\"music\" loses focus: LOSS_TRANSIENT"),
         QStringLiteral("\"radio\" is removed from the stack, or asks again"),
         QStringLiteral("\"news\" loses focus to \"radio\", which asked again: LOSS_TRANSIENT; it had it since 1.000 s, from \"music\""),
         QStringLiteral("\"news\" has focus again; \"radio\" gave it back"),
         QStringLiteral("in the end \"news\" has focus, since 3.000 s"),
         QStringLiteral("in the end without focus: \"music\" since 1.000 s (LOSS_TRANSIENT)")});
    row("a call takes it and gives it back",
        {lost("music", 1), said("a call has focus, from :1.5", 1.01), said("the call has no focus any more, from :1.5", 9), gained("music", 9)},
        {QStringLiteral("\"music\" loses focus: LOSS_TRANSIENT"),
         QStringLiteral("a call has focus, from :1.5; taken from \"music\""),
         QStringLiteral("the call has no focus any more, from :1.5"),
         QStringLiteral("\"music\" has focus again"),
         QStringLiteral("in the end \"music\" has focus, since 9.000 s")});
    row("a call that does not end",
        {lost("music", 1), said("a call has focus, from :1.5", 1.01)},
        {QStringLiteral("\"music\" loses focus: LOSS_TRANSIENT"),
         QStringLiteral("a call has focus, from :1.5; taken from \"music\""),
         QStringLiteral("in the end \"IN_VOICE_COMM_FOCUS_ID\" has focus, taken from \"music\" (1.000 s) and never given back"),
         QStringLiteral("in the end without focus: \"music\" since 1.000 s (LOSS_TRANSIENT)")});
    row("a call that takes it from nobody",
        {said("a call has focus, from :1.5", 1)},
        {QStringLiteral("a call has focus, from :1.5"), QStringLiteral("in the end \"IN_VOICE_COMM_FOCUS_ID\" has focus, since 1.000 s")});
    row("a call long after a loss",
        {lost("music", 1), said("a call has focus, from :1.5", 5)},
        {QStringLiteral("\"music\" loses focus: LOSS_TRANSIENT"),
         QStringLiteral("a call has focus, from :1.5"),
         QStringLiteral("in the end \"IN_VOICE_COMM_FOCUS_ID\" has focus, since 5.000 s"),
         QStringLiteral("in the end without focus: \"music\" since 1.000 s (LOSS_TRANSIENT)")});
    row("the daemon says something else", {said("the bus has gone", 1)}, {QStringLiteral("the service says: the bus has gone")});
    row("a dump names the taker",
        {lost("music", 1), dumped("music", 2), dumped("news", 2)},
        {QStringLiteral("\"music\" loses focus: LOSS_TRANSIENT"),
         QStringLiteral("on the stack: \"music\""),
         QStringLiteral("on the stack: \"news\""),
         QStringLiteral("in the end \"news\" has focus, taken from \"music\" (1.000 s) and never given back"),
         QStringLiteral("in the end without focus: \"music\" since 1.000 s (LOSS_TRANSIENT)")});
    row("the last one of a dump has focus",
        {dumped("music", 2), dumped("news", 2), dumped("navi", 2)},
        {QStringLiteral("on the stack: \"music\""),
         QStringLiteral("on the stack: \"news\""),
         QStringLiteral("on the stack: \"navi\""),
         QStringLiteral("in the end \"navi\" has focus, since 2.000 s")});
}

void LogFocusTest::whoHasFocusIsTold()
{
    QFETCH(const QStringList, log);
    QTEST(toldOf(log).texts, "texts");
}

void LogFocusTest::processesHaveStacksOfTheirOwn()
{
    const Told result = toldOf({lost("music", 1, "LOSS", 5), lost("prompt", 2, "LOSS", 6), gained("music", 3, 5)});
    QCOMPARE(result.texts,
             QStringList({QStringLiteral("\"music\" loses focus: LOSS"),
                          QStringLiteral("\"prompt\" loses focus: LOSS, in player (6)"),
                          QStringLiteral("\"music\" has focus again, in player (5)"),
                          QStringLiteral("in the end \"music\" has focus, since 3.000 s, in player (5)"),
                          QStringLiteral("in the end somebody unknown has focus, taken from \"prompt\" (2.000 s) and never given back, in player (6)"),
                          QStringLiteral("in the end without focus: \"prompt\" since 2.000 s (LOSS), in player (6)")}));
    QCOMPARE(result.processes, QVector<qint64>({5, 6, 5, 5, 6, 6}));
}

void LogFocusTest::theEndOfARunEndsFocus_data()
{
    QTest::addColumn<QStringList>("log");
    QTest::newRow("the system starts again") << QStringList{lost("music", 100), gained("news", 2)};
    QTest::newRow("the audio starts again") << QStringList{started(90), lost("music", 100), started(101), gained("news", 102)};
}

void LogFocusTest::theEndOfARunEndsFocus()
{
    QFETCH(const QStringList, log);
    const QStringList texts = toldOf(log).texts;
    QCOMPARE(texts.mid(0, 4),
             QStringList({QStringLiteral("\"music\" loses focus: LOSS_TRANSIENT"),
                          QStringLiteral("in the end somebody unknown has focus, taken from \"music\" (100.000 s) and never given back"),
                          QStringLiteral("in the end without focus: \"music\" since 100.000 s (LOSS_TRANSIENT)"),
                          QStringLiteral("\"news\" has focus again")}));
    QCOMPARE(texts.size(), 5);
}

void LogFocusTest::withoutTimesLinesAreNamed()
{
    const QString line = QStringLiteral("[DBG] 1 void FocusRequester::handleFocusLoss(int) 75 -- dispatching  \"LOSS\"  to  \"music\"");
    QCOMPARE(toldOf({line}).texts.last(), QStringLiteral("in the end without focus: \"music\" since line 1 (LOSS)"));
}

void LogFocusTest::strangeClientsAreBounded()
{
    QStringList log;
    constexpr int many = 1000;
    for (int i = 0; i < many; ++i)
        log.append(lost(QByteArray::number(i).constData(), i, "LOSS"));
    const QString end = toldOf(log).texts.last();
    QCOMPARE(end.count(QLatin1String("(LOSS)")), 256);
}

void LogFocusTest::theSummaryCounts()
{
    LogClock clock;
    LogSummary summary(clock, {});
    read({lost("music", 1), gained("music", 2), lost("music", 3), lost("a\x01", 4)}, clock, summary);
    const QString expected
        = QStringLiteral("Focus\n"
                         "  \"a\\x01\"                    lost once, had again 0 times\n"
                         "  \"music\"                    lost 2 times, had again once\n"
                         "  in the end somebody unknown has focus, taken from \"a\\x01\" (4.000 s) and never given back\n"
                         "  in the end without focus: \"music\" since 3.000 s (LOSS_TRANSIENT), \"a\\x01\" since 4.000 s (LOSS_TRANSIENT)\n");
    QVERIFY2(summary.toText().contains(expected), qPrintable(summary.toText()));
    QVERIFY(!LogSummary(clock, {}).toText().contains(QLatin1String("Focus")));
}

QTEST_GUILESS_MAIN(LogFocusTest)
#include "tst_logfocus.moc"
