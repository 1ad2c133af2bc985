#ifndef HEARD_H
#define HEARD_H

#include <QtCore/QString>
#include <QtCore/QVector>

/**
 * What the driver hears at one moment: what plays on the tracks that reach the loudspeakers, each as loud as it is at the left
 * front, beside which the driver sits.
 */
struct Heard
{
    struct Sound
    {
        QString track; ///< "main"
        QString source; ///< the platform's name, "S+FilePlayer"
        /// dB below the loudest that the unit can be, without the equalizer; minus infinity for silence, not a number where it is not known.
        double level = 0;
        bool isMuted = false;
        int duckedTo = 0; ///< percent; 0 where it is not ducked
    };

    static constexpr quint32 driversEar = 1; ///< the output channel left front

    /// Level of a source on a track as the simulated platform is now, in the unit of Sound::level.
    static double levelOf(const QString &track, const QString &source);

    /// As the simulated platform is now.
    static Heard now();

    QVector<Sound> sounds; ///< in the order of the tracks

    /// "file player -8.4 dB, ducked to 60 %"; with @p before also by how much each sound changed.
    QString toText(const Heard &before) const;
    /// The level of a sound as people read it: "-8.4 dB", "silent", "at an unknown level".
    static QString levelText(double level);

    bool operator==(const Heard &other) const;
};

#endif
