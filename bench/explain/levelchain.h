#ifndef LEVELCHAIN_H
#define LEVELCHAIN_H

#include "logplace.h"

#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

class LevelOrigins;

/// Why a source is as loud as it is at one moment of a log: from its stored volume to what comes out, and what it would be otherwise.
struct LevelChain
{
    /// One thing that the level is made of.
    struct Link
    {
        QString what; ///< "master volume"
        QString text; ///< "100 percent"
        QJsonValue value; ///< the same for programs; null where there is none, or where it is not known
        LogPlace place; ///< that made it; none where the log does not say it
        bool isKnown = true; ///< false where the log does not say it
    };

    /// One thing otherwise.
    struct Otherwise
    {
        QString what; ///< "one step up"
        QString text;
        std::optional<double> level; ///< dB, minus infinity for silence; empty where it is not known
    };

    /// As the chip is now.
    static LevelChain of(const LevelOrigins &origins, const QString &track, const QString &source, const QString &at);

    /// On lines as wide as the output.
    QString toText() const;
    QJsonObject toJson() const;

    QString source; ///< the platform's name
    QString track;
    QString at; ///< the moment by the log's clock
    /// dB at the driver's ear while it plays, without the equalizer; minus infinity for silence. Empty where the volume is not known.
    std::optional<double> level;
    QString outcome; ///< the level in words
    QVector<Link> links;
    QVector<Otherwise> otherwise;
};

#endif
