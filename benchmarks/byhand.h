#ifndef BYHAND_H
#define BYHAND_H

#include <qzaudio/audiocontrol.h>

#include <QtCore/QByteArray>
#include <QtCore/QDebug>

#include <sys/syscall.h>
#include <unistd.h>

/*
 * The log lines of a floor: as they would be written by hand in the one place that needs them.
 *
 * The texts are the library's, but for the number of the line: the signature is its own, since a longer one costs more.
 */

#define BY_HAND_TRACE(signature) qDebug() << "[DBG]" << ::syscall(SYS_gettid) << (signature) << __LINE__ << "--"
#define BY_HAND_INFO() \
    qDebug() << "[QT]" \
             << "[Audiocontrol]"

namespace byhand
{

/// One setTrackVolume() on an object of its own, with its three lines.
void setStreamVolume(audio::AudioControl::AudioTag tag, const QByteArray &track, const char *name, const QByteArray &source, quint8 volume);

} // namespace byhand

#endif
