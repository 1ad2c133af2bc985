#include "levelorigins.h"

#include "facaderules.h"
#include "platformcall.h"
#include "policyrules.h"
#include "requesttext.h"
#include "settingsreader.h"

#include "platform.h"

#include <qzaudio/audiotypes.h>

#include <algorithm>
#include <iterator>

using LogLines::Id;
using simulator::Platform;

namespace
{

/// A log may name any number of sources, a unit has some twenty.
constexpr int mostSources = 1000;
/// Each start of the audio sets it: taken for what a log without a start does not say.
constexpr unsigned char usualMasterVolume = 100;
constexpr int customEqualizerType = 7;

const QLatin1String mainTrack("main");
const QLatin1String alternativeTrack("alternative");
/// Stands for all sources of the alternative track without a volume of their own.
const QLatin1String anySource("");

simulator::AudioChip *chip()
{
    return Platform::instance()->chip();
}

int numberOf(const QVariant &value)
{
    return value.isValid() ? value.toInt() : LevelOrigins::none;
}

/// Where a settings file that does not hold a key leaves it to the default, the number that this begins with.
int firstNumber(const QString &text)
{
    return text.section(QLatin1Char(','), 0, 0).toInt();
}

QString remarkOn(const SettingsReader::Setting &setting)
{
    const bool isStored = setting.stored.isValid() || setting.inEffect != setting.defaultText;
    return isStored ? QStringLiteral("as the settings file has it") : QStringLiteral("the settings file has none, so the default: %1").arg(setting.defaultText);
}

} // namespace

LevelOrigins::LevelOrigins(const SettingsReader *settings)
{
    chip()->setMasterVolume(usualMasterVolume);
    if (settings)
        readSettings(*settings);
}

void LevelOrigins::readSettings(const SettingsReader &settings)
{
    const auto all = settings.settings();
    for (const SettingsReader::Setting &setting : all) {
        const QString group = QStringLiteral("Volume/");
        bool isType = false;
        const int type = setting.key.midRef(group.size()).toInt(&isType);
        if (setting.isKnown && isType && setting.key.startsWith(group))
            m_stored.insert(type, {firstNumber(setting.inEffect), {}, remarkOn(setting)});
        if (setting.key == QLatin1String("EQ/Type")) {
            m_equalizerType = firstNumber(setting.inEffect);
            m_equalizerRemark = remarkOn(setting);
        }
    }
}

void LevelOrigins::reboot()
{
    chip()->reset();
    chip()->setMasterVolume(usualMasterVolume);
    m_volumes.clear();
    m_tracks.clear();
    m_mutes.clear();
    m_playing.clear();
    for (Value *const value : {&m_master, &m_duckingMode, &m_duckingGain, &m_loudspeakers, &m_equalizer, &m_loudness})
        *value = {};
    m_position.reset();
    m_equalizerType = none;
    m_equalizerRemark.clear();
    m_status = none;
    m_channel = none;
    m_hasBegun = false;
    m_hasStarted = false;
}

void LevelOrigins::add(const LoggedRequest &request)
{
    m_request = &request;
    m_cause.clear();
    m_delayedType = none;
    m_typeToSet = none;
    m_positionToSet.reset();
    if (!m_hasBegun)
        begin(request);
    auto call = request.calls.cbegin();
    for (const Line &line : request.lines) {
        learn(line);
        for (; call != request.calls.cend() && call->line <= line.number; ++call)
            apply(*call, line);
    }
    m_request = nullptr;
}

void LevelOrigins::begin(const LoggedRequest &request)
{
    m_hasBegun = true;
    m_hasStarted = request.first().id() == Id::ManagerStarts;
    if (m_hasStarted)
        chip()->setMasterVolume(0);
}

/// What a line says that is no call on the platform.
void LevelOrigins::learn(const Line &line)
{
    const LogLine &said = line.line;
    switch (said.id()) {
    case Id::ManagerStarts:
        m_status = AudioStatusNone;
        m_channel = AudioChannelNone;
        break;
    case Id::UpdateAudioStatus:
        m_status = said.number(0);
        break;
    case Id::UpdateAudioChannel:
    case Id::CurrentAudioChannel:
        m_channel = said.number(0);
        break;
    case Id::SetEqType:
        m_typeToSet = said.number(0);
        break;
    case Id::AdjustCustomEq:
        m_typeToSet = customEqualizerType;
        break;
    case Id::FadeBegins: // the balance comes first, negated
        m_positionToSet = Position{said.number(1), -qint64(said.number(0))};
        break;
    default:
        learnVolume(line);
        break;
    }
}

void LevelOrigins::learnVolume(const Line &line)
{
    const LogLine &said = line.line;
    switch (said.id()) {
    case Id::SetVolume: {
        m_status = said.number(3);
        const Line *const key = around(line, Id::UpdateCurrentAudioVolume);
        const QString way = key && key->line.isTrue(0) ? QStringLiteral("volume key up") : QStringLiteral("volume key down");
        store(said.number(0), said.number(1), key ? place(*key, way) : place(line));
        break;
    }
    case Id::HandleChannelVolumeChanged:
        storeIfNew(said.number(0), said.number(1), line);
        break;
    case Id::DelayedVolume:
        m_delayedType = PolicyRules::typeOfChannel(said.number(1));
        storeIfNew(m_delayedType, said.number(2) / FacadeRules::volumeFactor, line);
        break;
    case Id::Duck: // has the media volume doubled
        storeIfNew(ZelAudioTypeMedia, said.number(1) / 2, line);
        break;
    case Id::VolumeAdjusted:
        learnAdjusted(line);
        break;
    default:
        break;
    }
}

/// The line comes behind its call, and says what that was made of.
void LevelOrigins::learnAdjusted(const Line &line)
{
    const Line *const begin = around(line, Id::HandleVolumeTypeChanged);
    if (!begin)
        return;
    const int type = PolicyRules::typeOfStatus(begin->line.number(0));
    storeIfNew(type, line.line.number(2) / FacadeRules::volumeFactor, line);
    const auto volume = m_volumes.find({mainTrack, FacadeRules::platformSource(line.line.text(1))});
    if (volume == m_volumes.end())
        return;
    std::optional<Sent> &sent = volume->isRefusedLast ? volume->refused : volume->sent;
    if (sent && sent->place.line > begin->number)
        sent->stored = stored(type);
}

void LevelOrigins::store(int type, int volume, const LogPlace &place)
{
    constexpr int highestType = ZelAudioTypeHiCarCall;
    if (type >= 0 && type <= highestType)
        m_stored.insert(type, {volume, place, {}});
}

void LevelOrigins::storeIfNew(int type, int volume, const Line &line)
{
    const auto known = m_stored.constFind(type);
    if (known == m_stored.cend() || known->volume != volume || !known->place.isKnown())
        store(type, volume, place(line));
}

void LevelOrigins::apply(const LoggedCall &call, const Line &line)
{
    PlatformCall::make(call);
    if (call.operation == QLatin1String("setTrackVolume") || call.operation == QLatin1String("setAlterTrackVolume")) {
        applyVolume(call, line);
        return;
    }
    Value *const value = valueOf(call);
    if (!value)
        return;
    const bool isOfTrack = call.operation == QLatin1String("setOutputSource");
    applyTo(*value, call, line, isOfTrack ? 1 : 0);
    if (call.isRefused())
        return;
    if (value == &m_loudspeakers) {
        m_position = m_positionToSet;
    } else if (value == &m_equalizer) {
        m_equalizerType = m_typeToSet;
        m_equalizerRemark.clear();
    }
}

/// Null for a call that the loudness does not depend on.
LevelOrigins::Value *LevelOrigins::valueOf(const LoggedCall &call)
{
    struct Owner
    {
        const char *operation;
        Value LevelOrigins::*value;
    };
    constexpr Owner owners[] = {
        {"setMasterVolume", &LevelOrigins::m_master},
        {"setDuckingMode", &LevelOrigins::m_duckingMode},
        {"setDuckingTargetGain", &LevelOrigins::m_duckingGain},
        {"setFadeBalance", &LevelOrigins::m_loudspeakers},
        {"setExtEqParameter", &LevelOrigins::m_equalizer},
        {"setEqParameter", &LevelOrigins::m_equalizer},
        {"setLoudness", &LevelOrigins::m_loudness},
    };
    const auto *const owner
        = std::find_if(std::begin(owners), std::end(owners), [&call](const Owner &one) { return call.operation == QLatin1String(one.operation); });
    if (owner != std::end(owners))
        return &(this->*owner->value);
    const QString track = call.arguments.value(0).toString();
    if (!simulator::isTrack(track))
        return nullptr;
    if (call.operation == QLatin1String("muteTrack") || call.operation == QLatin1String("unmuteTrack"))
        return &m_mutes[track];
    return call.operation == QLatin1String("setOutputSource") ? &m_playing[track] : nullptr;
}

/// @param argument that is the value
void LevelOrigins::applyTo(Value &value, const LoggedCall &call, const Line &line, int argument)
{
    const Line *const fade = around(line, Id::FadeBegins);
    const LogPlace here = place(fade ? *fade : line);
    if (call.isRefused()) {
        value.refusal = Refusal{call.result, call.arguments.value(argument), here};
        return;
    }
    // The loudspeakers are set one by one: of those, one that was refused stays so.
    if (value.refusal && value.refusal->place.line != here.line)
        value.refusal.reset();
    value.place = here;
    value.isWhole = call.isWhole() && call.operation != QLatin1String("setEqParameter");
}

void LevelOrigins::applyVolume(const LoggedCall &call, const Line &line)
{
    const bool isOfTrack = call.operation == QLatin1String("setAlterTrackVolume");
    const Key key = isOfTrack ? Key(alternativeTrack, anySource) : Key(call.arguments.value(0).toString(), call.arguments.value(1).toString());
    if (!simulator::isTrack(key.first) || (!m_volumes.contains(key) && m_volumes.size() >= mostSources))
        return;
    Sent sentNow = sent(line);
    sentNow.volume = numberOf(call.arguments.constLast());
    if (isOfTrack && !call.isRefused()) {
        // Volumes of single sources of the track are forgotten.
        for (auto volume = m_volumes.begin(); volume != m_volumes.end();)
            volume = volume.key().first == alternativeTrack && volume.key() != key ? m_volumes.erase(volume) : std::next(volume);
    }
    Volume &volume = m_volumes[key];
    volume.isRefusedLast = call.isRefused();
    if (call.isRefused()) {
        volume.refused = sentNow;
        volume.code = call.result;
        return;
    }
    volume.before = volume.sent;
    volume.sent = sentNow;
    if (!isOfTrack)
        m_tracks.insert(key.second, key.first);
}

LevelOrigins::Sent LevelOrigins::sent(const Line &line)
{
    Sent sent;
    sent.place = place(line);
    if (line.line.id() == Id::StepStreamSet || line.line.id() == Id::StepStreamRefused) {
        // Of a refusal the line's own number comes first.
        const int behind = line.line.isError() ? 1 : 0;
        sent.type = PolicyRules::typeOfSource(line.line.text(behind + 1));
        sent.stored = Stored{line.line.number(behind + 2), sent.place, {}};
        return sent;
    }
    if (const Line *const begin = around(line, Id::HandleChannelVolumeChanged)) {
        sent.type = begin->line.number(0);
    } else if (const Line *const applied = around(line, Id::HandleVolumeTypeChanged)) {
        sent.status = applied->line.number(0);
        sent.type = PolicyRules::typeOfStatus(sent.status);
    } else if (around(line, Id::DelaySetVolume)) {
        sent.type = m_delayedType;
    } else if (const Line *const connected = around(line, Id::SetHCconnect)) {
        sent.type = connected->line.isTrue(0) ? ZelAudioTypeHiCarCall : ZelAudioTypePrompt;
    }
    sent.stored = stored(sent.type);
    return sent;
}

/// The line that caused this one, or one of those that caused that; null where there is none of that kind.
const LevelOrigins::Line *LevelOrigins::around(const Line &line, Id id) const
{
    for (int index = line.parent; index != LoggedRequest::none; index = m_request->lines.at(index).parent) {
        if (m_request->lines.at(index).line.id() == id)
            return &m_request->lines.at(index);
    }
    return nullptr;
}

LogPlace LevelOrigins::place(const Line &line, const QString &cause)
{
    LogPlace place{line.number, m_request->moment, cause};
    place.moment.milliseconds += line.time - m_request->time();
    return place;
}

LogPlace LevelOrigins::place(const Line &line)
{
    return place(line, cause());
}

QString LevelOrigins::cause()
{
    if (m_cause.isEmpty())
        m_cause = causeText(*m_request);
    return m_cause;
}

// Answers -------------------------------------------------------------------------------------------------------------------

std::optional<LevelOrigins::Stored> LevelOrigins::stored(int type) const
{
    const auto found = m_stored.constFind(type);
    return found == m_stored.cend() ? std::nullopt : std::make_optional(*found);
}

LevelOrigins::Volume LevelOrigins::volume(const QString &track, const QString &source) const
{
    const auto own = m_volumes.constFind({track, source});
    if (own != m_volumes.cend() || track != alternativeTrack)
        return own == m_volumes.cend() ? Volume() : *own;
    return m_volumes.value({track, anySource});
}

bool LevelOrigins::knows(const QString &source) const
{
    const auto isOf = [&source](const Key &key) { return key.second == source; };
    const auto keys = m_volumes.keys();
    return std::any_of(keys.cbegin(), keys.cend(), isOf)
        || std::any_of(simulator::trackNames.cbegin(), simulator::trackNames.cend(), [&source](const char *track) {
               return chip()->activeSource(QLatin1String(track)) == source;
           });
}

QString LevelOrigins::trackOf(const QString &source) const
{
    for (const char *const track : simulator::trackNames) {
        if (chip()->activeSource(QLatin1String(track)) == source)
            return QLatin1String(track);
    }
    return m_tracks.value(source, mainTrack);
}

bool LevelOrigins::take(const QString &track, const QString &source) const
{
    if (volume(track, source).sent)
        return true;
    const auto known = stored(track == alternativeTrack ? int(ZelAudioTypePrompt) : PolicyRules::typeOfSource(source));
    if (!known)
        return false;
    const int taken = FacadeRules::sentTo(track, source, FacadeRules::platformVolume(known->volume));
    return chip()->setTrackVolume(track, source, static_cast<unsigned char>(taken)) == simulator::Accepted;
}
