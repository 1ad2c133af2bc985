#include "livedunit.h"

#include <managerstate.h>
#include <memberaccess.h>
#include <qzaudio/audiodatabase.h>
#include <settingsfile.h>
#include <virtualclock.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTimer>

#include <algorithm>
#include <iterator>

namespace
{

using Volumes = qint32[6];

OPEN_MEMBER(audio::AudioDataBase, volumes, Volumes)

} // namespace

namespace lives
{

/// A client of audio focus that tells the unit's records what it heard.
class LivedUnit::Client : public IAudioFocusChangeListener
{
public:
    Client(int number, std::vector<FocusModel::News> &heard)
        : m_number(number)
        , m_heard(heard)
    {
    }

    void onAudioFocusChange(int focusChange) override { m_heard.push_back({m_number, focusChange, lives::clientId(m_number)}); }
    QString clientId() override { return QLatin1String(lives::clientId(m_number)); }

private:
    const int m_number;
    std::vector<FocusModel::News> &m_heard;
};

LivedUnit::LivedUnit()
{
    for (int client = 0; client < clientCount; ++client)
        m_clients[static_cast<std::size_t>(client)] = std::make_unique<Client>(client, m_focusNews);
}

LivedUnit::~LivedUnit() = default;

ZelAudioManager &LivedUnit::manager()
{
    if (!m_manager) {
        m_manager = std::make_unique<ZelAudioManager>();
        QObject::connect(m_manager.get(), &ZelAudioManager::zelvolumeChanged, m_manager.get(), [this](bool mute, int volume, int type) {
            m_volumeNews.append({mute, volume, type});
        });
    }
    return *m_manager;
}

void LivedUnit::wait(int milliseconds)
{
    simulator::VirtualClock::installed()->advance(milliseconds);
}

// The settings file ---------------------------------------------------------------------------------------------------------

QByteArray LivedUnit::settings()
{
    QFile file(SettingsFile::path());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void LivedUnit::writeSettings(const QByteArray &text)
{
    QFile file(SettingsFile::path());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(text) != text.size() || !file.flush())
        fail(QStringLiteral("the settings cannot be written: ") + file.errorString());
}

void LivedUnit::eraseSettings()
{
    QFile::remove(SettingsFile::path());
}

QStringList LivedUnit::leftovers()
{
    QStringList names = QDir(SettingsFile::folder()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    names.removeAll(QStringLiteral("audioData.db"));
    return names;
}

// Focus ---------------------------------------------------------------------------------------------------------------------

int LivedUnit::requestFocus(int client, int streamType, int durationHint)
{
    return m_focus.requestAudioFocus(streamType, durationHint, m_clients[static_cast<std::size_t>(client)].get());
}

void LivedUnit::releaseFocus(int client)
{
    m_focus.abandonAudioFocus(m_clients[static_cast<std::size_t>(client)].get());
}

void LivedUnit::endClient(int client)
{
    releaseFocus(client);
    m_clients[static_cast<std::size_t>(client)] = std::make_unique<Client>(client, m_focusNews);
}

// What it knows -------------------------------------------------------------------------------------------------------------

std::array<int, ManagerModel::TimerCount> LivedUnit::timers() const
{
    std::array<int, ManagerModel::TimerCount> left;
    left.fill(-1);
    if (!m_manager)
        return left;
    ZelAudioManager &manager = *m_manager;
    const std::array<const QTimer *, ManagerModel::TimerCount> all = {&managerstate::muteTimer(manager),
                                                                      &managerstate::delayVolumeTimer(manager),
                                                                      &managerstate::customEqTimer(manager),
                                                                      &managerstate::firstEqTimer(manager),
                                                                      &managerstate::cpAlertTimer(manager),
                                                                      &managerstate::cpUnduckTimer(manager)};
    std::transform(all.cbegin(), all.cend(), left.begin(), [](const QTimer *timer) { return timer->remainingTime(); });
    return left;
}

std::array<int, 6> LivedUnit::volumes() const
{
    std::array<int, 6> all = {};
    if (m_manager) {
        const audio::AudioDataBase &store = managerstate::dataBase(*m_manager);
        std::copy(std::cbegin(store.*memberOf(volumes_Member())), std::cend(store.*memberOf(volumes_Member())), all.begin());
    }
    return all;
}

int LivedUnit::status() const
{
    return m_manager ? managerstate::currentStatus(*m_manager) : 0;
}

int LivedUnit::channel() const
{
    return m_manager ? managerstate::currentChannel(*m_manager) : 0;
}

// The model -----------------------------------------------------------------------------------------------------------------

FacadeModel &UnitModel::control()
{
    m_facade.beThere();
    return m_facade;
}

ManagerModel &UnitModel::manager()
{
    if (!m_manager)
        m_manager.emplace(m_facade, m_file, m_process);
    return *m_manager;
}

void UnitModel::wait(int milliseconds)
{
    if (m_manager)
        m_manager->advance(milliseconds);
    else
        m_process.now += milliseconds;
}

int UnitModel::requestFocus(int client, int streamType, int durationHint)
{
    if (durationHint < 1 || durationHint > 4)
        return 1;
    m_isListening[static_cast<std::size_t>(client)] = true;
    return m_focus.request(clientId(client), streamType, durationHint, client) ? 0 : 1;
}

void UnitModel::releaseFocus(int client)
{
    m_isListening[static_cast<std::size_t>(client)] = false;
    m_focus.leave(clientId(client), true);
}

std::vector<FocusModel::News> UnitModel::takeFocusNews()
{
    auto news = m_focus.takeNews();
    news.erase(std::remove_if(news.begin(), news.end(), [this](const FocusModel::News &one) { return !m_isListening[static_cast<std::size_t>(one.audience)]; }),
               news.end());
    return news;
}

} // namespace lives
