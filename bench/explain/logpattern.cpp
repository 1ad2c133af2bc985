#include "logpattern.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>

#include <algorithm>

using LogTime::Reader;

namespace
{

/// Fields of a time whose text is as long as they are. Others end where the next part of the pattern begins.
bool hasFixedLength(const QString &format)
{
    QString rest = format;
    for (const char *const field : {"yyyy", "yy", "MMM", "MM", "ddd", "dd", "HH", "hh", "mm", "ss", "zzz"})
        rest.remove(QLatin1String(field));
    return std::none_of(rest.cbegin(), rest.cend(), [](QChar character) { return character.isLetter() && character != QLatin1Char('T'); });
}

std::optional<LogTime::Moment> timeOf(std::string_view text, const QString &format)
{
    const bool hasYear = format.contains(QLatin1String("yy"));
    const bool hasDay = hasYear || format.contains(QLatin1Char('d'));
    // A leap year, so that each day exists.
    const QString written = QString::fromUtf8(text.data(), int(text.size()));
    const QDateTime time = QLocale::c().toDateTime(hasYear ? written : QStringLiteral("1972 ") + written, hasYear ? format : QStringLiteral("yyyy ") + format);
    if (!time.isValid())
        return {};
    using LogTime::Clock;
    const QDateTime utc(time.date(), time.time(), Qt::UTC);
    const qint64 milliseconds = hasDay ? utc.toMSecsSinceEpoch() : qint64(time.time().msecsSinceStartOfDay());
    return LogTime::Moment{hasYear ? Clock::Calendar : hasDay ? Clock::Yearless : Clock::Daytime, milliseconds};
}

} // namespace

QString LogPattern::set(const QString &pattern)
{
    m_forms.clear();
    if (!pattern.contains(QLatin1String("%{message}")))
        return QStringLiteral("it has no %{message}");
    for (const char *const type : {"debug", "critical"}) {
        Parts parts;
        QString problem = partsOf(pattern, QLatin1String(type), parts);
        if (!problem.isEmpty()) {
            m_forms.clear();
            return problem;
        }
        m_forms.push_back(parts);
    }
    return {};
}

QString LogPattern::partsOf(const QString &pattern, const QString &type, Parts &parts)
{
    bool isWritten = true;
    int at = 0;
    while (at < pattern.size()) {
        const int begin = pattern.indexOf(QLatin1String("%{"), at);
        const QString literal = pattern.mid(at, begin < 0 ? -1 : begin - at);
        if (isWritten && !literal.isEmpty())
            parts.push_back({Kind::Literal, literal.toStdString(), {}});
        if (begin < 0)
            break;
        const int end = pattern.indexOf(QLatin1Char('}'), begin);
        if (end < 0)
            return QStringLiteral("%{ has no }");
        const QString name = pattern.mid(begin + 2, end - begin - 2);
        at = end + 1;
        if (name == QLatin1String("endif")) {
            isWritten = true;
        } else if (name.startsWith(QLatin1String("if-"))) {
            isWritten = name == QLatin1String("if-") + type;
        } else if (name == QLatin1String("message")) {
            break;
        } else if (isWritten) {
            QString problem = name == QLatin1String("type") ? QString() : addPlaceholder(name, parts);
            if (!problem.isEmpty())
                return problem;
            if (name == QLatin1String("type"))
                parts.push_back({Kind::Literal, type.toStdString(), {}});
        }
    }
    return {};
}

QString LogPattern::addPlaceholder(const QString &name, Parts &parts)
{
    struct Placeholder
    {
        const char *name;
        Kind kind;
    };
    constexpr Placeholder placeholders[] = {
        {"appname", Kind::Program},
        {"pid", Kind::Process},
        {"category", Kind::Ignored},
        {"file", Kind::Ignored},
        {"line", Kind::Ignored},
        {"function", Kind::Ignored},
        {"threadid", Kind::Ignored},
        {"qthreadptr", Kind::Ignored},
        {"time", Kind::Date},
        {"time process", Kind::Uptime},
        {"time boot", Kind::Uptime},
    };
    for (const Placeholder &placeholder : placeholders) {
        if (name == QLatin1String(placeholder.name)) {
            parts.push_back({placeholder.kind, {}, {}});
            return {};
        }
    }
    if (name.startsWith(QLatin1String("backtrace"))) {
        parts.push_back({Kind::Ignored, {}, {}});
        return {};
    }
    if (!name.startsWith(QLatin1String("time ")))
        return QStringLiteral("%{%1} is not known").arg(name);
    parts.push_back({Kind::Time, {}, name.mid(int(sizeof "time"))});
    return {};
}

bool LogPattern::matches(std::string_view line, std::size_t mark, LogFrame &frame) const
{
    const auto matchesForm = [&](const Parts &parts) { return matches(parts, line.substr(0, mark), frame); };
    if (std::none_of(m_forms.cbegin(), m_forms.cend(), matchesForm))
        return false;
    frame.text = line.substr(mark);
    return true;
}

bool LogPattern::matches(const Parts &parts, std::string_view text, LogFrame &frame)
{
    for (auto part = parts.cbegin(); part != parts.cend(); ++part) {
        std::size_t size = 0;
        if (part->kind == Kind::Literal) {
            size = part->text.size();
            if (text.substr(0, size) != part->text)
                return false;
        } else if (part->kind == Kind::Time && hasFixedLength(part->format)) {
            size = std::size_t(part->format.size());
        } else {
            const auto next = std::next(part);
            const bool isBeforeLiteral = next != parts.cend() && next->kind == Kind::Literal;
            size = isBeforeLiteral ? text.find(next->text) : text.size();
        }
        if (size > text.size() || (part->kind != Kind::Literal && !take(*part, text.substr(0, size), frame)))
            return false;
        text.remove_prefix(size);
    }
    return text.empty();
}

/// A part's text; false where it is none of that kind.
bool LogPattern::take(const Part &part, std::string_view text, LogFrame &frame)
{
    switch (part.kind) {
    case Kind::Literal:
    case Kind::Ignored:
        return true;
    case Kind::Program:
        frame.program = text;
        return true;
    case Kind::Process:
        frame.process = LogTime::number(text).value_or(LogFrame::unknown);
        return frame.process != LogFrame::unknown;
    case Kind::Uptime:
    case Kind::Date:
    case Kind::Time: {
        Reader reader(text);
        reader.skipBlanks();
        const auto time = part.kind == Kind::Uptime ? reader.seconds() : part.kind == Kind::Date ? reader.calendar() : timeOf(text, part.format);
        frame.time = time.value_or(LogTime::Moment());
        return time.has_value();
    }
    }
    return false;
}
