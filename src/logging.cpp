#include "logging.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace
{

QDebug open(logging::Form form, const logging::CodeLocation &at)
{
    const QMessageLogger logger(at.file, at.line, at.function);
    return form == logging::Form::TraceCritical ? logger.critical() : logger.debug();
}

} // namespace

std::atomic<const QLoggingCategory *> logging::knownCategory{nullptr};

bool logging::isDebugEnabledInQt()
{
    const QLoggingCategory *const category = QLoggingCategory::defaultCategory();
    knownCategory.store(category, std::memory_order_relaxed);
    return category && category->isDebugEnabled();
}

bool logging::isCriticalEnabled()
{
    const QLoggingCategory *const category = QLoggingCategory::defaultCategory();
    return category && category->isCriticalEnabled();
}

logging::Line::Line(Form form, const CodeLocation &at)
    : m_debug(open(form, at))
{
    switch (form) {
    case Form::TraceDebug:
    case Form::TraceCritical:
        *this << (form == Form::TraceDebug ? "[DBG]" : "[ERR]") << ::syscall(SYS_gettid) << at.function << at.line << "--";
        break;
    case Form::FacadeInfo:
        *this << "[QT]"
              << "[Audiocontrol]";
        break;
    case Form::FacadeError:
        *this << "[QT]"
              << "[Error]"
              << "[Audiocontrol]"
              << "line:" << at.line;
        break;
    case Form::FacadeNote:
        *this << "[QT]";
        break;
    }
}

logging::Line::~Line() = default;

logging::Line &logging::Line::operator<<(const char *text)
{
    m_debug << text;
    return *this;
}
