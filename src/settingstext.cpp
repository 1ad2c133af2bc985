#include "settingstext.h"

#include "audiodatabasetables.h"
#include "settingscodec.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

namespace audio
{

namespace
{

constexpr char byteOrderMark[] = "\xef\xbb\xbf";
constexpr int byteOrderMarkSize = 3;
constexpr int longestLine = 65536; // bytes; a list as long as the file would take fifty times its size in memory

bool isBlank(char letter)
{
    return letter == ' ' || letter == '\t';
}

/// In names.
bool isEncoded(char letter)
{
    return letter == '%' || letter == '\\';
}

bool isLineEnd(char letter)
{
    return letter == '\n' || letter == '\r';
}

/// One line of the file, as far as its shape tells.
struct Line
{
    enum class Kind {
        Nothing, ///< empty, or a comment
        Header,
        Entry,
        BrokenHeader, ///< what follows belongs to a group that cannot be told
        Broken,
    };

    Kind kind = Kind::Nothing;
    int start = 0;
    int end = 0; ///< behind the line end
    int nameStart = 0; ///< of a header or an entry
    int nameEnd = 0;
    int valueStart = 0; ///< of an entry; nothing for others
    int valueEnd = 0;
};

/// What a letter does to the shape of its line.
enum class LetterKind : unsigned char {
    Plain,
    Control, ///< no line that can be read has one
    Mark,
};

constexpr std::array<LetterKind, 256> makeLetterKinds()
{
    std::array<LetterKind, 256> kinds = {};
    for (size_t code = 0; code < 0x20; ++code)
        kinds[code] = LetterKind::Control;
    kinds['\t'] = LetterKind::Plain;
    kinds[0x7f] = LetterKind::Control;
    for (const char mark : {'\\', '"', '=', ';'})
        kinds[static_cast<unsigned char>(mark)] = LetterKind::Mark;
    return kinds;
}

constexpr std::array<LetterKind, 256> letterKinds = makeLetterKinds();

/// Reads bytes that somebody else keeps for as long.
class LineReader
{
public:
    explicit LineReader(const QByteArray &bytes)
        : LineReader(bytes, bytes.startsWith(byteOrderMark) ? byteOrderMarkSize : 0)
    {
    }
    LineReader(const QByteArray &bytes, int position)
        : m_bytes(bytes.constData())
        , m_size(bytes.size())
        , m_position(position)
    {
    }

    bool atEnd() const { return m_position >= m_size; }

    /// Of the next line, behind its blanks; any other one where nothing is behind them.
    char firstLetter() const
    {
        int position = m_position;
        while (position + 1 < m_size && isBlank(m_bytes[position]))
            ++position;
        return m_bytes[position];
    }

    /// Over the next line, in a text all of whose lines end in '\n'.
    void skip()
    {
        const void *const end = std::memchr(m_bytes + m_position, '\n', static_cast<size_t>(m_size - m_position));
        m_position = end ? static_cast<int>(static_cast<const char *>(end) - m_bytes) + 1 : m_size;
    }

    Line next()
    {
        Line line;
        line.start = m_position;
        int end = m_position;
        while (end < m_size && !isLineEnd(m_bytes[end]))
            ++end;
        const bool isPair = end + 1 < m_size && m_bytes[end] == '\r' && m_bytes[end + 1] == '\n';
        line.end = std::min(end + (isPair ? 2 : 1), m_size);
        m_position = line.end;
        int start = line.start;
        while (start < end && isBlank(m_bytes[start]))
            ++start;
        if (start < end && m_bytes[start] != ';')
            readShape(line, start, end);
        // Without its end there may have been more of it.
        if (line.kind != Line::Kind::Nothing && (end == m_size || end - start > longestLine))
            line.kind = Line::Kind::Broken;
        return line;
    }

private:
    void readShape(Line &line, int start, int end) const
    {
        int equals = -1;
        bool isQuoted = false;
        bool isWhole = true;
        int position = start;
        for (; position < end; ++position) {
            const char letter = m_bytes[position];
            const LetterKind kind = letterKinds[static_cast<unsigned char>(letter)];
            if (kind == LetterKind::Plain)
                continue;
            isWhole = isWhole && kind != LetterKind::Control;
            if (letter == ';' && !isQuoted)
                break;
            if (letter == '\\')
                ++position;
            else if (letter == '"')
                isQuoted = !isQuoted;
            else if (letter == '=' && !isQuoted && equals < 0)
                equals = position;
        }
        isWhole = isWhole && !isQuoted && position <= end; // else it goes on in the next line
        end = std::min(position, end);
        const int valueEnd = end;
        while (end > start && isBlank(m_bytes[end - 1]))
            --end;
        const bool isOpened = m_bytes[start] == '[';
        const char *const bracket = isOpened ? std::find(m_bytes + start, m_bytes + end, ']') : m_bytes + end;
        const int close = static_cast<int>(bracket - m_bytes);
        if (isWhole && close < end) {
            line.kind = Line::Kind::Header;
            setName(line, start + 1, close);
        } else if (equals < 0 && (isOpened || m_bytes[end - 1] == ']')) {
            line.kind = Line::Kind::BrokenHeader;
            setName(line, start + 1, isOpened ? close : start + 1);
        } else if (isWhole && equals > start && !isOpened) {
            line.kind = Line::Kind::Entry;
            setName(line, start, equals);
            line.valueStart = equals + 1;
            line.valueEnd = valueEnd;
        } else {
            line.kind = Line::Kind::Broken;
        }
    }

    void setName(Line &line, int start, int end) const
    {
        while (start < end && isBlank(m_bytes[start]))
            ++start;
        while (end > start && isBlank(m_bytes[end - 1]))
            --end;
        line.nameStart = start;
        line.nameEnd = end;
    }

    const char *const m_bytes;
    const int m_size;
    int m_position;
};

/// The group "General" is QSettings' name for keys without a group; a group that is really called so has a '%' in front.
QString groupOfHeader(const QByteArray &name)
{
    if (name.compare("general", Qt::CaseInsensitive) == 0)
        return {};
    if (name.compare("%general", Qt::CaseInsensitive) == 0)
        return QString::fromLatin1(name.mid(1));
    return settingscodec::decodedName(name);
}

QByteArray headerOf(const QString &group)
{
    const QByteArray name = settingscodec::encodedName(group);
    if (name.isEmpty())
        return QByteArrayLiteral("[General]\n");
    return name.compare("general", Qt::CaseInsensitive) == 0 ? QByteArrayLiteral("[%General]\n") : '[' + name + "]\n";
}

QByteArray nameOf(const QByteArray &bytes, const Line &line)
{
    return bytes.mid(line.nameStart, line.nameEnd - line.nameStart);
}

/// As it is written, where that is what it means; most names need no decoding, and large files have many.
std::optional<QLatin1String> plainName(const QByteArray &bytes, const Line &line)
{
    const char *const begin = bytes.constData() + line.nameStart;
    const char *const end = bytes.constData() + line.nameEnd;
    if (std::any_of(begin, end, isEncoded))
        return std::nullopt;
    return QLatin1String(begin, end);
}

bool isCalled(const QByteArray &bytes, const Line &line, const QStringRef &name)
{
    const std::optional<QLatin1String> plain = plainName(bytes, line);
    return plain ? name == *plain : name == settingscodec::decodedName(nameOf(bytes, line));
}

/// What is left of a path below a head of a group; nothing where it is not below it.
QStringRef keyBelow(const QByteArray &bytes, const Line &header, const QString &path)
{
    const auto below = [&path](const auto &group) {
        const bool isBelow = path.startsWith(group) && path.midRef(group.size(), 1) == QLatin1String("/");
        return isBelow ? path.midRef(group.size() + 1) : QStringRef();
    };
    const std::optional<QLatin1String> plain = plainName(bytes, header);
    const bool mayBeGeneral = !plain || plain->isEmpty() || plain->startsWith(QLatin1Char('g'), Qt::CaseInsensitive);
    if (!mayBeGeneral)
        return below(*plain);
    const QString group = groupOfHeader(nameOf(bytes, header));
    return group.isEmpty() ? QStringRef(&path) : below(group);
}

/// The last entry of that path, which is the one that counts. The text has no damage.
std::optional<Line> lastEntry(const QByteArray &bytes, const QString &path)
{
    std::optional<Line> found;
    QStringRef key(&path); // below the current group
    for (LineReader lines(bytes); !lines.atEnd();) {
        const char first = lines.firstLetter();
        const bool mayBeKey = !key.isEmpty() && (isEncoded(first) || key.at(0) == QLatin1Char(first));
        if (first != '[' && !mayBeKey) {
            lines.skip();
            continue;
        }
        const Line line = lines.next();
        if (line.kind == Line::Kind::Header)
            key = keyBelow(bytes, line, path);
        else if (line.kind == Line::Kind::Entry && isCalled(bytes, line, key))
            found = line;
    }
    return found;
}

/// The store's group that has such a key; no two groups have the same.
QByteArray groupOfKey(const QByteArray &key)
{
    const auto *const row = std::find_if(
        std::begin(tables::storedKeys), std::end(tables::storedKeys), [&key](const tables::StoredKey &candidate) { return key == candidate.key; });
    return row == std::end(tables::storedKeys) ? QByteArray() : QByteArray(row->group);
}

bool isAscii(const QByteArray &text)
{
    return std::all_of(text.begin(), text.end(), [](char letter) { return static_cast<unsigned char>(letter) < 0x80; });
}

/// A value whose length is to be believed before it is read.
bool isHarmless(const QByteArray &bytes, const Line &line, bool isUtf8)
{
    const auto length = line.valueEnd - line.valueStart;
    const char *const begin = bytes.constData() + line.valueStart;
    return !std::memchr(begin, '@', static_cast<size_t>(length)) || settingscodec::decodedValue(QByteArray(begin, length), isUtf8);
}

/// Of the first entry below a header that will be kept, if the store has such a key.
QByteArray groupOfNextEntry(const QByteArray &bytes, LineReader lines, bool isUtf8)
{
    constexpr int mostLines = 100; // or a file of nothing but such headers would be read again for each
    for (int count = 0; count < mostLines && !lines.atEnd(); ++count) {
        const Line line = lines.next();
        if (line.kind == Line::Kind::Header || line.kind == Line::Kind::BrokenHeader)
            break;
        if (line.kind == Line::Kind::Entry && isHarmless(bytes, line, isUtf8))
            return groupOfKey(nameOf(bytes, line));
    }
    return {};
}

/// What a damaged line that is, or may have been, the head of a group is taken for; empty for one that need not have been one.
QByteArray mendedHeader(const QByteArray &bytes, const Line &line, const LineReader &following, bool isUtf8)
{
    const QByteArray group = groupOfNextEntry(bytes, following, isUtf8);
    if (!group.isEmpty())
        return '[' + group + "]\n";
    const QByteArray name = nameOf(bytes, line);
    return line.kind == Line::Kind::BrokenHeader && !name.isEmpty() ? headerOf(groupOfHeader(name)) : QByteArray();
}

} // namespace

SettingsText::SettingsText(const QByteArray &bytes)
    : m_isUtf8(bytes.startsWith(byteOrderMark))
{
    leaveOutDamage(bytes);
}

/// Most files have none: then nothing is copied.
void SettingsText::leaveOutDamage(const QByteArray &bytes)
{
    int taken = 0; // up to here, as it is or otherwise
    const auto takeUpTo = [&](int position) {
        m_bytes.append(bytes.constData() + taken, position - taken);
        taken = position;
    };
    for (LineReader lines(bytes); !lines.atEnd();) {
        const Line line = lines.next();
        QByteArray mended;
        if (line.kind == Line::Kind::BrokenHeader || (line.kind == Line::Kind::Header && !isAscii(nameOf(bytes, line)))) // QSettings would write %E4
            mended = mendedHeader(bytes, line, lines, m_isUtf8);
        if (!mended.isEmpty() || line.kind >= Line::Kind::BrokenHeader || !isHarmless(bytes, line, m_isUtf8)) {
            takeUpTo(line.start);
            taken = line.end;
            m_bytes += mended;
            ++m_damagedLines;
        } else if (bytes.at(line.end - 1) != '\n') {
            takeUpTo(line.end);
            if (m_bytes.endsWith('\r'))
                m_bytes.chop(1); // many readers take only the other for a line end
            if (!m_bytes.endsWith('\n'))
                m_bytes += '\n'; // also behind a comment without its end
        }
    }
    if (taken == 0)
        m_bytes = bytes;
    else
        takeUpTo(bytes.size());
    // Left out may be what stood before such a name; the next reader would take it for the mark of all of the text.
    if (!m_isUtf8 && m_bytes.startsWith(byteOrderMark))
        m_bytes.prepend('\n');
}

QByteArray SettingsText::rawValue(const QString &path) const
{
    const std::optional<Line> line = lastEntry(m_bytes, path);
    return line ? m_bytes.mid(line->valueStart, line->valueEnd - line->valueStart) : QByteArray();
}

QVariant SettingsText::value(const QString &path, const QVariant &defaultValue) const
{
    const QByteArray raw = rawValue(path);
    return raw.isNull() ? defaultValue : settingscodec::decodedValue(raw, m_isUtf8).value_or(defaultValue);
}

void SettingsText::setValue(const QString &path, const QVariant &value)
{
    const QByteArray encoded = settingscodec::encodedValue(value);
    const std::optional<Line> line = lastEntry(m_bytes, path);
    if (!line) {
        insert(path, encoded);
        m_readsBack = false;
        return;
    }
    m_bytes.replace(line->valueStart, line->valueEnd - line->valueStart, encoded);
    const Line changed = LineReader(m_bytes, line->start).next();
    m_readsBack = m_readsBack && changed.kind == Line::Kind::Entry && changed.valueStart == line->valueStart
        && changed.valueEnd == line->valueStart + encoded.size() && isHarmless(m_bytes, changed, m_isUtf8);
}

/// Where QSettings would have put it, which sorts groups and keys.
void SettingsText::insert(const QString &path, const QByteArray &value)
{
    const QString group = path.contains(QLatin1Char('/')) ? path.section(QLatin1Char('/'), 0, 0) : QString();
    const QString key = group.isEmpty() ? path : path.mid(group.size() + 1);
    const QByteArray entry = settingscodec::encodedName(key) + '=' + value + '\n';
    QString currentGroup;
    int placeOfGroup = -1; // before the first greater group
    int placeOfEntry = -1; // behind the last smaller entry of the group
    bool isPlaceFound = false;
    for (LineReader lines(m_bytes); !lines.atEnd();) {
        const Line line = lines.next();
        if (line.kind == Line::Kind::Header) {
            currentGroup = groupOfHeader(nameOf(m_bytes, line));
            if (currentGroup > group && placeOfGroup < 0)
                placeOfGroup = line.start;
        }
        if (currentGroup != group || isPlaceFound)
            continue;
        if (line.kind == Line::Kind::Entry && settingscodec::decodedName(nameOf(m_bytes, line)) > key)
            isPlaceFound = placeOfEntry >= 0;
        else if (line.kind == Line::Kind::Header || line.kind == Line::Kind::Entry)
            placeOfEntry = line.end;
    }
    if (placeOfEntry >= 0)
        m_bytes.insert(placeOfEntry, entry);
    else if (placeOfGroup >= 0)
        m_bytes.insert(placeOfGroup, headerOf(group) + entry + '\n');
    else
        m_bytes += (m_bytes.isEmpty() ? QByteArray() : QByteArrayLiteral("\n")) + headerOf(group) + entry;
}

QString SettingsText::path(const QString &group, const QString &key)
{
    const QLatin1Char slash('/');
    const QString path = group + slash + key;
    const bool isPlain = !path.startsWith(slash) && !path.endsWith(slash) && !path.contains(QLatin1String("//"));
    return isPlain ? path : path.split(slash, Qt::SkipEmptyParts).join(slash);
}

} // namespace audio
