#ifndef SOUNDLOOP_H
#define SOUNDLOOP_H

#include "render/rendering.h"
#include "render/soundtrack.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

/// Some seconds of what a car plays, for two ears, that can be played over and over.
struct SoundLoop
{
    static constexpr int channels = 2;
    static constexpr int milliseconds = 8000;
    /// Of its end, which goes over into its beginning.
    static constexpr int overlap = 40; // ms

    /// Of each channel in turn, 48 kHz.
    QVector<qint16> samples;

    /// How the car sounds since the last change, silent before the first; empty where the file cannot be read.
    static std::optional<SoundTrack::State> lastState(const QString &file);
    /// Takes some tenths of a second. @param problem receives what is the matter
    static SoundLoop render(Rendering &rendering, SoundTrack::State state, QString &problem);
    /// Those of a WAV file of two channels with 24 bits; empty for another one.
    static QVector<qint16> samplesOf(const QByteArray &wave);
    /// The end goes over into the beginning, and is shorter by that.
    static SoundLoop closed(const QVector<qint16> &samples, int overlappingFrames);
};

#endif
