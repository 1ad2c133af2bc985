#ifndef FIGURE_H
#define FIGURE_H

#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <variant>

/**
 * A picture before it is drawn: panels, one below the other, in the units of what they show.
 *
 * TerminalPlot and SvgPlot draw it. What they have no room for they leave out: ticks, labels of spans; never a line, a point or a span.
 */
struct Figure
{
    struct Tick
    {
        double value;
        QString label;
    };

    /// Its ticks say the unit.
    struct Axis
    {
        double least = 0;
        double most = 1;
        QVector<Tick> ticks = {};
        bool isLogarithmic = false;
        QVector<double> breaks = {}; ///< where some of it was left out

        /// 0 at least, 1 at most, held between them.
        double placeOf(double value) const;
    };

    struct Series
    {
        int name; ///< index in the legend
        QVector<QPointF> points; ///< from left to right; a y that is not finite interrupts the line
        bool isStepped = false; ///< each y holds until the next point
    };

    struct Dot
    {
        int name; ///< index in the legend
        QPointF place;
        QString label; ///< for who points at it
    };

    struct Chart
    {
        QString title;
        Axis x;
        Axis y;
        QVector<Series> series = {};
        QVector<Dot> dots = {};
    };

    /// Charts of the same things, beside each other where there is room.
    struct Charts
    {
        QStringList legend;
        QVector<Chart> charts;
        QStringList sources = {}; ///< the platform's name of each in the legend, where it is one of its sources
    };

    struct Span
    {
        double from;
        double to; ///< the same as from: a moment
        QString label;
    };

    struct Lane
    {
        QString name;
        QVector<Span> spans;
        QString atEnd = {}; ///< what holds where they end; empty for nothing
    };

    /// What held when.
    struct Lanes
    {
        Axis x;
        QVector<Lane> lanes;
    };

    /// A field of values, the first row on top.
    struct Map
    {
        QString title;
        int columns;
        QVector<double> values; ///< 0 to 1, row by row
        QVector<bool> isMarked; ///< of each value
        QPoint chosen; ///< column and row of the one that the rest of the figure is about
    };

    struct Maps
    {
        QString top; ///< what the first row is
        QString bottom;
        QString left;
        QString right;
        QString marked; ///< what marked values are
        QVector<Map> maps;
    };

    struct Loudspeaker
    {
        QString name;
        QString gain;
        double level; ///< 0 to 1
    };

    /// A car from above, its front on top.
    struct Car
    {
        QVector<Loudspeaker> loudspeakers; ///< left front, right front, left rear, right rear
    };

    struct Node
    {
        QString name;
        QString detail;
    };

    struct Edge
    {
        int from; ///< index in its column
        int to; ///< index in the next column
    };

    struct Column
    {
        QString title;
        QVector<Node> nodes;
        QVector<Edge> edges; ///< to the next column
    };

    /// Three columns, of which the second is what the others are sorted by.
    struct Graph
    {
        QVector<Column> columns;
    };

    struct Table
    {
        int keys; ///< columns at the left that say what a row is about
        QStringList head;
        QVector<QStringList> rows;
    };

    /// Each begins on a line of its own.
    struct List
    {
        QStringList items;
    };

    using Panel = std::variant<Charts, Lanes, Maps, Car, Graph, Table, List>;

    QString title;
    QVector<Panel> panels = {};
    QStringList remarks = {}; ///< paragraphs below the panels
};

#endif
