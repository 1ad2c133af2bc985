#include "qmlaudiosettings.h"

#include "scriptcall.h"
#include "scriptvalues.h"
#include "settingsfile.h"

#include <qzaudio/audiodatabase.h>

using audio::AudioDataBase;

QmlAudioSettings::QmlAudioSettings(QObject *parent)
    : QObject(parent)
{
}

QmlAudioSettings::~QmlAudioSettings() = default;

AudioDataBase &QmlAudioSettings::store()
{
    // A store keeps what it read when it was made, so another file asks for another store.
    const QByteArray current = SettingsFile::stamp();
    if (!m_dataBase || current != m_stamp) {
        m_dataBase = std::make_unique<AudioDataBase>();
        m_stamp = current;
    }
    return *m_dataBase;
}

QVariant QmlAudioSettings::data(const QJSValue &group, const QJSValue &key, const QJSValue &defaultValue)
{
    ScriptArguments arguments(this);
    const auto groupName = ScriptCall::read<QString>(arguments, {"group", group});
    const auto keyName = ScriptCall::read<QString>(arguments, {"key", key});
    return arguments.failed() ? QVariant() : store().data(groupName, keyName, defaultValue.toVariant());
}

int QmlAudioSettings::getVolume(const QJSValue &type)
{
    ScriptArguments arguments(this);
    const auto volumeType = ScriptCall::read<ZelAudioType>(arguments, {"type", type});
    return arguments.failed() ? 0 : store().getVolume(volumeType);
}

int QmlAudioSettings::eqType()
{
    return store().eqType();
}

bool QmlAudioSettings::loudNess()
{
    return store().loudNess();
}

bool QmlAudioSettings::micType()
{
    return store().micType();
}

int QmlAudioSettings::micInputValue()
{
    return store().micInputValue();
}

int QmlAudioSettings::getCustomEQ(const QJSValue &index)
{
    ScriptArguments arguments(this);
    const auto band = ScriptCall::read<int>(arguments, {"index", index});
    return arguments.failed() ? 0 : store().getCustomEQ(band);
}

double QmlAudioSettings::getAutoMicGain()
{
    return double(store().getAutoMicGain());
}

int QmlAudioSettings::getHandsfreeDelay()
{
    return store().getHandsfreeDelay();
}

QVariantList QmlAudioSettings::getEqBaseData()
{
    return ScriptValues::equalizerPresets(store().getEqBaseData());
}

int QmlAudioSettings::getCurrentIndexInItem()
{
    return store().getCurrentIndexInItem();
}

int QmlAudioSettings::getCurrentIndexInDefault(const QJSValue &type)
{
    ScriptArguments arguments(this);
    const auto equalizerType = ScriptCall::read<int>(arguments, {"type", type});
    return arguments.failed() ? 0 : store().getCurrentIndexInDefault(equalizerType);
}

int QmlAudioSettings::getNextEqType(const QJSValue &up)
{
    ScriptArguments arguments(this);
    const auto goUp = ScriptCall::read<bool>(arguments, {"up", up});
    return arguments.failed() ? 0 : store().getNextEqType(goUp);
}

QVariantMap QmlAudioSettings::getAudioStatusInfo(const QJSValue &status)
{
    ScriptArguments arguments(this);
    const auto audioStatus = ScriptCall::read<AudioStatus>(arguments, {"status", status});
    if (arguments.failed())
        return {};
    const ZelAudioInfo info = store().getAudioStatusInfo(audioStatus);
    return {{QStringLiteral("type"), int(info.type)}, {QStringLiteral("param"), info.param}};
}

QString QmlAudioSettings::getStatusToSpName(const QJSValue &status)
{
    ScriptArguments arguments(this);
    const auto audioStatus = ScriptCall::read<AudioStatus>(arguments, {"status", status});
    return arguments.failed() ? QString() : store().getStatusToSpName(audioStatus);
}

QVariantMap QmlAudioSettings::getChannelInfo(const QJSValue &channel)
{
    ScriptArguments arguments(this);
    const auto audioChannel = ScriptCall::read<AudioChannel>(arguments, {"channel", channel});
    if (arguments.failed())
        return {};
    const ZelAudioAChannelInfo info = store().getChannelInfo(audioChannel);
    return {{QStringLiteral("type"), int(info.type)}, {QStringLiteral("spName"), info.spName}};
}

QVariantMap QmlAudioSettings::getGroupDefaultData()
{
    QHash<QString, uchar> volumes;
    store().getGroupDefaultData(volumes);
    QVariantMap object;
    for (auto entry = volumes.cbegin(); entry != volumes.cend(); ++entry)
        object.insert(entry.key(), int(entry.value()));
    return object;
}
