#ifndef LOGGING_H
#define LOGGING_H

#include <QtCore/QDebug>
#include <QtCore/QLoggingCategory>
#include <QtCore/QMessageLogger>

#include <atomic>
#include <tuple>

/*
 * The two forms of log line, both in Qt's category "default":
 *
 *   traceDebug() << value;     [DBG] THREAD SIGNATURE LINE -- value
 *   traceCritical() << value;  [ERR] THREAD SIGNATURE LINE -- value     (critical level)
 *   facadeInfo() << value;     [QT] [Audiocontrol] value
 *   facadeError() << value;    [QT] [Error] [Audiocontrol] line: LINE value
 *   facadeNote() << value;     [QT] value                     (one line goes without the facade's name, meant so)
 *
 * All but traceCritical() are at debug level, the facade's errors included. While their level is off the values are not even
 * evaluated. Use them in a named function, never in a lambda: the signature is part of the line.
 */

namespace logging
{

struct CodeLocation
{
    /// Not constexpr: a compiler that fills it at compile time may copy it from a table of pointers, each of which the loader has to relocate.
    CodeLocation(const char *sourceFile, int sourceLine, const char *signature)
        : file(sourceFile)
        , line(sourceLine)
        , function(signature)
    {
    }

    const char *file;
    int line;
    const char *function;
};

/// As it was found when it was asked for first. Null before that.
extern std::atomic<const QLoggingCategory *> knownCategory;

/// Asks Qt for the category.
bool isDebugEnabledInQt();

/**
 * False, too, at process exit once Qt has no categories any more: the destructors of static objects may still get here.
 *
 * To ask Qt for the category costs more than many an operation. It never moves, so while it says no, that is the answer; its memory, a part of
 * Qt's own, stays readable when it is gone. Only where it says yes, or is not known, Qt is asked.
 */
inline bool isDebugEnabled()
{
    const QLoggingCategory *const category = knownCategory.load(std::memory_order_relaxed);
    return Q_UNLIKELY(!category || category->isDebugEnabled()) && isDebugEnabledInQt();
}

bool isCriticalEnabled();

/// An item of each type is written by one function, which no line has a copy of: lines are many, and rare are those that are written.
template<typename Item>
Q_NEVER_INLINE void writeItem(QDebug &line, const Item &item)
{
    line << item;
}

enum class Form {
    TraceDebug,
    TraceCritical,
    FacadeInfo,
    FacadeError,
    FacadeNote,
};

/// One line with its beginning written. It goes to the handler when it is destroyed.
class Line
{
public:
    Line(Form form, const CodeLocation &at);
    ~Line();

    Line &operator<<(const char *text);
    template<typename Item>
    Line &operator<<(const Item &item)
    {
        writeItem(m_debug, item);
        return *this;
    }

private:
    Q_DISABLE_COPY(Line)

    QDebug m_debug;
};

/// The items of one line, kept by reference until the end of the full expression.
template<typename... Items>
auto message(const Items &...items)
{
    return std::forward_as_tuple(items...);
}

template<typename Message>
void write(Form form, const CodeLocation &at, const Message &message)
{
    Line line(form, at);
    std::apply([&line](const auto &...items) { (line << ... << items); }, message);
}

/// One facadeInfo() line at a place that the caller hands in.
template<typename... Items>
void logInfo(const CodeLocation &at, const Items &...items)
{
    if (isDebugEnabled())
        write(Form::FacadeInfo, at, message(items...));
}

/// One facadeError() line at a place that the caller hands in.
template<typename... Items>
void logError(const CodeLocation &at, const Items &...items)
{
    if (isDebugEnabled())
        write(Form::FacadeError, at, message(items...));
}

/// One traceDebug() line at a place that the caller hands in.
template<typename... Items>
void logTrace(const CodeLocation &at, const Items &...items)
{
    if (isDebugEnabled())
        write(Form::TraceDebug, at, message(items...));
}

/// One traceCritical() line at a place that the caller hands in.
template<typename... Items>
void logCritical(const CodeLocation &at, const Items &...items)
{
    if (isCriticalEnabled())
        write(Form::TraceCritical, at, message(items...));
}

/// Writes the one line or the other for the result of a platform call, and gives the result on.
template<typename Success, typename Failure>
int logOutcome(const CodeLocation &at, int result, const Success &success, const Failure &failure)
{
    if (isDebugEnabled()) {
        if (result == 0)
            write(Form::FacadeInfo, at, success);
        else
            write(Form::FacadeError, at, failure);
    }
    return result;
}

} // namespace logging

#define QZAUDIO_HERE (logging::CodeLocation{__FILE__, __LINE__, Q_FUNC_INFO})

#define QZAUDIO_LOG_LINE(levelIsEnabled, form)                                           \
    for (bool qzaudioLogs = logging::levelIsEnabled(); qzaudioLogs; qzaudioLogs = false) \
    logging::Line(logging::Form::form, QZAUDIO_HERE)

#define traceDebug() QZAUDIO_LOG_LINE(isDebugEnabled, TraceDebug)
#define traceCritical() QZAUDIO_LOG_LINE(isCriticalEnabled, TraceCritical)
#define facadeInfo() QZAUDIO_LOG_LINE(isDebugEnabled, FacadeInfo)
#define facadeError() QZAUDIO_LOG_LINE(isDebugEnabled, FacadeError)
#define facadeNote() QZAUDIO_LOG_LINE(isDebugEnabled, FacadeNote)

#endif
