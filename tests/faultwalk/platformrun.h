#ifndef PLATFORMRUN_H
#define PLATFORMRUN_H

#include <journalentry.h>

#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

/// What one call of an operation led to, until no timer ran any more.
struct PlatformRun
{
    QVector<simulator::JournalEntry> entries;
    QVector<int> linesBefore; ///< by entry: how many lines had been written by then
    QStringList lines; ///< without thread and line numbers; signals stand among them
    QVariant result; ///< value and outputs
    int promptEntries = 0; ///< made before the operation returned; the others came from timers
    int promptLines = 0;
    qint64 begin = 0; ///< ms
    QByteArray settings; ///< the settings file afterwards
    QStringList living; ///< kinds of the platform objects that exist afterwards
    QStringList problems; ///< of the platform's books

    /// The calls with their objects, which are numbered in the order that the run makes them; those it finds are called "kept", and what is none "none".
    QStringList calls() const;
};

/// "Volume.setTrackVolume"
QString nameOf(const simulator::JournalEntry &entry);

/// Where the first difference is; empty for none.
QString difference(const PlatformRun &seen, const PlatformRun &expected);
/// The same where time passed in every call: timers of one time may then come before others.
QString differenceWhenSlow(const PlatformRun &seen, const PlatformRun &expected, int callDuration, bool orderIsKept);

QDataStream &operator<<(QDataStream &stream, const PlatformRun &run);
QDataStream &operator>>(QDataStream &stream, PlatformRun &run);

#endif
