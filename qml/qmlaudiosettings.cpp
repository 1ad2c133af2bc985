#include "qmlaudiosettings.h"

#include "settingsfile.h"

using audio::AudioDataBase;

template<>
AudioDataBase &scriptTarget<AudioDataBase>(QObject &callee)
{
    return static_cast<QmlAudioSettings &>(callee).store();
}

namespace
{

constexpr ScriptRow operations[] = {
    {"readers"},
    {SCRIPT_CALL(AudioDataBase, data), "group, key, defaultValue", "the stored value of group/key, or the default given", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getVolume), "type", "the volume of a type, 0 to 25", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, eqType), "", "the equalizer type, 0 to 7", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, loudNess), "", "whether loudness is on", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, micType), "", "whether the microphone is the default one", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, micInputValue), "", "the microphone's volume", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getCustomEQ), "index", "a band of the custom curve", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getAutoMicGain), "", "the automatic microphone gain in whole dB", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getHandsfreeDelay), "", "the delay for the echo cancelling", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getEqBaseData), "", "the eight presets: [{type, tag, gains}, …]", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getCurrentIndexInItem), "", "the place of the stored equalizer type in the order of the menu", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getCurrentIndexInDefault), "type", "the place of an equalizer type among the presets", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getNextEqType), "up", "the equalizer type before or after the stored one", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getAudioStatusInfo), "status", "what a status stands for: {type, param}", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getStatusToSpName), "status", "the platform's source of a status", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getChannelInfo), "channel", "what a channel stands for: {type, spName}", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getGroupDefaultData), "volumes", "the volumes that a step table begins with: {name: volume, …}", ScriptKind::Looks},
};

} // namespace

const ScriptType &QmlAudioSettings::scriptType()
{
    static const ScriptType type("AudioSettings", operations);
    return type;
}

AudioDataBase &QmlAudioSettings::store()
{
    // A store keeps what it read when it was made, so another file asks for another store.
    const QByteArray current = SettingsFile::stamp();
    if (!dataBase || current != stamp) {
        dataBase = std::make_unique<AudioDataBase>();
        stamp = current;
    }
    return *dataBase;
}
