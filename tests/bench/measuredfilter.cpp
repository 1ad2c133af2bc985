#include "measuredfilter.h"

#include <QtCore/QProcess>

#include <cmath>
#include <complex>
#include <cstring>

QVector<double> measuredImpulse(const QString &filters)
{
    QProcess process;
    process.start(QStringLiteral("ffmpeg"),
                  {QStringLiteral("-v"),
                   QStringLiteral("error"),
                   QStringLiteral("-f"),
                   QStringLiteral("lavfi"),
                   QStringLiteral("-i"),
                   QStringLiteral("aevalsrc=exprs='if(eq(n,0),1,0)':s=48000:d=0.5"),
                   QStringLiteral("-af"),
                   filters,
                   QStringLiteral("-f"),
                   QStringLiteral("f64le"),
                   QStringLiteral("-")});
    process.waitForFinished();
    const QByteArray bytes = process.readAllStandardOutput();
    QVector<double> samples(bytes.size() / int(sizeof(double)));
    std::memcpy(samples.data(), bytes.constData(), std::size_t(samples.size()) * sizeof(double));
    return samples;
}

double measuredLevel(const QVector<double> &samples, double frequency)
{
    constexpr double samplingRate = 48000;
    const std::complex<double> turn = std::polar(1.0, -2 * 3.14159265358979323846 * frequency / samplingRate);
    // Horner's scheme, from the last sample on.
    std::complex<double> sum = 0;
    for (int sample = samples.size() - 1; sample >= 0; --sample)
        sum = sum * turn + samples.at(sample);
    return 20 * std::log10(std::abs(sum));
}
