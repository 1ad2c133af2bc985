#ifndef BOOKEDOBJECT_H
#define BOOKEDOBJECT_H

#include "call.h"
#include "objectkind.h"

#include <QtCore/QString>

namespace simulator
{

/**
 * What the platform's objects have in common: what the books keep of each that was handed out, and how a call goes.
 *
 * A second base, after the platform's interface, so that the interface's table of operations comes first.
 *
 * A class of objects lists its operations as slots: moc makes of them the names that faults go by, and knows which of them write
 * outputs. An operation whose arguments are those of a function of the chip is one line:
 *
 *     int setMasterVolume(unsigned char volume) override { return call(__func__, &AudioChip::setMasterVolume, volume); }
 *
 * Where they are not, a lambda with the same arguments stands between the two.
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

protected:
    template<typename Request, typename... Arguments>
    int call(const char *operation, const Request &request, Arguments &&...arguments) const
    {
        return Call(*this, operation).run(request, Call::argument(std::forward<Arguments>(arguments))...);
    }

    template<typename Request, typename... Arguments>
    auto ask(const char *operation, const Request &request, Arguments &&...arguments) const
    {
        return Call(*this, operation).ask(request, Call::argument(std::forward<Arguments>(arguments))...);
    }
};

} // namespace simulator

#endif
