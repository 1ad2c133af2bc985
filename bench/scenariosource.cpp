#include "scenariosource.h"

#include <QtCore/QRegularExpression>

#include <algorithm>

namespace
{

const QLatin1String templateOpening("${");

bool isLineEnd(QChar character)
{
    return character == QLatin1Char('\n') || character == QLatin1Char('\r') || character == QChar(QChar::LineSeparator)
        || character == QChar(QChar::ParagraphSeparator);
}

bool isPartOfWord(QChar character)
{
    return character.isLetterOrNumber() || character == QLatin1Char('_') || character == QLatin1Char('$') || character == QLatin1Char('\\')
        || character.isSurrogate() || character.isMark();
}

bool isOneOf(const QString &word, std::initializer_list<const char *> words)
{
    return std::any_of(words.begin(), words.end(), [&word](const char *other) { return word == QLatin1String(other); });
}

QChar counterpart(QChar closing)
{
    switch (closing.unicode()) {
    case ')':
        return QLatin1Char('(');
    case ']':
        return QLatin1Char('[');
    default:
        return QLatin1Char('{');
    }
}

} // namespace

ScenarioSource::ScenarioSource(const QString &text)
    : program(text)
{
    if (program.startsWith(QLatin1String("#!")))
        program.replace(0, 2, QStringLiteral("//"));
    while (position < program.size())
        readToken();
}

QStringList ScenarioSource::lines() const
{
    return program.split(QRegularExpression(QStringLiteral("\r\n|[\r\n\u2028\u2029]")));
}

QString ScenarioSource::marked(const QString &thrownMark) const
{
    QString result;
    int copied = 0;
    for (const auto &[where, mark] : marks) {
        result += program.midRef(copied, where - copied);
        copied = where;
        switch (mark) {
        case Mark::Turn:
            result += QLatin1String("Infinity,");
            break;
        case Mark::EndlessTurn:
            result += QLatin1String("Infinity");
            break;
        case Mark::Throw:
            result += QLatin1Char(' ') + thrownMark + QLatin1String("(),");
            break;
        }
    }
    return result + program.midRef(copied);
}

QString ScenarioSource::unclosed() const
{
    if (open.isEmpty())
        return {};
    return QStringLiteral("%1 of line %2").arg(open.last().opening).arg(open.last().line);
}

void ScenarioSource::readToken()
{
    const QChar character = at(position);
    if (isLineEnd(character)) {
        position += character == QLatin1Char('\r') && at(position + 1) == QLatin1Char('\n') ? 2 : 1;
        ++line;
        return;
    }
    if (character.isSpace() || character == QChar(QChar::ByteOrderMark)) {
        ++position;
        return;
    }
    if (character == QLatin1Char('/') && (at(position + 1) == QLatin1Char('/') || at(position + 1) == QLatin1Char('*'))) {
        readComment();
        return;
    }
    lastTokenLine = line;
    switch (character.unicode()) {
    case '"':
    case '\'':
        readText(character);
        return;
    case '`':
        readTemplate(position + 1);
        return;
    case '(':
    case '[':
    case '{':
        openBracket(character);
        return;
    case ')':
    case ']':
    case '}':
        closeBracket(character);
        return;
    case ';':
        endOfPart();
        return;
    case '/':
        if (expectsValue()) {
            readRegularExpression();
            return;
        }
        break;
    default:
        break;
    }
    if (isPartOfWord(character))
        readWord();
    else
        take(character);
}

/// Whether a value may begin here, so that a slash begins a regular expression.
bool ScenarioSource::expectsValue() const
{
    if (previous.isEmpty() || afterHead)
        return true;
    if (isPartOfWord(previous.at(0)))
        return isOneOf(previous, {"return", "typeof", "case", "in", "of", "delete", "void", "throw", "new", "else", "do", "instanceof", "yield"});
    return !isOneOf(previous, {")", "]", "}", "\"", "`", "/"});
}

/// Notes a token and goes on behind it.
void ScenarioSource::take(const QString &token)
{
    previous = token;
    afterHead = false;
    position += token.size();
}

void ScenarioSource::readWord()
{
    int end = position;
    while (end < program.size() && isPartOfWord(at(end)))
        ++end;
    const QString word = program.mid(position, end - position);
    const bool isMember = previous == QLatin1String(".");
    take(word);
    if (isMember)
        previous = QStringLiteral("name");
    else if (word == QLatin1String("throw") && !isLineEnd(at(skipBlanks(position))))
        marks.append({position, Mark::Throw});
}

void ScenarioSource::readText(QChar quote)
{
    const auto isNewline = [](QChar character) { return character == QLatin1Char('\n') || character == QLatin1Char('\r'); };
    const int begin = line;
    int end = position + 1;
    for (; end < program.size() && at(end) != quote && !isNewline(at(end)); ++end) {
        if (at(end) != QLatin1Char('\\'))
            continue;
        // A backslash at the end of a line continues the text on the next one.
        ++end;
        if (at(end) == QLatin1Char('\r') && at(end + 1) == QLatin1Char('\n'))
            ++end;
        if (isNewline(at(end)))
            ++line;
    }
    if (at(end) != quote)
        complain(QStringLiteral("the text that begins with %1 does not end on its line").arg(quote), begin);
    take(QStringLiteral("\""));
    position = std::min(at(end) == quote ? end + 1 : end, program.size());
}

/// @param from behind the beginning, or behind a value in the middle
void ScenarioSource::readTemplate(int from)
{
    const int begin = line;
    int end = from;
    for (; end < program.size() && at(end) != QLatin1Char('`'); ++end) {
        if (at(end) == QLatin1Char('\\')) {
            ++end;
        } else if (at(end) == QLatin1Char('$') && at(end + 1) == QLatin1Char('{')) {
            open.append({QLatin1Char('$'), line, {}, false});
            take(templateOpening);
            position = end + 2;
            return;
        }
        if (at(end) == QLatin1Char('\n'))
            ++line;
    }
    if (end >= program.size())
        complain(QStringLiteral("the text that begins with ` does not end"), begin);
    take(QStringLiteral("`"));
    position = std::min(end + 1, program.size());
}

void ScenarioSource::readRegularExpression()
{
    int end = position + 1;
    bool inClass = false;
    while (end < program.size() && !isLineEnd(at(end)) && (inClass || at(end) != QLatin1Char('/'))) {
        if (at(end) == QLatin1Char('['))
            inClass = true;
        else if (at(end) == QLatin1Char(']'))
            inClass = false;
        end += at(end) == QLatin1Char('\\') ? 2 : 1;
    }
    take(QStringLiteral("/"));
    position = std::min(at(end) == QLatin1Char('/') ? end + 1 : end, program.size());
    while (isPartOfWord(at(position)))
        ++position;
}

void ScenarioSource::readComment()
{
    const int begin = line;
    if (at(position + 1) == QLatin1Char('/')) {
        while (position < program.size() && !isLineEnd(at(position)))
            ++position;
        return;
    }
    const int end = program.indexOf(QLatin1String("*/"), position + 2);
    if (end < 0)
        complain(QStringLiteral("the comment that begins with /* does not end"), begin);
    const int behind = end < 0 ? program.size() : end + 2;
    for (; position < behind; ++position) {
        if (isLineEnd(at(position)) && !(at(position) == QLatin1Char('\r') && at(position + 1) == QLatin1Char('\n')))
            ++line;
    }
}

void ScenarioSource::openBracket(QChar opening)
{
    const bool isHead = opening == QLatin1Char('(') && isOneOf(previous, {"for", "while", "if", "with"});
    open.append({opening, line, isHead ? previous : QString(), false});
    const bool isWhile = isHead && previous == QLatin1String("while");
    take(opening);
    if (isWhile)
        marks.append({position, Mark::Turn});
}

void ScenarioSource::closeBracket(QChar closing)
{
    if (!open.isEmpty() && open.last().opening == QLatin1Char('$') && closing == QLatin1Char('}')) {
        open.removeLast();
        readTemplate(position + 1);
        return;
    }
    if (open.isEmpty())
        complain(QStringLiteral("this %1 closes nothing").arg(closing), line);
    else if (open.last().opening != counterpart(closing))
        complain(QStringLiteral("%1 comes before the %2 is closed").arg(closing).arg(unclosed()), line);
    const bool isHead = !open.isEmpty() && !open.last().keyword.isEmpty();
    if (!open.isEmpty())
        open.removeLast();
    take(closing);
    afterHead = isHead;
}

/// A semicolon: in the head of a "for" the first one comes before its condition.
void ScenarioSource::endOfPart()
{
    take(QStringLiteral(";"));
    if (open.isEmpty() || open.last().keyword != QLatin1String("for") || open.last().conditionSeen)
        return;
    open.last().conditionSeen = true;
    int next = position;
    while (next < program.size() && (at(next).isSpace() || isLineEnd(at(next))))
        ++next;
    marks.append({position, at(next) == QLatin1Char(';') ? Mark::EndlessTurn : Mark::Turn});
}

int ScenarioSource::skipBlanks(int index) const
{
    while (index < program.size() && at(index).isSpace() && !isLineEnd(at(index)))
        ++index;
    return index;
}

/// The first complaint counts: others follow from it.
void ScenarioSource::complain(const QString &text, int where)
{
    if (!complaint.isEmpty())
        return;
    complaint = text;
    complaintLine = where;
}
