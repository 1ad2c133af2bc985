#ifndef WAVEFILE_H
#define WAVEFILE_H

#include <QtCore/QString>
#include <QtCore/QVector>

/// Sound in a WAV file, as numbers from -1 to 1.
struct WaveFile
{
    static constexpr int sampleRate = 48000;

    QVector<QVector<double>> channels; ///< of the same length; none where it cannot be read

    /// Of 24 bits, 48 kHz.
    static WaveFile read(const QString &name);
    /// One channel of 16 bits, 48 kHz.
    static bool write(const QString &name, const QVector<double> &samples);

    int length() const { return channels.isEmpty() ? 0 : channels.constFirst().size(); }
    double at(int channel, int sample) const { return channels.at(channel).at(sample); }
    /// Root of the mean square in dB.
    double level(int channel, double fromSeconds, double toSeconds) const;
};

#endif
