#ifndef FACADETEST_H
#define FACADETEST_H

#include "logrecorder.h"

#include <audiocontrol_p.h>
#include <platform.h>
#include <qzaudio/audiocontrol.h>

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <memory>

/**
 * Base of the facade's tests: each test function gets a fresh facade, a fresh private part and a simulated platform as new, and
 * must leave the platform's books balanced.
 */
class FacadeTest : public QObject
{
    Q_OBJECT

protected:
    /// The platform's calls since the last time, in order: `Volume.setTrackVolume("main", "S+FilePlayer", 80) -> 0`.
    QStringList takeCalls();
    /// The same with the making and destroying of objects in their places.
    QStringList takeCallsAndLifetimes();

    simulator::Platform *const platform = simulator::Platform::instance();
    std::unique_ptr<audio::AudioControl> control;
    std::unique_ptr<audio::AudioControlPrivate> inner; ///< not the one inside control
    std::unique_ptr<LogRecorder> log;
    int appsLeftBehind = 0; ///< Apps that outlive their private part; a test that makes further private parts adds to it

private Q_SLOTS:
    void init();
    void cleanup();

private:
    int m_volumesBefore = 0;
    int m_appsBefore = 0;
};

#endif
