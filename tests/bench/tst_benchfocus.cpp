#include "benchprocess.h"
#include "privatebus.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

/// What "qzaudio-bench focus" says where the bus or the service is missing: from a build folder and installed.
class BenchFocusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noBus_data();
    void noBus();
    void noService_data();
    void noService();
    void buildFolderIsHere();
    void unknownBusOrService_data();
    void unknownBusOrService();

private:
    enum class Place {
        Installed,
        Tree, ///< with the daemon not built
        TreeWithDaemon,
    };
    /// A copy of the bench as it stands in that place.
    static QString benchAt(Place place, const QString &folder);
    /// Two lines, the first one as expected; gives the second one.
    static QString adviceOf(const program::Run &run, const QString &complaint);
    static program::Run focus(const QString &bench, const QStringList &arguments, const QString &busAddress, const QString &workingFolder = {});
};

namespace
{

QString notOnTheBus()
{
    return QStringLiteral("qzaudio-bench: the audio service does not answer: it is not on the bus");
}

} // namespace

QString BenchFocusTest::benchAt(Place place, const QString &folder)
{
    const QString bin = folder + QStringLiteral("/bin");
    const QString bench = bin + QStringLiteral("/qzaudio-bench");
    const auto touch = [](const QString &name) { return QFile(name).open(QIODevice::WriteOnly); };
    bool isDone = QDir().mkpath(bin) && QFile::copy(QStringLiteral(BENCH_PROGRAM), bench);
    if (place != Place::Installed)
        isDone = isDone && touch(folder + QStringLiteral("/CMakeCache.txt"));
    if (place == Place::TreeWithDaemon)
        isDone = isDone && touch(bin + QStringLiteral("/qzaudio-focusd"));
    return isDone ? bench : QString();
}

program::Run BenchFocusTest::focus(const QString &bench, const QStringList &arguments, const QString &busAddress, const QString &workingFolder)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // The copy's own folder has no libraries.
    environment.insert(QStringLiteral("LD_LIBRARY_PATH"), QStringLiteral(LIBRARY_FOLDER));
    environment.remove(QStringLiteral("DISPLAY"));
    if (busAddress.isEmpty())
        environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    else
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), busAddress);
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(workingFolder);
    return program::run(process, program::commandLine(bench, QStringList(QStringLiteral("focus")) + arguments));
}

QString BenchFocusTest::adviceOf(const program::Run &run, const QString &complaint)
{
    const QStringList said = run.errors.split(QLatin1Char('\n'));
    const bool isAsExpected = run.exitCode == 3 && run.output.isEmpty() && said.size() == 3 && said.at(0) == complaint && said.at(2).isEmpty();
    return isAsExpected ? said.at(1) : QStringLiteral("status %1: %2%3").arg(QString::number(run.exitCode), run.output, run.errors);
}

void BenchFocusTest::noBus_data()
{
    QTest::addColumn<int>("place");
    QTest::addColumn<QString>("advice");
    QTest::newRow("installed") << int(Place::Installed) << "Start it with one: dbus-run-session -- qzaudio-bench focus ACTION";
    QTest::newRow("in the tree") << int(Place::Tree) << "Start it with one: dbus-run-session -- COMMAND, or all at once: ./run focus";
}

void BenchFocusTest::noBus()
{
    QFETCH(int, place);
    QFETCH(QString, advice);
    const QTemporaryDir folder;
    const QString bench = benchAt(Place(place), folder.path());
    QVERIFY(!bench.isEmpty());
    const program::Run run = focus(bench, {QStringLiteral("current")}, {});
    QCOMPARE(adviceOf(run, QStringLiteral("qzaudio-bench: no bus: there is no session bus here")), advice);
    QVERIFY(advice.size() <= 80);

    const program::Run dead = focus(bench, {QStringLiteral("current")}, QStringLiteral("unix:path=/nowhere"));
    QCOMPARE(dead.exitCode, 3);
    QVERIFY2(dead.errors.contains(QLatin1String("/nowhere")) && dead.errors.endsWith(advice + QLatin1Char('\n')), qPrintable(dead.errors));
}

void BenchFocusTest::noService_data()
{
    QTest::addColumn<int>("place");
    QTest::addColumn<QString>("advice");
    QTest::newRow("installed") << int(Place::Installed) << "Start it: qzaudio-focusd &";
    QTest::newRow("in the tree, built") << int(Place::TreeWithDaemon) << "Start it: %1/bin/qzaudio-focusd &";
    QTest::newRow("in the tree, not built") << int(Place::Tree) << "Build it: ninja -C %1 qzaudio-focusd";
}

void BenchFocusTest::noService()
{
    QFETCH(int, place);
    QFETCH(QString, advice);
    PrivateBus bus;
    QVERIFY2(!bus.address().isEmpty(), "dbus-daemon did not start");
    const QTemporaryDir folder;
    const QString bench = benchAt(Place(place), folder.path());
    QVERIFY(!bench.isEmpty());
    advice.replace(QStringLiteral("%1"), folder.path());
    for (const char *const action : {"current", "monitor"})
        QCOMPARE(adviceOf(focus(bench, {QLatin1String(action)}, bus.address()), notOnTheBus()), advice);
}

void BenchFocusTest::buildFolderIsHere()
{
    PrivateBus bus;
    QVERIFY2(!bus.address().isEmpty(), "dbus-daemon did not start");
    const QTemporaryDir tree;
    QCOMPARE(adviceOf(focus(benchAt(Place::Tree, tree.filePath(QStringLiteral("build/release"))), {QStringLiteral("current")}, bus.address(), tree.path()),
                      notOnTheBus()),
             QStringLiteral("Build it: ninja -C build/release qzaudio-focusd"));
    QCOMPARE(adviceOf(focus(benchAt(Place::TreeWithDaemon, tree.filePath(QStringLiteral("my build"))), {QStringLiteral("current")}, bus.address(), tree.path()),
                      notOnTheBus()),
             QStringLiteral("Start it: 'my build/bin/qzaudio-focusd' &"));
}

void BenchFocusTest::unknownBusOrService_data()
{
    QTest::addColumn<QString>("option");
    QTest::newRow("another service") << "--service=radio.Focus";
    QTest::newRow("another bus") << "--address=%1";
}

void BenchFocusTest::unknownBusOrService()
{
    QFETCH(QString, option);
    PrivateBus bus;
    QVERIFY2(!bus.address().isEmpty(), "dbus-daemon did not start");
    const program::Run run
        = focus(QStringLiteral(BENCH_PROGRAM), {QStringLiteral("current"), option.replace(QStringLiteral("%1"), bus.address())}, bus.address());
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.errors, notOnTheBus() + QLatin1Char('\n')); // nothing is known that could be advised
}

QTEST_GUILESS_MAIN(BenchFocusTest)
#include "tst_benchfocus.moc"
