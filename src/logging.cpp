#include "logging.h"

#include <QtCore/QLoggingCategory>

#include <sys/syscall.h>
#include <unistd.h>

namespace
{

QDebug trace(QDebug line, const char *level, const logging::CodeLocation &at)
{
    return line << level << ::syscall(SYS_gettid) << at.function << at.line << "--";
}

QMessageLogger logger(const logging::CodeLocation &at)
{
    return {at.file, at.line, at.function};
}

} // namespace

bool logging::isDebugEnabled()
{
    const QLoggingCategory *const category = QLoggingCategory::defaultCategory();
    return category && category->isDebugEnabled();
}

bool logging::isCriticalEnabled()
{
    const QLoggingCategory *const category = QLoggingCategory::defaultCategory();
    return category && category->isCriticalEnabled();
}

QDebug logging::openTraceDebug(const CodeLocation &at)
{
    return trace(logger(at).debug(), "[DBG]", at);
}

QDebug logging::openTraceCritical(const CodeLocation &at)
{
    return trace(logger(at).critical(), "[ERR]", at);
}

QDebug logging::openFacadeInfo(const CodeLocation &at)
{
    return logger(at).debug() << "[QT]"
                              << "[Audiocontrol]";
}

QDebug logging::openFacadeError(const CodeLocation &at)
{
    return logger(at).debug() << "[QT]"
                              << "[Error]"
                              << "[Audiocontrol]"
                              << "line:" << at.line;
}

QDebug logging::openFacadeNote(const CodeLocation &at)
{
    return logger(at).debug() << "[QT]";
}
