#include "settingswatcher.h"

#include "settingsfile.h"

#include <utility>

namespace
{

constexpr int interval = 250; // ms
constexpr int changesLimit = 1000; // told at one look

QMap<QString, QVariant> storedValues(const SettingsReader &reader)
{
    QMap<QString, QVariant> values;
    const auto settings = reader.settings();
    for (const SettingsReader::Setting &setting : settings)
        values.insert(setting.key, setting.stored);
    return values;
}

} // namespace

SettingsWatcher::SettingsWatcher(const QString &file, QObject *parent)
    : QObject(parent)
    , reader(file)
    , stamp(SettingsFile::stamp(file))
{
    // Read again after the stamp was taken: what came in between shows as no change, but is not lost either.
    reader.reload();
    values = storedValues(reader);
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
    QMap<QString, QVariant> before = std::exchange(values, storedValues(reader));
    int changes = 0;
    const auto tell = [&](const QString &key, const QVariant &old, const QVariant &now) {
        if (old != now && ++changes <= changesLimit)
            Q_EMIT changed(key, old, now);
    };
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry)
        tell(entry.key(), before.take(entry.key()), entry.value());
    // What is left was an unknown key that is gone.
    for (auto entry = before.cbegin(); entry != before.cend(); ++entry)
        tell(entry.key(), entry.value(), {});
    if (changes > changesLimit)
        Q_EMIT leftOut(changes - changesLimit);
}
