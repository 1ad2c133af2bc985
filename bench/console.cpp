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
