#include "timelineplot.h"

#include "console.h"
#include "heard.h"
#include "policytext.h"

#include "platform.h"
#include "policynames.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

using LogLines::Id;
using simulator::Platform;

namespace
{

constexpr double silent = -std::numeric_limits<double>::infinity();
constexpr double millisecondsPerSecond = 1000;
constexpr const char *laneNames[] = {"status", "channel", "focus", "ducking", "mute", "keys", "reverse"};

QString channelText(int channel)
{
    const bool isKnown = channel >= 0 && std::size_t(channel) < std::size(policynames::channels);
    return isKnown ? QString::fromLatin1(policynames::channels[channel].name) : QString::number(channel);
}

/// "1:05", "1:05.25"
QString timeText(qint64 milliseconds)
{
    constexpr qint64 second = 1000;
    constexpr qint64 minute = 60;
    const qint64 seconds = milliseconds / second;
    QString text = QStringLiteral("%1:%2").arg(seconds / minute).arg(seconds % minute, 2, 10, QLatin1Char('0'));
    if (milliseconds % second != 0) {
        text += QStringLiteral(".%1").arg(milliseconds % second, 3, 10, QLatin1Char('0'));
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
    }
    return text;
}

QString muteText()
{
    const simulator::AudioChip *const chip = Platform::instance()->chip();
    QStringList tracks;
    for (const char *const track : {"main", "second", "alternative", "main_im"}) {
        if (chip->isMuted(QLatin1String(track)))
            tracks.append(QLatin1String(track));
    }
    return tracks.join(QStringLiteral(", "));
}

} // namespace

TimelinePlot::TimelinePlot(const Settings &chosen, const LogClock &clock)
    : m_settings(chosen)
    , m_clock(clock)
    , m_unit(m_timeline)
{
    static_assert(std::size(laneNames) == laneCount, "a name for each lane");
    const simulator::AudioChip *const chip = Platform::instance()->chip();
    QObject::connect(chip, &simulator::AudioChip::changed, &m_ear, [this] { lookAtChip(); });
    QObject::connect(chip, &simulator::AudioChip::wasReset, &m_ear, [this] { lookAtChip(); });
}

std::optional<qint64> TimelinePlot::shownTime(qint64 time)
{
    const auto limit = [this](const std::optional<LogLimit> &given) { return given ? given->in(m_clock) : std::nullopt; };
    const auto from = limit(m_settings.wanted.from);
    const auto to = limit(m_settings.wanted.to);
    if (m_changes > m_settings.mostChanges)
        return {};
    m_begin = from.value_or(0);
    m_end = std::max({m_end, std::min(time, to.value_or(time)), m_begin});
    // What held when the picture begins came about before.
    return to && time > *to ? std::nullopt : std::make_optional(std::max(time, m_begin));
}

void TimelinePlot::request(const LoggedRequest &request)
{
    m_unit.apply(request);
    for (const LoggedRequest::Line &line : request.lines) {
        const LogLine &said = line.line;
        switch (said.id()) {
        case Id::UpdateAudioChannel:
            set(Channel, line.time, channelText(said.number(0)));
            break;
        case Id::UpdateCurrentAudioVolume:
            addMoment(Keys, line.time, said.isTrue(0) ? QStringLiteral("+") : QStringLiteral("-"));
            break;
        case Id::OnRecvBackCar:
            set(Gear, line.time, said.isTrue(0) ? QStringLiteral("on") : QString());
            break;
        default:
            break;
        }
    }
    const int before = request.statusBefore;
    const int after = request.statusAfter;
    if (after != LoggedRequest::none && (after != before || m_states[Status].label.isEmpty()))
        set(Status, request.time(), statusText(after));
}

void TimelinePlot::note(qint64 time, quint64 /*line*/, const QString & /*text*/)
{
    shownTime(time);
}

void TimelinePlot::focus(const FocusChange &change)
{
    switch (change.kind) {
    case FocusChange::Kind::Lost:
        set(Focus, change.time, QStringLiteral("lost by ") + change.client);
        break;
    case FocusChange::Kind::Regained:
        set(Focus, change.time, change.client);
        break;
    case FocusChange::Kind::Other:
    case FocusChange::Kind::InTheEnd:
        break;
    }
}

void TimelinePlot::heading(qint64 time, quint64 /*line*/, const QString &text)
{
    if (m_settings.headings.isEmpty())
        addHeading(time, text);
    else
        shownTime(time);
}

void TimelinePlot::reboot()
{
    LoggedUnit::restart();
    for (const Lane lane : {Status, Channel, Focus, Gear})
        set(lane, m_timeline.now(), {});
}

void TimelinePlot::set(Lane lane, qint64 time, const QString &label)
{
    State &state = m_states[lane];
    if (state.label == label)
        return;
    const auto shown = shownTime(time);
    if (!shown)
        return;
    if (!state.label.isEmpty())
        addSpan(lane, state.since, *shown, state.label);
    state = {label, *shown};
    ++m_changes;
}

void TimelinePlot::addSpan(Lane lane, qint64 from, qint64 to, const QString &label)
{
    from = std::max(from, m_begin);
    if (from < to)
        m_spans[lane].append({double(from), double(to), label});
}

void TimelinePlot::addHeading(qint64 time, const QString &text)
{
    const auto shown = shownTime(time);
    if (!shown)
        return;
    const bool isBefore = *shown > time;
    if (isBefore)
        m_headings.clear();
    if (m_headings.size() <= mostHeadings)
        m_headings.append({*shown, Console::printable(text)});
}

void TimelinePlot::addMoment(Lane lane, qint64 time, const QString &label)
{
    const auto shown = shownTime(time);
    if (!shown || *shown != time)
        return;
    QVector<Figure::Span> &spans = m_spans[lane];
    const bool isAgain = !spans.isEmpty() && spans.constLast().from == double(time);
    if (isAgain)
        spans.last().label += label;
    else
        spans.append({double(time), double(time), label});
    ++m_changes;
}

void TimelinePlot::lookAtChip()
{
    const simulator::AudioChip *const chip = Platform::instance()->chip();
    const qint64 time = m_timeline.now();
    constexpr int unducked = 100;
    const bool isDucked = chip->isDucked() && chip->duckingGain() < unducked;
    set(Ducking, time, isDucked ? QStringLiteral("%1 %").arg(chip->duckingGain()) : QString());
    set(Mute, time, muteText());
    QVector<SourceKey> heard;
    const auto sounds = Heard::now().sounds;
    for (const Heard::Sound &sound : sounds) {
        const SourceKey key(sound.track, sound.source);
        heard.append(key);
        if (!m_sources.contains(key) && m_sources.size() == mostSources) {
            m_hasMoreSources = true;
            continue;
        }
        addLevel(key, time, sound.level);
    }
    for (const SourceKey &key : qAsConst(m_sources)) {
        if (!heard.contains(key))
            addLevel(key, time, silent);
    }
}

double TimelinePlot::lastOf(const QVector<Level> &levels)
{
    double level = silent;
    if (!levels.isEmpty())
        level = levels.constLast().level;
    return level;
}

void TimelinePlot::addLevel(const SourceKey &key, qint64 time, double level)
{
    QVector<Level> &levels = m_levels[key];
    const double last = lastOf(levels);
    if (last == level)
        return;
    const auto shown = shownTime(time);
    if (!shown)
        return;
    if (!m_sources.contains(key))
        m_sources.append(key);
    // Of several changes at once the last one is heard.
    if (!levels.isEmpty() && levels.constLast().time == *shown)
        levels.removeLast();
    levels.append({*shown, level});
    ++m_changes;
}

QVector<qint64> TimelinePlot::changeTimes() const
{
    QVector<qint64> times{m_begin, m_end};
    for (const DriveHeading &heading : m_headings)
        times.append(heading.time);
    for (const auto &spans : m_spans) {
        for (const Figure::Span &span : spans)
            times << qint64(span.from) << qint64(span.to);
    }
    for (const auto &levels : m_levels) {
        for (const Level &level : levels)
            times.append(level.time);
    }
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end()), times.end());
    return times;
}

Figure::Axis TimelinePlot::timeAxis(const QVector<qint64> &times)
{
    Figure::Axis axis;
    double place = 0;
    qint64 last = times.constFirst();
    for (const qint64 time : times) {
        const qint64 still = time - last;
        const bool isCut = m_settings.longestStill > 0 && still > m_settings.longestStill;
        const double width = double(isCut ? m_settings.longestStill : still) / millisecondsPerSecond;
        if (isCut)
            axis.breaks.append(place + width / 2);
        place += width;
        m_places.insert(time, place);
        axis.ticks.append({place, timeText(time)});
        last = time;
    }
    axis.most = std::max(place, 1 / millisecondsPerSecond);
    return axis;
}

double TimelinePlot::placeOf(qint64 time) const
{
    return m_places.value(time);
}

Figure::Charts TimelinePlot::levels(const Figure::Axis &axis) const
{
    constexpr double step = 6; // dB, half as loud
    constexpr double lowest = -60;
    Figure::Charts charts;
    Figure::Chart chart;
    chart.x = axis;
    chart.y.least = -2 * step;
    chart.y.most = 0;
    for (const SourceKey &key : m_sources) {
        const QString track = key.first == QLatin1String("main") ? QString() : QStringLiteral(" (track %1)").arg(key.first);
        Figure::Series series{charts.legend.size(), {}, true};
        charts.legend.append(Console::printable(sourceText(key.second)) + track);
        charts.sources.append(key.second);
        const auto levels = m_levels.value(key);
        for (const Level &level : levels) {
            series.points.append({placeOf(level.time), level.level});
            if (std::isfinite(level.level))
                chart.y.least = std::max(std::min(chart.y.least, step * std::floor(level.level / step)), lowest);
        }
        // It is heard until the end.
        series.points.append({axis.most, lastOf(levels)});
        chart.series.append(series);
    }
    const int steps = int(std::lround(-chart.y.least / step));
    for (int i = 0; i <= steps; ++i)
        chart.y.ticks.append({-i * step, i == 0 ? QStringLiteral("0 dB") : QString::number(-i * step)});
    charts.charts.append(chart);
    return charts;
}

Figure::Lanes TimelinePlot::lanes(const Figure::Axis &axis) const
{
    Figure::Lanes drawn{axis, {}};
    if (!m_headings.isEmpty())
        drawn.lanes.append(parts());
    for (int lane = 0; lane < laneCount; ++lane) {
        Figure::Lane one{QLatin1String(laneNames[lane]), {}, Console::printable(m_states[lane].label)};
        for (const Figure::Span &span : m_spans[lane])
            one.spans.append({placeOf(qint64(span.from)), placeOf(qint64(span.to)), Console::printable(span.label)});
        drawn.lanes.append(one);
    }
    return drawn;
}

Figure::Lane TimelinePlot::parts() const
{
    Figure::Lane lane{QStringLiteral("part"), {}};
    for (int i = 0; i < std::min(int(m_headings.size()), mostHeadings); ++i) {
        const qint64 from = m_headings.at(i).time;
        const qint64 to = i + 1 < m_headings.size() ? m_headings.at(i + 1).time : m_end;
        if (from < to)
            lane.spans.append({placeOf(from), placeOf(to), QStringLiteral("%1 %2").arg(i + 1).arg(m_headings.at(i).text)});
    }
    return lane;
}

Figure::List TimelinePlot::listOfHeadings() const
{
    Figure::List list;
    for (int i = 0; i < std::min(int(m_headings.size()), mostHeadings); ++i)
        list.items.append(QStringLiteral("%1 at %2: %3").arg(i + 1).arg(timeText(m_headings.at(i).time), m_headings.at(i).text));
    if (m_headings.size() > mostHeadings)
        list.items.append(QStringLiteral("and more"));
    return list;
}

Figure TimelinePlot::finish()
{
    for (const DriveHeading &heading : m_settings.headings)
        addHeading(heading.time, heading.text);
    shownTime(m_clock.now());
    for (int lane = 0; lane < laneCount; ++lane) {
        if (!m_states[lane].label.isEmpty())
            addSpan(Lane(lane), m_states[lane].since, m_end, m_states[lane].label);
    }
    const Figure::Axis axis = timeAxis(changeTimes());
    Figure figure{m_settings.title};
    figure.panels = {lanes(axis), levels(axis), listOfHeadings()};
    figure.remarks.append(QStringLiteral("Levels are those at the driver's ear, left front, without the equalizer; 0 dB is the loudest that the unit can be."));
    if (!axis.breaks.isEmpty())
        figure.remarks.append(QStringLiteral("Time is not to scale at the breaks: of %1 s or more in which nothing changes that much is drawn.")
                                  .arg(double(m_settings.longestStill) / millisecondsPerSecond));
    if (m_changes > m_settings.mostChanges)
        figure.remarks.append(QStringLiteral("The drive goes on: a picture holds %1 changes. --from and --to choose others.").arg(m_settings.mostChanges));
    if (m_hasMoreSources)
        figure.remarks.append(QStringLiteral("More sources were heard: a picture holds %1.").arg(mostSources));
    return figure;
}
