#ifndef LOGPATTERN_H
#define LOGPATTERN_H

#include "logframe.h"

#include <QtCore/QString>

#include <string>
#include <vector>

/// A form of lines in the words of QT_MESSAGE_PATTERN: "%{time yyyy-MM-dd hh:mm:ss.zzz} %{appname}[%{pid}] %{message}".
class LogPattern
{
public:
    LogPattern() = default;

    /// @return what is wrong with the pattern; empty when it is understood
    QString set(const QString &pattern);
    bool isSet() const { return !m_forms.empty(); }

    /// As LogForms::Recognise.
    bool matches(std::string_view line, std::size_t mark, LogFrame &frame) const;

private:
    enum class Kind {
        Literal,
        Ignored, ///< any text
        Program,
        Process,
        Uptime,
        Date, ///< in Qt's default format
        Time, ///< in a format of its own
    };

    struct Part
    {
        Kind kind;
        std::string text; ///< of a literal
        QString format; ///< of a time
    };
    using Parts = std::vector<Part>;

    /// What the pattern writes of a line of one type: "debug", "critical".
    static QString partsOf(const QString &pattern, const QString &type, Parts &parts);
    static QString addPlaceholder(const QString &name, Parts &parts);
    static bool matches(const Parts &parts, std::string_view text, LogFrame &frame);
    static bool take(const Part &part, std::string_view text, LogFrame &frame);

    std::vector<Parts> m_forms; // for each type of line
};

#endif
