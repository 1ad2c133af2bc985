#ifndef FAULTS_H
#define FAULTS_H

#include "objectkind.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <optional>

namespace simulator
{

/**
 * Failures to order.
 *
 * A failing operation gives its code and changes nothing; "Source.getActiveSource" gives null instead, and
 * "Source.queryAlterNumber" the code as its number. An operation that fails after writing has done its work and filled its outputs,
 * and gives its code all the same. A name that does not exist is refused, so that a test cannot silently inject nothing.
 *
 * Threads: use it from the thread that calls the platform.
 */
class Faults : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Names of all operations that can fail: "Volume.setTrackVolume".
    static QStringList operations();

    /// Every call of @p operation fails with @p code from now. False for an unknown name or code 0.
    bool fail(const QString &operation, int code);
    /// Only the @p n th call from now (1 is the next) fails; may be given several times. False also for @p n below 1.
    bool fail(const QString &operation, int code, int n);

    /// The same after the operation has written its outputs. False also for an operation without outputs.
    bool failAfterWriting(const QString &operation, int code);
    bool failAfterWriting(const QString &operation, int code, int n);

    /// Every "App", "Mixer", "Source" or "Volume" factory call gives null from now. False for an unknown kind.
    bool failFactory(const QString &kind);
    /// Only the @p n th factory call from now (1 is the next) gives null.
    bool failFactory(const QString &kind, int n);
    void failFactory(ObjectKind kind) { failFactory(QString(objectKindName(kind))); }

    /**
     * Faults that are set and, if for one call only, not met yet:
     *
     *     Volume.setTrackVolume 7 always
     *     Volume.getTrackVolume 7 after writing in 3 calls
     *     Volume.create null in 2 calls
     */
    QStringList pending() const;

    void clear();

    struct Order
    {
        int code = 0;
        bool isAfterWriting = false;
    };

    /// For the simulator itself: counts this call and gives how it is to fail, if it is.
    std::optional<Order> takeFault(ObjectKind kind, const QString &operation);
    /// For the simulator itself: counts this factory call; true if it is to give null.
    bool takeFactoryFault(ObjectKind kind);

Q_SIGNALS:
    void changed();

private:
    struct Fault
    {
        QString name;
        Order order;
        int callsLeft = 0; ///< 0: every call
    };

    bool add(bool isPossible, const Fault &fault);
    std::optional<Order> take(const QString &name);

    QList<Fault> m_faults;
};

} // namespace simulator

#endif
