#ifndef LIVEDUNIT_H
#define LIVEDUNIT_H

#include "arguments.h"
#include "managermodel.h"

#include <focusmodel.h>
#include <platform.h>
#include <qzaudio/audiomanager.h>
#include <qzaudio/zelaudiomanager.h>

#include <array>
#include <memory>
#include <vector>

namespace lives
{

/**
 * The library as one process of the car has it, on the simulated platform: what a life's operations are done to.
 *
 * Switching off destroys the manager. The facade and the flag that the first channel was seen outlive it.
 */
class LivedUnit
{
public:
    LivedUnit();
    ~LivedUnit();

    static audio::AudioControl &control() { return *audio::AudioControl::getInstance(); }
    /// Starts up where the unit is off.
    ZelAudioManager &manager();
    bool isOn() const { return m_manager != nullptr; }
    void switchOff() { m_manager.reset(); }
    static simulator::Platform &platform() { return *simulator::Platform::instance(); }
    static simulator::AudioChip &chip() { return *platform().chip(); }
    static simulator::Faults &faults() { return *platform().faults(); }
    static void wait(int milliseconds);

    static QByteArray settings();
    static void writeSettings(const QByteArray &text);
    static void eraseSettings();
    /// Names of what lies beside the settings file.
    static QStringList leftovers();

    int requestFocus(int client, int streamType, int durationHint);
    void releaseFocus(int client);
    /// Its listener is deleted; the client begins anew.
    void endClient(int client);

    QVector<ManagerModel::VolumeNews> takeVolumeNews() { return std::exchange(m_volumeNews, {}); }
    std::vector<FocusModel::News> takeFocusNews() { return std::exchange(m_focusNews, {}); }
    /// ms until each of the manager's timers runs, -1 for one that does not. Where the unit is off none does.
    std::array<int, ManagerModel::TimerCount> timers() const;
    /// The manager's six volumes; asks for no line of the log.
    std::array<int, 6> volumes() const;
    int status() const;
    int channel() const;

private:
    Q_DISABLE_COPY(LivedUnit)

    class Client;

    std::unique_ptr<ZelAudioManager> m_manager;
    QVector<ManagerModel::VolumeNews> m_volumeNews;
    std::vector<FocusModel::News> m_focusNews;
    AudioManager m_focus;
    std::array<std::unique_ptr<Client>, clientCount> m_clients;
};

/// The same told by models.
class UnitModel
{
public:
    FacadeModel &control();
    ManagerModel &manager();
    bool isOn() const { return m_manager.has_value(); }
    const ManagerModel *managerIfOn() const { return m_manager ? &*m_manager : nullptr; }
    void switchOff() { m_manager.reset(); }
    void wait(int milliseconds);
    void setHomeUiType(int type) { m_process.homeUiType = type; }
    int homeUiType() const { return m_process.homeUiType; }

    void learnNames(const QVariantList &answer) { m_facade.learnNames(answer); }
    FileModel &file() { return m_file; }
    CallReader &calls() { return m_calls; }
    const FacadeModel &facade() const { return m_facade; }
    qint64 now() const { return m_process.now; }

    int requestFocus(int client, int streamType, int durationHint);
    void releaseFocus(int client);
    void endClient(int client) { releaseFocus(client); }
    std::vector<FocusModel::News> takeFocusNews();

private:
    CallReader m_calls;
    FacadeModel m_facade{m_calls};
    FileModel m_file;
    ManagerModel::Process m_process;
    std::optional<ManagerModel> m_manager;
    FocusModel m_focus;
    std::array<bool, clientCount> m_isListening = {};
};

} // namespace lives

#endif
