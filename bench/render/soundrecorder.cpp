#include "soundrecorder.h"

#include "equalizercurves.h"
#include "explain/policyrules.h"
#include "policytext.h"
#include "timeline.h"

#include "platform.h"

#include <QtCore/QJsonDocument>

#include <algorithm>
#include <iterator>

using simulator::AudioChip;
using simulator::Platform;

namespace
{

const QLatin1String mainTrack("main");
const QLatin1String promptTrack("alternative");

constexpr const char *audibleTracks[] = {"main", "second", "alternative", "main_im"};

/// Requests that begin or end what is heard over the main audio. The name of a source that was not there before follows from who asked.
struct Interjection
{
    const char *request; ///< how its text begins
    const char *source; ///< null where it ends
};

constexpr Interjection interjections[] = {
    {"AudioPolicy.aaDuckAudio(", "S+AndroidAuto"},
    {"AudioPolicy.aaUnduckAudio(", nullptr},
    {"AudioPolicy.clDuckAudio(", "S+CarLife"},
    {"AudioPolicy.clUnduckAudio(", nullptr},
    {"AudioPolicy.cpDuckAudio(", "S+CarPlaySpeech"},
    {"AudioPolicy.cpUnduckAudio(", nullptr},
    {"AudioPolicy.onRecvBackCar(true", "reverse gear"},
    {"AudioPolicy.onRecvBackCar(false", nullptr},
    {"Platform.setReverseGear(true", "reverse gear"},
    {"Platform.setReverseGear(false", nullptr},
};

constexpr int mediaType = 0;

/// Whether a source is one that calls and speech come over.
bool isMedia(const QString &source)
{
    const int type = PolicyRules::typeOfSource(source);
    return type == mediaType || type == PolicyRules::none;
}

/// Whether a status has something sound of its own. A duck's prompts come without one.
bool isCallOrSpeech(int status)
{
    return PolicyRules::typeOfStatus(status) != mediaType && !PolicyRules::isOfDuck(status);
}

bool isSource(const QString &source)
{
    return !source.isEmpty() && source != QLatin1String("S+none");
}

} // namespace

SoundRecorder::SoundRecorder(const Timeline &followed)
    : m_timeline(followed)
{
    const AudioChip *const chip = Platform::instance()->chip();
    connect(chip, &AudioChip::changed, this, &SoundRecorder::chipChanged);
    connect(chip, &AudioChip::wasReset, this, &SoundRecorder::chipWasReset);
    // A timeline may end on the thread that ends a scenario.
    connect(&followed, &Timeline::happened, this, &SoundRecorder::add, Qt::DirectConnection);
    connect(&followed, &Timeline::finished, this, &SoundRecorder::finish, Qt::DirectConnection);
    m_last = state();
    m_track.add(m_last);
}

QString SoundRecorder::writeTo(const QString &file)
{
    m_file.setFileName(file);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        return m_file.errorString();
    write(SoundTrack::toJson(m_last));
    return {};
}

SoundTrack SoundRecorder::soFar() const
{
    SoundTrack track = m_track;
    track.duration = m_timeline.now();
    return track;
}

void SoundRecorder::add(const TimelineEvent &event)
{
    follow(event);
    look();
    if (event.kind == TimelineEvent::Kind::Heading)
        write(SoundTrack::toJson(SoundTrack::Heading{event.time, event.text}));
}

void SoundRecorder::finish(qint64 time)
{
    look();
    write(SoundTrack::endToJson(time));
}

void SoundRecorder::follow(const TimelineEvent &event)
{
    if (event.isStartUp)
        m_isOff = false;
    if (event.kind == TimelineEvent::Kind::Request)
        followRequest(event.text);
    else if (event.kind == TimelineEvent::Kind::Status)
        setStatus(event.text.section(QLatin1Char(':'), 0, 0));
    for (const TimelineEvent &caused : event.caused)
        follow(caused);
}

void SoundRecorder::followRequest(const QString &text)
{
    const auto *const interjection = std::find_if(
        std::begin(interjections), std::end(interjections), [&text](const Interjection &one) { return text.startsWith(QLatin1String(one.request)); });
    if (interjection != std::end(interjections))
        m_prompt = interjection->source ? QString::fromLatin1(interjection->source) : QString();
    const QLatin1String status("AudioPolicy.updateAudioStatus(");
    if (text.startsWith(status))
        setStatus(text.mid(status.size()).chopped(1));
    if (text.startsWith(QLatin1String("powerOff("))) {
        m_isOff = true;
        m_prompt.clear();
        m_status = 0;
    }
}

void SoundRecorder::setStatus(const QString &name)
{
    for (int status = 0; status <= PolicyRules::highestStatus; ++status) {
        if (statusText(status) == name)
            m_status = status;
    }
}

void SoundRecorder::chipChanged()
{
    // Nobody calls the chip of a unit that is off.
    m_isOff = false;
    look();
}

void SoundRecorder::chipWasReset()
{
    m_prompt.clear();
    m_status = 0;
    look();
}

void SoundRecorder::look()
{
    SoundTrack::State current = state();
    if (current.isHeardAs(m_last))
        return;
    keep(current);
    m_last = current;
}

void SoundRecorder::keep(const SoundTrack::State &state)
{
    if (m_file.isOpen())
        write(SoundTrack::toJson(state));
    else
        m_track.add(state);
}

SoundTrack::State SoundRecorder::state() const
{
    const AudioChip *const chip = Platform::instance()->chip();
    SoundTrack::State state;
    state.time = m_timeline.now();
    if (!m_isOff) {
        for (const char *const name : audibleTracks) {
            const QString track = QLatin1String(name);
            if (isSource(chip->activeSource(track)))
                addVoice(state, track, chip->activeSource(track));
        }
        const QString named = isCallOrSpeech(m_status) ? PolicyRules::sourceOfStatus(m_status) : QString();
        const QString active = chip->activeSource(mainTrack);
        if (isSource(named) && named != active && isMedia(active))
            addVoice(state, mainTrack, named);
        if (!m_prompt.isEmpty())
            addVoice(state, promptTrack, m_prompt);
    }
    for (int i = 0; i < SoundTrack::loudspeakerCount; ++i)
        state.delays[std::size_t(i)] = chip->speakerDelay(simulator::outputChannels[std::size_t(i)].bit);
    state.isLoudnessOn = chip->isLoudnessOn();
    addBands(state);
    return state;
}

void SoundRecorder::addVoice(SoundTrack::State &state, const QString &track, const QString &source) const
{
    SoundTrack::Gains gains = {};
    for (int i = 0; i < SoundTrack::loudspeakerCount; ++i) {
        gains[std::size_t(i)] = Platform::instance()->chip()->effectiveGain(track, source, simulator::outputChannels[std::size_t(i)].bit);
    }
    state.voices.insert({track, source}, gains);
}

void SoundRecorder::addBands(SoundTrack::State &state) const
{
    const AudioChip *const chip = Platform::instance()->chip();
    for (int i = 0; i < SoundTrack::loudspeakerCount; ++i) {
        const EqualizerResponse::Bands bands = EqualizerCurves::ofChip(*chip, simulator::outputChannels[std::size_t(i)].bit);
        if (bands.isEmpty())
            continue;
        state.equalized |= 1U << unsigned(i);
        state.bands.clear(); // all that have a curve have the same one
        for (const EqualizerResponse::Band &band : bands)
            state.bands.append({band.frequency, band.q, band.gain});
    }
}

void SoundRecorder::write(const QJsonObject &line)
{
    if (m_file.isOpen())
        m_file.write(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
}
