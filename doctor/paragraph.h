#ifndef PARAGRAPH_H
#define PARAGRAPH_H

#include <QtCore/QString>
#include <QtCore/QStringList>

/// Text that fits a terminal.
namespace Paragraph
{
/// In lines of at most @p columns characters, where words allow it; 0: in one line.
QStringList folded(const QString &text, int columns);

/**
 * A head with a text to its right, of which further lines begin below the first one's begin, at @p indentation. Where that would leave little room,
 * or too little for one of its words, the text stands below the head.
 */
QString withHead(const QString &head, const QString &text, int indentation, int columns);
} // namespace Paragraph

#endif
