#include "logforms.h"

#include "logmarks.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>

using LogTime::Moment;
using LogTime::number;
using LogTime::Reader;

namespace
{

/// "<30>", which syslog puts first; nothing where there is none.
void skipPriority(Reader &reader)
{
    const Reader before = reader;
    if (!reader.skip('<'))
        return;
    const std::string_view rest = reader.rest();
    const std::size_t end = rest.find('>');
    constexpr std::size_t digits = 3;
    if (end > digits || !number(rest.substr(0, end))) {
        reader = before;
        return;
    }
    reader.skip(end + 1);
}

/// "app[1234]", "app", "1234"
void takeTag(std::string_view tag, LogFrame &frame)
{
    const std::size_t bracket = tag.find('[');
    if (bracket != std::string_view::npos && tag.back() == ']') {
        frame.process = number(tag.substr(bracket + 1, tag.size() - bracket - 2)).value_or(LogFrame::unknown);
        frame.program = tag.substr(0, bracket);
    } else if (const auto process = number(tag)) {
        frame.process = *process;
    } else {
        frame.program = tag;
    }
}

/// "host app[1234]: ", "app: ": what syslog and the journal put behind the time. A rest of other words is another form.
bool takeOrigin(Reader &reader, LogFrame &frame)
{
    constexpr int mostWords = 2;
    for (int i = 0; i < mostWords; ++i) {
        reader.skipBlanks();
        std::string_view word = reader.word();
        if (word.empty() || word.back() != ':')
            continue;
        word.remove_suffix(1);
        takeTag(word, frame);
        reader.skipBlanks();
        return !word.empty() && reader.rest().empty();
    }
    return false;
}

std::string_view unquoted(std::string_view text)
{
    return text.size() >= 2 && text.front() == '"' && text.back() == '"' ? text.substr(1, text.size() - 2) : text;
}

/// The library's text; without what closes a bracket or a quotation in which it stands.
std::string_view textAt(std::string_view line, std::size_t mark)
{
    std::string_view text = line.substr(mark);
    const char before = mark > 0 ? line[mark - 1] : '\0';
    const char closing = before == '[' ? ']' : before == '"' ? '"' : before == '(' ? ')' : '\0';
    if (closing != '\0' && text.back() == closing)
        text.remove_suffix(1);
    return text;
}

bool finish(std::string_view line, std::size_t mark, const std::optional<Moment> &time, LogFrame &frame)
{
    frame.text = textAt(line, mark);
    frame.time = time.value_or(Moment());
    return true;
}

std::string textOf(const QJsonValue &value)
{
    if (value.isArray()) {
        std::string text;
        const QJsonArray bytes = value.toArray();
        for (const QJsonValue &byte : bytes)
            text += char(byte.toInt());
        return text;
    }
    return value.toString().toStdString();
}

/// What stands in a table's cell of a DLT message before its payload, in order.
enum DltColumn {
    DltIndex,
    DltDate,
    DltTime,
    DltUptime,
    DltCount,
    DltEcu,
    DltApplication,
    DltContext,
    DltSession,
    DltType,
    DltSubtype,
    DltMode,
    DltArguments,
    DltColumns
};

bool takeDlt(const std::string_view (&columns)[DltColumns], LogFrame &frame, std::optional<Moment> &time)
{
    if (!number(columns[DltIndex]) || !number(columns[DltCount]) || !number(columns[DltArguments]))
        return false;
    std::string date(columns[DltDate]);
    date += ' ';
    date += columns[DltTime];
    time = Reader(date).calendar();
    if (!time || !Reader(columns[DltUptime]).seconds())
        return false;
    frame.process = number(columns[DltSession]).value_or(LogFrame::unknown);
    frame.program = columns[DltApplication];
    return true;
}

constexpr std::string_view typeWords[] = {"debug", "info", "warning", "critical", "fatal", "default", "Debug", "Info", "Warning", "Critical", "Fatal"};
constexpr std::string_view separators = " \t[](){}<>:,;|=\"";

} // namespace

bool LogForms::isBare(std::string_view line, std::size_t mark, LogFrame &frame)
{
    return line.substr(0, mark).find_first_not_of(" \t") == std::string_view::npos && finish(line, mark, {}, frame);
}

bool LogForms::isJournalJson(std::string_view line, std::size_t /*mark*/, LogFrame &frame)
{
    if (line.empty() || line.front() != '{')
        return false;
    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromRawData(line.data(), int(line.size()))).object();
    frame.spelledText = textOf(object.value(QLatin1String("MESSAGE")));
    const std::size_t mark = LogMarks::find(frame.spelledText);
    if (mark == LogMarks::none)
        return false;
    frame.text = std::string_view(frame.spelledText).substr(mark);
    const auto numberOf = [&object](const char *field) { return number(textOf(object.value(QLatin1String(field)))); };
    constexpr qint64 microsecondsPerMillisecond = 1000;
    const auto time = numberOf("__REALTIME_TIMESTAMP");
    frame.time = time ? Moment{LogTime::Clock::Calendar, *time / microsecondsPerMillisecond} : Moment();
    frame.process = numberOf("_PID").value_or(LogFrame::unknown);
    frame.spelledProgram = textOf(object.value(QLatin1String("SYSLOG_IDENTIFIER")));
    frame.program = frame.spelledProgram;
    return true;
}

bool LogForms::isSinceBoot(std::string_view line, std::size_t mark, LogFrame &frame)
{
    Reader reader(line.substr(0, mark));
    skipPriority(reader);
    reader.skipBlanks();
    if (!reader.skip('['))
        return false;
    reader.skipBlanks();
    const auto time = reader.seconds();
    if (!time || !reader.skip(']'))
        return false;
    reader.skipBlanks();
    return (reader.rest().empty() || takeOrigin(reader, frame)) && finish(line, mark, time, frame);
}

bool LogForms::isStructuredSyslog(std::string_view line, std::size_t mark, LogFrame &frame)
{
    Reader reader(line.substr(0, mark));
    skipPriority(reader);
    if (reader.rest().size() == mark || !reader.skip('1') || !reader.skip(' '))
        return false;
    const auto time = reader.calendar();
    if (!time && !reader.skip('-'))
        return false;
    std::string_view columns[4]; // host, program, process, kind of message
    for (std::string_view &column : columns) {
        reader.skipBlanks();
        column = reader.word();
    }
    frame.program = columns[1];
    frame.process = number(columns[2]).value_or(LogFrame::unknown);
    return !columns[3].empty() && finish(line, mark, time, frame);
}

bool LogForms::isSyslog(std::string_view line, std::size_t mark, LogFrame &frame)
{
    Reader reader(line.substr(0, mark));
    skipPriority(reader);
    const auto time = reader.yearless();
    return time && takeOrigin(reader, frame) && finish(line, mark, time, frame);
}

bool LogForms::isSyslogWithDate(std::string_view line, std::size_t mark, LogFrame &frame)
{
    Reader reader(line.substr(0, mark));
    skipPriority(reader);
    const auto time = reader.calendar();
    return time && takeOrigin(reader, frame) && finish(line, mark, time, frame);
}

bool LogForms::isDltText(std::string_view line, std::size_t mark, LogFrame &frame)
{
    Reader reader(line.substr(0, mark));
    std::string_view columns[DltColumns];
    for (std::string_view &column : columns) {
        reader.skipBlanks();
        column = reader.word();
    }
    std::optional<Moment> time;
    return takeDlt(columns, frame, time) && finish(line, mark, time, frame);
}

bool LogForms::isDltTable(std::string_view line, std::size_t mark, LogFrame &frame)
{
    std::string_view rest = line.substr(0, mark);
    const char separator = rest.find(';') < rest.find(',') ? ';' : ',';
    std::string_view columns[DltColumns];
    for (int i = 0; i < DltColumns; ++i) {
        const std::size_t end = rest.find(separator);
        if (end == std::string_view::npos)
            return false;
        const std::string_view cell = unquoted(rest.substr(0, end));
        columns[i] = cell;
        // The day and the time stand in one cell.
        if (i == DltDate) {
            const std::size_t blank = std::min(cell.find(' '), cell.size());
            columns[DltDate] = cell.substr(0, blank);
            columns[DltTime] = cell.substr(std::min(blank + 1, cell.size()));
            ++i;
        }
        rest.remove_prefix(end + 1);
    }
    std::optional<Moment> time;
    if (!takeDlt(columns, frame, time) || !finish(line, mark, time, frame))
        return false;
    // Quotes inside a quoted cell are doubled.
    if (line[mark - 1] == '"') {
        frame.spelledText.clear();
        for (std::size_t i = 0; i < frame.text.size(); ++i) {
            frame.spelledText += frame.text[i];
            if (frame.text.substr(i, 2) == "\"\"")
                ++i;
        }
        frame.text = frame.spelledText;
    }
    return true;
}

/// Any order of a time, a type, a program and numbers, with brackets and the like between them.
bool LogForms::isMessagePattern(std::string_view line, std::size_t mark, LogFrame &frame)
{
    std::optional<Moment> time;
    bool isKnown = false;
    Reader reader(line.substr(0, mark));
    while (!reader.rest().empty()) {
        if (separators.find(reader.rest().front()) != std::string_view::npos) {
            reader.skip(std::size_t(1));
            continue;
        }
        if (!time) {
            time = reader.calendar();
            time = time ? time : reader.daytime();
            time = time ? time : reader.seconds();
            if (time)
                continue;
        }
        const std::string_view rest = reader.rest();
        const std::string_view word = rest.substr(0, rest.find_first_of(separators));
        reader.skip(word.size());
        if (const auto value = number(word)) {
            // A second number is the thread's, which the library's lines have themselves.
            if (frame.process == LogFrame::unknown)
                frame.process = *value;
        } else if (std::find(std::begin(typeWords), std::end(typeWords), word) != std::end(typeWords)) {
            isKnown = true;
        } else if (frame.program.empty()) {
            frame.program = word;
        }
    }
    isKnown = isKnown || time || frame.process != LogFrame::unknown;
    return isKnown && finish(line, mark, time, frame);
}
