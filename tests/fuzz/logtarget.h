#ifndef LOGTARGET_H
#define LOGTARGET_H

#include <QtCore/QStringList>

#include <string_view>

/**
 * What the bench tells of a log: the bytes as they are in a file, whatever they are. A line each.
 *
 * Needs an application object, and a VirtualClock from before it.
 */
QStringList timelineOf(std::string_view log);

/// The scenario that the bench makes of such a log.
QString scenarioOf(std::string_view log);

#endif
