#ifndef SIMULATORTYPES_H
#define SIMULATORTYPES_H

#include <QtCore/QVector>

struct QMetaObject;

/// The types of the module QzAudio.Simulator that QML makes objects of: the plugin registers them, the type file describes them.
namespace SimulatorTypes
{

struct Type
{
    const char *name; ///< in QML
    int minor; ///< of the module's version 1 that has it first
    const QMetaObject *metaObject;
    void (*add)(const char *uri, const Type &type); ///< makes it known to QML as a type of this module
};

const QVector<Type> &all();

} // namespace SimulatorTypes

#endif
