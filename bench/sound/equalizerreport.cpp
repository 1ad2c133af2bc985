#include "equalizerreport.h"

#include "console.h"
#include "customcurve.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <cmath>

namespace
{

// Nominal frequencies of third-octave bands.
constexpr double shownFrequencies[] = {20,  25,   31.5, 40,   50,   63,   80,   100,  125,  160,  200,  250,   315,   400,   500,  630,
                                       800, 1000, 1250, 1600, 2000, 2500, 3150, 4000, 5000, 6300, 8000, 10000, 12500, 16000, 20000};

QString signedNumber(double level)
{
    const QString text = QString::number(level, 'f', 1);
    if (text == QLatin1String("-0.0"))
        return QStringLiteral("0.0");
    return level > 0 && text != QLatin1String("0.0") ? QLatin1Char('+') + text : text;
}

QString frequencyText(double frequency)
{
    constexpr double kilo = 1000;
    return frequency < kilo ? QStringLiteral("%1 Hz").arg(frequency, 0, 'g', 3) : QStringLiteral("%1 kHz").arg(frequency / kilo, 0, 'g', 3);
}

QString paragraph(const QString &text)
{
    return Console::wrapped(text, 0, 0) + QLatin1Char('\n');
}

QString counted(int count, const char *what)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(QLatin1String(what), QLatin1String(count == 1 ? "" : "s"));
}

QString row(const QString &frequency, const QString &wanted, const QString &got, const QString &error)
{
    constexpr int frequencyWidth = 9;
    constexpr int width = 10;
    return frequency.rightJustified(frequencyWidth) + wanted.rightJustified(width) + got.rightJustified(width) + error.rightJustified(width)
        + QLatin1Char('\n');
}

QJsonArray asJson(const QVector<EqualizerText::Remark> &remarks)
{
    QJsonArray array;
    for (const EqualizerText::Remark &remark : remarks)
        array.append(QJsonObject{{QStringLiteral("line"), remark.line}, {QStringLiteral("text"), remark.text}});
    return array;
}

QJsonObject asJson(const EqualizerResponse::Point &point)
{
    return {{QStringLiteral("frequency"), point.frequency}, {QStringLiteral("level"), point.level}};
}

} // namespace

EqualizerReport::EqualizerReport(const QString &name, const EqualizerText &wantedText, const EqualizerFit &found)
    : m_name(name)
    , m_text(wantedText)
    , m_fit(found)
    , m_bands(EqualizerCurves::ofGains(found.gains))
    , m_highest(EqualizerResponse::highestPoint(m_bands))
{
}

QString EqualizerReport::toText() const
{
    QStringList contents;
    if (!m_text.filters.isEmpty())
        contents.append(counted(m_text.filters.size(), "filter"));
    if (!m_text.lists.isEmpty())
        contents.append(counted(m_text.lists.size(), "graphic list"));
    if (m_text.filtersOff > 0)
        contents.append(counted(m_text.filtersOff, "filter") + QStringLiteral(" off"));
    if (m_text.preamp != 0)
        contents.append(QStringLiteral("preamp %1 dB, which the unit has not").arg(signedNumber(m_text.preamp)));
    QString text = paragraph(QStringLiteral("%1: %2").arg(Console::printable(m_name), contents.join(QStringLiteral(", ")))) + QLatin1Char('\n');

    text += Console::styled(Console::Style::Heading,
                            row(QStringLiteral("frequency"), QStringLiteral("wanted dB"), QStringLiteral("got dB"), QStringLiteral("error dB")));
    for (const double frequency : shownFrequencies) {
        const double wanted = m_text.level(frequency);
        const double got = EqualizerResponse::level(m_bands, frequency);
        text += row(frequencyText(frequency), signedNumber(wanted), signedNumber(got), signedNumber(got - wanted));
    }

    text += QLatin1Char('\n')
        + paragraph(QStringLiteral("Error from 20 Hz to 20 kHz: %1 dB on the average (root of the mean square), at most %2 dB, at %3.")
                        .arg(QString::number(m_fit.meanError, 'f', 2), signedNumber(m_fit.largestError.level), frequencyText(m_fit.largestError.frequency)));
    QStringList atLimit;
    for (const EqualizerResponse::Band &band : m_bands) {
        if (std::abs(band.gain) >= EqualizerCurves::highestGain)
            atLimit.append(frequencyText(band.frequency));
    }
    if (!atLimit.isEmpty())
        text += paragraph(QStringLiteral("At their limit of 12 dB: %1.").arg(atLimit.join(QStringLiteral(", "))));
    constexpr double noticed = 0.05; // dB
    if (m_highest.level >= noticed) {
        text += paragraph(QStringLiteral("Headroom: %1 dB at %2; what is louder than that much below full scale there clips.")
                              .arg(QString::number(m_highest.level, 'f', 1), frequencyText(m_highest.frequency)));
    }
    text += QStringLiteral("\nAudioControl.setEqGain([%1]);\n").arg(CustomCurve::toText(m_fit.gains));
    return text;
}

QByteArray EqualizerReport::toJson() const
{
    QJsonArray gains;
    for (const double gain : m_fit.gains)
        gains.append(gain);
    QJsonArray bands;
    for (const EqualizerResponse::Band &band : m_bands) {
        bands.append(QJsonObject{
            {QStringLiteral("frequency"), band.frequency},
            {QStringLiteral("q"), band.q},
            {QStringLiteral("gain"), band.gain},
        });
    }
    QJsonArray curve;
    const QVector<double> frequencies = EqualizerFit::frequencies();
    for (const double frequency : frequencies) {
        curve.append(QJsonObject{
            {QStringLiteral("frequency"), frequency},
            {QStringLiteral("wanted"), m_text.level(frequency)},
            {QStringLiteral("got"), EqualizerResponse::level(m_bands, frequency)},
        });
    }
    const QJsonObject document{
        {QStringLiteral("file"), m_name},
        {QStringLiteral("filters"), m_text.filters.size()},
        {QStringLiteral("filtersOff"), m_text.filtersOff},
        {QStringLiteral("lists"), m_text.lists.size()},
        {QStringLiteral("preamp"), m_text.preamp},
        {QStringLiteral("problems"), asJson(m_text.problems)},
        {QStringLiteral("notes"), asJson(m_text.notes)},
        {QStringLiteral("gains"), gains},
        {QStringLiteral("bands"), bands},
        {QStringLiteral("curve"), curve},
        {QStringLiteral("meanError"), m_fit.meanError},
        {QStringLiteral("largestError"), asJson(m_fit.largestError)},
        {QStringLiteral("highest"), asJson(m_highest)},
    };
    return Console::harmlessJson(QJsonDocument(document).toJson());
}
