#include "settingswatcher.h"

#include "settingsfile.h"

#include <utility>

namespace
{

constexpr int interval = 250; // ms
constexpr int changesLimit = 1000; // told at one look

QMap<QString, SettingsReader::Setting> byKey(const SettingsReader &reader)
{
    QMap<QString, SettingsReader::Setting> settings;
    const auto list = reader.settings();
    for (const SettingsReader::Setting &setting : list)
        settings.insert(setting.key, setting);
    return settings;
}

} // namespace

SettingsWatcher::SettingsWatcher(const QString &file, QObject *parent)
    : QObject(parent)
    , m_reader(file)
    , m_stamp(SettingsFile::stamp(file))
{
    // Read again after the stamp was taken: what came in between shows as no change, but is not lost either.
    m_reader.reload();
    m_settings = byKey(m_reader);
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &SettingsWatcher::look);
}

void SettingsWatcher::start()
{
    m_timer.start();
    if (!m_reader.isReadable())
        Q_EMIT unreadable(m_reader.problem());
}

void SettingsWatcher::look()
{
    const QByteArray current = SettingsFile::stamp(m_reader.file());
    if (current == m_stamp)
        return;
    m_stamp = current;
    m_reader.reload();
    if (!m_reader.isReadable()) {
        Q_EMIT unreadable(m_reader.problem());
        return;
    }
    QMap<QString, SettingsReader::Setting> before = std::exchange(m_settings, byKey(m_reader));
    int changes = 0;
    const auto tell = [&](const SettingsReader::Setting &setting, const QVariant &old) {
        if (old != setting.stored && ++changes <= changesLimit)
            Q_EMIT changed(setting, old);
    };
    for (auto entry = m_settings.cbegin(); entry != m_settings.cend(); ++entry)
        tell(entry.value(), before.take(entry.key()).stored);
    // What is left was an unknown key that is gone.
    for (auto entry = before.cbegin(); entry != before.cend(); ++entry)
        tell({entry.key(), {}, {}, {}, false, {}, {}}, entry.value().stored);
    if (changes > changesLimit)
        Q_EMIT leftOut(changes - changesLimit);
}
