#ifndef LOUDNESS_H
#define LOUDNESS_H

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <limits>

/// Loudness after EBU R 128, as FFmpeg measures it.
struct Loudness
{
    static constexpr double silence = -std::numeric_limits<double>::infinity();

    /// ms that the meter looks at at least, so that shorter sounds have no loudness.
    static constexpr qint64 shortest = 400;
    static constexpr qint64 shortTermLength = 3000;

    double integrated = silence; ///< LUFS
    double shortTerm = silence; ///< the loudest 3 s, LUFS; silence where it is shorter
    double truePeak = silence; ///< dBTP

    /**
     * Measures one stretch of sound.
     *
     * @param input FFmpeg's options that give it, up to "-i FILE" or a graph @param filter what it passes through before; empty for nothing
     * @param folder the one to run in
     */
    static Loudness measure(const QStringList &input, const QString &filter, const QString &folder, QString &problem);

    /// From what FFmpeg says at its end.
    static Loudness read(const QByteArray &messages);

    /// "-18.3", "silent"
    static QString text(double value);
};

#endif
