#ifndef QMLAUDIOSETTINGS_H
#define QMLAUDIOSETTINGS_H

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtQml/QJSValue>

#include <memory>

namespace audio
{
class AudioDataBase;
}

/**
 * The settings on flash for QML and JavaScript: the singleton AudioSettings of the module QzAudio.
 *
 * The readers of audio::AudioDataBase under their own names. They show what the settings file holds at the moment of the call,
 * whichever process wrote it; a volume that was set without saving shows in AudioPolicy.volumes only. No setting is
 * changed, but the store that reads removes what dead writers left and keeps a damaged file beside, as each new one does. Nothing is done before the
 * first call.
 *
 * Use it from the engine's thread.
 */
class QmlAudioSettings : public QObject
{
    Q_OBJECT

public:
    explicit QmlAudioSettings(QObject *parent = nullptr);
    ~QmlAudioSettings() override;

    /// The stored value of group/key, or the default given.
    Q_INVOKABLE QVariant data(const QJSValue &group, const QJSValue &key, const QJSValue &defaultValue);
    Q_INVOKABLE int getVolume(const QJSValue &type);
    Q_INVOKABLE int eqType();
    Q_INVOKABLE bool loudNess();
    Q_INVOKABLE bool micType();
    Q_INVOKABLE int micInputValue();
    Q_INVOKABLE int getCustomEQ(const QJSValue &index);
    Q_INVOKABLE double getAutoMicGain();
    Q_INVOKABLE int getHandsfreeDelay();
    /// The eight equalizer presets: [{type, tag, gains}, ...].
    Q_INVOKABLE QVariantList getEqBaseData();
    Q_INVOKABLE int getCurrentIndexInItem();
    Q_INVOKABLE int getCurrentIndexInDefault(const QJSValue &type);
    Q_INVOKABLE int getNextEqType(const QJSValue &up);
    /// {type, param}
    Q_INVOKABLE QVariantMap getAudioStatusInfo(const QJSValue &status);
    Q_INVOKABLE QString getStatusToSpName(const QJSValue &status);
    /// {type, spName}
    Q_INVOKABLE QVariantMap getChannelInfo(const QJSValue &channel);
    /// {name: volume, ...}
    Q_INVOKABLE QVariantMap getGroupDefaultData();

private:
    Q_DISABLE_COPY(QmlAudioSettings)

    /// A store that has read the file as it is now.
    audio::AudioDataBase &store();

    std::unique_ptr<audio::AudioDataBase> m_dataBase;
    QByteArray m_stamp; // of the file that dataBase has read
};

#endif
