#include "logline.h"

#include "logmarks.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <unordered_map>
#include <vector>

using LogLines::Form;
using LogLines::Row;

namespace
{

// By hand, since a search for one of several characters calls a function for each of the text's, and this is done for every line of a log.

bool isBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

void skipBlanks(std::string_view &text)
{
    std::size_t count = 0;
    while (count < text.size() && isBlank(text[count]))
        ++count;
    text.remove_prefix(count);
}

std::string_view trimmed(std::string_view text)
{
    skipBlanks(text);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool startsWith(std::string_view text, std::string_view begin)
{
    return text.substr(0, begin.size()) == begin;
}

/// Takes a number off the beginning of a text; what follows it must be a blank, the end or @p alsoBefore.
template<typename Number>
std::optional<Number> takeNumber(std::string_view &text, char alsoBefore = ' ')
{
    Number value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const auto taken = std::size_t(end - text.data());
    const bool isWhole = error == std::errc() && (taken == text.size() || isBlank(text[taken]) || text[taken] == alsoBefore);
    if (!isWhole)
        return {};
    text.remove_prefix(taken);
    return value;
}

/// The number that an escape in quotes stands for, of at most so many hexadecimal digits.
uint escaped(std::string_view text, std::size_t &at, std::size_t most)
{
    constexpr int hexadecimal = 16;
    uint value = 0;
    const std::string_view digits = text.substr(at + 1, most);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, hexadecimal);
    if (error == std::errc())
        at += std::size_t(end - digits.data());
    return value;
}

/// A text in quotes as QDebug writes it, taken off the beginning.
std::optional<QString> takeQuoted(std::string_view &text)
{
    if (text.empty() || text.front() != '"')
        return {};
    constexpr std::size_t digitsOfUnicode = 4;
    constexpr std::size_t digitsOfLong = 8;
    QString value;
    std::size_t plainFrom = 1;
    const auto addPlain = [&](std::size_t end) { value += QString::fromUtf8(text.data() + plainFrom, int(end - plainFrom)); };
    for (std::size_t at = 1; at < text.size(); ++at) {
        if (text[at] == '"') {
            addPlain(at);
            text.remove_prefix(at + 1);
            // QDebug writes an empty pair behind a hexadecimal escape that a digit follows.
            if (startsWith(text, "\"")) {
                plainFrom = 1;
                at = 0;
                continue;
            }
            return value;
        }
        if (text[at] != '\\')
            continue;
        addPlain(at);
        ++at;
        if (at >= text.size())
            break;
        switch (text[at]) {
        case 'n':
            value += QLatin1Char('\n');
            break;
        case 't':
            value += QLatin1Char('\t');
            break;
        case 'r':
            value += QLatin1Char('\r');
            break;
        case 'b':
            value += QLatin1Char('\b');
            break;
        case 'f':
            value += QLatin1Char('\f');
            break;
        case 'x':
        case 'u':
        case 'U': {
            const uint code = escaped(text, at, text[at] == 'U' ? digitsOfLong : digitsOfUnicode);
            value += QString::fromUcs4(&code, 1);
            break;
        }
        default:
            value += QLatin1Char(text[at]);
        }
        plainFrom = at + 1;
    }
    return {};
}

/// "(6, 0, -1.5)", "()"
std::optional<QVariantList> takeList(std::string_view &text)
{
    if (text.empty() || text.front() != '(')
        return {};
    QVariantList list;
    std::string_view rest = text.substr(1);
    while (!rest.empty() && rest.front() != ')') {
        const auto value = takeNumber<double>(rest, rest.find(',') < rest.find(')') ? ',' : ')');
        if (!value)
            return {};
        list.append(*value);
        if (startsWith(rest, ", "))
            rest.remove_prefix(2);
    }
    if (rest.empty())
        return {};
    text = rest.substr(1);
    return list;
}

/// Takes a value of a kind off the beginning of the text; an invalid one where there is none.
QVariant takeValue(char kind, std::string_view &text)
{
    switch (kind) {
    case 'n': {
        const auto value = takeNumber<qint64>(text);
        return value ? QVariant(*value) : QVariant();
    }
    case 'r': {
        const auto value = takeNumber<double>(text);
        return value ? QVariant(*value) : QVariant();
    }
    case 'b':
        for (const bool value : {true, false}) {
            const std::string_view word = value ? "true" : "false";
            if (startsWith(text, word)) {
                text.remove_prefix(word.size());
                return value;
            }
        }
        return {};
    case 'q': {
        const auto value = takeQuoted(text);
        return value ? QVariant(*value) : QVariant();
    }
    case 'l': {
        const auto value = takeList(text);
        return value ? QVariant(*value) : QVariant();
    }
    case 'p': {
        const std::string_view word = text.substr(0, std::size_t(std::find_if(text.cbegin(), text.cend(), isBlank) - text.cbegin()));
        text.remove_prefix(word.size());
        return word.empty() ? QVariant() : QString::fromUtf8(word.data(), int(word.size()));
    }
    default:
        return {};
    }
}

bool matches(std::string_view words, std::string_view text, QVector<QVariant> &values);

/// A text that may hold anything, and behind it the words: it ends where they can begin first.
bool takeRest(std::string_view words, std::string_view text, QVector<QVariant> &values)
{
    // Its text is made last: most places are not where it ends.
    const int index = values.size();
    for (std::size_t at = words.empty() ? text.size() : 0; at <= text.size(); ++at) {
        if (at > 0 && at < text.size() && text[at] != ' ')
            continue;
        values.resize(index + 1);
        if (matches(words, text.substr(at), values)) {
            values[index] = QString::fromUtf8(text.data(), int(at));
            return true;
        }
    }
    values.resize(index);
    return false;
}

/// Whether the words describe the text; its values are added.
bool matches(std::string_view words, std::string_view text, QVector<QVariant> &values)
{
    skipBlanks(text);
    while (!words.empty()) {
        const std::string_view word = words.substr(0, words.find(' '));
        words.remove_prefix(std::min(word.size() + 1, words.size()));
        const bool isValue = word.size() == 2 && word.front() == '%';
        if (isValue && word[1] == 'w') {
            return takeRest(words, text, values);
        }
        if (isValue) {
            const QVariant value = takeValue(word[1], text);
            if (!value.isValid())
                return false;
            values.append(value);
        } else if (startsWith(text, word)) {
            text.remove_prefix(word.size());
        } else {
            return false;
        }
        if (!text.empty() && !isBlank(text.front()))
            return false;
        skipBlanks(text);
    }
    return text.empty();
}

using Rows = std::vector<const Row *>;

/// The rows by what a line says of itself, in their order, so that it is compared with few of them.
class RowIndex
{
public:
    RowIndex()
    {
        for (const Row &row : LogLines::rows) {
            OfForm &form = m_forms[std::size_t(row.form)];
            if (row.function[0] != '\0') {
                form.byFunction[row.function].push_back(&row);
                continue;
            }
            for (std::size_t first = 0; first < characterCount; ++first) {
                if (mayBegin(row, char(first)))
                    form.byFirst[first].push_back(&row);
            }
        }
    }

    /// @param first character of the text behind the function; NUL for none
    const Rows &find(Form form, std::string_view function, char first) const
    {
        const OfForm &rows = m_forms[std::size_t(form)];
        if (function.empty())
            return rows.byFirst[std::size_t(first) % characterCount];
        const auto found = rows.byFunction.find(function);
        return found == rows.byFunction.end() ? m_none : found->second;
    }

    static bool mayBegin(const Row &row, char first) { return row.words[0] == '%' || row.words[0] == first; }

private:
    static constexpr std::size_t characterCount = 128;
    static constexpr std::size_t formCount = std::size_t(Form::Service) + 1;

    struct OfForm
    {
        std::unordered_map<std::string_view, Rows> byFunction;
        std::array<Rows, characterCount> byFirst; // of the lines that do not say their function
    };

    std::array<OfForm, formCount> m_forms;
    const Rows m_none;
};

std::optional<LogLine> describe(Form form, std::string_view function, std::string_view text)
{
    static const RowIndex index;
    std::optional<LogLine> line(std::in_place);
    skipBlanks(text);
    const char first = text.empty() ? '\0' : text.front();
    for (const Row *const row : index.find(form, function, first)) {
        if (!RowIndex::mayBegin(*row, first))
            continue;
        line->values.clear();
        if (matches(row->words, text, line->values)) {
            line->row = row;
            return line;
        }
    }
    return {};
}

/// The function's name in a signature: "audio::AudioControl::setStreamVolume" in "void audio::AudioControl::setStreamVolume(AudioTag)".
std::string_view functionOf(std::string_view signature)
{
    const std::string_view name = signature.substr(0, signature.find('('));
    const auto isBefore = [](char character) { return character == ' ' || character == '*' || character == '&'; };
    std::size_t begin = name.size();
    while (begin > 0 && !isBefore(name[begin - 1]))
        --begin;
    return name.substr(begin);
}

/// "THREAD SIGNATURE LINE -- words"
std::optional<LogLine> readTrace(Form form, std::string_view text)
{
    const auto thread = takeNumber<qint64>(text);
    constexpr std::string_view separator = " --";
    // The first one behind the arguments: what follows may hold another.
    const std::size_t arguments = text.find('(');
    const std::size_t end = arguments == std::string_view::npos ? arguments : text.find(separator, arguments);
    if (!thread || end == std::string_view::npos)
        return {};
    auto line = describe(form, functionOf(text.substr(0, end)), text.substr(end + separator.size()));
    if (line)
        line->thread = *thread;
    return line;
}

} // namespace

std::optional<LogLine> LogLine::read(std::string_view text)
{
    text = trimmed(text);
    const auto take = [&text](std::string_view begin) {
        const bool isThere = startsWith(text, begin);
        if (isThere)
            text.remove_prefix(begin.size());
        return isThere;
    };
    if (take(LogMarks::trace))
        return readTrace(Form::Trace, text);
    if (take(LogMarks::critical))
        return readTrace(Form::Critical, text);
    if (take(LogMarks::service))
        return describe(Form::Service, {}, text);
    if (!take(LogMarks::facade))
        return {};
    if (take("[Audiocontrol]"))
        return describe(Form::Facade, {}, text);
    if (!take("[Error] [Audiocontrol] line: "))
        return describe(Form::FacadeNote, {}, text);
    return takeNumber<qint64>(text) ? describe(Form::FacadeError, {}, text) : std::nullopt;
}
