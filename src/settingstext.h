#ifndef SETTINGSTEXT_H
#define SETTINGSTEXT_H

#include "privateexport.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <optional>

namespace audio
{

/**
 * The text of a settings file, looked at line by line.
 *
 * Each line stands by itself: its quotation marks are closed, no backslash is at its end, its value can be read without harm. A line that
 * does not is left out, with nothing else; so is a last line without its end, which may be half of what was meant. QSettings alone would
 * take all lines up to the next quotation mark for one value. A damaged head of a group is mended by the keys that follow.
 *
 * What is changed is changed in its line, all other lines that can be read stay as they are, letter by letter. A file that QSettings wrote
 * stays as QSettings would have written it.
 */
class QZAUDIO_PRIVATE_EXPORT SettingsText
{
public:
    explicit SettingsText(const QByteArray &bytes = {});

    /// Without what was left out.
    const QByteArray &bytes() const { return m_bytes; }
    /// How many lines were left out or mended.
    int damagedLines() const { return m_damagedLines; }
    /// Whether a text of bytes() is known to be this one, which spares reading it.
    bool readsBack() const { return m_readsBack && m_damagedLines == 0; }

    /// GROUP/KEY as it is written, which tells two states of it apart; a null text where there is none.
    QByteArray rawValue(const QString &path) const;
    /// What QSettings would give, the default where there is none.
    QVariant value(const QString &path, const QVariant &defaultValue) const;
    void setValue(const QString &path, const QVariant &value);

    /// GROUP/KEY without slashes too many, as QSettings names it.
    static QString path(const QString &group, const QString &key);

private:
    void leaveOutDamage(const QByteArray &bytes);
    void insert(const QString &path, const QByteArray &value);

    QByteArray m_bytes;
    bool m_isUtf8 = false; // it begins with a byte order mark
    int m_damagedLines = 0;
    bool m_readsBack = true; // no value was set that a line cannot have, and no line came
};

} // namespace audio

#endif
