#ifndef JOURNALENTRY_H
#define JOURNALENTRY_H

#include "objectkind.h"

#include <QtCore/QByteArray>
#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace simulator
{

/// One call on the platform, factories ("create") and releases ("destroy") included. A plain value.
struct JournalEntry
{
    qint64 time = 0; ///< ms, virtual where a VirtualClock is installed, else since the simulator's first use
    ObjectKind kind = ObjectKind::App;
    int number = 0; ///< of the object among its kind, from 1; 0 where there is no object (a factory that gave null)
    QString operation; ///< "setTrackVolume", "create", "destroy"
    QVariantList arguments; ///< what the caller handed in; a record as a QVariantMap of its fields
    QStringList argumentTexts; ///< the same, as line() prints them
    QByteArray record; ///< bytes of the record that was passed by address, empty where none was
    QVariant result; ///< int code, QString or an invalid value (a null name or object, no result)
    QVariantList outputs; ///< what was written through the caller's pointers; empty where the chip refused
    QString note; ///< why the call was refused, or that a fault was injected; empty on success

    /// "Volume#3", or "Volume" where there is no object.
    QString object() const;

    bool isCreate() const;
    bool isDestroy() const;

    /// Without the object's number: Volume.setTrackVolume("main", "S+FilePlayer", 80) -> 0
    QString call() const;

    /// With it: Volume#3.setTrackVolume("main", "S+FilePlayer", 80) -> 0
    QString line() const;

    friend bool operator==(const JournalEntry &a, const JournalEntry &b);
};

} // namespace simulator

Q_DECLARE_METATYPE(simulator::JournalEntry)

#endif
