#include "settingscommand.h"

#include "console.h"
#include "exitstatus.h"
#include "settingsfile.h"
#include "settingsreader.h"
#include "settingswatcher.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTime>

#include <algorithm>

namespace
{

constexpr int gap = 2;

QString storedText(const QVariant &stored)
{
    return stored.isValid() ? SettingsReader::text(stored) : QStringLiteral("-");
}

} // namespace

QString SettingsCommand::name() const
{
    return QStringLiteral("settings");
}

QString SettingsCommand::summary() const
{
    return QStringLiteral("shows the stored settings and follows their changes");
}

QString SettingsCommand::arguments() const
{
    return QStringLiteral("[FILE]");
}

QVector<Command::Option> SettingsCommand::options() const
{
    return {
        {QStringLiteral("json"), {}, QStringLiteral("for programs: a JSON object")},
        {QStringLiteral("watch"), {}, QStringLiteral("print each change, until interrupted")},
    };
}

QString SettingsCommand::details() const
{
    return QStringLiteral("Shows the settings file, or another FILE, as a table: each key, what is stored for it (- for\n"
                          "nothing), what holds when nothing is, and its meaning. Nothing is changed. The settings file is\n"
                          "%1.\n"
                          "With --watch changes show as: time, key, old value -> new value.\n")
        .arg(SettingsFile::path());
}

int SettingsCommand::run(const QCommandLineParser &parsed)
{
    const QStringList files = parsed.positionalArguments().mid(1);
    if (files.size() > 1)
        return complain(QStringLiteral("settings takes one file"));
    if (parsed.isSet(QStringLiteral("watch")) && parsed.isSet(QStringLiteral("json")))
        return complain(QStringLiteral("--watch does not go with --json"));
    const QString file = files.value(0, SettingsFile::path());
    if (parsed.isSet(QStringLiteral("watch")))
        return watch(file);
    const SettingsReader reader(file);
    Console::setColors(Console::Colors::Auto);
    Console::out(parsed.isSet(QStringLiteral("json")) ? QString::fromUtf8(json(reader)) : table(reader));
    if (!reader.problem().isEmpty()) {
        Console::error(QStringLiteral("qzaudio-bench: %1: %2\n").arg(file, reader.problem()));
        return Failed;
    }
    return Success;
}

QString SettingsCommand::table(const SettingsReader &reader)
{
    const auto settings = reader.settings();
    int keyWidth = 0;
    int storedWidth = int(qstrlen("stored"));
    int defaultWidth = 0;
    for (const SettingsReader::Setting &setting : settings) {
        keyWidth = std::max(keyWidth, setting.key.size());
        storedWidth = std::max(storedWidth, storedText(setting.stored).size());
        defaultWidth = std::max(defaultWidth, setting.defaultText.size());
    }
    const auto row = [&](const QString &key, const QString &stored, const QString &defaultText, const QString &meaning) -> QString {
        const int column = keyWidth + storedWidth + defaultWidth + 3 * gap;
        return key.leftJustified(keyWidth + gap) + stored.leftJustified(storedWidth + gap) + defaultText.leftJustified(defaultWidth + gap)
            + Console::wrapped(meaning, column, column).mid(column) + QLatin1Char('\n');
    };

    QString text = reader.file() + (reader.exists() ? QStringLiteral("\n\n") : QStringLiteral(": no such file, all defaults hold\n\n"));
    text
        += Console::styled(Console::Style::Heading, row(QStringLiteral("key"), QStringLiteral("stored"), QStringLiteral("default"), QStringLiteral("meaning")));
    for (const SettingsReader::Setting &setting : settings)
        text += row(setting.key, storedText(setting.stored), setting.defaultText, setting.meaning);
    return text;
}

QByteArray SettingsCommand::json(const SettingsReader &reader)
{
    QJsonArray array;
    const auto settings = reader.settings();
    for (const SettingsReader::Setting &setting : settings) {
        array.append(QJsonObject{
            {QStringLiteral("key"), setting.key},
            {QStringLiteral("stored"), setting.stored.isValid() ? QJsonValue(SettingsReader::text(setting.stored)) : QJsonValue()},
            {QStringLiteral("default"), setting.defaultText.isEmpty() ? QJsonValue() : QJsonValue(setting.defaultText)},
            {QStringLiteral("meaning"), setting.meaning},
        });
    }
    const QJsonObject document{
        {QStringLiteral("file"), reader.file()},
        {QStringLiteral("exists"), reader.exists()},
        {QStringLiteral("settings"), array},
    };
    return QJsonDocument(document).toJson();
}

int SettingsCommand::watch(const QString &file)
{
    SettingsWatcher watcher(file);
    QObject::connect(&watcher, &SettingsWatcher::changed, &watcher, [](const QString &key, const QVariant &before, const QVariant &now) {
        const QString time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz"));
        Console::out(QStringLiteral("%1  %2  %3 -> %4\n").arg(time, key, storedText(before), storedText(now)));
    });
    watcher.start();
    Console::out(QStringLiteral("Watching %1; Ctrl+C ends it.\n").arg(file));
    return QCoreApplication::exec();
}
