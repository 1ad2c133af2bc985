#ifndef CONSOLE_H
#define CONSOLE_H

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// Output for people, UTF-8, out at once.
namespace Console
{
enum class Style {
    Plain,
    Heading,
    Request,
    Good,
    Bad,
    Faint,
};

enum class Colors {
    Auto, ///< on a terminal, unless the environment has NO_COLOR, or TERM=dumb
    Always,
    Never,
};

/// Never until set.
void setColors(Colors colors);

/// The text in a style, where colours are on.
QString styled(Style style, const QString &text);

void out(const QString &text);
void error(const QString &text);

/**
 * What is written to the standard output from now on goes to the standard error: where the output is a report, the story must not
 * stand in it.
 */
void divertToError();

/**
 * Whether all of the output has arrived. The system tells of some failures, a full disk among them, only when a file is closed, so this closes
 * the standard output.
 *
 * @param problem receives what was the matter
 */
bool close(QString &problem);

/**
 * Any text on one line, as it may be shown on a terminal: what is not seen but acts is spelled out, such as \x1b, \n and the marks
 * that turn the direction of writing (\u202e).
 *
 * A text that this makes longer than textLimit is cut, and says so: "abc… (10485760 characters)".
 */
QString printable(const QString &text);
/// JSON that says the same to a program, but does no harm where it is shown on a terminal: likewise spelled out.
QByteArray harmlessJson(const QByteArray &json);
/// Whether printable() spells the character out.
bool isUnseen(uint character);

/**
 * Breaks a text at blanks to fit the width. Its own line breaks count as blanks.
 *
 * @param indent columns of blanks before the first line
 * @param hanging columns of blanks before the further ones
 */
QString wrapped(const QString &given, int indent, int hanging);

/**
 * Columns that output keeps to: those that COLUMNS says, else those of the terminal, else 100; at least 40 and at most 200. Asked
 * anew each time, as a window may change.
 */
int width();
/// Characters of a foreign text that are shown.
constexpr int textLimit = 200;
/// What stands behind a text that was cut.
QString cutMark(const QString &whole);
} // namespace Console

#endif
