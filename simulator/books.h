#ifndef BOOKS_H
#define BOOKS_H

#include "objectkind.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <memory>

namespace simulator
{

class BookedObject;
struct BooksPrivate;

/**
 * The life of every object that the platform handed out.
 *
 * A destroyed object's memory is kept (the last 65536 of them), so that a call through a stale pointer is reported here as what
 * it is instead of crashing. Problems also go to the category "qzaudio.simulator" at critical level.
 *
 * At process exit every object left over is reported on that category; see exitReport() for the two exceptions.
 *
 * Threads: use it from the thread that calls the platform.
 */
class Books : public QObject
{
    Q_OBJECT

public:
    explicit Books(QObject *parent = nullptr);
    ~Books() override;

    /// Objects of a kind that exist now, long-lived and forgiven ones included.
    int alive(ObjectKind kind) const;
    /// Objects of a kind made since the start or the last reset of the platform.
    int made(ObjectKind kind) const;

    /// The objects that exist now, oldest first: "Volume#1", "App#1".
    QStringList living() const;

    /// Double destroys, uses after destroy, destroys of null or of a pointer that is no such object, in order.
    QStringList problems() const;
    void clearProblems();

    /**
     * What would be reported if the process ended now, one line per object.
     *
     * Two objects are expected to be there and are not reported: the oldest App, which the control facade leaves alive on
     * purpose, and beside it the oldest Volume, which the facade's singleton holds for ever. Objects that a reset of the
     * platform forgave are not reported either.
     */
    QStringList exitReport() const;

    /// For the simulator itself. @p handle is the pointer that the client holds. Gives the object's number, from 1.
    int enter(const void *handle, std::unique_ptr<BookedObject> object);
    /// For the simulator itself: the client destroys @p handle. Null when it is no living object of that kind; a problem is then noted.
    BookedObject *leave(ObjectKind kind, const void *handle);
    /// For the simulator itself.
    void addProblem(const QString &text);
    /// For the simulator itself: frees destroyed objects, forgives living ones, forgets problems and restarts made().
    void reset();

Q_SIGNALS:
    void problemFound(const QString &text);
    void changed();

private:
    const std::unique_ptr<BooksPrivate> d;
};

} // namespace simulator

#endif
