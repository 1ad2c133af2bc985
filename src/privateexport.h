#ifndef PRIVATEEXPORT_H
#define PRIVATEEXPORT_H

#include <QtCore/qglobal.h>

/// Marks private classes that the tests reach into: exported where the build has tests, hidden in what ships.
#if defined(QZAUDIO_EXPORT_PRIVATE_CLASSES)
#define QZAUDIO_PRIVATE_EXPORT Q_DECL_EXPORT
#else
#define QZAUDIO_PRIVATE_EXPORT
#endif

#endif
