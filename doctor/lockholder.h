#ifndef LOCKHOLDER_H
#define LOCKHOLDER_H

#include <QtCore/QString>

/// Who holds the kernel's lock on a file, as the kernel lists it. To try the lock would keep a saving process out for a moment.
struct LockHolder
{
    bool isKnown = false; ///< whether the kernel tells at all
    int process = 0; ///< 0: nobody
    QString program; ///< "media"

    static LockHolder of(const QString &file);
};

#endif
