#ifndef QMLAUDIOSETTINGS_H
#define QMLAUDIOSETTINGS_H

#include "scriptobject.h"

#include <qzaudio/audiodatabase.h>

#include <QtCore/QByteArray>
#include <QtCore/QObject>

#include <memory>

/**
 * The settings on flash for QML and JavaScript: the singleton AudioSettings of the module QzAudio.
 *
 * The readers of audio::AudioDataBase under their own names. They show what the settings file holds at the moment of the call,
 * whichever process wrote it; a volume that was set without saving shows in AudioPolicy.volumes only. Nothing is saved, but making a
 * store sweeps what an interrupted save left beside the file. Nothing is read before the first call.
 *
 * Use it from the engine's thread.
 */
class QmlAudioSettings : public ScriptObject<QmlAudioSettings, QObject>
{
public:
    using ScriptObject::ScriptObject;

    static const ScriptType &scriptType();

    /// A store that has read the file as it is now.
    audio::AudioDataBase &store();

private:
    std::unique_ptr<audio::AudioDataBase> m_dataBase;
    QByteArray m_stamp; // of the file that it has read
};

#endif
