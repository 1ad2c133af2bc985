#ifndef UNITLIFE_H
#define UNITLIFE_H

#include <journalentry.h>
#include <platform.h>
#include <virtualclock.h>

#include <qzaudio/audiocontrol.h>
#include <qzaudio/audiodatabase.h>
#include <qzaudio/audiomanager.h>
#include <qzaudio/audioservice.h>
#include <qzaudio/zelaudiomanager.h>

#include <array>
#include <memory>

/**
 * A head unit as new, with an empty flash, that operations are tried on: the facade and a manager, a store of another application
 * beside the manager's own, and both ways to audio focus.
 *
 * One at a time, on virtual time, and in a process that has nothing else to do with the library.
 */
class UnitLife
{
public:
    UnitLife();
    ~UnitLife();

    audio::AudioControl &control() { return *m_control; }
    /// Starts the unit where it is off.
    ZelAudioManager &manager();
    void switchOff() { m_manager.reset(); }
    audio::AudioDataBase &store() { return *m_store; }
    void restartStore();
    AudioService &focusService() { return m_focusService; }
    AudioFocusControl &focusControl() { return m_focusControl; }
    AudioManager &focusManager() { return m_focusManager; }
    IAudioFocusChangeListener *listener(int number);
    simulator::Platform &platform() { return *m_platform; }
    simulator::VirtualClock &clock() { return *m_clock; }

    /// Holds after each operation, whatever it was: the platform's books are clean, and what it was sent is in range.
    void check();

    /// Ids that clients have, among them the telephone call's, which keeps focus.
    static const QStringList &clientIds();

private:
    Q_DISABLE_COPY(UnitLife)

    class Listener;

    void checkBooks() const;
    static void checkCall(const simulator::JournalEntry &entry);

    simulator::Platform *const m_platform = simulator::Platform::instance();
    simulator::VirtualClock *const m_clock = simulator::VirtualClock::installed();
    audio::AudioControl *const m_control = audio::AudioControl::getInstance();
    int m_volumesBefore = 0;
    int m_appsBefore = 0;
    std::array<std::unique_ptr<Listener>, 4> m_listeners; // outlive who knows them
    AudioService m_focusService;
    AudioFocusControl m_focusControl;
    AudioManager m_focusManager;
    std::unique_ptr<audio::AudioDataBase> m_store;
    std::unique_ptr<ZelAudioManager> m_manager;
};

#endif
