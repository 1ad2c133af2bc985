#include <explain/logframes.h>

#include <QtTest/QtTest>

namespace
{

QByteArray text()
{
    return "[DBG] 2353 void ZelAudioManager::setMute(bool) 425 -- true";
}

QString toString(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), int(bytes.size()));
}

} // namespace

class LogFramesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formsAreRecognised_data();
    void formsAreRecognised();
    void everyFormHasItsRow();
    void patternsAreRecognised_data();
    void patternsAreRecognised();
    void wrongPatternsAreTold_data();
    void wrongPatternsAreTold();
    void foreignLinesAreNothing_data();
    void foreignLinesAreNothing();
    void formsMayChange();

private:
    QStringList metForms;
};

void LogFramesTest::formsAreRecognised_data()
{
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("time");
    QTest::addColumn<int>("process");
    QTest::addColumn<QString>("program");

    const auto row = [](const char *name, const QByteArray &log, const char *form, const char *time, int process, const char *program) {
        QTest::newRow(name) << log << QString::fromLatin1(form) << QString::fromLatin1(time) << process << QString::fromLatin1(program);
    };
    row("none", text(), "no frame", "", -1, "");
    row("indented", "   " + text(), "no frame", "", -1, "");
    row("journalctl short", "Nov 22 12:03:07 unit player[812]: " + text(), "journalctl -o short, syslog as RFC 3164", "Nov 22 12:03:07.000", 812, "player");
    row("journalctl short-precise",
        "Nov  2 12:03:07.123456 unit player[812]: " + text(),
        "journalctl -o short, syslog as RFC 3164",
        "Nov 2 12:03:07.123",
        812,
        "player");
    row("journalctl short-iso",
        "2026-11-22T12:03:07+0100 unit player[812]: " + text(),
        "journalctl -o short-iso, syslog with a date",
        "2026-11-22 12:03:07.000",
        812,
        "player");
    row("journalctl short-iso-precise",
        "2026-11-22T12:03:07.123456+0100 unit player[812]: " + text(),
        "journalctl -o short-iso, syslog with a date",
        "2026-11-22 12:03:07.123",
        812,
        "player");
    row("journalctl short-monotonic",
        "[  987.123456] unit player[812]: " + text(),
        "[seconds] as of the kernel, journalctl -o short-monotonic",
        "987.123 s",
        812,
        "player");
    row("journalctl json",
        R"({"__REALTIME_TIMESTAMP":"1795349587123456","_PID":"812","SYSLOG_IDENTIFIER":"player","MESSAGE":")" + text() + "\"}",
        "journalctl -o json",
        "2026-11-22 12:13:07.123",
        812,
        "player");
    row("journalctl json with a text in bytes",
        R"({"MESSAGE":[91,81,84,93,32,91,65,117,100,105,111,99,111,110,116,114,111,108,93,32,57,32,57],"_PID":"812"})",
        "journalctl -o json",
        "",
        812,
        "");
    row("journalctl export",
        "__CURSOR=s=1\n__REALTIME_TIMESTAMP=1795349587123456\nMESSAGE=" + text() + "\n_PID=812\nSYSLOG_IDENTIFIER=player\n\n",
        "journalctl -o export",
        "2026-11-22 12:13:07.123",
        812,
        "player");
    const QByteArray broken = text() + "\nand more";
    row("journalctl export with a text in binary",
        "__CURSOR=s=1\nMESSAGE\n" + QByteArray(1, char(broken.size())) + QByteArray(7, '\0') + broken + "\n_PID=812\n\n",
        "journalctl -o export",
        "",
        812,
        "");
    // Its length has a line break, too: 0x010A.
    const QByteArray longer = text() + '\n' + QByteArray(150, 'a') + '\n' + QByteArray(114 - text().size(), 'a');
    row("journalctl export with a long text in binary",
        "__CURSOR=s=1\nMESSAGE\n\x0a\x01" + QByteArray(6, '\0') + longer + "\n_PID=812\n\n",
        "journalctl -o export",
        "",
        812,
        "");
    row("journalctl export without an end", "__CURSOR=s=1\nMESSAGE=" + text() + "\n_PID=812", "journalctl -o export", "", 812, "");
    row("RFC 3164", "<15>Nov 22 12:03:07 unit player[812]: " + text(), "journalctl -o short, syslog as RFC 3164", "Nov 22 12:03:07.000", 812, "player");
    row("RFC 3164 without a host", "Nov 22 12:03:07 player: " + text(), "journalctl -o short, syslog as RFC 3164", "Nov 22 12:03:07.000", -1, "player");
    row("RFC 5424", "<15>1 2026-11-22T12:03:07.123Z unit player 812 - - " + text(), "syslog as RFC 5424", "2026-11-22 12:03:07.123", 812, "player");
    row("RFC 5424 with data",
        "<15>1 2026-11-22T12:03:07.123Z unit player 812 ID47 [origin ip=\"1.2.3.4\"] " + text(),
        "syslog as RFC 5424",
        "2026-11-22 12:03:07.123",
        812,
        "player");
    row("DLT text",
        "42 2026/11/22 12:03:07.123456 987.1234 17 ECU1 PLAY AUDI 812 log debug verbose 1 " + text(),
        "text of a DLT viewer",
        "2026-11-22 12:03:07.123",
        812,
        "PLAY");
    row("DLT text in brackets",
        "42 2026/11/22 12:03:07.123456 987.1234 017 ECU1 PLAY AUDI 812 log debug V 1 [" + text() + ']',
        "text of a DLT viewer",
        "2026-11-22 12:03:07.123",
        812,
        "PLAY");
    row("DLT table",
        R"("42","2026/11/22 12:03:07.123456","987.1234","17","ECU1","PLAY","AUDI","812","log","debug","verbose","1",")" + text() + '"',
        "table of a DLT viewer",
        "2026-11-22 12:03:07.123",
        812,
        "PLAY");
    row("kernel", "[   12.345678] " + text(), "[seconds] as of the kernel, journalctl -o short-monotonic", "12.345 s", -1, "");
    row("Qt: time", "2026-11-22T12:03:07 player[812]: " + text(), "journalctl -o short-iso, syslog with a date", "2026-11-22 12:03:07.000", 812, "player");
    row("Qt: time boot", "  987.123 " + text(), "QT_MESSAGE_PATTERN", "987.123 s", -1, "");
    row("Qt: time process, type", "     1.234 debug: " + text(), "QT_MESSAGE_PATTERN", "1.234 s", -1, "");
    row("Qt: a time of its own",
        "2026-11-22 12:03:07.123 [debug] player(812) 815 default: " + text(),
        "QT_MESSAGE_PATTERN",
        "2026-11-22 12:03:07.123",
        812,
        "player");
    row("Qt: the time of day", "[12:03:07.123] " + text(), "QT_MESSAGE_PATTERN", "12:03:07.123", -1, "");
    row("Qt: type and category", "[debug] default: " + text(), "QT_MESSAGE_PATTERN", "", -1, "");
}

void LogFramesTest::formsAreRecognised()
{
    QFETCH(const QByteArray, log);
    LogFrames frames;
    LogFrame frame;
    bool isFound = false;
    quint64 number = 0;
    const QByteArrayList lines = log.split('\n');
    for (const QByteArray &line : lines) {
        ++number;
        if (!isFound)
            isFound = frames.read({line.constData(), std::size_t(line.size())}, number, frame) == LogFrames::Found::Frame;
    }
    isFound = isFound || frames.finish(frame);
    QVERIFY(isFound);
    QVERIFY2(frame.text == std::string_view(text().constData(), std::size_t(text().size()))
                 || frame.text.substr(0, std::size_t(text().size())) == text().toStdString() || frame.text == "[QT] [Audiocontrol] 9 9",
             std::string(frame.text).c_str());
    QFETCH(const QString, form);
    QCOMPARE(frames.met(), QStringList(form));
    metForms += form;
    QTEST(LogTime::toText(frame.time), "time");
    QTEST(int(frame.process), "process");
    QTEST(toString(frame.program), "program");
    QVERIFY(frame.line > 0);
}

void LogFramesTest::everyFormHasItsRow()
{
    for (const LogForms::Form &form : LogForms::forms)
        QVERIFY2(metForms.contains(QLatin1String(form.name)), form.name);
}

void LogFramesTest::patternsAreRecognised_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("time");
    QTest::addColumn<int>("process");

    const auto row = [](const char *pattern, const QByteArray &line, const char *time, int process) {
        QTest::newRow(pattern) << QString::fromLatin1(pattern) << line << QString::fromLatin1(time) << process;
    };
    row("#%{pid}# %{time hhmmsszzz} %{message}", "#812# 120307123 " + text(), "12:03:07.123", 812);
    row("%{time dd.MM.yyyy hh:mm:ss,zzz}|%{appname}|%{message}", "22.11.2026 12:03:07,123|a player|" + text(), "2026-11-22 12:03:07.123", -1);
    row("%{time d.M. h:mm:ss}; %{pid};%{message}", "2.11. 9:03:07; 812;" + text(), "Nov 2 09:03:07.000", 812);
    row("@%{time boot}@%{if-debug}D%{endif}%{if-critical}C%{endif}@%{message}", "@12.345@D@" + text(), "12.345 s", -1);
    row("%{type}/%{category}/%{function}/%{message}", "debug/default/unknown/" + text(), "", -1);
}

void LogFramesTest::patternsAreRecognised()
{
    QFETCH(const QString, pattern);
    QFETCH(const QByteArray, line);
    LogFrames frames;
    QCOMPARE(frames.setPattern(pattern), QString());
    LogFrame frame;
    QCOMPARE(frames.read({line.constData(), std::size_t(line.size())}, 1, frame), LogFrames::Found::Frame);
    QCOMPARE(frames.met(), QStringList(QStringLiteral("--pattern")));
    QCOMPARE(toString(frame.text), QString::fromUtf8(text()));
    QTEST(LogTime::toText(frame.time), "time");
    QTEST(int(frame.process), "process");
}

void LogFramesTest::wrongPatternsAreTold_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("problem");

    QTest::newRow("no message") << QStringLiteral("%{time}") << QStringLiteral("it has no %{message}");
    QTest::newRow("no end") << QStringLiteral("%{time %{message") << QStringLiteral("it has no %{message}");
    QTest::newRow("unknown") << QStringLiteral("%{tim} %{message}") << QStringLiteral("%{tim} is not known");
}

void LogFramesTest::wrongPatternsAreTold()
{
    QFETCH(const QString, pattern);
    LogFrames frames;
    QTEST(frames.setPattern(pattern), "problem");
}

void LogFramesTest::foreignLinesAreNothing_data()
{
    QTest::addColumn<QByteArray>("line");
    for (const char *const line : {"", "[", "[DBG]", "[dbg] 1", "Nov 22 12:03:07 unit sshd[812]: hello", "{\"MESSAGE\":\"hello [1,2]\"}", "[91,68,66,71,93,3"})
        QTest::newRow(line) << QByteArray(line);
}

void LogFramesTest::foreignLinesAreNothing()
{
    QFETCH(const QByteArray, line);
    LogFrames frames;
    LogFrame frame;
    QCOMPARE(frames.read({line.constData(), std::size_t(line.size())}, 1, frame), LogFrames::Found::Nothing);
    QVERIFY(!frames.finish(frame));
}

void LogFramesTest::formsMayChange()
{
    LogFrames frames;
    LogFrame frame;
    const QByteArrayList lines{
        "[12:03:07.123] " + text(), "Nov 22 12:03:07 unit player[812]: " + text(), "[   12.345678] " + text(), "[12:03:07.123] " + text()};
    const QStringList times{QStringLiteral("12:03:07.123"), QStringLiteral("Nov 22 12:03:07.000"), QStringLiteral("12.345 s"), QStringLiteral("12:03:07.123")};
    for (int i = 0; i < lines.size(); ++i) {
        const QByteArray &line = lines.at(i);
        QCOMPARE(frames.read({line.constData(), std::size_t(line.size())}, 1, frame), LogFrames::Found::Frame);
        QCOMPARE(LogTime::toText(frame.time), times.at(i));
    }
    const QByteArray strange = "?? " + text();
    QCOMPARE(frames.read({strange.constData(), std::size_t(strange.size())}, 1, frame), LogFrames::Found::UnknownForm);
    QCOMPARE(toString(frame.text), QString::fromUtf8(text()));
}

QTEST_GUILESS_MAIN(LogFramesTest)
#include "tst_logframes.moc"
