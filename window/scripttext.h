#ifndef SCRIPTTEXT_H
#define SCRIPTTEXT_H

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QString>

/// A text as it stands in a line of a scenario, with quotation marks: "S+FilePlayer"
inline QString scriptText(const QString &text)
{
    const QString list = QString::fromUtf8(QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact));
    // These two end a line of a script, but not one of JSON.
    return list.mid(1, list.size() - 2)
        .replace(QChar(QChar::LineSeparator), QStringLiteral("\\u2028"))
        .replace(QChar(QChar::ParagraphSeparator), QStringLiteral("\\u2029"));
}

#endif
