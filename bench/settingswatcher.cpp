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
    , reader(file)
    , stamp(SettingsFile::stamp(file))
{
    // Read again after the stamp was taken: what came in between shows as no change, but is not lost either.
    reader.reload();
    settings = byKey(reader);
    timer.setInterval(interval);
    connect(&timer, &QTimer::timeout, this, &SettingsWatcher::look);
}

void SettingsWatcher::start()
{
    timer.start();
    if (!reader.isReadable())
        Q_EMIT unreadable(reader.problem());
}

void SettingsWatcher::look()
{
    const QByteArray current = SettingsFile::stamp(reader.file());
    if (current == stamp)
        return;
    stamp = current;
    reader.reload();
    if (!reader.isReadable()) {
        Q_EMIT unreadable(reader.problem());
        return;
    }
    QMap<QString, SettingsReader::Setting> before = std::exchange(settings, byKey(reader));
    int changes = 0;
    const auto tell = [&](const SettingsReader::Setting &setting, const QVariant &old) {
        if (old != setting.stored && ++changes <= changesLimit)
            Q_EMIT changed(setting, old);
    };
    for (auto entry = settings.cbegin(); entry != settings.cend(); ++entry)
        tell(entry.value(), before.take(entry.key()).stored);
    // What is left was an unknown key that is gone.
    for (auto entry = before.cbegin(); entry != before.cend(); ++entry)
        tell({entry.key(), {}, {}, {}, false, {}, {}}, entry.value().stored);
    if (changes > changesLimit)
        Q_EMIT leftOut(changes - changesLimit);
}
