#include "equalizercommand.h"

#include "console.h"
#include "exitstatus.h"
#include "settingsreader.h"
#include "sound/customcurve.h"
#include "sound/equalizerreport.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <unistd.h>

namespace
{

constexpr int sizeLimit = 1024 * 1024;
constexpr int mostRemarks = 20;

const QLatin1String importAction("import");
const QLatin1String exportAction("export");

int fail(const QString &file, const QString &problem, ExitStatus status = UsageError)
{
    Console::error(QStringLiteral("qzaudio-bench: %1: %2\n").arg(Console::printable(file), Console::printable(problem)));
    return status;
}

std::optional<QByteArray> read(const QString &file, QString &problem)
{
    QFile source(file);
    const bool isOpen = file == QLatin1String("-") ? source.open(STDIN_FILENO, QIODevice::ReadOnly) : source.open(QIODevice::ReadOnly);
    if (isOpen) {
        const QByteArray bytes = source.read(sizeLimit + 1);
        if (bytes.size() > sizeLimit) {
            problem = QStringLiteral("more than 1 MB, too large to be an equalizer's");
            return {};
        }
        if (source.error() == QFileDevice::NoError)
            return bytes;
    }
    problem = source.errorString();
    return {};
}

void tell(const QString &file, const QVector<EqualizerText::Remark> &remarks, const char *consequence)
{
    const auto first = remarks.mid(0, mostRemarks);
    for (const EqualizerText::Remark &remark : first) {
        Console::error(
            QStringLiteral("%1:%2: %3%4\n").arg(Console::printable(file)).arg(remark.line).arg(Console::printable(remark.text), QLatin1String(consequence)));
    }
    if (remarks.size() > mostRemarks)
        Console::error(QStringLiteral("%1: \u2026 and %2 more lines like these\n").arg(Console::printable(file)).arg(remarks.size() - mostRemarks));
}

/// A mistake in the name of a settings file; empty for none.
QString problemOfSettings(const QString &file)
{
    if (file.isEmpty())
        return QStringLiteral("--settings needs a name");
    return QFileInfo(file).isDir() ? QStringLiteral("%1 is a folder, not a settings file").arg(Console::printable(file)) : QString();
}

} // namespace

QString EqualizerCommand::name() const
{
    return QStringLiteral("equalizer");
}

QString EqualizerCommand::summary() const
{
    return QStringLiteral("fits the unit's equalizer to other tools' curves, and writes its own for them");
}

QString EqualizerCommand::arguments() const
{
    return QStringLiteral("ACTION [CURVE]");
}

QVector<Command::Option> EqualizerCommand::options() const
{
    return {
        {QStringLiteral("settings"),
         QStringLiteral("FILE"),
         QStringLiteral("import: store the curve as the custom one of this settings file; export: write the curve that it has in use")},
        {QStringLiteral("strict"), {}, QStringLiteral("import: refuse a file with a line that is not understood")},
        {QStringLiteral("json"), {}, QStringLiteral("import: for programs, a JSON object")},
        {QStringLiteral("gains"), QStringLiteral("LIST"), QStringLiteral("export: sixteen gains in dB, with commas")},
        {QStringLiteral("store-here"), QStringLiteral("LIST"), {}},
    };
}

QString EqualizerCommand::details() const
{
    return QStringLiteral(
        "import FILE reads a text of filters, from a file or the standard input (-), and finds the gains of the unit's sixteen bands that come nearest to "
        "its curve: least squares in dB from 20 Hz to 20 kHz, no gain beyond 12 dB. It shows both curves, the error, the headroom, and the call "
        "that sets the gains. The text has lines such as these; the others are told with their number, and left out:\n"
        "\n"
        "  Preamp: -6 dB\n"
        "  Filter 1: ON PK Fc 100 Hz Gain -2.5 dB Q 1.41\n"
        "  Filter 2: ON LS Fc 80 Hz Gain 4 dB\n"
        "  GraphicEQ: 20 0; 50 1.5; 20000 -3\n"
        "  # a comment\n"
        "\n"
        "A list has points of a curve, in Hz and dB. Instead of its Q a peak (PK) can have a bandwidth, \"BW Oct 1\"; what is OFF counts for nothing. "
        "Shelves (LS and HS, with Q or without) are had as nearly as the bands can. The unit has no preamp; it is told only.\n"
        "\n"
        "With --settings the curve is stored, too, by the library's own store, which has steps of 2 dB: the gains are the best of such. Type 7, the "
        "custom curve, is in use then; all else in the file stays.\n"
        "\n"
        "export [PRESET] writes such a text: of a preset, of --gains or of a settings file's curve. PRESET is one of the settings store, preset0 to preset6, "
        "or one "
        "of AudioControl.setEqMode(), mode0 to mode6, which has eight bands. Its preamp is the headroom that the curve needs.\n");
}

QVector<Command::Ending> EqualizerCommand::endings() const
{
    return {
        {Failed, QStringLiteral("a settings file cannot be read")},
        {Failed, QStringLiteral("a line of an equalizer's text is refused")},
        {UsageError, QStringLiteral("an equalizer's text that cannot be read")},
        {NothingFound, QStringLiteral("an equalizer's text has no filter")},
    };
}

Command::Completions EqualizerCommand::completions(const QStringList &before) const
{
    if (before.isEmpty())
        return {{importAction, exportAction}, {}};
    if (before.size() > 1)
        return {};
    if (before.first() == importAction)
        return {{}, QStringLiteral("FILE")};
    return {EqualizerCurves::names(), {}};
}

int EqualizerCommand::run(const QCommandLineParser &parsed)
{
    if (parsed.isSet(QStringLiteral("store-here")))
        return storeHere(parsed.value(QStringLiteral("store-here")));
    QStringList words = parsed.positionalArguments().mid(1);
    const QString action = words.isEmpty() ? QString() : words.takeFirst();
    const bool isImport = action == importAction;
    if (!isImport && action != exportAction)
        return complain(action.isEmpty() ? QStringLiteral("equalizer needs import or export")
                                         : QStringLiteral("equalizer can import or export, not %1").arg(action));
    const auto foreign = isImport ? QStringList{QStringLiteral("gains")} : QStringList{QStringLiteral("strict"), QStringLiteral("json")};
    for (const QString &option : foreign) {
        if (parsed.isSet(option))
            return complain(QStringLiteral("--%1 does not go with %2").arg(option, action));
    }
    if (parsed.isSet(QStringLiteral("settings"))) {
        const QString problem = problemOfSettings(parsed.value(QStringLiteral("settings")));
        if (!problem.isEmpty())
            return complain(problem);
    }
    if (!isImport)
        return exportOf(words, parsed);
    return words.size() == 1 ? importFrom(words.first(), parsed) : complain(QStringLiteral("import takes one file"));
}

int EqualizerCommand::importFrom(const QString &file, const QCommandLineParser &parsed) const
{
    const QString settings = parsed.value(QStringLiteral("settings"));
    QString problem = settings.isEmpty() ? QString() : SettingsReader(settings).problem();
    if (!problem.isEmpty())
        return fail(settings, problem, Failed);
    const std::optional<QByteArray> bytes = read(file, problem);
    if (!bytes)
        return fail(file, problem);
    const bool isJson = parsed.isSet(QStringLiteral("json"));
    const bool isStrict = parsed.isSet(QStringLiteral("strict"));
    const EqualizerText text = EqualizerText::read(*bytes);
    if (!isJson || isStrict || text.isEmpty())
        tell(file, text.problems, isStrict ? "" : "; left out");
    if (isStrict && !text.problems.isEmpty())
        return Failed;
    if (text.isEmpty())
        return fail(file, QStringLiteral("there is no filter in it"), NothingFound);
    if (!isJson)
        tell(file, text.notes, "");

    const EqualizerFit fit
        = EqualizerFit::to([&text](double frequency) { return text.level(frequency); }, settings.isEmpty() ? EqualizerFit::fineStep : EqualizerFit::storedStep);
    Console::setColors(Console::Colors::Auto);
    const EqualizerReport report(file, text, fit);
    Console::out(isJson ? QString::fromUtf8(report.toJson()) : report.toText());
    if (settings.isEmpty())
        return Success;
    problem = CustomCurve::write(settings, fit.gains);
    if (!problem.isEmpty())
        return fail(settings, problem);
    if (!isJson)
        Console::out(QStringLiteral("Stored in %1 as the custom curve, which is in use now.\n").arg(Console::printable(settings)));
    return Success;
}

int EqualizerCommand::exportOf(const QStringList &presets, const QCommandLineParser &parsed) const
{
    const bool hasGains = parsed.isSet(QStringLiteral("gains"));
    const bool hasSettings = parsed.isSet(QStringLiteral("settings"));
    if (presets.size() + int(hasGains) + int(hasSettings) != 1)
        return complain(QStringLiteral("export takes one of these: a preset, --gains, --settings"));
    QString problem;
    if (hasGains) {
        const auto gains = EqualizerCurves::gainsFromText(parsed.value(QStringLiteral("gains")), problem);
        if (!gains)
            return complain(problem);
        Console::out(EqualizerText::written(EqualizerCurves::ofGains(*gains), QStringLiteral("gains of the sixteen bands")));
        return Success;
    }
    if (hasSettings) {
        const QString file = parsed.value(QStringLiteral("settings"));
        if (!SettingsReader::exists(file))
            return complain(QStringLiteral("there is no file %1").arg(Console::printable(file)));
        const auto gains = CustomCurve::read(file, problem);
        if (!gains)
            return fail(file, problem, Failed);
        Console::out(EqualizerText::written(EqualizerCurves::ofGains(*gains), QStringLiteral("curve in use in %1").arg(Console::printable(file))));
        return Success;
    }
    const auto bands = EqualizerCurves::named(presets.first());
    if (!bands)
        return complain(QStringLiteral("there is no curve %1, only preset0 to preset6 and mode0 to mode6").arg(Console::printable(presets.first())));
    Console::out(EqualizerText::written(*bands, presets.first()));
    return Success;
}

int EqualizerCommand::storeHere(const QString &gains) const
{
    QString problem;
    const auto understood = EqualizerCurves::gainsFromText(gains, problem);
    if (!understood)
        return complain(problem);
    CustomCurve::store(*understood);
    return Success;
}
