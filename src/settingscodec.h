#ifndef SETTINGSCODEC_H
#define SETTINGSCODEC_H

#include "privateexport.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <optional>

/*
 * Names and values as QSettings writes them into an INI file, to the letter, and as it reads them from one.
 *
 * One thing is different, on purpose: QSettings believes every length inside a serialized value ("@Variant(...)"), takes as much memory
 * as it says, and ends the process where there is not so much. Here only types of a fixed small size are read.
 */
namespace audio::settingscodec
{

/// "a key" as "a%20key". A '/' becomes '\', as below a group.
QZAUDIO_PRIVATE_EXPORT QByteArray encodedName(const QString &name);
QZAUDIO_PRIVATE_EXPORT QString decodedName(const QByteArray &text);

/// What stands behind the equals sign, in one line.
QZAUDIO_PRIVATE_EXPORT QByteArray encodedValue(const QVariant &value);
/// Nothing for a serialized value of a type that is not of a fixed small size.
QZAUDIO_PRIVATE_EXPORT std::optional<QVariant> decodedValue(const QByteArray &text, bool isUtf8);

} // namespace audio::settingscodec

#endif
