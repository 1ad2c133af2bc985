#include "loadedfile.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <dlfcn.h>

QString fileOfCode(const void *address)
{
    Dl_info found = {};
    Dl_info own = {};
    if (::dladdr(address, &found) == 0 || ::dladdr(reinterpret_cast<const void *>(&fileOfCode), &own) == 0 || found.dli_fbase == own.dli_fbase)
        return {};
    return QFileInfo(QFile::decodeName(found.dli_fname)).canonicalFilePath();
}
