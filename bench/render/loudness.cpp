#include "loudness.h"

#include "soundtool.h"

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <cmath>

namespace
{

/// What the meter shows for silence, and for what is below it.
constexpr double floorOfMeter = -70;

double valueOf(const QRegularExpressionMatch &match)
{
    bool isNumber = false;
    const double value = match.captured(1).toDouble(&isNumber);
    if (!isNumber || value <= floorOfMeter)
        return Loudness::silence;
    return value;
}

} // namespace

Loudness Loudness::measure(const QStringList &input, const QString &filter, const QString &folder, QString &problem)
{
    const QString meter = filter + QString(filter.isEmpty() ? QString() : QStringLiteral(",")) + QStringLiteral("ebur128=peak=true");
    const QStringList arguments = QStringList{QStringLiteral("-hide_banner"), QStringLiteral("-nostdin"), QStringLiteral("-nostats")} + input
        + QStringList{QStringLiteral("-af"), meter, QStringLiteral("-f"), QStringLiteral("null"), QStringLiteral("-")};
    const SoundTool::Outcome outcome = SoundTool::ffmpeg().run(arguments, folder);
    problem = outcome.problem;
    return problem.isEmpty() ? read(outcome.messages) : Loudness();
}

Loudness Loudness::read(const QByteArray &messages)
{
    static const QRegularExpression integrated(QStringLiteral("^ +I: +(\\S+) LUFS"), QRegularExpression::MultilineOption);
    static const QRegularExpression peak(QStringLiteral("^ +Peak: +(\\S+) dBFS"), QRegularExpression::MultilineOption);
    static const QRegularExpression shortTerm(QStringLiteral(" S: *(\\S+) "));
    const QString text = QString::fromLocal8Bit(messages);
    Loudness loudness;
    // A graph is set up more than once, and each time the meter sums up what it heard: nothing but at last.
    const QString summary = text.mid(text.lastIndexOf(QLatin1String("Summary:")));
    loudness.integrated = valueOf(integrated.match(summary));
    loudness.truePeak = valueOf(peak.match(summary));
    auto moments = shortTerm.globalMatch(text);
    while (moments.hasNext())
        loudness.shortTerm = std::max(loudness.shortTerm, valueOf(moments.next()));
    return loudness;
}

QString Loudness::text(double value)
{
    return std::isfinite(value) ? QString::number(value, 'f', 1) : QStringLiteral("silent");
}
