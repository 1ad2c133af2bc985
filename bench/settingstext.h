#ifndef SETTINGSTEXT_H
#define SETTINGSTEXT_H

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QVariant>

/**
 * The text of a settings file, read as QSettings reads it, but safe with any text.
 *
 * QSettings builds whatever object a value describes, and a short value may describe one that no memory holds. Here a value is a text,
 * or a number of a fixed size; any other object is unreadable().
 */
namespace SettingsText
{
struct Content
{
    QMap<QString, QVariant> values; ///< "Volume/0" to its value; a list is a text, too: its elements with commas between
    bool isWhole = true; ///< false where some of it is not written as settings are
};

Content read(const QByteArray &text);

/// Stands for a value that is not shown: a serialized object.
QString unreadable();
} // namespace SettingsText

#endif
