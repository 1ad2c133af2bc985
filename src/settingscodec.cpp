#include "settingscodec.h"

#include <QtCore/QDataStream>
#include <QtCore/QDateTime>
#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtCore/QStringList>

#include <algorithm>
#include <iterator>

namespace audio::settingscodec
{

namespace
{

constexpr char upperDigits[] = "0123456789ABCDEF";
constexpr int hexadecimal = 16;
constexpr int octal = 8;

/// With the zeros in it, at which QString::fromLatin1(bytes) stops.
QString latin1(const QByteArray &bytes)
{
    return QLatin1String(bytes.constData(), bytes.size());
}

bool isAlphanumeric(uint letter)
{
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9');
}

/// A number or a word that means itself, as nearly all values are.
bool isPlain(const QByteArray &text)
{
    const auto isPlainLetter = [](char letter) { return isAlphanumeric(static_cast<uchar>(letter)) || letter == '-' || letter == '.'; };
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), isPlainLetter);
}

/// Of a hexadecimal digit; -1 for other letters.
int digitValue(char letter)
{
    if (letter >= '0' && letter <= '9')
        return letter - '0';
    if (letter >= 'a' && letter <= 'f')
        return letter - 'a' + 10;
    return letter >= 'A' && letter <= 'F' ? letter - 'A' + 10 : -1;
}

bool isDigitOf(int base, char letter)
{
    const int value = digitValue(letter);
    return value >= 0 && value < base;
}

// Letters behind a backslash ------------------------------------------------------------------------------------------------

struct Escape
{
    char letter; ///< behind the backslash
    char meaning;
};

constexpr Escape escapes[] = {
    {'a', '\a'},
    {'b', '\b'},
    {'f', '\f'},
    {'n', '\n'},
    {'r', '\r'},
    {'t', '\t'},
    {'v', '\v'},
    {'"', '"'},
    {'\\', '\\'},
    {'?', '?'},
    {'\'', '\''},
};
constexpr int writtenEscapes = 9; // the last two are read only

QByteArray encodedText(const QString &text)
{
    QByteArray encoded;
    bool needsQuotes = text.startsWith(QLatin1Char(' ')) || text.endsWith(QLatin1Char(' '));
    bool isAfterNumber = false; // in which a digit would be taken for one of the number's
    for (const QChar character : text) {
        const uint letter = character.unicode();
        needsQuotes = needsQuotes || letter == ';' || letter == ',' || letter == '=';
        const bool continuesNumber = isAfterNumber && letter < 0x80 && isDigitOf(hexadecimal, static_cast<char>(letter));
        const auto *const end = escapes + writtenEscapes;
        const auto *const escape = std::find_if(&escapes[0], end, [letter](const Escape &row) { return uint(uchar(row.meaning)) == letter; });
        if (letter == 0) {
            encoded += "\\0";
            isAfterNumber = true;
        } else if (escape != end) {
            encoded += '\\';
            encoded += escape->letter;
            isAfterNumber = false;
        } else if (continuesNumber || letter <= 0x1f || letter >= 0x7f) {
            encoded += "\\x" + QByteArray::number(letter, hexadecimal);
            isAfterNumber = true;
        } else {
            encoded += static_cast<char>(letter);
            isAfterNumber = false;
        }
    }
    return needsQuotes ? '"' + encoded + '"' : encoded;
}

/// The elements of a value, of which there is one where no comma stands outside quotation marks.
class TextReader
{
public:
    TextReader(const QByteArray &text, bool isUtf8)
        : m_text(text)
        , m_isUtf8(isUtf8)
    {
    }

    QStringList read()
    {
        skipBlanks();
        while (m_position < m_text.size())
            readPart();
        endElement();
        return m_elements;
    }

private:
    void skipBlanks()
    {
        while (m_position < m_text.size() && (m_text.at(m_position) == ' ' || m_text.at(m_position) == '\t'))
            ++m_position;
    }

    void readPart()
    {
        const char letter = m_text.at(m_position);
        if (letter == '\\') {
            ++m_position;
            if (m_position < m_text.size())
                readEscape(m_text.at(m_position++));
        } else if (letter == '"') {
            ++m_position;
            m_wasQuoted = true;
            m_isQuoted = !m_isQuoted;
            if (!m_isQuoted)
                skipBlanks();
        } else if (letter == ',' && !m_isQuoted) {
            ++m_position;
            endElement();
            skipBlanks();
        } else {
            readPlain();
        }
    }

    void readEscape(char letter)
    {
        const auto *const escape = std::find_if(std::begin(escapes), std::end(escapes), [letter](const Escape &row) { return row.letter == letter; });
        if (escape != std::end(escapes))
            m_element += QLatin1Char(escape->meaning);
        else if (letter == 'x' && m_position < m_text.size() && isDigitOf(hexadecimal, m_text.at(m_position)))
            readNumber(hexadecimal);
        else if (isDigitOf(octal, letter))
            readNumber(octal, digitValue(letter));
        // Any other letter goes with its backslash.
        m_lastEscape = m_element.size();
    }

    /// As many digits as there are; of a larger number than a character has, the low 16 bits count.
    void readNumber(int base, int firstDigit = 0)
    {
        auto number = static_cast<uint>(firstDigit);
        while (m_position < m_text.size() && isDigitOf(base, m_text.at(m_position)))
            number = number * static_cast<uint>(base) + static_cast<uint>(digitValue(m_text.at(m_position++)));
        m_element += QChar(static_cast<ushort>(number));
    }

    void readPlain()
    {
        const int start = m_position++; // a comma in quotation marks, perhaps
        while (m_position < m_text.size() && m_text.at(m_position) != '\\' && m_text.at(m_position) != '"' && m_text.at(m_position) != ',')
            ++m_position;
        const QByteArray plain = m_text.mid(start, m_position - start);
        m_element += m_isUtf8 ? QString::fromUtf8(plain) : latin1(plain);
    }

    void endElement()
    {
        while (!m_wasQuoted && m_element.size() > m_lastEscape && (m_element.endsWith(QLatin1Char(' ')) || m_element.endsWith(QLatin1Char('\t'))))
            m_element.chop(1);
        m_elements.append(m_element);
        m_element.clear();
        m_wasQuoted = false;
        m_lastEscape = 0;
    }

    const QByteArray m_text;
    const bool m_isUtf8;
    int m_position = 0;
    bool m_isQuoted = false;
    bool m_wasQuoted = false;
    QString m_element;
    int m_lastEscape = 0; // up to here blanks are meant
    QStringList m_elements;
};

// Serialized values ---------------------------------------------------------------------------------------------------------

/// In the stream format of Qt 4.0. All others have a length inside, or are no types of Qt Core.
constexpr quint32 fixedSizeTypes[] = {
    1, // bool
    2, // int
    3, // uint
    4, // qlonglong
    5, // qulonglong
    6, // double
    7, // QChar
    14, // QDate
    15, // QTime
    16, // QDateTime
    19, // QRect
    20, // QRectF
    21, // QSize
    22, // QSizeF
    23, // QLine
    24, // QLineF
    25, // QPoint
    26, // QPointF
    129, // long
    130, // short
    131, // char
    132, // unsigned long
    133, // unsigned short
    134, // unsigned char
    135, // float
};

constexpr int typeSize = 4;

quint32 typeOf(const QByteArray &bytes)
{
    quint32 type = 0;
    QDataStream(bytes) >> type;
    return type;
}

bool isFixedSizeValue(const QByteArray &bytes)
{
    return std::find(std::begin(fixedSizeTypes), std::end(fixedSizeTypes), typeOf(bytes)) != std::end(fixedSizeTypes);
}

/// The stream format of "@DateTime(": type, whether it is null, date (8 bytes), time (4), kind of time. One kind has a name behind it.
bool isFixedSizeDateTime(const QByteArray &bytes)
{
    constexpr quint32 dateTimeType = 16;
    constexpr int kindPosition = typeSize + 1 + 8 + 4;
    constexpr char withTimeZone = 3;
    return typeOf(bytes) == dateTimeType && (bytes.size() <= kindPosition || bytes.at(kindPosition) != withTimeZone);
}

/// What is too short reads as zeros or as an invalid value.
QVariant deserialized(const QByteArray &bytes, QDataStream::Version version)
{
    QVariant value;
    QDataStream stream(bytes);
    stream.setVersion(version);
    stream >> value;
    return value;
}

/// The numbers of "@Rect(1 2 3 4)"; empty where there are not as many as wanted.
QVector<int> numbersOf(const QString &inner, int count)
{
    QVector<int> numbers;
    const QStringList words = inner.split(QLatin1Char(' '));
    if (words.size() == count) {
        for (const QString &word : words)
            numbers.append(word.toInt());
    }
    return numbers;
}

std::optional<QVariant> valueOf(const QString &text)
{
    if (!text.startsWith(QLatin1Char('@')))
        return text;
    if (text.startsWith(QLatin1String("@@")))
        return text.mid(1);
    if (text == QLatin1String("@Invalid()"))
        return QVariant();
    const int bracket = text.indexOf(QLatin1Char('('));
    if (bracket < 0 || !text.endsWith(QLatin1Char(')')))
        return text;
    const QString kind = text.left(bracket);
    const QString inner = text.mid(bracket + 1, text.size() - bracket - 2);
    if (kind == QLatin1String("@ByteArray"))
        return inner.toLatin1();
    if (kind == QLatin1String("@String"))
        return inner;
    const bool isDateTime = kind == QLatin1String("@DateTime");
    if (isDateTime || kind == QLatin1String("@Variant")) {
        const QByteArray bytes = text.mid(bracket + 1).toLatin1(); // the closing bracket is taken for a part of it
        if (bytes.size() < typeSize)
            return QVariant();
        if (!(isDateTime ? isFixedSizeDateTime(bytes) : isFixedSizeValue(bytes)))
            return std::nullopt;
        return deserialized(bytes, isDateTime ? QDataStream::Qt_5_6 : QDataStream::Qt_4_0);
    }
    if (const QVector<int> numbers = numbersOf(inner, 4); kind == QLatin1String("@Rect") && !numbers.isEmpty())
        return QRect(numbers.at(0), numbers.at(1), numbers.at(2), numbers.at(3));
    if (const QVector<int> numbers = numbersOf(inner, 2); !numbers.isEmpty()) {
        if (kind == QLatin1String("@Size"))
            return QSize(numbers.at(0), numbers.at(1));
        if (kind == QLatin1String("@Point"))
            return QPoint(numbers.at(0), numbers.at(1));
    }
    return text;
}

QString serialized(const QVariant &value)
{
    const bool isDateTime = value.userType() == QMetaType::QDateTime;
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(isDateTime ? QDataStream::Qt_5_6 : QDataStream::Qt_4_0);
    stream << value;
    return QLatin1String(isDateTime ? "@DateTime(" : "@Variant(") + latin1(bytes) + QLatin1Char(')');
}

QString textOf(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return QStringLiteral("@Invalid()");
    case QMetaType::QByteArray:
        return QLatin1String("@ByteArray(") + latin1(value.toByteArray()) + QLatin1Char(')');
    case QMetaType::QString:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Bool:
    case QMetaType::Double: {
        const QString text = value.toString();
        if (text.contains(QChar::Null))
            return QLatin1String("@String(") + text + QLatin1Char(')');
        return text.startsWith(QLatin1Char('@')) ? QLatin1Char('@') + text : text;
    }
    case QMetaType::QRect: {
        const QRect rectangle = value.toRect();
        return QStringLiteral("@Rect(%1 %2 %3 %4)").arg(rectangle.x()).arg(rectangle.y()).arg(rectangle.width()).arg(rectangle.height());
    }
    case QMetaType::QSize: {
        const QSize size = value.toSize();
        return QStringLiteral("@Size(%1 %2)").arg(size.width()).arg(size.height());
    }
    case QMetaType::QPoint: {
        const QPoint point = value.toPoint();
        return QStringLiteral("@Point(%1 %2)").arg(point.x()).arg(point.y());
    }
    default:
        return serialized(value);
    }
}

/// Elements that are all plain texts make a QStringList; one value of another type, and it is a QVariantList.
std::optional<QVariant> listOf(const QStringList &elements)
{
    QStringList texts;
    QVariantList values;
    bool areTexts = true;
    for (const QString &element : elements) {
        const std::optional<QVariant> value = valueOf(element);
        if (!value)
            return std::nullopt;
        values.append(*value);
        texts.append(value->toString());
        areTexts = areTexts && (!element.startsWith(QLatin1Char('@')) || element.startsWith(QLatin1String("@@")));
    }
    return areTexts ? QVariant(texts) : QVariant(values);
}

} // namespace

QByteArray encodedName(const QString &name)
{
    QByteArray encoded;
    for (const QChar character : name) {
        const uint letter = character.unicode();
        if (letter == '/')
            encoded += '\\';
        else if (isAlphanumeric(letter) || letter == '_' || letter == '-' || letter == '.')
            encoded += static_cast<char>(letter);
        else {
            encoded += letter <= 0xff ? "%" : "%U";
            for (int shift = letter <= 0xff ? 4 : 12; shift >= 0; shift -= 4)
                encoded += upperDigits[(letter >> shift) % hexadecimal];
        }
    }
    return encoded;
}

QString decodedName(const QByteArray &text)
{
    QString name;
    for (int position = 0; position < text.size(); ++position) {
        const char letter = text.at(position);
        if (letter == '%' && position + 1 < text.size()) {
            const bool isWide = text.at(position + 1) == 'U';
            const int start = position + (isWide ? 2 : 1);
            const int length = isWide ? 4 : 2;
            bool isNumber = false;
            const int number = text.mid(start, length).toInt(&isNumber, hexadecimal);
            if (start + length <= text.size() && isNumber) {
                name += QChar(static_cast<ushort>(number));
                position = start + length - 1;
                continue;
            }
        }
        name += letter == '\\' ? QLatin1Char('/') : QLatin1Char(letter);
    }
    return name;
}

QByteArray encodedValue(const QVariant &value)
{
    // A list of one text is told from that text by what it is saved as, not here.
    const bool isTexts = value.userType() == QMetaType::QStringList;
    const QVariantList elements = isTexts || value.userType() == QMetaType::QVariantList ? value.toList() : QVariantList();
    if (!isTexts && (value.userType() != QMetaType::QVariantList || elements.size() == 1))
        return encodedText(textOf(value));
    if (elements.isEmpty())
        return QByteArrayLiteral("@Invalid()");
    QByteArrayList texts;
    for (const QVariant &element : elements)
        texts.append(encodedText(textOf(element)));
    return texts.join(", ");
}

std::optional<QVariant> decodedValue(const QByteArray &text, bool isUtf8)
{
    if (isPlain(text))
        return QVariant(latin1(text));
    const QStringList elements = TextReader(text, isUtf8).read();
    return elements.size() == 1 ? valueOf(elements.constFirst()) : listOf(elements);
}

} // namespace audio::settingscodec
