#include "settingstext.h"

#include <QtCore/QDataStream>
#include <QtCore/QStringList>
#include <QtCore/QtEndian>

#include <cctype>
#include <cstring>

namespace
{

/// A number that QSettings writes in its binary form, by the type's number there.
struct StoredNumber
{
    quint32 type;
    int size; ///< of the number itself, bytes
};

constexpr StoredNumber storedNumbers[] = {
    {1, 1}, // bool
    {2, 4}, // int
    {3, 4}, // unsigned int
    {4, 8}, // long long
    {5, 8}, // unsigned long long
    {6, 8}, // double
    {135, 4}, // float
};

/// One line of the file: a section, or a key with its value. May reach over several lines of text.
struct Line
{
    int begin;
    int end;
    int equals = -1; ///< where the value's equals sign is, -1 for none
};

using SettingsText::isBlank;

constexpr char byteOrderMark[] = "\xef\xbb\xbf";
constexpr int byteOrderMarkSize = 3;

bool isLineEnd(char character)
{
    return character == '\n' || character == '\r';
}

/// The line at @p from, which is moved behind it. An empty one only at the end of the text.
Line takeLine(const QByteArray &text, int &from)
{
    int i = from;
    while (i < text.size()) {
        while (i < text.size() && (isBlank(text.at(i)) || isLineEnd(text.at(i))))
            ++i;
        if (i == text.size() || text.at(i) != ';')
            break;
        while (i < text.size() && !isLineEnd(text.at(i)))
            ++i;
    }
    Line line{i, i};
    bool isQuoted = false;
    for (; i < text.size(); ++i) {
        const char character = text.at(i);
        if (character == '\\') {
            ++i; // whatever comes is part of the line, an end of line in two characters, too
            if (i + 1 < text.size() && isLineEnd(text.at(i)) && isLineEnd(text.at(i + 1)) && text.at(i) != text.at(i + 1))
                ++i;
        } else if (character == '"') {
            isQuoted = !isQuoted;
        } else if (!isQuoted) {
            if (isLineEnd(character) || character == ';')
                break;
            if (character == '=' && line.equals < 0)
                line.equals = i;
        }
    }
    line.end = qMin(i, text.size());
    from = line.end;
    return line;
}

/// "@Variant(...)": a number, where its size is that of its type.
QVariant numberOf(const QByteArray &serialized)
{
    constexpr int typeSize = int(sizeof(quint32));
    if (serialized.size() < typeSize)
        return SettingsText::unreadable();
    const auto type = qFromBigEndian<quint32>(serialized.constData());
    for (const StoredNumber &number : storedNumbers) {
        if (number.type == type && serialized.size() == typeSize + number.size) {
            QDataStream stream(serialized);
            stream.setVersion(QDataStream::Qt_4_0); // the version that QSettings writes
            QVariant value;
            stream >> value;
            return value.toString();
        }
    }
    return SettingsText::unreadable();
}

QVariant valueOf(const QString &text)
{
    if (!text.startsWith(QLatin1Char('@')))
        return text;
    const auto isObject = [&text](const char *begin) { return text.startsWith(QLatin1String(begin)) && text.endsWith(QLatin1Char(')')); };
    const auto inner = [&text] {
        const int begin = text.indexOf(QLatin1Char('(')) + 1;
        return text.mid(begin, text.size() - 1 - begin);
    };
    if (isObject("@ByteArray("))
        return QString::fromUtf8(inner().toLatin1());
    if (isObject("@String("))
        return inner();
    if (isObject("@Variant("))
        return numberOf(inner().toLatin1());
    if (isObject("@DateTime("))
        return SettingsText::unreadable();
    if (text == QLatin1String("@Invalid()"))
        return {};
    return text.startsWith(QLatin1String("@@")) ? text.mid(1) : text;
}

/// Takes the elements of a value apart, of which there is one where it is no list.
class ElementReader
{
public:
    ElementReader(const QByteArray &lineOfValue, bool isUtf8)
        : m_value(lineOfValue)
        , m_utf8(isUtf8)
    {
    }

    QStringList elements()
    {
        skipBlanks();
        while (m_at < m_value.size()) {
            const char character = m_value.at(m_at);
            if (character == '\\') {
                takeEscape();
            } else if (character == '"') {
                ++m_at;
                m_isQuoted = true;
                m_inQuotes = !m_inQuotes;
                if (!m_inQuotes)
                    skipBlanks();
            } else if (character == ',' && !m_inQuotes) {
                finishElement();
                ++m_at;
                skipBlanks();
            } else {
                takePlain();
            }
        }
        finishElement();
        return m_result;
    }

private:
    void skipBlanks()
    {
        while (m_at < m_value.size() && isBlank(m_value.at(m_at)))
            ++m_at;
    }

    void takePlain()
    {
        const int begin = m_at++;
        while (m_at < m_value.size() && m_value.at(m_at) != '\\' && m_value.at(m_at) != '"' && m_value.at(m_at) != ',')
            ++m_at;
        const QByteArray plain = m_value.mid(begin, m_at - begin);
        m_element += m_utf8 ? QString::fromUtf8(plain) : QString::fromLatin1(plain);
    }

    void takeEscape()
    {
        constexpr char names[] = "abfnrtv\"?'\\";
        constexpr char meanings[] = "\a\b\f\n\r\t\v\"?'\\";
        ++m_at;
        if (m_at == m_value.size())
            return;
        const char name = m_value.at(m_at++);
        const char *const found = name == 0 ? nullptr : std::strchr(names, name);
        if (found)
            m_element += QLatin1Char(meanings[found - names]);
        else if (name == 'x' && m_at < m_value.size() && std::isxdigit(uchar(m_value.at(m_at))))
            takeNumber(16);
        else if (name >= '0' && name <= '7') {
            --m_at;
            takeNumber(8);
        }
        // A line's end in two characters; any other character is left out.
        else if (isLineEnd(name) && m_at < m_value.size() && isLineEnd(m_value.at(m_at)) && m_value.at(m_at) != name)
            ++m_at;
        m_kept = m_element.size();
    }

    void takeNumber(uint base)
    {
        uint code = 0; // wraps, and the low half is the character
        for (; m_at < m_value.size(); ++m_at) {
            bool isDigit = false;
            const uint digit = m_value.mid(m_at, 1).toUInt(&isDigit, int(base));
            if (!isDigit)
                break;
            code = code * base + digit;
        }
        m_element += QChar(ushort(code & 0xffff));
    }

    void finishElement()
    {
        while (!m_isQuoted && m_element.size() > m_kept && (m_element.back() == QLatin1Char(' ') || m_element.back() == QLatin1Char('\t')))
            m_element.chop(1);
        m_result += m_element.isNull() ? QLatin1String("") : m_element;
        m_element.clear();
        m_kept = 0;
        m_isQuoted = false;
    }

    const QByteArray m_value;
    const bool m_utf8;
    int m_at = 0;
    QStringList m_result;
    QString m_element;
    int m_kept = 0; ///< blanks at the end are left out, but not these, which are written as escapes
    bool m_isQuoted = false;
    bool m_inQuotes = false;
};

} // namespace

bool SettingsText::isBlank(char character)
{
    return character == ' ' || character == '\t';
}

QByteArray SettingsText::withoutBlanks(const QByteArray &text)
{
    int begin = 0;
    int end = text.size();
    while (begin < end && isBlank(text.at(begin)))
        ++begin;
    while (end > begin && isBlank(text.at(end - 1)))
        --end;
    return text.mid(begin, end - begin);
}

bool SettingsText::isUtf8(const QByteArray &text)
{
    return text.startsWith(byteOrderMark);
}

QByteArray SettingsText::withoutMark(const QByteArray &text)
{
    return isUtf8(text) ? text.mid(byteOrderMarkSize) : text;
}

QString SettingsText::keyOf(const QByteArray &text)
{
    QString key;
    for (int i = 0; i < text.size(); ++i) {
        const char character = text.at(i);
        if (character == '%') {
            const bool isLong = i + 1 < text.size() && text.at(i + 1) == 'U';
            const int begin = i + (isLong ? 2 : 1);
            const int digits = isLong ? 4 : 2;
            bool isNumber = false;
            const int code = begin + digits <= text.size() ? text.mid(begin, digits).toInt(&isNumber, 16) : 0;
            if (isNumber) {
                key += QChar(ushort(code));
                i = begin + digits - 1;
                continue;
            }
        }
        key += character == '\\' ? QLatin1Char('/') : QLatin1Char(character);
    }
    return key;
}

QString SettingsText::sectionOf(const QByteArray &name)
{
    if (name.compare("general", Qt::CaseInsensitive) == 0)
        return {};
    const bool isCalledSo = name.compare("%general", Qt::CaseInsensitive) == 0;
    return (isCalledSo ? QString::fromLatin1(name.mid(1)) : keyOf(name)) + QLatin1Char('/');
}

QStringList SettingsText::elements(const QByteArray &value, bool isUtf8)
{
    return ElementReader(value, isUtf8).elements();
}

SettingsText::Content SettingsText::read(const QByteArray &text)
{
    Content content;
    QString section;
    const bool isMarked = isUtf8(text);
    int at = isMarked ? byteOrderMarkSize : 0;
    for (Line line = takeLine(text, at); line.begin < line.end; line = takeLine(text, at)) {
        if (text.at(line.begin) == '[') {
            const int end = text.indexOf(']', line.begin);
            const bool isClosed = end >= 0 && end < line.end;
            content.isWhole = content.isWhole && isClosed;
            const QByteArray name = text.mid(line.begin + 1, (isClosed ? end : line.end) - line.begin - 1).trimmed();
            section = sectionOf(name);
            continue;
        }
        if (line.equals < 0) {
            content.isWhole = false;
            continue;
        }
        int keyEnd = line.equals;
        while (keyEnd > line.begin && isBlank(text.at(keyEnd - 1)))
            --keyEnd;
        const QString key = section + keyOf(text.mid(line.begin, keyEnd - line.begin));
        const QStringList parts = elements(text.mid(line.equals + 1, line.end - line.equals - 1), isMarked);
        if (parts.size() == 1) {
            content.values.insert(key, valueOf(parts.constFirst()));
            continue;
        }
        QStringList texts;
        for (const QString &element : parts)
            texts += valueOf(element).toString();
        content.values.insert(key, texts.join(QLatin1String(", ")));
    }
    return content;
}

QString SettingsText::unreadable()
{
    return QStringLiteral("(unreadable)");
}
