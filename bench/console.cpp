#include "console.h"

#include <QtCore/QStringList>

#include <cstdio>
#include <unistd.h>

namespace
{

bool colored = false;

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

void write(std::FILE *file, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), file);
    std::fflush(file);
}

} // namespace

void Console::setColors(Colors colors)
{
    switch (colors) {
    case Colors::Auto:
        colored = isatty(STDOUT_FILENO) == 1 && qEnvironmentVariableIsEmpty("NO_COLOR");
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
    write(stdout, text);
}

void Console::error(const QString &text)
{
    write(stderr, text);
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

QString Console::cutMark(const QString &whole)
{
    return QStringLiteral("\u2026 (%1 characters)").arg(whole.size());
}

QString Console::wrapped(const QString &given, int indent, int hanging)
{
    QString result(indent, QLatin1Char(' '));
    int column = indent;
    bool lineBegun = false;
    QString text = given;
    const QStringList words = text.replace(QLatin1Char('\n'), QLatin1Char(' ')).split(QLatin1Char(' '));
    for (const QString &word : words) {
        if (lineBegun && column + 1 + word.size() > width) {
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
