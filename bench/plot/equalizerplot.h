#ifndef EQUALIZERPLOT_H
#define EQUALIZERPLOT_H

#include "figure.h"

#include "equalizerresponse.h"

#include <QtCore/QString>
#include <QtCore/QVector>

/// Responses of equalizer curves, from 20 Hz to 20 kHz.
namespace EqualizerPlot
{

struct Curve
{
    QString name;
    EqualizerResponse::Bands bands;
};

/// Curves that can still be told from each other in one chart.
constexpr int mostCurves = 8;

/// In one chart, with their bands, and with the headroom that each needs.
Figure draw(const QVector<Curve> &curves);

/// Each of the facade's modes beside the store's preset of the same number.
Figure compare();

} // namespace EqualizerPlot

#endif
