#ifndef WALKEDOPERATION_H
#define WALKEDOPERATION_H

#include <operationcalls.h>

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <functional>

class World;

/// What there is in a world before an operation is called.
enum class Has {
    Nothing,
    Facade,
    Manager,
};

/// How the unit stands when an operation is called.
struct Situation
{
    const char *name;
    void (*prepare)(Unit &unit);
};

/// One call that the walk takes through all situations and faults.
struct WalkedOperation
{
    QString object; ///< "AudioControl", "AudioPolicy"; what the unit is called that there is not yet
    QString name; ///< "setStreamVolume"
    QString arguments;
    Has needs;
    std::function<QVariant(World &)> call;

    /// "AudioControl.setStreamVolume(1, 'S+CarLife_APP', 81)"
    QString text() const;
};

/// The calls that scripts and clients make on the facade and the manager, and further ones that take another way through the library.
QVector<WalkedOperation> walkedOperations();

/// The start of the facade and of the manager.
QVector<WalkedOperation> starts();
/// What happens once in a process: instance(), and the first channel after power-on.
QVector<WalkedOperation> firsts();

QVector<Situation> situationsOf(Has has);

/// What a header declares as the public operations of a class, each name once.
QStringList declaredOperations(const QString &header, const QString &className);

#endif
