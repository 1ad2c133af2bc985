#ifndef QZAUDIOPLUGIN_H
#define QZAUDIOPLUGIN_H

#include <QtQml/QQmlExtensionPlugin>

/// The QML module QzAudio: AudioControl, AudioSettings, AudioPolicy and AudioFocus.
class QzAudioPlugin : public QQmlExtensionPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlExtensionInterface_iid)

public:
    /// Nothing of the audio is started here: each singleton makes what it needs when it is first used.
    void registerTypes(const char *uri) override;
};

#endif
