#include "options.h"

#include "finding.h"
#include "paragraph.h"

#include <QtCore/QCommandLineParser>

namespace
{

constexpr int msPerSecond = 1000;
constexpr int longestPatienceS = 60;

} // namespace

Options Options::parse(const QStringList &arguments)
{
    const QCommandLineOption helpOption(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    const QCommandLineOption versionOption(QStringList{QStringLiteral("v"), QStringLiteral("version")});
    const QCommandLineOption jsonOption(QStringLiteral("json"));
    const QCommandLineOption writeOption(QStringLiteral("write-test"));
    const QCommandLineOption patienceOption(QStringLiteral("patience"), QString(), QStringLiteral("SECONDS"));
    QCommandLineParser parser;
    parser.addOptions({helpOption, versionOption, jsonOption, writeOption, patienceOption});

    Options options;
    const auto complain = [&options](const QString &text) {
        options.action = Action::Complain;
        options.complaint = text;
        return options;
    };
    if (!parser.parse(QStringList(QStringLiteral("qzaudio-doctor")) + arguments))
        return complain(parser.errorText());
    if (parser.isSet(helpOption) || parser.isSet(versionOption)) {
        options.action = parser.isSet(helpOption) ? Action::ShowHelp : Action::ShowVersion;
        return options;
    }
    if (!parser.positionalArguments().isEmpty())
        return complain(QStringLiteral("There is nothing to do with \"%1\".").arg(parser.positionalArguments().constFirst()));
    if (parser.isSet(patienceOption)) {
        const int seconds = parser.value(patienceOption).toInt();
        if (seconds < 1 || seconds > longestPatienceS)
            return complain(QStringLiteral("--patience is a number from 1 to %1.").arg(longestPatienceS));
        options.patienceMs = seconds * msPerSecond;
    }
    options.json = parser.isSet(jsonOption);
    options.writeTest = parser.isSet(writeOption);
    return options;
}

QString Options::help(int columns)
{
    constexpr int ofAPage = 100;
    const int width = columns > 0 ? columns : ofAPage;
    QString text = QStringLiteral("Usage: qzaudio-doctor [OPTION]...\n\n");
    const auto tell
        = [&text, width](const char *paragraph) { text += Paragraph::folded(QLatin1String(paragraph), width).join(QLatin1Char('\n')) + QLatin1String("\n\n"); };
    const auto list = [&text, width](const QString &head, const QString &meaning) {
        constexpr int indentation = 22;
        text += Paragraph::withHead(QLatin1String("  ") + head, meaning, indentation, width);
    };

    tell("Looks whether a unit is set up rightly for the audio library: which library and platform it has, whether the platform answers, "
         "whether settings can be written and last, who holds their lock, and whether audio focus can be asked for over a bus. Run it "
         "as the user that the applications run as.");
    tell("It changes nothing without --write-test: of the platform only calls that ask are made, and no service is started.");
    list(QStringLiteral("--write-test"), QStringLiteral("also write a file into the settings' folder as a save does, wait for the flash, and remove the file"));
    list(QStringLiteral("--patience SECONDS"),
         QStringLiteral("how long the flash, and each answer of the platform and of a bus, may take: 1 to %1, %2 by default")
             .arg(QString::number(longestPatienceS), QString::number(Options().patienceMs / msPerSecond)));
    list(QStringLiteral("--json"), QStringLiteral("print one JSON object instead of lines"));
    list(QStringLiteral("-h, --help"), QStringLiteral("show this text"));
    list(QStringLiteral("-v, --version"), QStringLiteral("show the version"));

    text += QLatin1Char('\n');
    tell("Each line has an area, a grade (good; note: works, and is worth knowing; wrong), a subject and what was found. A line is folded "
         "for a terminal only, or where COLUMNS says how wide to be.");
    text += QStringLiteral("Exit status:\n");
    const auto listStatus = [&text, width](int status, const QString &meaning) {
        constexpr int indentation = 6;
        text += Paragraph::withHead(QStringLiteral("  %1").arg(status), meaning, indentation, width);
    };
    listStatus(0, QStringLiteral("nothing is wrong"));
    listStatus(1, QStringLiteral("the output cannot be written"));
    listStatus(2, QStringLiteral("there is a mistake on the command line"));
    for (const AreaRow &row : areas) {
        if (row.exitStatus != 0)
            listStatus(row.exitStatus, QStringLiteral("%1: %2").arg(QLatin1String(row.name), QLatin1String(row.meaning)));
    }
    return text + QStringLiteral("Of several areas, the first one's.\n");
}
