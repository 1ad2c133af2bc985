#include <journal.h>
#include <logrecorder.h>
#include <platform.h>
#include <settingsworkloads.h>
#include <starts.h>
#include <workloads.h>

#include <QtCore/QLoggingCategory>
#include <QtTest/QtTest>

#include <cstddef>

/// A floor is one only while it does the same on the platform, and writes the same lines, as the work that it stands beside.
class WorkloadsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void startByHandCallsPlatformAsStartDoes();
    void namesAreDifferent();
    void floorCallsPlatformAsWorkDoes_data();
    void floorCallsPlatformAsWorkDoes();
    void floorLogsAsWorkDoes_data();
    void floorLogsAsWorkDoes();
    void disabledLineIsALine();

private:
    QStringList callsOf(void (*work)(int), int rounds);
    QStringList callsOf(void (*work)());
    QStringList linesOf(void (*work)(int));

    Workloads m_workloads = allWorkloads();
    QStringList m_callsOfStart;
    QStringList m_callsOfStartByHand;
};

QStringList WorkloadsTest::callsOf(void (*work)(int), int rounds)
{
    simulator::Journal *const journal = simulator::Platform::instance()->journal();
    journal->clear();
    work(rounds);
    return journal->calls(simulator::Journal::Lifetimes::Include);
}

QStringList WorkloadsTest::callsOf(void (*work)())
{
    simulator::Journal *const journal = simulator::Platform::instance()->journal();
    journal->clear();
    work();
    return journal->calls(simulator::Journal::Lifetimes::Include);
}

QStringList WorkloadsTest::linesOf(void (*work)(int))
{
    // What precedes the dashes differs by the number of the line.
    static const QRegularExpression numbers(QStringLiteral(R"(^(\[DBG\]) \d+ (.*) \d+ --)"));
    LogRecorder log;
    work(1);
    QStringList lines = log.takeTexts();
    return lines.replaceInStrings(numbers, QStringLiteral("\\1 THREAD \\2 LINE --"));
}

void WorkloadsTest::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    m_callsOfStart = callsOf(start);
    m_callsOfStartByHand = callsOf(startByHand);
    m_workloads.push_back(settingsWorkloads().front());
    for (const Workload &workload : m_workloads) {
        setUp(workload);
        // What is kept for good is made in the first round.
        workload.work(1);
        if (workload.floor)
            workload.floor(1);
    }
}

void WorkloadsTest::startByHandCallsPlatformAsStartDoes()
{
    QVERIFY(m_callsOfStart.size() > 50);
    // The step volumes go out in the order of a hash.
    m_callsOfStart.sort();
    m_callsOfStartByHand.sort();
    QCOMPARE(m_callsOfStartByHand, m_callsOfStart);
}

void WorkloadsTest::namesAreDifferent()
{
    QSet<QString> names;
    for (const Workload &workload : m_workloads)
        names.insert(QString::fromLatin1(workload.name));
    QCOMPARE(names.size(), static_cast<int>(m_workloads.size()));
}

void WorkloadsTest::floorCallsPlatformAsWorkDoes_data()
{
    QTest::addColumn<std::size_t>("index");
    for (std::size_t i = 0; i < m_workloads.size(); ++i) {
        if (m_workloads[i].floor)
            QTest::newRow(m_workloads[i].name) << i;
    }
}

void WorkloadsTest::floorCallsPlatformAsWorkDoes()
{
    QFETCH(std::size_t, index);
    const Workload &workload = m_workloads[index];
    setUp(workload);
    const QStringList calls = callsOf(workload.work, 2);
    QCOMPARE(callsOf(workload.floor, 2), calls);
    const bool isOnPlatform = !QByteArray(workload.name).startsWith("focus/") && !QByteArray(workload.name).startsWith("logging/");
    QCOMPARE(!calls.isEmpty(), isOnPlatform);
}

void WorkloadsTest::floorLogsAsWorkDoes_data()
{
    QTest::addColumn<std::size_t>("index");
    for (std::size_t i = 0; i < m_workloads.size(); ++i) {
        if (m_workloads[i].isLogged)
            QTest::newRow(m_workloads[i].name) << i;
    }
}

void WorkloadsTest::floorLogsAsWorkDoes()
{
    QFETCH(std::size_t, index);
    const Workload &workload = m_workloads[index];
    setUp(workload);
    const QStringList lines = linesOf(workload.work);
    QVERIFY(!lines.isEmpty());
    QCOMPARE(linesOf(workload.floor), lines);
}

void WorkloadsTest::disabledLineIsALine()
{
    Workload workload = loggingWorkloads().front();
    workload.isLogged = true;
    setUp(workload);
    QCOMPARE(linesOf(workload.work).size(), 1);
    QCOMPARE(linesOf(workload.floor).size(), 0);
}

QTEST_GUILESS_MAIN(WorkloadsTest)
#include "tst_workloads.moc"
