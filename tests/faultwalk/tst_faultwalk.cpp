#include "faultexpectation.h"
#include "focuswalk.h"
#include "walkedfault.h"
#include "walkedoperation.h"
#include "world.h"

#include <program.h>
#include <qmlaudiocontrol.h>
#include <qmlaudiopolicy.h>
#include <scriptobject.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QSet>
#include <QtTest/QtTest>

#include <cstdio>

namespace
{

/// How many failures of one operation are told in full.
constexpr int told = 3;

struct PublicClass
{
    const char *header;
    const char *name;
    const char *walkedAs;
    const char *first; ///< of its operations
    const char *last;
};

constexpr PublicClass publicClasses[] = {
    {"audiocontrol.h", "AudioControl", "AudioControl", "setStepRange", "setSpeakerDealy"},
    {"zelaudiomanager.h", "ZelAudioManager", "AudioPolicy", "updateAudioStatus", "onCarplayAlertStop"},
    {"audiomanager.h", "AudioManager", "AudioManager", "requestAudioFocus", "nextMegaBase"},
    {"audioservice.h", "AudioService", "AudioService", "dispatchAudioFocusChange", "getCurrentAudioFocus"},
    {"audiofocuscontrol.h", "AudioFocusControl", "AudioFocusControl", "requestAudioFocus", "dumpFocusStack"},
};

QString differenceOf(const PlatformRun &seen, const PlatformRun &expected, const WalkedFault &fault)
{
    if (fault.way == WalkedFault::Slow || fault.way == WalkedFault::VerySlow)
        return differenceWhenSlow(seen, expected, fault.callDuration(), fault.way == WalkedFault::Slow);
    return difference(seen, expected);
}

/// What is wrong with one case; empty for nothing.
QString judge(const WalkedOperation &operation, const Observation &seen, const Observation &smooth, const WalkedFault &fault)
{
    const FaultExpectation expected(operation.name, smooth.first, fault);
    QString found = expected.gaps().value(0);
    if (found.isEmpty() && !seen.unmet.isEmpty())
        found = QLatin1String("the fault is not met: ") + seen.unmet.first();
    if (found.isEmpty())
        found = differenceOf(seen.first, expected.run(), fault);
    if (found.isEmpty()) {
        const WalkedFault lasting = fault.way == WalkedFault::KeptNull ? fault : WalkedFault();
        const FaultExpectation next(operation.name, expected.keepsState() ? smooth.first : smooth.next, lasting);
        PlatformRun expectedNext = next.run();
        expectedNext.living = expected.run().living; // what the facade began without does not come later
        found = difference(seen.next, expectedNext);
        if (!found.isEmpty())
            found.prepend(QLatin1String("in the next call, without the fault, "));
    }
    if (found.isEmpty() && !seen.leftovers.isEmpty())
        found = QLatin1String("left over: ") + seen.leftovers.join(QLatin1String(", "));
    return found;
}

} // namespace

/**
 * The walk through all faults: each public operation, in several situations, with each call that it makes on the platform failing in each way that there
 * is. What has to come of it is told by the few rules in faultrules.h, applied to the run in which nothing fails.
 *
 * Audio focus makes no calls on the platform. There it is those who are told that are missing, or call back.
 */
class FaultWalkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void walk_data();
    void walk();
    void walkOfFocus_data();
    void walkOfFocus();
    void nullListenersStop();
    void everyOperationIsWalked();
    void everyCaseIsWalked();

private:
    void walkSituation(const WalkedOperation &operation, const Situation &situation, bool isApart);
    void reportFirstChannel();

    simulator::Platform *const m_platform = simulator::Platform::instance(); ///< tells that it is simulated before the first process is made
    const QVector<WalkedOperation> m_firsts = firsts();
    const QVector<WalkedOperation> m_others = starts() + walkedOperations();
    const QVector<FocusOperation> m_focus = focusOperations();
    QSet<QString> m_walked; ///< "AudioControl.setMute"
    QStringList m_failures; ///< of the operation that is walked
    int m_existing = 0;
    int m_cases = 0;
    int m_situations = 0;
    int m_existingOfFocus = 0;
    int m_casesOfFocus = 0;
    bool m_isOnTheRoad = false;
};

void FaultWalkTest::walk_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("isApart");
    for (int i = 0; i < m_firsts.size(); ++i)
        QTest::newRow(qPrintable(m_firsts.at(i).text())) << i << true;
    for (int i = 0; i < m_others.size(); ++i)
        QTest::newRow(qPrintable(m_others.at(i).text())) << i << false;
}

void FaultWalkTest::walk()
{
    QFETCH(const int, index);
    QFETCH(const bool, isApart);
    if (isApart && program::isEmulated())
        QSKIP("the emulator is too slow for hundreds of processes");
    if (!isApart)
        reportFirstChannel();
    const WalkedOperation &operation = isApart ? m_firsts.at(index) : m_others.at(index);
    m_failures.clear();
    // The emulator is ten times slower: one situation for each operation.
    const QVector<Situation> situations = isApart || program::isEmulated() ? situationsOf(operation.needs).mid(0, 1) : situationsOf(operation.needs);
    for (const Situation &situation : situations)
        walkSituation(operation, situation, isApart);
    m_walked.insert(operation.object + QLatin1Char('.') + operation.name);
    QVERIFY2(m_failures.isEmpty(),
             qPrintable(QStringLiteral("%1 of its cases fail\n").arg(m_failures.size()) + m_failures.mid(0, told).join(QLatin1Char('\n'))));
}

void FaultWalkTest::walkSituation(const WalkedOperation &operation, const Situation &situation, bool isApart)
{
    const auto observed = [&](const WalkedFault &fault) { return isApart ? observeApart(operation, situation, fault) : observe(operation, situation, fault); };
    const Observation smooth = observed({});
    ++m_situations;
    const QVector<WalkedFault> faults = QVector<WalkedFault>{{}} + WalkedFault::all(smooth.first);
    m_existing += countFaults(smooth.first.calls());
    for (const WalkedFault &fault : faults) {
        const QString found = judge(operation, observed(fault), smooth, fault);
        if (fault.way != WalkedFault::None)
            ++m_cases;
        if (!found.isEmpty())
            m_failures += QStringLiteral("%1, %2; %3:\n    %4").arg(operation.text(), QLatin1String(situation.name), fault.describe(), found);
    }
}

void FaultWalkTest::walkOfFocus_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < m_focus.size(); ++i)
        QTest::newRow(qPrintable(m_focus.at(i).text())) << i;
}

void FaultWalkTest::walkOfFocus()
{
    QFETCH(const int, index);
    const FocusOperation &operation = m_focus.at(index);
    const FocusWalk walk = walkFocus(operation);
    m_existingOfFocus += walk.existing;
    m_casesOfFocus += walk.cases;
    m_walked.insert(operation.className() + QLatin1Char('.') + operation.name);
    QVERIFY2(walk.failures.isEmpty(),
             qPrintable(QStringLiteral("%1 of its cases fail\n").arg(walk.failures.size()) + walk.failures.mid(0, told).join(QLatin1Char('\n'))));
}

/// The lists of the other listeners have no place for one that is null.
void FaultWalkTest::nullListenersStop()
{
    QVERIFY(nullListenerStops([](AudioManager &manager) { manager.requestMegaBase(nullptr); }));
    QVERIFY(nullListenerStops([](AudioManager &manager) { manager.requestVolume(nullptr); }));
    QVERIFY(!nullListenerStops([](AudioManager &manager) { manager.abandonMegaBase(nullptr); }));
}

/// Once in a process, as in a car that is on the road: what the first channel does is walked in processes of its own.
void FaultWalkTest::reportFirstChannel()
{
    if (m_isOnTheRoad)
        return;
    m_isOnTheRoad = true;
    World world(Has::Manager, situationsOf(Has::Nothing).constFirst());
    std::get<ZelAudioManager *>(world.unit())->updateAudioChannel(AudioChannelFilePlayer);
}

void FaultWalkTest::everyOperationIsWalked()
{
    QSet<QString> wanted;
    for (const ScriptType *type : {&QmlAudioControl::scriptType(), &QmlAudioPolicy::scriptType()}) {
        for (const ScriptOperation &operation : type->operations())
            wanted.insert(type->name() + QLatin1Char('.') + QLatin1String(operation.name));
    }
    for (const PublicClass &declared : publicClasses) {
        const QStringList names = declaredOperations(QLatin1String(PUBLIC_HEADERS "/") + QLatin1String(declared.header), QLatin1String(declared.name));
        QVERIFY2(names.contains(QLatin1String(declared.first)) && names.contains(QLatin1String(declared.last)), declared.name);
        for (const QString &name : names)
            wanted.insert(QLatin1String(declared.walkedAs) + QLatin1Char('.') + name);
    }
    QStringList missing = (wanted - m_walked).values();
    missing.sort();
    QVERIFY2(missing.isEmpty(), qPrintable(QLatin1String("not walked: ") + missing.join(QLatin1String(", "))));
}

void FaultWalkTest::everyCaseIsWalked()
{
    QVERIFY(m_existing > 0);
    QVERIFY(m_existingOfFocus > 0);
    QCOMPARE(m_cases, m_existing);
    QCOMPARE(m_casesOfFocus, m_existingOfFocus);
    QCOMPARE(m_platform->books()->living(), QStringList());
    std::printf("operation x call x fault: %d of %d, in %d situations\n", m_cases, m_existing, m_situations);
    std::printf("operation of focus x who is told x missing or calling back: %d of %d\n", m_casesOfFocus, m_existingOfFocus);
}

int main(int argc, char **argv)
{
    simulator::VirtualClock::install();
    QCoreApplication application(argc, argv);
    FaultWalkTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_faultwalk.moc"
