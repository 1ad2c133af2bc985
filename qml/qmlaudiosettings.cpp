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
    {SCRIPT_CALL(AudioDataBase, getVolume), "type", "the volume of a type, usually 0 to 25", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, eqType), "", "the equalizer type, 0 to 7", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, loudNess), "", "whether loudness is on", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, micType), "", "true for the original microphone", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, micInputValue), "", "the microphone's volume, 0 to 91", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getCustomEQ), "index", "a band, 0 to 15, of the custom curve as stored", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getAutoMicGain), "", "the gain of the microphone in use, in whole dB", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getHandsfreeDelay), "", "the delay of the microphone in use", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getEqBaseData), "", "the eight presets: [{type, tag, gains}, …]", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getCurrentIndexInItem), "", "the index of the stored equalizer type's preset", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getCurrentIndexInDefault), "type", "the index of a type's preset; 0 where there is none", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getNextEqType), "up", "the type of the next preset up or down", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getAudioStatusInfo), "status", "what a status stands for: {type, param}", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getStatusToSpName), "status", "the source of a status, as applications name it", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getChannelInfo), "channel", "what a channel stands for: {type, spName}", ScriptKind::Looks},
    {SCRIPT_CALL(AudioDataBase, getGroupDefaultData), "volumes", "the volume of every source: {name: volume, …}", ScriptKind::Looks},
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
    if (!m_dataBase || current != m_stamp) {
        m_dataBase = std::make_unique<AudioDataBase>();
        m_stamp = current;
    }
    return *m_dataBase;
}
