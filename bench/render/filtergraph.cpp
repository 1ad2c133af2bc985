#include "filtergraph.h"

#include "equalizercurves.h"
#include "sourcesound.h"

#include <algorithm>

namespace
{

constexpr int everyLoudspeaker = 0xF;
/// Also where they equalize all in the same way.
constexpr int common = -1;

/// Beyond so many times that a source sounds they are no longer cut to begin anew: each is a file that is open.
constexpr int mostPieces = 60;

QString number(double value)
{
    constexpr int digits = 9;
    return QString::number(value, 'g', digits);
}

/// "v2", "v2s0": of a voice, at one loudspeaker.
QString mark(int voice, int loudspeaker)
{
    const QString ofVoice = QStringLiteral("v%1").arg(voice);
    return loudspeaker == common ? ofVoice : ofVoice + QStringLiteral("s%1").arg(loudspeaker);
}

QString label(const QString &name)
{
    return QLatin1Char('[') + name + QLatin1Char(']');
}

QString labels(const QString &name, int count)
{
    QString all;
    for (int i = 0; i < count; ++i)
        all += label(name + QString::number(i));
    return all;
}

QString delay(double milliseconds)
{
    return QStringLiteral("%1S").arg(qRound64(milliseconds * FilterGraph::sampleRate / 1000));
}

double gainAt(const SoundTrack::State &state, const SoundTrack::Voice &voice, int loudspeaker)
{
    return state.voices.value(voice)[std::size_t(loudspeaker)];
}

int uses(const QVector<SoundTrack::Band> &bands, const SoundTrack::Band &filter, int upTo)
{
    return int(std::count_if(bands.cbegin(), bands.cbegin() + upTo, [&filter](const SoundTrack::Band &other) { return other.isSameFilter(filter); }));
}

/// A sound over and over.
QString repeated(const QString &file, qint64 samples)
{
    return QStringLiteral("amovie=%1:loop=0,asetpts=N/SR/TB,aformat=sample_fmts=fltp:sample_rates=%2:channel_layouts=mono,atrim=end_sample=%3")
        .arg(file)
        .arg(FilterGraph::sampleRate)
        .arg(samples);
}

QString joined(const QString &name, int count)
{
    return labels(name, count) + QStringLiteral("concat=n=%1:v=0:a=1").arg(count);
}

} // namespace

FilterGraph::FilterGraph(const SoundTrack &track, Listener listener)
    : m_track(track)
    , m_voices(track.voices())
{
    findFilters();
    addMix(listener);
    for (int i = 0; i < m_voices.size(); ++i)
        addVoice(i);
}

void FilterGraph::findFilters()
{
    for (const SoundTrack::State &state : m_track.states) {
        m_hasLoudness = m_hasLoudness || state.isLoudnessOn;
        m_hasDelays = m_hasDelays || std::any_of(state.delays.cbegin(), state.delays.cend(), [](double each) { return each > 0; });
        for (int i = 0; i < state.bands.size(); ++i) {
            const SoundTrack::Band &band = state.bands.at(i);
            if (band.gain == 0)
                continue;
            const int loudspeakers = int(state.equalized) & everyLoudspeaker;
            m_equalizesEach = m_equalizesEach || (loudspeakers != 0 && loudspeakers != everyLoudspeaker);
            const int occurrence = uses(state.bands, band, i);
            const bool isKnown = std::any_of(m_filters.cbegin(), m_filters.cend(), [&band, occurrence](const Filter &filter) {
                return filter.band.isSameFilter(band) && filter.occurrence == occurrence;
            });
            if (!isKnown)
                m_filters.append({band, occurrence});
        }
    }
}

void FilterGraph::addMix(Listener listener)
{
    const qint64 length = samples(m_track.duration);
    if (m_voices.isEmpty()) {
        const QString layout = listener == Listener::Loudspeakers ? QStringLiteral("quad") : QStringLiteral("stereo");
        m_chains.append(QStringLiteral("anullsrc=r=%1:cl=%2,atrim=end_sample=%3[out]").arg(sampleRate).arg(layout).arg(length));
        return;
    }
    QString ears;
    if (listener == Listener::TwoEars)
        ears = QLatin1Char(',') + twoEars();
    m_chains.append(QStringLiteral("[mix0][mix1][mix2][mix3]join=inputs=4:channel_layout=quad:map=0.0-FL|1.0-FR|2.0-BL|3.0-BR%1,atrim=end_sample=%2[out]")
                        .arg(ears)
                        .arg(length));
    for (int i = 0; i < SoundTrack::loudspeakerCount; ++i) {
        QString inputs;
        for (int voice = 0; voice < m_voices.size(); ++voice)
            inputs += label(mark(voice, i));
        m_chains.append(inputs + QStringLiteral("amix=inputs=%1:normalize=0[mix%2]").arg(m_voices.size()).arg(i));
    }
}

double FilterGraph::gainOf(const Filter &filter, const SoundTrack::State &state, int loudspeaker) const
{
    const bool isOn = loudspeaker == common ? (state.equalized & everyLoudspeaker) != 0 : state.isEqualized(loudspeaker);
    if (!isOn)
        return 0;
    for (int i = 0; i < state.bands.size(); ++i) {
        if (state.bands.at(i).isSameFilter(filter.band) && uses(state.bands, filter.band, i) == filter.occurrence)
            return state.bands.at(i).gain;
    }
    return 0;
}

/// A chain of filters that ends with a comma; empty for none.
QString FilterGraph::equalizer(int voice, int loudspeaker, const SoundTrack::State &state) const
{
    QString chain;
    for (int i = 0; i < m_filters.size(); ++i) {
        const Filter &filter = m_filters.at(i);
        chain += QStringLiteral("equalizer@%1b%2=f=%3:width_type=q:width=%4:g=%5,")
                     .arg(mark(voice, loudspeaker))
                     .arg(i)
                     .arg(number(filter.band.frequency), number(filter.band.quality), number(gainOf(filter, state, loudspeaker)));
    }
    return chain;
}

void FilterGraph::addVoice(int voice)
{
    const SoundTrack::State &first = m_track.states.constFirst();
    const SoundTrack::Voice &name = m_voices.at(voice);
    for (int i = 0; i < SoundTrack::loudspeakerCount; ++i) {
        const QString at = mark(voice, i);
        QString chain = label(at + QStringLiteral("in")) + (m_equalizesEach ? equalizer(voice, i, first) : QString());
        chain += QStringLiteral("volume@%1=volume=%2:precision=float").arg(at, number(gainAt(first, name, i)));
        // Told at 0 what it is: it would add what it begins with to all that it is told later.
        if (m_hasDelays)
            chain += QStringLiteral(",adelay@%1=delays=0S").arg(at);
        m_chains.append(chain + label(at));
    }
    QString shared = label(QStringLiteral("v%1all").arg(voice)) + (m_equalizesEach ? QString() : equalizer(voice, common, first));
    if (m_hasLoudness)
        shared += QStringLiteral("lowshelf@v%1=f=%2:width_type=q:width=%3:g=%4,")
                      .arg(voice)
                      .arg(number(EqualizerCurves::loudnessFrequency),
                           number(EqualizerCurves::loudnessQ),
                           number(first.isLoudnessOn ? EqualizerCurves::loudnessRise : 0));
    shared += QStringLiteral("asplit=%1").arg(SoundTrack::loudspeakerCount);
    for (int i = 0; i < SoundTrack::loudspeakerCount; ++i)
        shared += label(mark(voice, i) + QStringLiteral("in"));
    m_chains.append(shared);

    CommandFile file{QStringLiteral("voice%1.commands").arg(voice), {}};
    QVector<qint64> cuts;
    SoundTrack::State before = first;
    if (m_hasDelays) {
        before.delays = {};
        const QStringList told = commands(voice, before, first);
        if (!told.isEmpty())
            file.text += QStringLiteral("0.000 %1;\n").arg(told.join(QStringLiteral(", ")));
    }
    for (const SoundTrack::State &state : m_track.states) {
        const QStringList told = commands(voice, m_track.states.constFirst().time == state.time ? state : before, state);
        before = state;
        if (told.isEmpty() || state.time >= m_track.duration)
            continue;
        constexpr double millisecondsPerSecond = 1000;
        constexpr int decimals = 3;
        cuts.append(state.time);
        file.text += QStringLiteral("%1 %2;\n").arg(double(state.time) / millisecondsPerSecond, 0, 'f', decimals).arg(told.join(QStringLiteral(", ")));
    }
    if (file.text.isEmpty()) {
        addSource(voice, QStringLiteral("v%1all").arg(voice));
        return;
    }
    m_chains.append(QStringLiteral("[v%1told]asendcmd=f=%2[v%1all]").arg(voice).arg(file.name));
    m_commandFiles.append(file);
    if (cuts.isEmpty()) {
        addSource(voice, QStringLiteral("v%1told").arg(voice));
        return;
    }
    QStringList places;
    for (const qint64 cut : qAsConst(cuts))
        places.append(QString::number(samples(cut)));
    const QString begun = QStringLiteral("v%1begun").arg(voice);
    const QString cutOff = QStringLiteral("v%1cut").arg(voice);
    m_chains.append(joined(begun, cuts.size() + 1) + QStringLiteral("[v%1told]").arg(voice));
    for (int i = 0; i <= cuts.size(); ++i)
        m_chains.append(label(cutOff + QString::number(i)) + QStringLiteral("asetpts=PTS-STARTPTS") + label(begun + QString::number(i)));
    m_chains.append(QStringLiteral("[v%1whole]asegment=samples=%2").arg(voice).arg(places.join(QLatin1Char('|'))) + labels(cutOff, cuts.size() + 1));
    addSource(voice, QStringLiteral("v%1whole").arg(voice));
}

void FilterGraph::addSource(int voice, const QString &end)
{
    const int times = m_track.spansOf(m_voices.at(voice)).size();
    if (SourceSound::beginsAnew(m_voices.at(voice)) && times <= mostPieces)
        m_chains.append(pieces(voice, end));
    else
        m_chains.append(repeated(soundFile(voice), samples(m_track.duration)) + label(end));
}

/// The sound from its beginning each time that it is heard, with silence between.
QString FilterGraph::pieces(int voice, const QString &end)
{
    const QString piece = QStringLiteral("v%1piece").arg(voice);
    int count = 0;
    qint64 time = 0;
    const auto add = [this, &count, &piece](const QString &source) { m_chains.append(source + label(piece + QString::number(count++))); };
    const auto spans = m_track.spansOf(m_voices.at(voice));
    for (const SoundTrack::Span &span : spans) {
        if (span.from > time)
            add(repeated(silenceFile(), samples(span.from - time)));
        add(repeated(soundFile(voice), samples(span.length())));
        time = span.to;
    }
    if (m_track.duration > time)
        add(repeated(silenceFile(), samples(m_track.duration - time)));
    return joined(piece, count) + label(end);
}

QStringList FilterGraph::commands(int voice, const SoundTrack::State &before, const SoundTrack::State &after) const
{
    QStringList all;
    const SoundTrack::Voice &name = m_voices.at(voice);
    for (int i = 0; i < SoundTrack::loudspeakerCount; ++i) {
        if (gainAt(before, name, i) != gainAt(after, name, i))
            all.append(QStringLiteral("volume@%1 volume %2").arg(mark(voice, i), number(gainAt(after, name, i))));
        if (before.delays[std::size_t(i)] != after.delays[std::size_t(i)])
            all.append(QStringLiteral("adelay@%1 delays %2").arg(mark(voice, i), delay(after.delays[std::size_t(i)])));
    }
    const int firstChain = m_equalizesEach ? 0 : common;
    const int lastChain = m_equalizesEach ? SoundTrack::loudspeakerCount - 1 : common;
    for (int chain = firstChain; chain <= lastChain; ++chain) {
        for (int i = 0; i < m_filters.size(); ++i) {
            const double gain = gainOf(m_filters.at(i), after, chain);
            if (gain != gainOf(m_filters.at(i), before, chain))
                all.append(QStringLiteral("equalizer@%1b%2 gain %3").arg(mark(voice, chain)).arg(i).arg(number(gain)));
        }
    }
    if (before.isLoudnessOn != after.isLoudnessOn)
        all.append(QStringLiteral("lowshelf@v%1 gain %2").arg(voice).arg(number(after.isLoudnessOn ? EqualizerCurves::loudnessRise : 0)));
    return all;
}
