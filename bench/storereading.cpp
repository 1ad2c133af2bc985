#include "storereading.h"

#include "settingstext.h"

#include <QtCore/QDataStream>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>

namespace
{

constexpr int longestLine = 65536; // bytes
constexpr int typeSize = int(sizeof(quint32));

/// Types by their number in the stream format of Qt 4.0 whose values have no length inside.
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

bool isControl(char character)
{
    const auto code = static_cast<unsigned char>(character);
    return (code < 0x20 && character != '\t') || code == 0x7f;
}

bool isAscii(const QByteArray &text)
{
    return std::all_of(text.begin(), text.end(), [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

/// One line of the file, as far as its shape tells.
struct Line
{
    enum class Kind {
        Nothing, ///< empty, or a comment
        Section,
        Entry,
        DamagedSection,
        Damaged,
    };

    Kind kind = Kind::Nothing;
    QByteArray name; ///< of a section or an entry
    QByteArray value; ///< of an entry
};

/// @param text a line without its end, and without blanks before it
Line shapeOf(const QByteArray &text)
{
    if (text.isEmpty() || text.startsWith(';'))
        return {};
    int equals = -1;
    bool isQuoted = false;
    bool isWhole = true;
    int end = 0;
    for (; end < text.size() && (isQuoted || text.at(end) != ';'); ++end) {
        const char character = text.at(end);
        isWhole = isWhole && !isControl(character);
        if (character == '\\')
            ++end;
        else if (character == '"')
            isQuoted = !isQuoted;
        else if (character == '=' && !isQuoted && equals < 0)
            equals = end;
    }
    isWhole = isWhole && !isQuoted && end <= text.size(); // else it goes on in the next line
    const QByteArray shape = SettingsText::withoutBlanks(text.left(end));
    const bool isOpened = shape.startsWith('[');
    const int close = isOpened ? shape.indexOf(']') : -1;
    if (isWhole && close >= 0)
        return {Line::Kind::Section, SettingsText::withoutBlanks(shape.mid(1, close - 1)), {}};
    if (equals < 0 && (isOpened || shape.endsWith(']')))
        return {Line::Kind::DamagedSection, isOpened ? SettingsText::withoutBlanks(shape.mid(1, close < 0 ? -1 : close - 1)) : QByteArray(), {}};
    if (isWhole && equals > 0 && !isOpened)
        return {Line::Kind::Entry, SettingsText::withoutBlanks(text.left(equals)), text.mid(equals + 1, end - equals - 1)};
    return {Line::Kind::Damaged, {}, {}};
}

QVector<Line> linesOf(const QByteArray &text)
{
    QVector<Line> lines;
    for (int begin = 0; begin < text.size();) {
        const auto *const found = std::find_if(text.begin() + begin, text.end(), [](char character) { return character == '\n' || character == '\r'; });
        const int end = int(found - text.begin());
        int start = begin;
        while (start < end && SettingsText::isBlank(text.at(start)))
            ++start;
        Line line = shapeOf(text.mid(start, end - start));
        // Without its end there may have been more of it.
        if (line.kind != Line::Kind::Nothing && (end == text.size() || end - start > longestLine))
            line = {Line::Kind::Damaged, {}, {}};
        lines.append(line);
        begin = end + 1;
    }
    return lines;
}

/// Where the store has such a key: its section. No two sections have the same.
QString sectionOfKey(const QByteArray &name, const QStringList &knownKeys)
{
    const QString ending = QLatin1Char('/') + QString::fromLatin1(name);
    const auto known = std::find_if(knownKeys.cbegin(), knownKeys.cend(), [&ending](const QString &key) { return key.endsWith(ending); });
    return known == knownKeys.cend() ? QString() : known->left(known->size() - ending.size() + 1);
}

/// The section of the entry that follows a section's head, when the store has such a key.
QString sectionOfNextEntry(const QVector<Line> &lines, int head, const QStringList &knownKeys)
{
    constexpr int mostLines = 100;
    for (int i = head + 1; i < lines.size() && i <= head + mostLines; ++i) {
        const Line &line = lines.at(i);
        if (line.kind == Line::Kind::Entry)
            return sectionOfKey(line.name, knownKeys);
        if (line.kind == Line::Kind::Section || line.kind == Line::Kind::DamagedSection)
            break;
    }
    return {};
}

/// Too short a text reads as zeros. The closing bracket is taken for a part of it.
QVariant deserialized(const QByteArray &serialized, QDataStream::Version version)
{
    QVariant value;
    QDataStream stream(serialized);
    stream.setVersion(version);
    stream >> value;
    return value;
}

quint32 typeOf(const QByteArray &serialized)
{
    quint32 type = 0;
    QDataStream(serialized) >> type;
    return type;
}

/// Type, whether it is null, date (8 bytes), time (4), kind of time. One kind has a name of any length behind it.
bool isFixedSizeDateTime(const QByteArray &serialized)
{
    constexpr quint32 dateTimeType = 16;
    constexpr int kindPosition = typeSize + 1 + 8 + 4;
    constexpr char withTimeZone = 3;
    return typeOf(serialized) == dateTimeType && (serialized.size() <= kindPosition || serialized.at(kindPosition) != withTimeZone);
}

/// Nothing where the value is left alone: it describes an object of unknown size.
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
        const QByteArray serialized = text.mid(bracket + 1).toLatin1();
        if (serialized.size() < typeSize)
            return QVariant();
        const bool isHarmless = isDateTime ? isFixedSizeDateTime(serialized)
                                           : std::find(std::begin(fixedSizeTypes), std::end(fixedSizeTypes), typeOf(serialized)) != std::end(fixedSizeTypes);
        if (!isHarmless)
            return std::nullopt;
        return deserialized(serialized, isDateTime ? QDataStream::Qt_5_6 : QDataStream::Qt_4_0);
    }
    // These have no number and no truth value, just like nothing at all.
    const int words = inner.count(QLatin1Char(' ')) + 1;
    if (kind == QLatin1String("@Rect") && words == 4)
        return QVariant();
    if ((kind == QLatin1String("@Size") || kind == QLatin1String("@Point")) && words == 2)
        return QVariant();
    return text;
}

std::optional<QVariant> valueOf(const QByteArray &written, bool isUtf8)
{
    const QStringList elements = SettingsText::elements(written, isUtf8);
    if (elements.size() == 1)
        return valueOf(elements.constFirst());
    for (const QString &element : elements) {
        if (!valueOf(element))
            return std::nullopt;
    }
    return QVariant(elements);
}

} // namespace

QMap<QString, QVariant> StoreReading::values(const QByteArray &text, const QStringList &knownKeys)
{
    QMap<QString, QVariant> values;
    const bool isUtf8 = SettingsText::isUtf8(text);
    const QVector<Line> lines = linesOf(SettingsText::withoutMark(text));
    QString section;
    for (int i = 0; i < lines.size(); ++i) {
        const Line &line = lines.at(i);
        if (line.kind == Line::Kind::DamagedSection || (line.kind == Line::Kind::Section && !isAscii(line.name))) {
            const QString next = sectionOfNextEntry(lines, i, knownKeys);
            if (!next.isEmpty())
                section = next;
            else if (!line.name.isEmpty())
                section = SettingsText::sectionOf(line.name);
        } else if (line.kind == Line::Kind::Section) {
            section = line.name.isEmpty() ? QString() : SettingsText::sectionOf(line.name);
        } else if (line.kind == Line::Kind::Entry) {
            const QString key = section + SettingsText::keyOf(line.name);
            const std::optional<QVariant> value = valueOf(line.value, isUtf8);
            if (value)
                values.insert(key, *value);
            else if (!line.value.contains('@'))
                values.remove(key); // the store finds out too late to take an earlier line
        }
    }
    return values;
}

int StoreReading::wholeNumber(const QVariant &value)
{
    const bool isText = value.userType() == QMetaType::QString || value.userType() == QMetaType::QByteArray;
    const double number = isText ? static_cast<double>(value.toLongLong()) : std::trunc(value.toDouble());
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    return number >= lowest && number <= highest ? static_cast<int>(number) : 0;
}
