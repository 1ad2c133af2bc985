#include <allocations.h>
#include <facadetest.h>
#include <logging.h>
#include <texts.h>

#include <QtTest/QtTest>

#include <sys/syscall.h>
#include <unistd.h>

#include <functional>
#include <memory>

using audio::AudioControl;

namespace
{

/// Sets the levels of category "default" while it lives.
class Levels
{
public:
    explicit Levels(const char *rules) { QLoggingCategory::setFilterRules(QString::fromLatin1(rules)); }
    ~Levels() { QLoggingCategory::setFilterRules(QString()); }

private:
    Q_DISABLE_COPY(Levels)
};

constexpr const char *debugOff = "default.debug=false";

int evaluations = 0;

/// A value that tells when it was asked for.
QString value()
{
    ++evaluations;
    return "value"_s;
}

void writeTraceDebug()
{
    traceDebug() << value();
}
void writeTraceCritical()
{
    traceCritical() << value();
}
void writeFacadeInfo()
{
    facadeInfo() << value();
}
void writeFacadeError()
{
    facadeError() << value();
}
void writeFacadeNote()
{
    facadeNote() << value();
}

struct Form
{
    const char *name;
    void (*write)();
    QtMsgType level;
    const char *function;
    const char *text; ///< %1 thread, %2 function, %3 source line
};

constexpr Form forms[] = {
    {"debug trace", &writeTraceDebug, QtDebugMsg, "writeTraceDebug", R"([DBG] %1 %2 %3 -- "value")"},
    {"critical trace", &writeTraceCritical, QtCriticalMsg, "writeTraceCritical", R"([ERR] %1 %2 %3 -- "value")"},
    {"facade's information", &writeFacadeInfo, QtDebugMsg, "writeFacadeInfo", R"([QT] [Audiocontrol] "value")"},
    {"facade's error", &writeFacadeError, QtDebugMsg, "writeFacadeError", R"([QT] [Error] [Audiocontrol] line: %3 "value")"},
    {"facade's note", &writeFacadeNote, QtDebugMsg, "writeFacadeNote", R"([QT] "value")"},
};

/// Blocks that a piece of code asks the heap for, when it is run a second time: what it makes once does not count.
template<typename Code>
int allocationsOf(const Code &code)
{
    code();
    const int before = allocationCount();
    code();
    return allocationCount() - before;
}

} // namespace

using Request = std::function<void(AudioControl &, audio::AudioControlPrivate &)>;

Q_DECLARE_METATYPE(Form)
Q_DECLARE_METATYPE(Request)

/// The two forms of log line, and what they cost while nobody listens.
class LoggingTest : public FacadeTest
{
    Q_OBJECT

private Q_SLOTS:
    void writesTheForm_data();
    void writesTheForm();
    void namesTheThread();
    void obeysTheLevel_data();
    void obeysTheLevel();
    void belongsToAnElse();
    void logsTheOutcomeOnly();

    void countsAllocations();
    void allocatesNothingWhileSilent_data();
    void allocatesNothingWhileSilent();
    void operationsAllocateNothingToLogWhileSilent_data();
    void operationsAllocateNothingToLogWhileSilent();

    void placesTheLibrarysLines_data();
    void placesTheLibrarysLines();
};

void LoggingTest::writesTheForm_data()
{
    QTest::addColumn<Form>("form");
    for (const Form &form : forms)
        QTest::newRow(form.name) << form;
}

void LoggingTest::writesTheForm()
{
    QFETCH(Form, form);
    form.write();
    const QList<LogRecorder::Line> lines = log->take(); // of category "default" only
    QCOMPARE(lines.size(), 1);
    const LogRecorder::Line &line = lines.constFirst();
    QCOMPARE(line.level, form.level);
    QVERIFY2(line.file.endsWith("tests/facade/tst_logging.cpp"), line.file.constData());
    QVERIFY(line.number > 0);
    QVERIFY2(line.signature.contains(form.function), line.signature.constData());
    QString expected = QString::fromLatin1(form.text);
    expected.replace("%1"_s, QString::number(::syscall(SYS_gettid)));
    expected.replace("%2"_s, QString::fromLatin1(line.signature));
    expected.replace("%3"_s, QString::number(line.number));
    QCOMPARE(line.text, expected);
}

void LoggingTest::namesTheThread()
{
    long number = 0;
    const std::unique_ptr<QThread> thread(QThread::create([&number] {
        number = ::syscall(SYS_gettid);
        writeTraceDebug();
    }));
    thread->start();
    QVERIFY(thread->wait());
    QVERIFY(number != ::syscall(SYS_gettid));
    const QList<LogRecorder::Line> lines = log->take();
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.constFirst().text.startsWith("[DBG] %1 "_s.arg(number)), qPrintable(lines.constFirst().text));
}

void LoggingTest::obeysTheLevel_data()
{
    QTest::addColumn<Form>("form");
    QTest::addColumn<QByteArray>("rules");
    QTest::addColumn<bool>("isWritten");
    for (const Form &form : forms) {
        const bool isCritical = form.level == QtCriticalMsg;
        QTest::addRow("%s with no rule", form.name) << form << QByteArray() << true;
        QTest::addRow("%s with debug off", form.name) << form << QByteArray(debugOff) << isCritical;
        QTest::addRow("%s with critical off", form.name) << form << QByteArray("default.critical=false") << !isCritical;
        QTest::addRow("%s with all off", form.name) << form << QByteArray("default=false") << false;
        QTest::addRow("%s with another category off", form.name) << form << QByteArray("qzaudio.simulator=false") << true;
    }
}

void LoggingTest::obeysTheLevel()
{
    QFETCH(Form, form);
    QFETCH(QByteArray, rules);
    QFETCH(bool, isWritten);
    const Levels levels(rules.constData());
    evaluations = 0;
    form.write();
    QCOMPARE(log->take().size(), isWritten ? 1 : 0);
    QCOMPARE(evaluations, isWritten ? 1 : 0);
}

/// The macros stand wherever a statement may.
void LoggingTest::belongsToAnElse()
{
    for (const bool isGood : {true, false}) {
        if (isGood)
            facadeInfo() << "good";
        else
            facadeError() << "bad";
    }
    QCOMPARE(log->takeTexts(), (QStringList{"[QT] [Audiocontrol] good"_s, "[QT] [Error] [Audiocontrol] line: LINE bad"_s}));
}

void LoggingTest::logsTheOutcomeOnly()
{
    for (const int result : {0, 7, -1})
        QCOMPARE(logging::logOutcome(QZAUDIO_HERE, result, logging::message("good", 1), logging::message("bad", result)), result);
    QCOMPARE(
        log->takeTexts(),
        (QStringList{"[QT] [Audiocontrol] good 1"_s, "[QT] [Error] [Audiocontrol] line: LINE bad 7"_s, "[QT] [Error] [Audiocontrol] line: LINE bad -1"_s}));
}

void LoggingTest::countsAllocations()
{
    const int before = allocationCount();
    const QString text(100, QLatin1Char('x'));
    QCOMPARE(allocationCount(), before + 1);
    QCOMPARE(text.size(), 100);
    const std::unique_ptr<QObject> object = std::make_unique<QObject>();
    QVERIFY(allocationCount() > before + 1); // operator new comes by here, too
}

void LoggingTest::allocatesNothingWhileSilent_data()
{
    writesTheForm_data();
}

void LoggingTest::allocatesNothingWhileSilent()
{
    QFETCH(Form, form);
    QVERIFY(allocationsOf(form.write) > 0);
    const Levels levels("default=false");
    QCOMPARE(allocationsOf(form.write), 0);
}

void LoggingTest::operationsAllocateNothingToLogWhileSilent_data()
{
    QTest::addColumn<Request>("request");
    QTest::addColumn<Request>("platformShare"); // what the platform's own calls allocate, nothing to do with logging
    const Request nothing = [](AudioControl &, audio::AudioControlPrivate &) {};

    QTest::newRow("a refused stream volume") << Request([](AudioControl &facade, audio::AudioControlPrivate &) {
        facade.setStreamVolume(AudioControl::Main, "S+FilePlayer_APP", 149);
    }) << nothing;
    QTest::newRow("a refused master volume") << Request([](AudioControl &facade, audio::AudioControlPrivate &) { facade.setMasterVolume(101); }) << nothing;
    QTest::newRow("a refused position") << Request([](AudioControl &facade, audio::AudioControlPrivate &) { facade.setFadeBalance(16, 0); }) << nothing;
    QTest::newRow("a refused equalizer mode") << Request([](AudioControl &facade, audio::AudioControlPrivate &) {
        facade.setEqMode(static_cast<AudioControl::EqMode>(7));
    }) << nothing;
    QTest::newRow("a refused microphone volume") << Request([](AudioControl &facade, audio::AudioControlPrivate &) { facade.setMicroPhoneVolume(92); })
                                                 << nothing;
    QTest::newRow("a refused alternative volume") << Request([](AudioControl &facade, audio::AudioControlPrivate &) { facade.setAlterVolume(101, false); })
                                                  << nothing;
    QTest::newRow("the rear seats' mute") << Request([](AudioControl &facade, audio::AudioControlPrivate &) { facade.setBackEarphone(false); })
                                          << Request([](AudioControl &, audio::AudioControlPrivate &part) { part.volume->muteTrack("second", 0); });
    QTest::newRow("the master volume") << Request([](AudioControl &facade, audio::AudioControlPrivate &) { facade.setMasterVolume(30); })
                                       << Request([](AudioControl &, audio::AudioControlPrivate &part) { part.volume->setMasterVolume(100); });
    QTest::newRow("the rear seats' mute, refused") << Request([](AudioControl &facade, audio::AudioControlPrivate &) { facade.muteBackEarphone(false); })
                                                   << Request([](AudioControl &, audio::AudioControlPrivate &part) { part.volume->unmuteTrack("second", 0); });
}

void LoggingTest::operationsAllocateNothingToLogWhileSilent()
{
    QFETCH(Request, request);
    QFETCH(Request, platformShare);
    platform->journal()->setEnabled(false); // its growth would count
    QVERIFY(platform->faults()->fail("Volume.unmuteTrack"_s, 7));
    const auto askFacade = [&] { request(*control, *inner); };
    const auto askPlatform = [&] { platformShare(*control, *inner); };
    QVERIFY(allocationsOf(askFacade) > allocationsOf(askPlatform));
    const Levels levels(debugOff);
    QCOMPARE(allocationsOf(askFacade), allocationsOf(askPlatform));
    log->take();
}

void LoggingTest::placesTheLibrarysLines_data()
{
    QTest::addColumn<Request>("request");
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("function");
    QTest::newRow("facade's information") << Request([](AudioControl &facade, audio::AudioControlPrivate &) { facade.setMasterVolume(30); })
                                          << QByteArray("src/audiocontrol.cpp") << QByteArray("audio::AudioControl::setMasterVolume");
    QTest::newRow("facade's error") << Request([](AudioControl &facade, audio::AudioControlPrivate &) { facade.setMasterVolume(101); })
                                    << QByteArray("src/audiocontrol.cpp") << QByteArray("audio::AudioControl::setMasterVolume");
    QTest::newRow("traces and an outcome") << Request(
        [](AudioControl &facade, audio::AudioControlPrivate &) { facade.setStreamVolume(AudioControl::Main, "S+GPS_APP", 20); })
                                           << QByteArray("src/audiocontrol.cpp") << QByteArray("audio::AudioControl::setStreamVolume");
    QTest::newRow("private part") << Request([](AudioControl &, audio::AudioControlPrivate &part) { part.muteAudio("attic", true); })
                                  << QByteArray("src/audiocontrol_p.cpp") << QByteArray("audio::AudioControlPrivate::muteAudio");
}

void LoggingTest::placesTheLibrarysLines()
{
    QFETCH(Request, request);
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, function);
    request(*control, *inner);
    const QList<LogRecorder::Line> lines = log->take();
    QVERIFY(!lines.isEmpty());
    for (const LogRecorder::Line &line : lines) {
        QCOMPARE(line.level, QtDebugMsg); // errors too
        QVERIFY2(line.file.endsWith(file), line.file.constData());
        QVERIFY2(line.signature.contains(function), line.signature.constData());
        QVERIFY(line.number > 0);
        const bool namesItsLine = line.text.startsWith("[DBG] "_s) || line.text.startsWith("[QT] [Error] "_s);
        QCOMPARE(line.text.contains(" %1 "_s.arg(line.number)), namesItsLine);
    }
}

QTEST_APPLESS_MAIN(LoggingTest)
#include "tst_logging.moc"
