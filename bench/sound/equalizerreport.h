#ifndef EQUALIZERREPORT_H
#define EQUALIZERREPORT_H

#include "equalizerfit.h"
#include "equalizertext.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// What an import tells: the curve that was wanted beside the one that the unit gets.
class EqualizerReport
{
public:
    /// @param name of the file, as it was given
    EqualizerReport(const QString &name, const EqualizerText &wantedText, const EqualizerFit &found);

    /// For people: both curves in steps of a third of an octave, the errors, the headroom, and the call that sets the gains.
    QString toText() const;
    /// For programs: the same, with both curves at the frequencies of the fit.
    QByteArray toJson() const;

private:
    QString m_name;
    const EqualizerText &m_text;
    const EqualizerFit &m_fit;
    EqualizerResponse::Bands m_bands;
    EqualizerResponse::Point m_highest;
};

#endif
