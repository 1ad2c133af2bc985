#include "soundtrack.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <algorithm>

namespace
{

const QLatin1String timeKey("time");
const QLatin1String endKey("end");
const QLatin1String headingKey("heading");

QJsonArray toArray(const SoundTrack::Gains &gains)
{
    QJsonArray array;
    for (const double gain : gains)
        array.append(gain);
    return array;
}

SoundTrack::Gains toGains(const QJsonArray &array)
{
    SoundTrack::Gains gains = {};
    for (int i = 0; i < SoundTrack::loudspeakerCount; ++i)
        gains[std::size_t(i)] = array.at(i).toDouble();
    return gains;
}

SoundTrack::State toState(const QJsonObject &object)
{
    SoundTrack::State state;
    const QJsonArray voices = object.value(QLatin1String("voices")).toArray();
    for (const QJsonValue &each : voices) {
        const QJsonObject voice = each.toObject();
        state.voices.insert({voice.value(QLatin1String("track")).toString(), voice.value(QLatin1String("source")).toString()},
                            toGains(voice.value(QLatin1String("gains")).toArray()));
    }
    const QJsonArray bands = object.value(QLatin1String("bands")).toArray();
    for (const QJsonValue &each : bands) {
        const QJsonArray band = each.toArray();
        state.bands.append({band.at(0).toDouble(), band.at(1).toDouble(), band.at(2).toDouble()});
    }
    state.equalized = quint32(object.value(QLatin1String("equalized")).toInt());
    state.isLoudnessOn = object.value(QLatin1String("loudness")).toBool();
    state.delays = toGains(object.value(QLatin1String("delays")).toArray());
    return state;
}

} // namespace

bool SoundTrack::State::isHeardAs(const State &other) const
{
    return voices == other.voices && bands == other.bands && equalized == other.equalized && isLoudnessOn == other.isLoudnessOn && delays == other.delays;
}

void SoundTrack::add(const State &state)
{
    // Of what happens within a millisecond only the end is heard.
    if (!states.isEmpty() && states.constLast().time == state.time)
        states.removeLast();
    if (states.isEmpty() || !states.constLast().isHeardAs(state))
        states.append(state);
    duration = std::max(duration, state.time);
}

QVector<SoundTrack::Voice> SoundTrack::voices() const
{
    QVector<Voice> all;
    for (const State &state : states) {
        for (auto voice = state.voices.keyBegin(); voice != state.voices.keyEnd(); ++voice) {
            const auto place = std::lower_bound(all.begin(), all.end(), *voice);
            if (place == all.end() || *place != *voice)
                all.insert(place, *voice);
        }
    }
    return all;
}

template<typename Condition>
QVector<SoundTrack::Span> SoundTrack::spansWhere(const Condition &holds) const
{
    QVector<Span> spans;
    bool isOpen = false;
    for (const State &state : states) {
        const bool isOne = holds(state);
        if (isOne && !isOpen)
            spans.append({state.time, duration});
        else if (!isOne && isOpen)
            spans.last().to = state.time;
        isOpen = isOne;
    }
    if (!spans.isEmpty() && spans.constLast().length() == 0)
        spans.removeLast();
    return spans;
}

QVector<SoundTrack::Span> SoundTrack::spansOf(const Voice &voice) const
{
    return spansWhere([&voice](const State &state) { return state.voices.contains(voice); });
}

QVector<SoundTrack::Span> SoundTrack::spansOfBoth(const QVector<Voice> &some, const QVector<Voice> &others) const
{
    const auto hasAny = [](const State &state, const QVector<Voice> &wanted) {
        return std::any_of(wanted.cbegin(), wanted.cend(), [&state](const Voice &voice) { return state.voices.contains(voice); });
    };
    return spansWhere([&](const State &state) { return hasAny(state, some) && hasAny(state, others); });
}

QVector<qint64> SoundTrack::changes() const
{
    QVector<qint64> times;
    for (const State &state : states) {
        if (state.time > 0 && state.time < duration)
            times.append(state.time);
    }
    return times;
}

SoundTrack SoundTrack::part(const Span &span) const
{
    SoundTrack cut;
    for (State state : states) {
        if (state.time >= span.to)
            break;
        state.time = std::max(qint64(0), state.time - span.from);
        cut.add(state);
    }
    Heading before;
    for (const Heading &heading : headings) {
        if (heading.time <= span.from)
            before = heading;
    }
    if (!before.text.isEmpty())
        cut.headings.append({0, before.text});
    for (const Heading &heading : headings) {
        if (heading.time > span.from && heading.time < span.to)
            cut.headings.append({heading.time - span.from, heading.text});
    }
    cut.duration = std::min(span.to, duration) - span.from;
    return cut;
}

SoundTrack SoundTrack::squeezed(qint64 longest) const
{
    QVector<qint64> marks{0};
    marks += changes();
    for (const Heading &heading : headings)
        marks.append(heading.time);
    marks.append(duration);
    std::sort(marks.begin(), marks.end());
    QMap<qint64, qint64> moved;
    qint64 time = 0;
    for (int i = 0; i < marks.size(); ++i) {
        if (i > 0)
            time += std::min(longest, marks.at(i) - marks.at(i - 1));
        moved.insert(marks.at(i), time);
    }
    SoundTrack shorter = *this;
    for (State &state : shorter.states)
        state.time = moved.value(state.time, time);
    for (Heading &heading : shorter.headings)
        heading.time = moved.value(heading.time, time);
    shorter.duration = time;
    return shorter;
}

SoundTrack SoundTrack::only(const QVector<Voice> &wanted) const
{
    SoundTrack some = *this;
    for (State &state : some.states) {
        const auto sounding = state.voices.keys();
        for (const Voice &voice : sounding) {
            if (!wanted.contains(voice))
                state.voices.remove(voice);
        }
    }
    return some;
}

SoundTrack SoundTrack::read(const QByteArray &lines, QString &problem)
{
    SoundTrack track;
    const QList<QByteArray> all = lines.split('\n');
    for (const QByteArray &line : all) {
        if (line.isEmpty())
            continue;
        const QJsonDocument document = QJsonDocument::fromJson(line);
        if (!document.isObject()) {
            // The last line of a process that was killed may be half a line.
            if (&line != &all.constLast())
                problem = QStringLiteral("a line of the recorded sound is damaged");
            continue;
        }
        const QJsonObject object = document.object();
        const auto time = qint64(object.value(timeKey).toDouble());
        if (object.contains(headingKey)) {
            track.headings.append({time, object.value(headingKey).toString()});
        } else if (!object.contains(endKey)) {
            State state = toState(object);
            state.time = time;
            track.add(state);
        }
        track.duration = std::max(track.duration, time);
    }
    if (track.states.isEmpty() || track.states.constFirst().time > 0)
        track.states.prepend(State());
    return track;
}

QJsonObject SoundTrack::toJson(const State &state)
{
    QJsonArray voices;
    for (auto voice = state.voices.cbegin(); voice != state.voices.cend(); ++voice) {
        voices.append(QJsonObject{
            {QStringLiteral("track"), voice.key().first},
            {QStringLiteral("source"), voice.key().second},
            {QStringLiteral("gains"), toArray(voice.value())},
        });
    }
    QJsonArray bands;
    for (const Band &band : state.bands)
        bands.append(QJsonArray{band.frequency, band.quality, band.gain});
    return {
        {timeKey, double(state.time)},
        {QStringLiteral("voices"), voices},
        {QStringLiteral("bands"), bands},
        {QStringLiteral("equalized"), int(state.equalized)},
        {QStringLiteral("loudness"), state.isLoudnessOn},
        {QStringLiteral("delays"), toArray(state.delays)},
    };
}

QJsonObject SoundTrack::toJson(const Heading &heading)
{
    return {{timeKey, double(heading.time)}, {headingKey, heading.text}};
}

QJsonObject SoundTrack::endToJson(qint64 time)
{
    return {{timeKey, double(time)}, {endKey, true}};
}
