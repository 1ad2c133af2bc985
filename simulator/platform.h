#ifndef PLATFORM_H
#define PLATFORM_H

#include "audiochip.h"
#include "books.h"
#include "faults.h"
#include "journal.h"

#include <QtCore/QObject>
#include <QtCore/QVector>

#include <memory>

namespace simulator
{

struct PlatformPrivate;

/**
 * The simulated platform: the audio chip, its records, and the car around it.
 *
 * Behind it libqzaudio_simulator.so.1 implements the interfaces of platform/, so that the audio library runs whole on a desk.
 * Its first use says so once, at info level in the logging category "qzaudio.simulator" (QT_LOGGING_RULES switches it).
 *
 * Threads: nothing here is locked. Use all of it from the one thread that calls the platform, and make the first use there.
 */
class Platform : public QObject
{
    Q_OBJECT

public:
    /// Made on first use and never destroyed, so that objects destroyed at process exit can still call the platform.
    static Platform *instance();

    Journal *journal() const;
    Faults *faults() const;
    Books *books() const;
    AudioChip *chip() const;

    /// The MCU service reports reverse gear, even when it is in that state already, as the real service may.
    void setReverseGear(bool engaged);
    /// False until set.
    bool reverseGear() const;

    /// Home screen that the settings provider reports; 0 until set. Type 7 has volume defaults of its own.
    void setHomeUiType(int type);
    int homeUiType() const;

    /**
     * Time in ms that each call on the platform takes; 0 until set.
     *
     * With a VirtualClock virtual time passes, and timers that fall due meanwhile are late, as behind a blocking call;
     * without one the caller really sleeps.
     */
    void setCallDuration(int milliseconds);
    int callDuration() const;

    /**
     * Everything as at the start: state, journal, faults, books, reverse gear (silently), home UI type, call duration.
     *
     * Objects that clients still hold stay usable, count as alive and may be destroyed; they are not reported at exit.
     * Pointers to objects that were destroyed before are forgotten, so using one is no longer detected.
     */
    void reset();

    /// For the simulator itself: ms of virtual time where a VirtualClock is installed, else since the first use.
    qint64 now() const;
    /// For the simulator itself: takes as long as a call on the platform.
    void passCallDuration();

Q_SIGNALS:
    void reverseGearChanged(bool engaged);
    void homeUiTypeChanged(int type);

private:
    Platform();
    ~Platform() override;

    const std::unique_ptr<PlatformPrivate> d;
};

} // namespace simulator

#endif
