#ifndef BOOKEDOBJECT_H
#define BOOKEDOBJECT_H

#include "objectkind.h"

#include <QtCore/QString>

namespace simulator
{

/**
 * What the books keep of every object that was handed out.
 *
 * A second base, after the platform's interface, so that the interface's table of operations comes first.
 */
class BookedObject
{
public:
    explicit BookedObject(ObjectKind objectKind)
        : kind(objectKind)
    {
    }
    virtual ~BookedObject() = default;
    BookedObject(const BookedObject &) = delete;
    BookedObject &operator=(const BookedObject &) = delete;

    /// Releases what the object lent to its client; the object itself stays, to detect its use.
    virtual void destroyed() { }

    QString name() const { return objectKindName(kind) + QLatin1Char('#') + QString::number(number); }

    const ObjectKind kind;
    int number = 0; ///< among its kind, from 1
    bool isAlive = true;
    bool isForgiven = false; ///< alive at a reset: not reported at exit
};

} // namespace simulator

#endif
