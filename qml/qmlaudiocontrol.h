#ifndef QMLAUDIOCONTROL_H
#define QMLAUDIOCONTROL_H

#include "scriptobject.h"

#include <QtCore/QObject>

/**
 * The facade for QML and JavaScript: the singleton AudioControl of the module QzAudio.
 *
 * Every public operation of audio::AudioControl under its own name. Ranges, results and traps are those of the public header; arguments that
 * an operation's type cannot hold throw a JavaScript error, and nothing is called.
 *
 * Use it from the engine's thread, which must be the one that the policy manager lives on.
 */
class QmlAudioControl : public ScriptObject<QmlAudioControl, QObject>
{
public:
    using ScriptObject::ScriptObject;

    static const ScriptType &scriptType();
};

#endif
