#ifndef MEASUREDFILTER_H
#define MEASUREDFILTER_H

#include <QtCore/QString>
#include <QtCore/QVector>

/// The first half of a second, at 48 kHz, that FFmpeg's filters make of a single sample of 1; empty where they are not understood.
QVector<double> measuredImpulse(const QString &filters);

/// Level of such an impulse's spectrum at a frequency in Hz, in dB.
double measuredLevel(const QVector<double> &samples, double frequency);

#endif
