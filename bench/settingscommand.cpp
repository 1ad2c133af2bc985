#include "settingscommand.h"

#include "console.h"
#include "exitstatus.h"
#include "settingsfile.h"
#include "settingsreader.h"
#include "settingstext.h"
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
constexpr int widestColumn = 24; // a longer text stands out of its column
constexpr int unknownKeyLimit = 1000; // keys that the library does not know, of which any number may be in the file

QString storedText(const QVariant &stored)
{
    return stored.isValid() ? Console::printable(stored.toString()) : QStringLiteral("-");
}

/// The settings that are shown.
struct Shown
{
    explicit Shown(const SettingsReader &reader)
        : settings(reader.settings())
    {
        const auto known = std::count_if(settings.cbegin(), settings.cend(), [](const SettingsReader::Setting &setting) { return setting.isKnown; });
        leftOut = std::max(settings.size() - int(known) - unknownKeyLimit, 0);
        settings.resize(settings.size() - leftOut); // the unknown ones come last
    }

    QVector<SettingsReader::Setting> settings;
    int leftOut = 0;
};

/// For programs: the text itself, cut like for people. JSON has its own way to spell characters out.
QString cut(const QString &text)
{
    if (text.size() <= Console::textLimit)
        return text;
    const int end = text.at(Console::textLimit - 1).isHighSurrogate() ? Console::textLimit - 1 : Console::textLimit;
    return text.left(end) + Console::cutMark(text);
}

/// The same JSON, but showing on a terminal does no harm: a program reads the same.
QByteArray harmless(const QByteArray &json)
{
    QString result;
    const QString text = QString::fromUtf8(json);
    const auto characters = text.toUcs4();
    for (const uint character : characters) {
        const QString units = QString::fromUcs4(&character, 1);
        if (character == '\n' || !Console::isUnseen(character)) {
            result += units;
            continue;
        }
        for (const QChar unit : units)
            result += QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
    }
    return result.toUtf8();
}

QString more(int count, const char *what)
{
    return QStringLiteral("\u2026 and %1 more %2\n").arg(count).arg(QLatin1String(what));
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
                          "Of values and keys the first %2 characters show, of the keys that the library does not know the\n"
                          "first %3. Characters that act on a terminal are spelled out, as in \\x1b; serialized objects are\n"
                          "%4. A file of more than 1 MB is not read.\n"
                          "With --watch changes show as: time, key, old value -> new value.\n")
        .arg(SettingsFile::path())
        .arg(Console::textLimit)
        .arg(unknownKeyLimit)
        .arg(SettingsText::unreadable());
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
    if (reader.isReadable())
        Console::out(parsed.isSet(QStringLiteral("json")) ? QString::fromUtf8(json(reader)) : table(reader));
    if (!reader.problem().isEmpty()) {
        Console::error(QStringLiteral("qzaudio-bench: %1: %2\n").arg(file, reader.problem()));
        return Failed;
    }
    return Success;
}

QString SettingsCommand::table(const SettingsReader &reader)
{
    const Shown shown(reader);
    int keyWidth = 0;
    int storedWidth = int(qstrlen("stored"));
    int defaultWidth = 0;
    for (const SettingsReader::Setting &setting : shown.settings) {
        keyWidth = std::max(keyWidth, std::min(setting.key.size(), widestColumn));
        storedWidth = std::max(storedWidth, std::min(storedText(setting.stored).size(), widestColumn));
        defaultWidth = std::max(defaultWidth, setting.defaultText.size());
    }
    const auto row = [&](const QString &key, const QString &stored, const QString &defaultText, const QString &meaning) -> QString {
        const int column = keyWidth + storedWidth + defaultWidth + 3 * gap;
        const QString between(gap, QLatin1Char(' '));
        return key.leftJustified(keyWidth) + between + stored.leftJustified(storedWidth) + between + defaultText.leftJustified(defaultWidth) + between
            + Console::wrapped(meaning, column, column).mid(column) + QLatin1Char('\n');
    };

    QString text = reader.file() + (reader.exists() ? QStringLiteral("\n\n") : QStringLiteral(": no such file, all defaults hold\n\n"));
    text
        += Console::styled(Console::Style::Heading, row(QStringLiteral("key"), QStringLiteral("stored"), QStringLiteral("default"), QStringLiteral("meaning")));
    for (const SettingsReader::Setting &setting : shown.settings)
        text += row(Console::printable(setting.key), storedText(setting.stored), setting.defaultText, setting.meaning);
    if (shown.leftOut > 0)
        text += more(shown.leftOut, "keys that the library does not know");
    return text;
}

QByteArray SettingsCommand::json(const SettingsReader &reader)
{
    QJsonArray array;
    const Shown shown(reader);
    for (const SettingsReader::Setting &setting : shown.settings) {
        array.append(QJsonObject{
            {QStringLiteral("key"), cut(setting.key)},
            {QStringLiteral("stored"), setting.stored.isValid() ? QJsonValue(cut(setting.stored.toString())) : QJsonValue()},
            {QStringLiteral("default"), setting.defaultText.isEmpty() ? QJsonValue() : QJsonValue(setting.defaultText)},
            {QStringLiteral("meaning"), setting.meaning},
        });
    }
    const QJsonObject document{
        {QStringLiteral("file"), reader.file()},
        {QStringLiteral("exists"), reader.exists()},
        {QStringLiteral("settings"), array},
        {QStringLiteral("leftOut"), shown.leftOut},
    };
    return harmless(QJsonDocument(document).toJson());
}

int SettingsCommand::watch(const QString &file)
{
    const auto time = [] { return QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz")); };
    SettingsWatcher watcher(file);
    QObject::connect(&watcher, &SettingsWatcher::changed, &watcher, [time](const QString &key, const QVariant &before, const QVariant &now) {
        Console::out(QStringLiteral("%1  %2  %3 -> %4\n").arg(time(), Console::printable(key), storedText(before), storedText(now)));
    });
    QObject::connect(
        &watcher, &SettingsWatcher::leftOut, &watcher, [time](int changes) { Console::out(time() + QLatin1String("  ") + more(changes, "changes")); });
    QObject::connect(&watcher, &SettingsWatcher::unreadable, &watcher, [time](const QString &problem) {
        Console::out(time() + QLatin1String("  ") + problem + QLatin1Char('\n'));
    });
    Console::out(QStringLiteral("Watching %1; Ctrl+C ends it.\n").arg(file));
    watcher.start();
    return QCoreApplication::exec();
}
