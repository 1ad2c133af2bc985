#include "timelinelayout.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double shortest = 6; // pixels of a span that is drawn by itself where others are near
constexpr double margin = 10; // pixels beyond the borders
constexpr int mostTold = 12; // characters of moments that are drawn as one

void append(QVector<SpanList::Span> &all, const SpanList::Span &span)
{
    const bool isMoment = span.length == 0;
    if (!all.isEmpty() && all.constLast().lane == span.lane && all.constLast().row == span.row) {
        SpanList::Span &last = all.last();
        const bool isShort = span.length < shortest && last.length < shortest;
        const bool isCrowded = span.left - last.left < shortest;
        if (isShort && isCrowded) {
            last.length = isMoment ? last.length : span.left + span.length - last.left;
            if (!isMoment)
                last.label.clear();
            else if (last.label.size() < mostTold)
                last.label += span.label;
            return;
        }
    }
    all.append(span);
}

/// The first of them that is in sight, or the one before it.
template<typename Items, typename TimeOf>
int firstIn(const Items &items, double time, const TimeOf &timeOf)
{
    const auto found = std::lower_bound(items.cbegin(), items.cend(), time, [&timeOf](const auto &item, double value) { return timeOf(item) < value; });
    return std::max(0, int(found - items.cbegin()) - 1);
}

/// Puts lines together, of which a column of pixels holds no more than can be seen.
class Pen
{
public:
    void lineTo(QPointF point)
    {
        const bool isSeenAlready = !m_path.isEmpty() && std::floor(point.x()) == m_column && point.y() >= m_least && point.y() <= m_most;
        if (isSeenAlready) {
            m_skipped = point;
            return;
        }
        if (m_skipped)
            m_path.append(*m_skipped);
        m_skipped.reset();
        m_path.append(point);
        const bool isNew = std::floor(point.x()) != m_column;
        m_column = std::floor(point.x());
        m_least = isNew ? point.y() : std::min(m_least, point.y());
        m_most = isNew ? point.y() : std::max(m_most, point.y());
    }

    void lift()
    {
        if (m_skipped)
            m_path.append(*m_skipped);
        m_skipped.reset();
        if (m_path.size() > 1)
            m_paths.append(QVariant(m_path));
        m_path.clear();
    }

    const QVariantList &paths() const { return m_paths; }

private:
    QVariantList m_paths;
    QVariantList m_path;
    std::optional<QPointF> m_skipped;
    double m_column = 0;
    double m_least = 0;
    double m_most = 0;
};

QVariantList pathsOf(const Figure::Series &series, const TimeScale &scale, double least, double height)
{
    Pen pen;
    std::optional<double> level;
    for (int i = firstIn(series.points, scale.from(), [](const QPointF &point) { return point.x(); }); i < series.points.size(); ++i) {
        const QPointF &point = series.points.at(i);
        const double left = std::clamp(scale.placeOf(point.x()), -margin, scale.width() + margin);
        if (level)
            pen.lineTo({left, *level});
        level.reset();
        if (std::isfinite(point.y())) {
            level = height * std::min(1.0, point.y() / least);
            pen.lineTo({left, *level});
        } else {
            pen.lift();
        }
        if (left > scale.width())
            break;
    }
    pen.lift();
    return pen.paths();
}

} // namespace

QVector<SpanList::Span> TimelineLayout::spansOf(const DriveFigure &figure, int row, const TimeScale &scale)
{
    QVector<SpanList::Span> all;
    for (int lane = 0; lane < figure.lanes.lanes.size(); ++lane) {
        const QVector<Figure::Span> &spans = figure.lanes.lanes.at(lane).spans;
        for (int i = firstIn(spans, scale.from(), [](const Figure::Span &span) { return span.from; }); i < spans.size(); ++i) {
            const Figure::Span &span = spans.at(i);
            const double left = std::max(-margin, scale.placeOf(span.from));
            const double right = std::min(scale.width() + margin, scale.placeOf(span.to));
            if (left > scale.width())
                break;
            if (right >= 0)
                append(all, {row, lane, left, right - left, span.label});
        }
    }
    return all;
}

QVector<SpanList::Span> TimelineLayout::marksOf(const QVector<DriveFigure::Difference> &differences, const TimeScale &scale)
{
    QVector<SpanList::Span> all;
    double end = -margin;
    for (const DriveFigure::Difference &one : differences) {
        const double left = std::max(-margin, scale.placeOf(one.from));
        const double right = std::min(scale.width() + margin, scale.placeOf(one.to));
        if (right < 0 || left > scale.width())
            continue;
        if (!all.isEmpty() && left <= end)
            all.last().length = std::max(all.constLast().length, right - all.constLast().left);
        else
            all.append({0, -1, left, right - left, one.what});
        end = all.constLast().left + all.constLast().length;
    }
    return all;
}

double TimelineLayout::leastLevel(const DriveFigure &drive, const std::optional<DriveFigure> &replay)
{
    const double least = drive.levels.charts.constFirst().y.least;
    return replay ? std::min(least, replay->levels.charts.constFirst().y.least) : least;
}

QVariantList TimelineLayout::curvesOf(const DriveFigure &drive, const std::optional<DriveFigure> &replay, const TimeScale &scale, double height)
{
    const double least = leastLevel(drive, replay);
    QVariantList all;
    const auto add = [&](const DriveFigure &figure, int row) {
        for (const Figure::Series &series : figure.levels.charts.constFirst().series) {
            const int source = drive.levels.legend.indexOf(figure.levels.legend.value(series.name));
            all.append(QVariantMap{
                {QStringLiteral("row"), row},
                {QStringLiteral("source"), source < 0 ? drive.levels.legend.size() + series.name : source},
                {QStringLiteral("paths"), pathsOf(series, scale, least, height)},
            });
        }
    };
    add(drive, 0);
    if (replay)
        add(*replay, 1);
    return all;
}

QVariantList TimelineLayout::levelTicks(double least, double height)
{
    constexpr int step = 6; // dB
    constexpr double roomOfTick = 16; // pixels
    QVariantList all;
    double last = -roomOfTick;
    for (int level = 0; level >= least; level -= step) {
        const double place = height * level / least;
        if (place - last < roomOfTick)
            continue;
        last = place;
        all.append(QVariantMap{{QStringLiteral("place"), place}, {QStringLiteral("label"), level == 0 ? QStringLiteral("0 dB") : QString::number(level)}});
    }
    return all;
}
