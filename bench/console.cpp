#include "console.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

namespace
{

bool colored = false;
std::FILE *output = stdout;
int writeError = 0; // errno of the first write that failed; 0 for none

const char *sequence(Console::Style style)
{
    switch (style) {
    case Console::Style::Plain:
        return "";
    case Console::Style::Heading:
        return "\033[1m";
    case Console::Style::Request:
        return "\033[36m";
    case Console::Style::Good:
        return "\033[32m";
    case Console::Style::Bad:
        return "\033[1;31m";
    case Console::Style::Faint:
        return "\033[2m";
    }
    return "";
}

QString spelledOut(uint character)
{
    switch (character) {
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    default:
        break;
    }
    if (character < 0x100)
        return QStringLiteral("\\x%1").arg(character, 2, 16, QLatin1Char('0'));
    if (character < 0x10000)
        return QStringLiteral("\\u%1").arg(character, 4, 16, QLatin1Char('0'));
    return QStringLiteral("\\U%1").arg(character, 8, 16, QLatin1Char('0'));
}

bool write(std::FILE *file, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    return std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), file) == std::size_t(bytes.size()) && std::fflush(file) == 0;
}

} // namespace

void Console::setColors(Colors colors)
{
    switch (colors) {
    case Colors::Auto:
        colored = isatty(fileno(output)) == 1 && qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb";
        break;
    case Colors::Always:
        colored = true;
        break;
    case Colors::Never:
        colored = false;
        break;
    }
}

QString Console::styled(Style style, const QString &text)
{
    if (!colored || style == Style::Plain)
        return text;
    return QLatin1String(sequence(style)) + text + QLatin1String("\033[0m");
}

void Console::out(const QString &text)
{
    if (!write(output, text) && writeError == 0)
        writeError = errno;
}

void Console::error(const QString &text)
{
    write(stderr, text);
}

void Console::divertToError()
{
    output = stderr;
}

bool Console::close(QString &problem)
{
    // As for a program that was started without one: what nobody asked for cannot be lost.
    constexpr int notOpen = EBADF;
    if (std::fclose(stdout) != 0 && writeError == 0 && errno != notOpen)
        writeError = errno;
    if (writeError == 0)
        return true;
    problem = qt_error_string(writeError);
    return false;
}

bool Console::isUnseen(uint character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

QString Console::printable(const QString &text)
{
    QString shown;
    const auto characters = text.leftRef(textLimit + 1).toUcs4();
    for (const uint character : characters) {
        const QString next = isUnseen(character) ? spelledOut(character) : QString::fromUcs4(&character, 1);
        if (shown.size() + next.size() > textLimit)
            return shown + cutMark(text);
        shown += next;
    }
    return shown;
}

QByteArray Console::harmlessJson(const QByteArray &json)
{
    QString result;
    const QString text = QString::fromUtf8(json);
    const auto characters = text.toUcs4();
    for (const uint character : characters) {
        const QString units = QString::fromUcs4(&character, 1);
        if (character == '\n' || !isUnseen(character)) {
            result += units;
            continue;
        }
        for (const QChar unit : units)
            result += QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
    }
    return result.toUtf8();
}

int Console::width()
{
    constexpr int narrowest = 40;
    constexpr int widest = 200;
    constexpr int usual = 100;
    bool isNumber = false;
    int columns = qEnvironmentVariableIntValue("COLUMNS", &isNumber);
    if (!isNumber || columns <= 0) {
        winsize size = {};
        columns = ioctl(fileno(output), TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
    }
    return std::clamp(columns, narrowest, widest);
}

QString Console::cutMark(const QString &whole)
{
    return QStringLiteral("\u2026 (%1 characters)").arg(whole.size());
}

QString Console::wrapped(const QString &given, int indent, int hanging)
{
    const int widest = width();
    QString result(indent, QLatin1Char(' '));
    int column = indent;
    bool lineBegun = false;
    QString text = given;
    const QStringList words = text.replace(QLatin1Char('\n'), QLatin1Char(' ')).split(QLatin1Char(' '));
    for (const QString &word : words) {
        if (lineBegun && column + 1 + word.size() > widest) {
            result += QLatin1Char('\n') + QString(hanging, QLatin1Char(' '));
            column = hanging;
            lineBegun = false;
        }
        if (lineBegun) {
            result += QLatin1Char(' ');
            ++column;
        }
        result += word;
        column += word.size();
        lineBegun = true;
    }
    return result;
}
