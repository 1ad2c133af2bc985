#include "figurejson.h"

#include <QtCore/QJsonArray>

#include <cmath>

namespace
{

template<typename Items, typename Convert>
QJsonArray arrayOf(const Items &items, const Convert &convert)
{
    QJsonArray array;
    for (const auto &item : items)
        array.append(convert(item));
    return array;
}

QJsonArray texts(const QStringList &list)
{
    return QJsonArray::fromStringList(list);
}

QJsonValue number(double value)
{
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue();
}

QJsonObject axis(const Figure::Axis &one)
{
    const auto tick = [](const Figure::Tick &each) { return QJsonObject{{QStringLiteral("value"), each.value}, {QStringLiteral("label"), each.label}}; };
    return {
        {QStringLiteral("least"), one.least},
        {QStringLiteral("most"), one.most},
        {QStringLiteral("logarithmic"), one.isLogarithmic},
        {QStringLiteral("ticks"), arrayOf(one.ticks, tick)},
        {QStringLiteral("breaks"), arrayOf(one.breaks, number)},
    };
}

QJsonObject chart(const Figure::Chart &one)
{
    const auto point = [](QPointF each) { return QJsonArray{number(each.x()), number(each.y())}; };
    const auto series = [&point](const Figure::Series &each) {
        return QJsonObject{
            {QStringLiteral("name"), each.name},
            {QStringLiteral("stepped"), each.isStepped},
            {QStringLiteral("points"), arrayOf(each.points, point)},
        };
    };
    const auto dot = [&point](const Figure::Dot &each) {
        return QJsonObject{{QStringLiteral("name"), each.name}, {QStringLiteral("place"), point(each.place)}, {QStringLiteral("label"), each.label}};
    };
    return {
        {QStringLiteral("title"), one.title},
        {QStringLiteral("x"), axis(one.x)},
        {QStringLiteral("y"), axis(one.y)},
        {QStringLiteral("series"), arrayOf(one.series, series)},
        {QStringLiteral("dots"), arrayOf(one.dots, dot)},
    };
}

QJsonObject panel(const Figure::Charts &charts)
{
    return {
        {QStringLiteral("kind"), QStringLiteral("charts")},
        {QStringLiteral("legend"), texts(charts.legend)},
        {QStringLiteral("sources"), texts(charts.sources)},
        {QStringLiteral("charts"), arrayOf(charts.charts, chart)},
    };
}

QJsonObject panel(const Figure::Lanes &lanes)
{
    const auto span = [](const Figure::Span &each) {
        return QJsonObject{{QStringLiteral("from"), each.from}, {QStringLiteral("to"), each.to}, {QStringLiteral("label"), each.label}};
    };
    const auto lane = [&span](const Figure::Lane &each) {
        return QJsonObject{{QStringLiteral("name"), each.name}, {QStringLiteral("spans"), arrayOf(each.spans, span)}, {QStringLiteral("atEnd"), each.atEnd}};
    };
    return {
        {QStringLiteral("kind"), QStringLiteral("lanes")},
        {QStringLiteral("x"), axis(lanes.x)},
        {QStringLiteral("lanes"), arrayOf(lanes.lanes, lane)},
    };
}

QJsonObject panel(const Figure::Maps &maps)
{
    const auto map = [](const Figure::Map &each) {
        return QJsonObject{
            {QStringLiteral("title"), each.title},
            {QStringLiteral("columns"), each.columns},
            {QStringLiteral("values"), arrayOf(each.values, number)},
            {QStringLiteral("marked"), arrayOf(each.isMarked, [](bool isMarked) { return QJsonValue(isMarked); })},
            {QStringLiteral("chosen"), QJsonArray{each.chosen.x(), each.chosen.y()}},
        };
    };
    return {
        {QStringLiteral("kind"), QStringLiteral("maps")},
        {QStringLiteral("top"), maps.top},
        {QStringLiteral("bottom"), maps.bottom},
        {QStringLiteral("left"), maps.left},
        {QStringLiteral("right"), maps.right},
        {QStringLiteral("marked"), maps.marked},
        {QStringLiteral("maps"), arrayOf(maps.maps, map)},
    };
}

QJsonObject panel(const Figure::Car &car)
{
    const auto loudspeaker = [](const Figure::Loudspeaker &each) {
        return QJsonObject{{QStringLiteral("name"), each.name}, {QStringLiteral("gain"), each.gain}, {QStringLiteral("level"), each.level}};
    };
    return {
        {QStringLiteral("kind"), QStringLiteral("car")},
        {QStringLiteral("loudspeakers"), arrayOf(car.loudspeakers, loudspeaker)},
    };
}

QJsonObject panel(const Figure::Graph &graph)
{
    const auto node = [](const Figure::Node &each) { return QJsonObject{{QStringLiteral("name"), each.name}, {QStringLiteral("detail"), each.detail}}; };
    const auto edge = [](const Figure::Edge &each) { return QJsonArray{each.from, each.to}; };
    const auto column = [&node, &edge](const Figure::Column &each) {
        return QJsonObject{
            {QStringLiteral("title"), each.title},
            {QStringLiteral("nodes"), arrayOf(each.nodes, node)},
            {QStringLiteral("edges"), arrayOf(each.edges, edge)},
        };
    };
    return {
        {QStringLiteral("kind"), QStringLiteral("graph")},
        {QStringLiteral("columns"), arrayOf(graph.columns, column)},
    };
}

QJsonObject panel(const Figure::Table &table)
{
    return {
        {QStringLiteral("kind"), QStringLiteral("table")},
        {QStringLiteral("keys"), table.keys},
        {QStringLiteral("head"), texts(table.head)},
        {QStringLiteral("rows"), arrayOf(table.rows, texts)},
    };
}

QJsonObject panel(const Figure::List &list)
{
    return {
        {QStringLiteral("kind"), QStringLiteral("list")},
        {QStringLiteral("items"), texts(list.items)},
    };
}

} // namespace

QJsonObject FigureJson::of(const Figure &figure)
{
    const auto anyPanel = [](const Figure::Panel &each) { return std::visit([](const auto &one) { return panel(one); }, each); };
    return {
        {QStringLiteral("title"), figure.title},
        {QStringLiteral("panels"), arrayOf(figure.panels, anyPanel)},
        {QStringLiteral("remarks"), texts(figure.remarks)},
    };
}
