#ifndef QZAUDIO_EXPORT_H
#define QZAUDIO_EXPORT_H

#include <QtCore/qglobal.h>

/**
 * Marks what clients of libqzaudio.so.1 may link against. Everything without the mark is hidden.
 *
 * The build of the library defines QZAUDIO_LIBRARY; a client defines nothing.
 */
#if defined(QZAUDIO_LIBRARY)
#define QZAUDIO_EXPORT Q_DECL_EXPORT
#else
#define QZAUDIO_EXPORT Q_DECL_IMPORT
#endif

#endif
