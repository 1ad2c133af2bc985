#ifndef DRIVEFIGURE_H
#define DRIVEFIGURE_H

#include "plot/figure.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <optional>

/// A drive as "plot timeline --squeeze 0 --json" tells it: what held when, and how loud each source was. Times are seconds from its beginning.
struct DriveFigure
{
    Figure::Lanes lanes;
    Figure::Charts levels; ///< one chart
    QStringList remarks;

    /// Empty where the text is no such figure.
    static std::optional<DriveFigure> read(const QByteArray &json);

    double duration() const { return lanes.x.most; }
    /// Lets what holds at the end hold until then.
    void extendTo(double end);

    /// -1 for none.
    int laneNamed(const QString &name) const;
    static QString levelText(double level);

    /// Times at which anything changes, in order, with beginning and end.
    QVector<double> changes() const;
    /// What holds then in a lane; empty for nothing. A moment counts as far as @p nearby s from it.
    QString holding(int lane, double time, double nearby) const;
    /// dB of a source of the legend then; minus infinity where it is not heard.
    double levelAt(int source, double time) const;
    /// The source that is heard loudest then, or else was heard last; -1 for none.
    int loudestAt(double time) const;

    /// A stretch in which two drives are not the same.
    struct Difference
    {
        double from;
        double to;
        QString what; ///< "ducking", or a source
        QString here;
        QString there;
    };
    /// Where another drive differs, in order. Shorter stretches than a clock's inexactness are none.
    QVector<Difference> differences(const DriveFigure &other) const;

private:
    const QVector<Figure::Series> &series() const { return levels.charts.constFirst().series; }
    int sourceNamed(const QString &name) const;
    bool hasWholeSeconds() const;
};

#endif
