#ifndef LOGPLACE_H
#define LOGPLACE_H

#include "logtime.h"

#include <QtCore/QString>

/// Where a log says something, and what brought it about.
struct LogPlace
{
    quint64 line = 0; ///< in the log; 0 where it does not say it
    LogTime::Moment moment; ///< by the log's clock
    QString cause; ///< "volume key down", "AudioPolicy.setVolume(Ring, 10, true)"

    bool isKnown() const { return line > 0; }
    /// "line 812, volume key down at 11:58:02.000"; empty where it is not known.
    QString toText() const;
};

#endif
