#include "soundmeter.h"

#include "loudness.h"
#include "rendering.h"
#include "soundrecorder.h"
#include "soundtrack.h"

#include "scriptcall.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{

template<typename Condition>
QVector<SoundTrack::Voice> voicesWhere(const SoundTrack &track, const Condition &holds)
{
    QVector<SoundTrack::Voice> some;
    const auto all = track.voices();
    std::copy_if(all.cbegin(), all.cend(), std::back_inserter(some), holds);
    return some;
}

/// The last one that is long enough to be measured.
SoundTrack::Span lastOf(const QVector<SoundTrack::Span> &spans)
{
    const auto last = std::find_if(spans.crbegin(), spans.crend(), [](const SoundTrack::Span &span) { return span.length() >= Loudness::shortest; });
    return last == spans.crend() ? SoundTrack::Span() : *last;
}

} // namespace

SoundMeter::SoundMeter(const SoundRecorder *recorder, QObject *parent)
    : QObject(parent)
    , m_recorder(recorder)
{
}

SoundMeter::~SoundMeter() = default;

double SoundMeter::above(const QString &source, const QString &other)
{
    QString problem;
    const double distance = measure(source, other, problem);
    if (!problem.isEmpty())
        throwScriptError(this, QJSValue::GenericError, problem);
    return distance;
}

double SoundMeter::measure(const QString &source, const QString &other, QString &problem)
{
    const SoundTrack track = m_recorder ? m_recorder->soFar() : SoundTrack();
    const auto ones = voicesWhere(track, [&source](const SoundTrack::Voice &voice) { return voice.second == source; });
    const auto others
        = voicesWhere(track, [&source, &other](const SoundTrack::Voice &voice) { return other.isEmpty() ? voice.second != source : voice.second == other; });
    const QString otherText = other.isEmpty() ? QStringLiteral("anything else") : other;
    const SoundTrack::Span span = lastOf(track.spansOfBoth(ones, others));
    if (span.length() == 0) {
        problem = QStringLiteral("%1 and %2 have not sounded together for %3 ms").arg(source, otherText).arg(Loudness::shortest);
        return 0;
    }
    if (!m_rendering)
        m_rendering = std::make_unique<Rendering>(QMap<QString, QString>());
    const SoundTrack heard = track.part(span);
    const double one = m_rendering->measure(heard.only(ones), problem).integrated;
    const double rest = problem.isEmpty() ? m_rendering->measure(heard.only(others), problem).integrated : 0;
    if (problem.isEmpty() && !std::isfinite(one) && !std::isfinite(rest))
        problem = QStringLiteral("neither %1 nor %2 was to be heard").arg(source, otherText);
    constexpr double tenths = 10;
    return std::round((one - rest) * tenths) / tenths;
}
