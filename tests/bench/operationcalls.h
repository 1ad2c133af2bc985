#ifndef OPERATIONCALLS_H
#define OPERATIONCALLS_H

#include "scriptoperation.h"

#include <platform.h>

#include <qzaudio/audiocontrol.h>
#include <qzaudio/audiodatabase.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <functional>
#include <tuple>

class ScriptType;

/// What the four objects that scripts see stand for. A call needs the one that it is made on, and no other.
using Unit = std::tuple<audio::AudioControl *, ZelAudioManager *, audio::AudioDataBase *, simulator::Platform *>;

/// One operation as a script calls it, and the same call as a client in C++ writes it.
struct OperationCall
{
    const ScriptType *type;
    QString signature; ///< "setVolume(type, volume, save)"
    QString arguments; ///< "2, 17, true"
    ScriptKind kind;
    std::function<QVariant(Unit &)> call; ///< what it gives as a script has to get it: a value, what is written by name, or nothing

    /// "setVolume"
    QString name() const;
    /// "AudioPolicy.setVolume(2, 17, true)"
    QString script() const;
};

/// Every operation of AudioControl, AudioPolicy, AudioSettings and Platform.
QVector<OperationCall> operationCalls();

#endif
