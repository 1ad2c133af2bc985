#include "doctortest.h"

#include <QtTest/QtTest>

namespace
{

Unit sick(const QString &call, const QString &way)
{
    return {{}, {{QStringLiteral("SICK_CALL"), call}, {QStringLiteral("SICK_WAY"), way}}, true};
}

/// The system calls in a line of strace that change something; opening what is there for reading is none.
bool isChange(const QString &line)
{
    static const QRegularExpression change(QStringLiteral(
        "\\b(open\\w*\\(.*O_(WRONLY|RDWR|CREAT|TRUNC|APPEND)|creat\\(|unlink\\w*\\(|rename\\w*\\(|mkdir\\w*\\(|rmdir\\(|link\\w*\\(|symlink\\w*\\(|mknod\\w*\\("
        "|"
        "f?chmod\\w*\\(|f?l?chown\\w*\\(|f?truncate\\w*\\(|utime\\w*\\(|futime\\w*\\(|f?setxattr\\(|flock\\(|fsync\\(|fdatasync\\(|execve\\(|F_SETLK)"));
    return change.match(line).hasMatch() && !line.contains(QLatin1String("\"/dev/null\""));
}

} // namespace

/// What the doctor says of library, platform and log, and that it changes nothing.
class LibraryDoctorTest : public DoctorTest
{
    Q_OBJECT

private Q_SLOTS:
    void healthy();
    void platform_data();
    void platform();
    void eachSickCallIsTold();
    void library_data();
    void library();
    void log_data();
    void log();
    void nothingIsChanged_data();
    void nothingIsChanged();
    void systemCallsThatChangeNothing();
};

/// But for the bus, which has tests of its own.
void LibraryDoctorTest::healthy()
{
    QVERIFY(write(QStringLiteral("audioData.db"), "[Volume]\n0=20\n"));
    const program::Run run = look({withFlash(), {}, false}, patient() << QStringLiteral("--write-test"));
    const QStringList wrong = program::lines(run.output).filter(QStringLiteral(" wrong "));
    QCOMPARE(wrong.size(), 1);
    QVERIFY2(wrong.first().startsWith(QLatin1String("bus       wrong  focus      no bus has a daemon")), qPrintable(run.output));
    QCOMPARE(run.exitCode, 14);
    QCOMPARE(run.errors, QString());
}

void LibraryDoctorTest::platform_data()
{
    QTest::addColumn<Unit>("unit");
    QTest::addColumn<Expected>("expected");
    constexpr int status = 11;
    const auto row = [](const char *name, const Unit &unit, const Expected &expected) { QTest::newRow(name) << unit << expected; };

    const QString simulator = QStringLiteral("libqzaudio_simulator.so.");
    row("simulated", Unit(), note("platform", "linked", simulator, {{QStringLiteral("simulated"), true}}));
    row("simulated answers", Unit(), good("platform", "answers", QStringLiteral("10 of 10 calls that change nothing are answered")));
    row("another one",
        sick({}, {}),
        good("platform", "linked", QFileInfo(QStringLiteral(SICK_UNIT)).canonicalFilePath(), {{QStringLiteral("simulated"), false}}));
    row("another one answers", sick({}, {}), good("platform", "answers", QStringLiteral("10 of 10 calls")));

    const QString nine = QStringLiteral("9 of 10 calls that change nothing are answered");
    row("refuses one",
        sick(QStringLiteral("App.getMicrophoneTest"), QStringLiteral("refuses")),
        note("platform", "answers", nine + QStringLiteral("; App.getMicrophoneTest gives 7"), {{QStringLiteral("broken"), QJsonArray()}}));
    row("refuses all",
        sick(QStringLiteral("each call"), QStringLiteral("refuses")),
        wrong(status, "platform", "answers", QStringLiteral("it refuses every call: Volume.getMasterVolume gives 7, ")));
    row("hangs",
        sick(QStringLiteral("Source.getActiveSource"), QStringLiteral("hangs")),
        wrong(status,
              "platform",
              "answers",
              QStringLiteral("Source.getActiveSource does not come back within 2000 ms; ") + nine,
              {{QStringLiteral("broken"), QJsonArray{QStringLiteral("Source.getActiveSource does not come back within 2000 ms")}}}));
    row("crashes",
        sick(QStringLiteral("App.getDownlinkDelayEstimation"), QStringLiteral("crashes")),
        wrong(status, "platform", "answers", QStringLiteral("App.getDownlinkDelayEstimation crashes, signal 6; ") + nine));
    row("ends the process",
        sick(QStringLiteral("Volume.getTrackVolume"), QStringLiteral("ends")),
        wrong(status, "platform", "answers", QStringLiteral("Volume.getTrackVolume ends the process, status 3; ") + nine));
    row("hangs at the start",
        sick(QStringLiteral("create Source"), QStringLiteral("hangs")),
        wrong(status, "platform", "answers", QStringLiteral("create does not come back within 2000 ms; 0 of 10 calls")));
    row("crashes at the end",
        sick(QStringLiteral("destroy"), QStringLiteral("crashes")),
        wrong(status, "platform", "answers", QStringLiteral("destroy crashes, signal 6; 10 of 10 calls")));
    row("gives no object",
        sick(QStringLiteral("create Volume"), QStringLiteral("gives none")),
        wrong(status, "platform", "objects", QStringLiteral("it gives no Volume"), {{QStringLiteral("missing"), QJsonArray{QStringLiteral("Volume")}}}));
}

void LibraryDoctorTest::platform()
{
    QFETCH(Unit, unit);
    QFETCH(Expected, expected);
    unit.before = withFlash();
    if (expected.exitStatus == 0)
        expected.exitStatus = 14; // there is no bus
    const bool isHanging = unit.environment.value(QStringLiteral("SICK_WAY")) == QLatin1String("hangs");
    finds(unit, isHanging ? QStringList() : patient(), expected);
}

/// Several in one look: each ends a process of its own, and the next call is made all the same.
void LibraryDoctorTest::eachSickCallIsTold()
{
    Unit unit = sick(QStringLiteral("each call"), QStringLiteral("crashes"));
    unit.before = withFlash();
    const program::Run run = look(unit, patient());
    const QStringList lines = program::lines(run.output).filter(QRegularExpression(QStringLiteral("^platform +wrong +answers ")));
    QVERIFY2(lines.size() == 1, qPrintable(run.output));
    QCOMPARE(lines.first().count(QLatin1String("crashes, signal 6")), 9); // the settings provider is the simulator's
    QVERIFY2(lines.first().endsWith(QLatin1String("; 1 of 10 calls that change nothing are answered")), qPrintable(run.output));
    QCOMPARE(run.exitCode, 11);
}

void LibraryDoctorTest::library_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<Expected>("expected");
    const QString own = QFileInfo(QStringLiteral(QZAUDIO_LIBRARY_FILE)).canonicalFilePath();
    QTest::newRow("its own") << QString() << good("library", "version", own, {{QStringLiteral("abi"), QStringLiteral("libqzaudio.so.1")}});
    QTest::newRow("a later one") << QStringLiteral("libqzaudio.so.1.99.0")
                                 << wrong(10, "library", "version", QStringLiteral("libqzaudio.so.1.99.0 is loaded, and this program came with "));
    QTest::newRow("of no version") << QStringLiteral("libqzaudio.so.1")
                                   << note("library", "version", QStringLiteral("libqzaudio.so.1 does not tell the version"));
}

void LibraryDoctorTest::library()
{
    QFETCH(QString, file);
    QFETCH(Expected, expected);
    QTemporaryDir libraries(QCoreApplication::applicationDirPath() + QStringLiteral("/libraries-XXXXXX"));
    Unit unit{withFlash(), {}, false};
    if (!file.isEmpty()) {
        QVERIFY(QFile::copy(QFileInfo(QStringLiteral(QZAUDIO_LIBRARY_FILE)).canonicalFilePath(), libraries.filePath(file)));
        const QString soname = libraries.filePath(QStringLiteral("libqzaudio.so.1"));
        QVERIFY(QFile::exists(soname) || QFile::link(file, soname));
        unit.environment.insert(QStringLiteral("LD_LIBRARY_PATH"), libraries.path());
    }
    if (expected.exitStatus == 0)
        expected.exitStatus = 14;
    finds(unit, {}, expected);
}

void LibraryDoctorTest::log_data()
{
    QTest::addColumn<QString>("rules");
    QTest::addColumn<Expected>("expected");
    QTest::newRow("all") << QStringLiteral("default.debug=true")
                         << good("log", "levels", QStringLiteral("each call is told, at debug level (QT_LOGGING_RULES=default.debug=true)"));
    QTest::newRow("failures") << QStringLiteral("*.debug=false")
                              << note("log", "levels", QStringLiteral("failures are told, calls are not"), {{QStringLiteral("critical"), true}});
    QTest::newRow("none") << QStringLiteral("*=false") << note("log", "levels", QStringLiteral("not even failed saves are told (QT_LOGGING_RULES=*=false)"));
}

void LibraryDoctorTest::log()
{
    QFETCH(QString, rules);
    QFETCH(Expected, expected);
    expected.exitStatus = 14;
    finds({withFlash(), {{QStringLiteral("QT_LOGGING_RULES"), rules}}, false}, {}, expected);
}

void LibraryDoctorTest::nothingIsChanged_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("isChanged");
    QTest::newRow("lines") << QStringList() << false;
    QTest::newRow("JSON") << QStringList(QStringLiteral("--json")) << false;
    QTest::newRow("when told to") << QStringList(QStringLiteral("--write-test")) << true;
}

void LibraryDoctorTest::nothingIsChanged()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, isChanged);
    for (const char *const name : {"audioData.db", "audioData.db.lock", "audioData.db.new-1", "audioData.db.damaged", "of somebody else"})
        QVERIFY(write(QLatin1String(name), "[Volume]\n0=20\nno setting\n"));
    const QStringList before = everythingThere();
    QCOMPARE(before.size(), 6); // with the folder
    const program::Run run = look({withFlash(), {}, false}, patient() + arguments);
    QCOMPARE(run.exitCode, 13);
    const QStringList after = everythingThere();
    // A file was made and removed: the folder has another time, and nothing more.
    QCOMPARE(after != before, isChanged);
    QCOMPARE(after.mid(1), before.mid(1));
}

void LibraryDoctorTest::systemCallsThatChangeNothing()
{
    if (program::isEmulated())
        QSKIP("strace sees the emulator's system calls");
    const QString trace = QCoreApplication::applicationDirPath() + QStringLiteral("/tst_doctor.trace");
    const QStringList strace{QStringLiteral("strace"), QStringLiteral("-f"), QStringLiteral("-o"), trace};
    if (program::run(strace + QStringList(QStringLiteral("true"))).exitCode != 0)
        QSKIP("Nothing can be traced here");
    for (const bool isTold : {false, true}) {
        // Where a leak is looked for, nobody may trace.
        const Unit unit{withFlash() + strace, {{QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0")}}, false};
        const program::Run run = look(unit, isTold ? patient() << QStringLiteral("--write-test") : patient());
        QCOMPARE(run.exitCode, 14);
        QFile file(trace);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QStringList calls = QString::fromLocal8Bit(file.readAll()).split(QLatin1Char('\n'));
        QVERIFY(calls.size() > 100);
        QStringList changes;
        std::copy_if(calls.begin(), calls.end(), std::back_inserter(changes), isChange);
        QVERIFY2(!changes.isEmpty() && changes.first().contains(QLatin1String("execve(")), "the program was not started");
        QCOMPARE(changes.mid(1).filter(QLatin1String("/media/flash/nvm/qzaudio-doctor-")).isEmpty(), !isTold);
        QCOMPARE(changes.filter(QLatin1String("fsync(")).size(), isTold ? 2 : 0);
        if (!isTold)
            QVERIFY2(changes.size() == 1, qPrintable(changes.join(QLatin1Char('\n'))));
    }
    QFile::remove(trace);
}

QTEST_GUILESS_MAIN(LibraryDoctorTest)
#include "tst_doctor.moc"
