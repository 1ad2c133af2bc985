/*
 * Tells the thread sanitizer what QMutex does. Qt itself is not built for the sanitizer, which therefore sees neither the lock
 * that is taken inside Qt nor the order that it makes, and would report races where there are none.
 *
 * Takes the place of Qt's two functions in the whole process; compiled into tests of thread sanitizer builds only.
 */

#include <QtCore/QMutex>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

namespace
{

using Operation = void (*)(QMutex *);

Operation operationOfQt(const char *symbol)
{
    return reinterpret_cast<Operation>(::dlsym(RTLD_NEXT, symbol));
}

} // namespace

void QMutex::lock()
{
    static const Operation lockOfQt = operationOfQt("_ZN6QMutex4lockEv");
    lockOfQt(this);
    __tsan_acquire(this);
}

void QMutex::unlock() noexcept
{
    static const Operation unlockOfQt = operationOfQt("_ZN6QMutex6unlockEv");
    __tsan_release(this);
    unlockOfQt(this);
}
