#ifndef SETTINGSTARGET_H
#define SETTINGSTARGET_H

#include <QtCore/QStringList>

#include <string_view>

/**
 * What a store makes of a settings file: starts on these bytes, reads all, saves several keys, and starts once more. Gives the keys that
 * QSettings finds in what the library keeps of the bytes.
 *
 * Ends the process where a store reads another value than QSettings, where a saved value does not come back, or any other key or
 * line changes with a save. Needs an application object and a flash.
 */
QStringList keptFrom(std::string_view bytes);

#endif
