#include "picturefile.h"

#include "console.h"
#include "outputfile.h"
#include "svgplot.h"

#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>

namespace
{

const QLatin1String standardOutput("-");
const QLatin1String converter("rsvg-convert");

bool isPng(const QString &file)
{
    return file.endsWith(QLatin1String(".png"), Qt::CaseInsensitive);
}

/// Empty where it could not be made: then the problem says why.
QByteArray toPng(const QByteArray &svg, QString &problem)
{
    const QString program = QStandardPaths::findExecutable(converter);
    if (program.isEmpty()) {
        problem = QStringLiteral("%1 is missing, of the Debian package librsvg2-bin; .svg can be written without it").arg(converter);
        return {};
    }
    QProcess process;
    // Twice as large, for screens with narrow pixels.
    process.start(program, {QStringLiteral("--format"), QStringLiteral("png"), QStringLiteral("--zoom"), QStringLiteral("2")});
    process.write(svg);
    process.closeWriteChannel();
    constexpr int patience = 60000; // ms
    const bool hasEnded = process.waitForFinished(patience) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    QByteArray png = process.readAllStandardOutput();
    if (hasEnded && !png.isEmpty())
        return png;
    const QString said = QString::fromUtf8(process.readAllStandardError()).section(QLatin1Char('\n'), 0, 0);
    problem = QStringLiteral("%1 made no picture: %2").arg(converter, Console::printable(said.isEmpty() ? process.errorString() : said));
    return {};
}

} // namespace

QString PictureFile::problemOfName(const QString &file)
{
    if (file == standardOutput || isPng(file) || file.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive))
        return {};
    return QStringLiteral("a picture is a file that ends in .svg or .png, or - for SVG on the standard output, not %1")
        .arg(file.isEmpty() ? QStringLiteral("nothing") : Console::printable(file));
}

QString PictureFile::write(const Figure &figure, const QString &file)
{
    QByteArray picture = SvgPlot::draw(figure);
    QString problem;
    if (isPng(file))
        picture = toPng(picture, problem);
    OutputFile output;
    if (problem.isEmpty())
        problem = output.open(file);
    if (!problem.isEmpty())
        return problem;
    output.write(picture);
    return output.close();
}
