#ifndef SETTINGSTEXT_H
#define SETTINGSTEXT_H

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>
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

// The parts of the grammar, of which each reading of it is made.
bool isBlank(char character);
QByteArray withoutBlanks(const QByteArray &text);
/// Whether it begins with the mark of UTF-8; else the text is Latin-1.
bool isUtf8(const QByteArray &text);
QByteArray withoutMark(const QByteArray &text);
/// What the written name of a key means.
QString keyOf(const QByteArray &text);
/// What the keys below a section's written name begin with: "Volume/"; "" for "General", which stands for no section.
QString sectionOf(const QByteArray &name);
/// The texts of a written value, of which there is one where it is no list.
QStringList elements(const QByteArray &value, bool isUtf8);
} // namespace SettingsText

#endif
