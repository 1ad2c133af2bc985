#include "startoptions.h"

#include "scenariofiles.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace
{

/// Its options, each of which is entered here only.
class Parser
{
public:
    Parser()
        : room(QStringLiteral("room"), QStringLiteral("Begin in this room, which is called as in the window."), QStringLiteral("NAME"))
        , dark(QStringLiteral("dark"), QStringLiteral("Light text on a dark ground, whatever was chosen in the window."))
        , light(QStringLiteral("light"), QStringLiteral("Dark text on a light ground."))
        , version(QStringLiteral("version"), QStringLiteral("Tell the version."))
        , help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this text."))
    {
        parser.setApplicationDescription(QStringLiteral("A simulated car with the audio library of a head unit, in a window.\n\n"
                                                        "A FILE that ends in .js is a scenario, which drives the car, or a recording of this window,\n"
                                                        "as is the name of a scenario that comes with qzaudio-bench. Any other is a unit's log,\n"
                                                        "which the timeline shows."));
        parser.addOptions({room, dark, light, version, help});
        parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("A scenario, a recording or a log."), QStringLiteral("[FILE]"));
    }

    QCommandLineParser parser;
    const QCommandLineOption room;
    const QCommandLineOption dark;
    const QCommandLineOption light;
    const QCommandLineOption version;
    const QCommandLineOption help;
};

/// Why a file can be neither a scenario nor a log; empty where nothing speaks against it.
QString problemOf(const QString &name)
{
    const QFileInfo info(name);
    if (info.isDir())
        return QStringLiteral("is a folder");
    if (info.exists() && !info.isFile())
        return QStringLiteral("is no ordinary file");
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    constexpr qint64 looksAt = 65536;
    if (name.endsWith(QLatin1String(".js")) && file.read(looksAt).contains('\0'))
        return QStringLiteral("is no scenario: it is no text");
    return {};
}

} // namespace

StartOptions StartOptions::parse(const QStringList &arguments)
{
    Parser given;
    StartOptions options;
    if (!given.parser.parse(arguments)) {
        options.problem = given.parser.errorText();
        if (options.problem.endsWith(QLatin1Char('.')))
            options.problem.chop(1);
        return options;
    }
    options.wantsHelp = given.parser.isSet(given.help);
    options.wantsVersion = given.parser.isSet(given.version);
    if (options.wantsHelp || options.wantsVersion)
        return options;

    options.room = given.parser.value(given.room);
    const bool isDark = given.parser.isSet(given.dark);
    const bool isLight = given.parser.isSet(given.light);
    if (isDark && isLight) {
        options.problem = QStringLiteral("--dark and --light exclude each other");
        return options;
    }
    if (isDark || isLight)
        options.look = isDark ? QStringLiteral("dark") : QStringLiteral("light");

    const QStringList files = given.parser.positionalArguments();
    if (files.size() > 1)
        options.problem = QStringLiteral("one file at a time, not %1").arg(files.size());
    if (files.size() != 1)
        return options;
    const QString &word = files.constFirst();
    QString problem;
    QString name = word;
    if (!QFileInfo::exists(word)) {
        const QStringList found = ScenarioFiles::find(word, problem);
        if (!found.isEmpty() && found.constFirst() != ScenarioFiles::standardInput())
            name = found.constFirst();
    }
    problem = problemOf(name);
    if (problem.isEmpty())
        options.file = QFileInfo(name).absoluteFilePath();
    else
        options.problem = QStringLiteral("\"%1\": %2").arg(word, problem);
    return options;
}

QString StartOptions::helpText()
{
    return Parser().parser.helpText();
}
