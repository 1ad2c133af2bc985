#ifndef REPLAYCALL_H
#define REPLAYCALL_H

#include "loggedrequest.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

class QDataStream;

/// A call on the platform in words, as it is compared.
struct ReplayCall
{
    QString operation; ///< "Volume.setTrackVolume"
    QStringList arguments; ///< "?" for one that is not known
    QString result; ///< "0"; what was written to arguments is left out

    static ReplayCall read(const QString &text);
    static ReplayCall of(const LoggedCall &call);

    /// Volume.setTrackVolume("main", "S+FilePlayer", 48) -> 0
    QString toText() const;

    /// Whether this, of a log, can be the call @p other, whatever came of it.
    bool canBe(const ReplayCall &other) const;
    /// Whether what came of it is the same, as far as a log says that.
    bool hasResultOf(const ReplayCall &other) const;
    /// Whether a log does not tell of such a call.
    bool isSilent() const;
};

/// A call of a log, and where it stands there.
struct ExpectedCall
{
    ReplayCall call;
    quint64 line = 0;
    QString at; ///< the log's own time
    QString request; ///< that it is of
    bool isOfSteps = false; ///< of those that stand in no order
    bool isAfterOtherThread = false; ///< another thread has called the manager before

    friend QDataStream &operator<<(QDataStream &stream, const ExpectedCall &expected);
    friend QDataStream &operator>>(QDataStream &stream, ExpectedCall &expected);
};

#endif
