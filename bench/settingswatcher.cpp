#include "settingswatcher.h"

#include "settingsfile.h"

#include <QtCore/QMap>

namespace
{

constexpr int interval = 250; // ms

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
    timer.setInterval(interval);
    connect(&timer, &QTimer::timeout, this, &SettingsWatcher::look);
}

void SettingsWatcher::start()
{
    timer.start();
}

void SettingsWatcher::look()
{
    const QByteArray current = SettingsFile::stamp(reader.file());
    if (current == stamp)
        return;
    stamp = current;
    QMap<QString, QVariant> before = storedValues(reader);
    reader.reload();
    const auto now = storedValues(reader);
    for (auto entry = now.cbegin(); entry != now.cend(); ++entry) {
        const QVariant old = before.take(entry.key());
        if (old != entry.value())
            Q_EMIT changed(entry.key(), old, entry.value());
    }
    // What is left was an unknown key that is gone.
    for (auto entry = before.cbegin(); entry != before.cend(); ++entry)
        Q_EMIT changed(entry.key(), entry.value(), {});
}
