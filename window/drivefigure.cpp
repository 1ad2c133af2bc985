#include "drivefigure.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr double silent = -std::numeric_limits<double>::infinity();

double numberOf(const QJsonValue &value)
{
    return value.isDouble() ? value.toDouble() : silent;
}

Figure::Axis axisOf(const QJsonValue &value)
{
    Figure::Axis axis;
    const QJsonObject object = value.toObject();
    axis.least = object.value(QLatin1String("least")).toDouble();
    axis.most = object.value(QLatin1String("most")).toDouble();
    const QJsonArray ticks = object.value(QLatin1String("ticks")).toArray();
    for (const QJsonValue &tick : ticks)
        axis.ticks.append({tick.toObject().value(QLatin1String("value")).toDouble(), tick.toObject().value(QLatin1String("label")).toString()});
    return axis;
}

QStringList textsOf(const QJsonValue &value)
{
    QStringList texts;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &one : array)
        texts.append(one.toString());
    return texts;
}

Figure::Lanes lanesOf(const QJsonObject &panel)
{
    Figure::Lanes lanes{axisOf(panel.value(QLatin1String("x"))), {}};
    lanes.x.ticks.clear();
    const QJsonArray all = panel.value(QLatin1String("lanes")).toArray();
    for (const QJsonValue &each : all) {
        const QJsonObject object = each.toObject();
        Figure::Lane lane{object.value(QLatin1String("name")).toString(), {}, object.value(QLatin1String("atEnd")).toString()};
        const QJsonArray spans = object.value(QLatin1String("spans")).toArray();
        for (const QJsonValue &one : spans) {
            const QJsonObject span = one.toObject();
            lane.spans.append(
                {span.value(QLatin1String("from")).toDouble(), span.value(QLatin1String("to")).toDouble(), span.value(QLatin1String("label")).toString()});
        }
        lanes.lanes.append(lane);
    }
    return lanes;
}

Figure::Charts chartsOf(const QJsonObject &panel)
{
    Figure::Charts charts{textsOf(panel.value(QLatin1String("legend"))), {}, textsOf(panel.value(QLatin1String("sources")))};
    const QJsonObject object = panel.value(QLatin1String("charts")).toArray().at(0).toObject();
    Figure::Chart chart;
    chart.y = axisOf(object.value(QLatin1String("y")));
    const QJsonArray all = object.value(QLatin1String("series")).toArray();
    for (const QJsonValue &each : all) {
        Figure::Series series{each.toObject().value(QLatin1String("name")).toInt(), {}, true};
        const QJsonArray points = each.toObject().value(QLatin1String("points")).toArray();
        for (const QJsonValue &point : points)
            series.points.append({point.toArray().at(0).toDouble(), numberOf(point.toArray().at(1))});
        chart.series.append(series);
    }
    charts.charts.append(chart);
    return charts;
}

/// The last one that is not later; null before the first.
template<typename Items, typename TimeOf>
auto lastUntil(const Items &items, double time, const TimeOf &timeOf) -> const typename Items::value_type *
{
    const auto next = std::upper_bound(items.cbegin(), items.cend(), time, [&timeOf](double value, const auto &item) { return value < timeOf(item); });
    return next == items.cbegin() ? nullptr : &*(next - 1);
}

bool isWhole(double seconds)
{
    constexpr double exactness = 1e-6;
    return std::abs(seconds - std::round(seconds)) < exactness;
}

QVector<double> merged(QVector<double> times, const QVector<double> &others)
{
    times += others;
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end()), times.end());
    return times;
}

} // namespace

std::optional<DriveFigure> DriveFigure::read(const QByteArray &json)
{
    DriveFigure figure;
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const QJsonArray panels = object.value(QLatin1String("panels")).toArray();
    for (const QJsonValue &each : panels) {
        const QJsonObject panel = each.toObject();
        const QString kind = panel.value(QLatin1String("kind")).toString();
        if (kind == QLatin1String("lanes"))
            figure.lanes = lanesOf(panel);
        else if (kind == QLatin1String("charts"))
            figure.levels = chartsOf(panel);
    }
    figure.remarks = textsOf(object.value(QLatin1String("remarks")));
    const bool isWhole = !figure.lanes.lanes.isEmpty() && !figure.levels.charts.isEmpty() && figure.duration() > 0;
    return isWhole ? std::make_optional(figure) : std::nullopt;
}

void DriveFigure::extendTo(double end)
{
    const double before = duration();
    if (end <= before)
        return;
    for (Figure::Lane &lane : lanes.lanes) {
        const bool isPart = lane.name == QLatin1String("part");
        const QString holding = isPart && !lane.spans.isEmpty() ? lane.spans.constLast().label : lane.atEnd;
        if (holding.isEmpty())
            continue;
        const bool goesOn = !lane.spans.isEmpty() && lane.spans.constLast().to == before && lane.spans.constLast().label == holding;
        if (goesOn)
            lane.spans.last().to = end;
        else
            lane.spans.append({before, end, holding});
    }
    for (Figure::Series &one : levels.charts.first().series) {
        // Each ends with a point at the end, which says what the one before it says.
        if (!one.points.isEmpty() && one.points.constLast().x() == before)
            one.points.last().setX(end);
    }
    lanes.x.most = end;
}

QVector<double> DriveFigure::changes() const
{
    QVector<double> times{0, duration()};
    for (const Figure::Lane &lane : lanes.lanes) {
        for (const Figure::Span &span : lane.spans)
            times << span.from << span.to;
    }
    for (const Figure::Series &one : series()) {
        for (const QPointF &point : one.points)
            times.append(point.x());
    }
    return merged(times, {});
}

QString DriveFigure::holding(int lane, double time, double nearby) const
{
    const QVector<Figure::Span> &spans = lanes.lanes.at(lane).spans;
    const Figure::Span *const span = lastUntil(spans, time + nearby, [](const Figure::Span &one) { return one.from; });
    if (!span)
        return {};
    if (span->from == span->to)
        return std::abs(span->from - time) <= nearby ? span->label : QString();
    const Figure::Span *const exact = lastUntil(spans, time, [](const Figure::Span &one) { return one.from; });
    const bool isOver = !exact || (exact->to <= time && !(exact->to == duration() && time == duration()));
    return isOver ? QString() : exact->label;
}

double DriveFigure::levelAt(int source, double time) const
{
    double level = silent;
    for (const Figure::Series &one : series()) {
        if (one.name != source)
            continue;
        const QPointF *const point = lastUntil(one.points, time, [](const QPointF &each) { return each.x(); });
        if (point)
            level = point->y();
    }
    return level;
}

int DriveFigure::loudestAt(double time) const
{
    int loudest = -1;
    for (int source = 0; source < levels.legend.size(); ++source) {
        const double level = levelAt(source, time);
        if (std::isfinite(level) && (loudest < 0 || level > levelAt(loudest, time)))
            loudest = source;
    }
    if (loudest >= 0)
        return loudest;
    double latest = -1;
    for (const Figure::Series &one : series()) {
        for (const QPointF &point : one.points) {
            if (point.x() > latest && point.x() <= time && std::isfinite(point.y())) {
                latest = point.x();
                loudest = one.name;
            }
        }
    }
    return loudest;
}

QString DriveFigure::levelText(double level)
{
    return std::isfinite(level) ? QStringLiteral("%1 dB").arg(QLocale::c().toString(level, 'f', 1)) : QStringLiteral("not heard");
}

int DriveFigure::sourceNamed(const QString &name) const
{
    return levels.legend.indexOf(name);
}

int DriveFigure::laneNamed(const QString &name) const
{
    const auto found = std::find_if(lanes.lanes.cbegin(), lanes.lanes.cend(), [&name](const Figure::Lane &lane) { return lane.name == name; });
    return found == lanes.lanes.cend() ? -1 : int(found - lanes.lanes.cbegin());
}

bool DriveFigure::hasWholeSeconds() const
{
    const QVector<double> times = changes();
    return std::all_of(times.cbegin(), times.cend(), isWhole);
}

QVector<DriveFigure::Difference> DriveFigure::differences(const DriveFigure &other) const
{
    // What timers of a unit do comes some percent late there.
    constexpr double inexactness = 0.25;
    constexpr double inexactnessOfSeconds = 1.5;
    const double shortest = hasWholeSeconds() ? inexactnessOfSeconds : inexactness;
    const double end = std::min(duration(), other.duration());
    const QVector<double> times = merged(changes(), other.changes());
    QVector<Difference> all;
    // One thing at a time: what it is here and there, in words, where these differ.
    const auto compare = [&](const QString &what, const auto &textHere, const auto &textThere) {
        QVector<Difference> found;
        for (int i = 0; i + 1 < times.size() && times.at(i) < end; ++i) {
            const QString here = textHere(times.at(i));
            const QString there = textThere(times.at(i));
            if (here == there)
                continue;
            const double until = std::min(times.at(i + 1), end);
            const bool goesOn = !found.isEmpty() && found.constLast().to == times.at(i) && found.constLast().here == here && found.constLast().there == there;
            if (goesOn)
                found.last().to = until;
            else
                found.append({times.at(i), until, what, here, there});
        }
        for (const Difference &one : qAsConst(found)) {
            if (one.to - one.from >= shortest)
                all.append(one);
        }
    };
    constexpr const char *uncompared[] = {"part", "keys"};
    for (int lane = 0; lane < lanes.lanes.size(); ++lane) {
        const QString name = lanes.lanes.at(lane).name;
        const int there = other.laneNamed(name);
        const bool isCompared
            = there >= 0 && std::none_of(std::begin(uncompared), std::end(uncompared), [&name](const char *one) { return name == QLatin1String(one); });
        if (isCompared)
            compare(
                name, [&](double time) { return holding(lane, time, 0); }, [&](double time) { return other.holding(there, time, 0); });
    }
    QStringList names = levels.legend;
    for (const QString &name : other.levels.legend) {
        if (!names.contains(name))
            names.append(name);
    }
    for (const QString &name : qAsConst(names)) {
        const auto textIn = [&name](const DriveFigure &figure) {
            return [&figure, source = figure.sourceNamed(name)](double time) { return levelText(source < 0 ? silent : figure.levelAt(source, time)); };
        };
        compare(name, textIn(*this), textIn(other));
    }
    std::stable_sort(all.begin(), all.end(), [](const Difference &one, const Difference &another) { return one.from < another.from; });
    return all;
}
