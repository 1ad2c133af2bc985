#ifndef POLICYTEST_H
#define POLICYTEST_H

#include "managerstate.h"

#include <logrecorder.h>
#include <platform.h>
#include <virtualclock.h>

#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtTest/QtTest>

#include <array>
#include <memory>

/// The lines that a test expects of the journal.
namespace calls
{

using Curve = std::array<float, 16>;

/// One call between the making and the destroying of an object made for it.
QStringList fresh(const QString &call);
/// A stream volume of the main track, on a Volume made for it.
QStringList streamVolume(const QString &platformSource, int volume);
/// A volume for all channels of a type, as it reaches plain sources and boosted ones.
QStringList volumeOfType(int type, int plain, int boosted);
/// A curve in the equalizer, on an App made for it.
QStringList equalizer(const Curve &gains);
Curve curveOf(float everyBand);

} // namespace calls

/// zelvolumeChanged(), as it came.
struct VolumeChange
{
    bool mute;
    int volume;
    int type;

    friend bool operator==(const VolumeChange &a, const VolumeChange &b) { return a.mute == b.mute && a.volume == b.volume && a.type == b.type; }
};

/**
 * Base of the policy manager's tests: each test function gets the platform as new, an empty flash, virtual time, and starts a
 * manager of its own on them.
 *
 * The first channel after power-on was reported before the first test function, as in a car that is on the road.
 */
class PolicyTest : public QObject
{
    Q_OBJECT

protected:
    /// Starts the manager and forgets the start: nothing is pending, no timer runs, calls and lines are taken.
    void start();
    /// Starts the manager and forgets nothing.
    void startOnly();

    /// The platform's calls since the last time, the making and destroying of objects in their places.
    QStringList takeCalls();
    /// The manager's own log lines since the last time, without what the facade and the store say.
    QStringList takeManagerLines();
    QList<VolumeChange> takeVolumeChanges();

    /// What the settings file has now: "Volume/3" → 17.
    QVariant stored(const QString &key) const;
    /// All of it, as "key=value", sorted.
    QStringList storedLines() const;
    void store(const QString &key, const QVariant &value) const;

    simulator::Platform *const platform = simulator::Platform::instance();
    simulator::VirtualClock *const clock = simulator::VirtualClock::installed();
    std::unique_ptr<ZelAudioManager> manager;
    std::unique_ptr<LogRecorder> log;

protected Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

private:
    QList<VolumeChange> m_volumeChanges;
    int m_neverEmitted = 0;
    int m_volumesBefore = 0;
    int m_appsBefore = 0;
};

/// The main function of a test on virtual time.
#define POLICY_TEST_MAIN(TestClass)               \
    int main(int argc, char **argv)               \
    {                                             \
        simulator::VirtualClock::install();       \
        QCoreApplication application(argc, argv); \
        TestClass test;                           \
        return QTest::qExec(&test, argc, argv);   \
    }

#endif
