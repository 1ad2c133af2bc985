#ifndef FAULTS_H
#define FAULTS_H

#include "operations.h"

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
 * "Source.queryAlterNumber" the code as its number. A name that does not exist is refused, so that a test cannot silently
 * inject nothing.
 *
 * Threads: use it from the thread that calls the platform.
 */
class Faults : public QObject
{
    Q_OBJECT

public:
    explicit Faults(QObject *parent = nullptr);

    /// Every call of @p operation ("Volume.setTrackVolume") fails with @p code from now. False for an unknown name or code 0.
    Q_INVOKABLE bool fail(const QString &operation, int code);

    /// Only the @p n th call from now (1 is the next) fails; may be given several times. False also for @p n below 1.
    Q_INVOKABLE bool fail(const QString &operation, int code, int n);

    /// Every "App", "Mixer", "Source" or "Volume" factory call gives null from now. False for an unknown kind.
    Q_INVOKABLE bool failFactory(const QString &kind);
    /// Only the @p n th factory call from now (1 is the next) gives null.
    Q_INVOKABLE bool failFactory(const QString &kind, int n);
    void failFactory(ObjectKind kind);
    void failFactory(ObjectKind kind, int n);

    /// Faults that are set and, if for one call only, not met yet: "Volume.setTrackVolume 7 always", "Volume.create null in 2 calls".
    Q_INVOKABLE QStringList pending() const;

    Q_INVOKABLE void clear();

    /// For the simulator itself: counts this call and gives the code to fail with, if it is to fail.
    std::optional<int> takeFault(Operation operation);
    /// For the simulator itself: counts this factory call; true if it is to give null.
    bool takeFactoryFault(ObjectKind kind);

Q_SIGNALS:
    void changed();

private:
    struct Fault
    {
        QString name;
        int code = 0;
        int callsLeft = 0; ///< 0: every call
    };

    void add(const QString &name, int code, int n);
    std::optional<int> take(const QString &name);

    QList<Fault> m_faults;
};

} // namespace simulator

#endif
