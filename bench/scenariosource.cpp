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
    : m_program(text)
{
    if (m_program.startsWith(QLatin1String("#!")))
        m_program.replace(0, 2, QStringLiteral("//"));
    while (m_position < m_program.size())
        readToken();
}

QStringList ScenarioSource::lines() const
{
    return m_program.split(QRegularExpression(QStringLiteral("\r\n|[\r\n\u2028\u2029]")));
}

QString ScenarioSource::marked(const QString &thrownMark) const
{
    QString result;
    int copied = 0;
    for (const auto &[where, mark] : m_marks) {
        result += m_program.midRef(copied, where - copied);
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
    return result + m_program.midRef(copied);
}

QString ScenarioSource::unclosed() const
{
    if (m_open.isEmpty())
        return {};
    return QStringLiteral("%1 of line %2").arg(m_open.last().opening).arg(m_open.last().line);
}

void ScenarioSource::readToken()
{
    const QChar character = at(m_position);
    if (isLineEnd(character)) {
        m_position += character == QLatin1Char('\r') && at(m_position + 1) == QLatin1Char('\n') ? 2 : 1;
        ++m_line;
        return;
    }
    if (character.isSpace() || character == QChar(QChar::ByteOrderMark)) {
        ++m_position;
        return;
    }
    if (character == QLatin1Char('/') && (at(m_position + 1) == QLatin1Char('/') || at(m_position + 1) == QLatin1Char('*'))) {
        readComment();
        return;
    }
    m_lastTokenLine = m_line;
    switch (character.unicode()) {
    case '"':
    case '\'':
        readText(character);
        return;
    case '`':
        readTemplate(m_position + 1);
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
    if (m_previous.isEmpty() || m_afterHead)
        return true;
    if (isPartOfWord(m_previous.at(0)))
        return isOneOf(m_previous, {"return", "typeof", "case", "in", "of", "delete", "void", "throw", "new", "else", "do", "instanceof", "yield"});
    return !isOneOf(m_previous, {")", "]", "}", "\"", "`", "/"});
}

/// Notes a token and goes on behind it.
void ScenarioSource::take(const QString &token)
{
    m_previous = token;
    m_afterHead = false;
    m_position += token.size();
}

void ScenarioSource::readWord()
{
    int end = m_position;
    while (end < m_program.size() && isPartOfWord(at(end)))
        ++end;
    const QString word = m_program.mid(m_position, end - m_position);
    const bool isMember = m_previous == QLatin1String(".");
    take(word);
    if (isMember)
        m_previous = QStringLiteral("name");
    else if (word == QLatin1String("throw") && !isLineEnd(at(skipBlanks(m_position))))
        m_marks.append({m_position, Mark::Throw});
}

void ScenarioSource::readText(QChar quote)
{
    const auto isNewline = [](QChar character) { return character == QLatin1Char('\n') || character == QLatin1Char('\r'); };
    const int begin = m_line;
    int end = m_position + 1;
    for (; end < m_program.size() && at(end) != quote && !isNewline(at(end)); ++end) {
        if (at(end) != QLatin1Char('\\'))
            continue;
        // A backslash at the end of a line continues the text on the next one.
        ++end;
        if (at(end) == QLatin1Char('\r') && at(end + 1) == QLatin1Char('\n'))
            ++end;
        if (isNewline(at(end)))
            ++m_line;
    }
    if (at(end) != quote)
        complain(QStringLiteral("the text that begins with %1 does not end on its line").arg(quote), begin);
    take(QStringLiteral("\""));
    m_position = std::min(at(end) == quote ? end + 1 : end, m_program.size());
}

/// @param from behind the beginning, or behind a value in the middle
void ScenarioSource::readTemplate(int from)
{
    const int begin = m_line;
    int end = from;
    for (; end < m_program.size() && at(end) != QLatin1Char('`'); ++end) {
        if (at(end) == QLatin1Char('\\')) {
            ++end;
        } else if (at(end) == QLatin1Char('$') && at(end + 1) == QLatin1Char('{')) {
            m_open.append({QLatin1Char('$'), m_line, {}, false});
            take(templateOpening);
            m_position = end + 2;
            return;
        }
        if (at(end) == QLatin1Char('\n'))
            ++m_line;
    }
    if (end >= m_program.size())
        complain(QStringLiteral("the text that begins with ` does not end"), begin);
    take(QStringLiteral("`"));
    m_position = std::min(end + 1, m_program.size());
}

void ScenarioSource::readRegularExpression()
{
    int end = m_position + 1;
    bool inClass = false;
    while (end < m_program.size() && !isLineEnd(at(end)) && (inClass || at(end) != QLatin1Char('/'))) {
        if (at(end) == QLatin1Char('['))
            inClass = true;
        else if (at(end) == QLatin1Char(']'))
            inClass = false;
        end += at(end) == QLatin1Char('\\') ? 2 : 1;
    }
    take(QStringLiteral("/"));
    m_position = std::min(at(end) == QLatin1Char('/') ? end + 1 : end, m_program.size());
    while (isPartOfWord(at(m_position)))
        ++m_position;
}

void ScenarioSource::readComment()
{
    const int begin = m_line;
    if (at(m_position + 1) == QLatin1Char('/')) {
        while (m_position < m_program.size() && !isLineEnd(at(m_position)))
            ++m_position;
        return;
    }
    const int end = m_program.indexOf(QLatin1String("*/"), m_position + 2);
    if (end < 0)
        complain(QStringLiteral("the comment that begins with /* does not end"), begin);
    const int behind = end < 0 ? m_program.size() : end + 2;
    for (; m_position < behind; ++m_position) {
        if (isLineEnd(at(m_position)) && !(at(m_position) == QLatin1Char('\r') && at(m_position + 1) == QLatin1Char('\n')))
            ++m_line;
    }
}

void ScenarioSource::openBracket(QChar opening)
{
    const bool isHead = opening == QLatin1Char('(') && isOneOf(m_previous, {"for", "while", "if", "with"});
    m_open.append({opening, m_line, isHead ? m_previous : QString(), false});
    const bool isWhile = isHead && m_previous == QLatin1String("while");
    take(opening);
    if (isWhile)
        m_marks.append({m_position, Mark::Turn});
}

void ScenarioSource::closeBracket(QChar closing)
{
    if (!m_open.isEmpty() && m_open.last().opening == QLatin1Char('$') && closing == QLatin1Char('}')) {
        m_open.removeLast();
        readTemplate(m_position + 1);
        return;
    }
    if (m_open.isEmpty())
        complain(QStringLiteral("this %1 closes nothing").arg(closing), m_line);
    else if (m_open.last().opening != counterpart(closing))
        complain(QStringLiteral("%1 comes before the %2 is closed").arg(closing).arg(unclosed()), m_line);
    const bool isHead = !m_open.isEmpty() && !m_open.last().keyword.isEmpty();
    if (!m_open.isEmpty())
        m_open.removeLast();
    take(closing);
    m_afterHead = isHead;
}

/// A semicolon: in the head of a "for" the first one comes before its condition.
void ScenarioSource::endOfPart()
{
    take(QStringLiteral(";"));
    if (m_open.isEmpty() || m_open.last().keyword != QLatin1String("for") || m_open.last().conditionSeen)
        return;
    m_open.last().conditionSeen = true;
    int next = m_position;
    while (next < m_program.size() && (at(next).isSpace() || isLineEnd(at(next))))
        ++next;
    m_marks.append({m_position, at(next) == QLatin1Char(';') ? Mark::EndlessTurn : Mark::Turn});
}

int ScenarioSource::skipBlanks(int index) const
{
    while (index < m_program.size() && at(index).isSpace() && !isLineEnd(at(index)))
        ++index;
    return index;
}

/// The first complaint counts: others follow from it.
void ScenarioSource::complain(const QString &text, int where)
{
    if (!m_complaint.isEmpty())
        return;
    m_complaint = text;
    m_complaintLine = where;
}
