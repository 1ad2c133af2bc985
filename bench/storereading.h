#ifndef STOREREADING_H
#define STOREREADING_H

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

/**
 * The text of a settings file, read as the library's store reads it.
 *
 * The store takes each line by itself. A line that may have been damaged is left out: one without its end, one with a control character or
 * with an open quotation mark, one whose value describes an object of unknown size. So a key that SettingsText::read() shows may be none for
 * the store, and the other way round.
 */
namespace StoreReading
{
/**
 * "Volume/0" to the value that the store has, before it makes a number or a truth value of it. A key that is missing has its default.
 *
 * @param knownKeys all keys of the store, by which it mends the damaged head of a section
 */
QMap<QString, QVariant> values(const QByteArray &text, const QStringList &knownKeys);

/// A gain without its fraction, 0 where no int holds it; a text counts only when it is a whole number.
int wholeNumber(const QVariant &value);
} // namespace StoreReading

#endif
