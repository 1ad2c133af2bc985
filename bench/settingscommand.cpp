#include "settingscommand.h"

#include "console.h"
#include "exitstatus.h"
#include "settingsfile.h"
#include "settingsreader.h"
#include "settingstext.h"
#include "settingswatcher.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTime>

#include <algorithm>

namespace
{

constexpr int gap = 2;
constexpr int widestKey = 24; // a longer one has a line of its own
constexpr int widestStored = 16; // likewise
constexpr int widestText = 40; // in a line of --watch, which has three of them
constexpr int unknownKeyLimit = 1000; // keys that the library does not know, of which any number may be in the file

/// What is unseen spelled out, and no more of it than fits; what was cut says how long it is.
QString shortened(const QString &text, int columns)
{
    const QString mark = Console::cutMark(text);
    const int columnsOfCut = std::max(columns - mark.size(), 0);
    QString shown;
    int sizeOfCut = 0;
    const auto characters = text.leftRef(columns + 1).toUcs4();
    for (const uint character : characters) {
        shown += Console::printable(QString::fromUcs4(&character, 1));
        if (shown.size() <= columnsOfCut)
            sizeOfCut = shown.size();
        if (shown.size() > columns)
            return shown.left(sizeOfCut) + mark;
    }
    return shown;
}

QString storedText(const QVariant &stored, int columns)
{
    return stored.isValid() ? shortened(stored.toString(), columns) : QStringLiteral("-");
}

/// Says what counts where that is not what is stored; else empty.
QString effectText(const SettingsReader::Setting &setting)
{
    return setting.problem.isEmpty() ? QString() : QStringLiteral("in effect: %1 (%2)").arg(setting.inEffect, setting.problem);
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

/// A mistake in the name that was given; empty for none.
QString problemOfName(const QString &file)
{
    if (QFileInfo(file).isDir())
        return QStringLiteral("%1 is a folder, not a settings file").arg(shortened(file, Console::textLimit));
    return SettingsReader::exists(file) ? QString() : QStringLiteral("there is no file %1").arg(shortened(file, Console::textLimit));
}

/// The width of a column that is to hold the text, too, unless it is too long for any.
int widened(int column, const QString &text, int widest)
{
    return text.size() > widest ? column : std::max(column, text.size());
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
                          "A value that does not count as it is stored, or is out of range, is marked: \"! in effect: 0\" and\n"
                          "the reason. In effect is what the library's store reads.\n"
                          "Long values and keys are cut, in JSON behind %2 characters; of the keys that the library does\n"
                          "not know the first %3 show. Characters that act on a terminal are spelled out, as in \\x1b;\n"
                          "serialized objects are %4. A file of more than 1 MB is not read.\n"
                          "With --watch changes show as: time, key, old value -> new value, and the same mark.\n"
                          "In JSON each setting has key, stored, default, meaning, inEffect and problem; what there is\n"
                          "none of is null.\n")
        .arg(SettingsFile::path())
        .arg(Console::textLimit)
        .arg(unknownKeyLimit)
        .arg(SettingsText::unreadable());
}

QVector<Command::Ending> SettingsCommand::endings() const
{
    return {{Failed, QStringLiteral("a settings file cannot be read")}};
}

Command::Completions SettingsCommand::completions(const QStringList &before) const
{
    return {{}, before.isEmpty() ? QStringLiteral("FILE") : QString()};
}

int SettingsCommand::run(const QCommandLineParser &parsed)
{
    const QStringList files = parsed.positionalArguments().mid(1);
    if (files.size() > 1)
        return complain(QStringLiteral("settings takes one file"));
    if (parsed.isSet(QStringLiteral("watch")) && parsed.isSet(QStringLiteral("json")))
        return complain(QStringLiteral("--watch does not go with --json"));
    const QString file = files.value(0, SettingsFile::path());
    if (!files.isEmpty()) {
        const QString problem = problemOfName(file);
        if (!problem.isEmpty())
            return complain(problem);
    }
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
    const int widestLine = Console::width();
    int keyWidth = 0;
    int storedWidth = int(qstrlen("stored"));
    int defaultWidth = 0;
    for (const SettingsReader::Setting &setting : shown.settings) {
        keyWidth = widened(keyWidth, shortened(setting.key, widestLine), widestKey);
        storedWidth = widened(storedWidth, storedText(setting.stored, widestLine), widestStored);
        defaultWidth = std::max(defaultWidth, setting.defaultText.size());
    }
    const int storedColumn = keyWidth + gap;
    const int defaultColumn = storedColumn + storedWidth + gap;
    const int meaningColumn = defaultColumn + defaultWidth + gap;
    constexpr int narrowestMeaning = 24;
    const bool isNarrow = widestLine - meaningColumn < narrowestMeaning;
    // A text too long for its column ends its line; the next column goes on below.
    const auto row = [&](const QString &key, const QString &stored, const QString &defaultText, const QString &meaning) -> QString {
        const auto cell = [](const QString &cellText, int width, int nextColumn) -> QString {
            return cellText.size() <= width ? cellText.leftJustified(width + gap) : cellText + QLatin1Char('\n') + QString(nextColumn, QLatin1Char(' '));
        };
        if (isNarrow) {
            const QString below = defaultText.isEmpty() ? meaning : QStringLiteral("default %1; %2").arg(defaultText, meaning);
            return cell(key, keyWidth, storedColumn) + stored + QLatin1Char('\n') + Console::wrapped(below, 2 * gap, 2 * gap) + QLatin1Char('\n');
        }
        return cell(key, keyWidth, storedColumn) + cell(stored, storedWidth, defaultColumn) + defaultText.leftJustified(defaultWidth + gap)
            + Console::wrapped(meaning, meaningColumn, meaningColumn).mid(meaningColumn) + QLatin1Char('\n');
    };

    QString text = reader.file() + (reader.exists() ? QStringLiteral("\n\n") : QStringLiteral(": no such file, all defaults hold\n\n"));
    const QString heading = isNarrow ? QStringLiteral("key").leftJustified(storedColumn) + QStringLiteral("stored\n")
                                     : row(QStringLiteral("key"), QStringLiteral("stored"), QStringLiteral("default"), QStringLiteral("meaning"));
    text += Console::styled(Console::Style::Heading, heading);
    for (const SettingsReader::Setting &setting : shown.settings) {
        text += row(shortened(setting.key, widestLine), storedText(setting.stored, widestLine - storedColumn), setting.defaultText, setting.meaning);
        const QString effect = effectText(setting);
        if (!effect.isEmpty())
            text += Console::styled(Console::Style::Bad, Console::wrapped(QLatin1String("! ") + effect, storedColumn, storedColumn + gap)) + QLatin1Char('\n');
    }
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
            {QStringLiteral("inEffect"), setting.isKnown ? QJsonValue(setting.inEffect) : QJsonValue()},
            {QStringLiteral("problem"), setting.problem.isEmpty() ? QJsonValue() : QJsonValue(setting.problem)},
        });
    }
    const QJsonObject document{
        {QStringLiteral("file"), reader.file()},
        {QStringLiteral("exists"), reader.exists()},
        {QStringLiteral("settings"), array},
        {QStringLiteral("leftOut"), shown.leftOut},
    };
    return Console::harmlessJson(QJsonDocument(document).toJson());
}

int SettingsCommand::watch(const QString &file)
{
    const auto time = [] { return QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz")); };
    SettingsWatcher watcher(file);
    QObject::connect(&watcher, &SettingsWatcher::changed, &watcher, [time](const SettingsReader::Setting &setting, const QVariant &before) {
        const QString effect = effectText(setting);
        Console::out(QStringLiteral("%1  %2  %3 -> %4%5\n")
                         .arg(time(),
                              shortened(setting.key, widestText),
                              storedText(before, widestText),
                              storedText(setting.stored, widestText),
                              effect.isEmpty() ? QString() : QLatin1String("  ! ") + effect));
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
