#ifndef EQUALIZERTEXT_H
#define EQUALIZERTEXT_H

#include "equalizerresponse.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>

/**
 * A curve as equalizer tools keep it in text files, a line each:
 *
 *     Preamp: -6 dB
 *     Filter 1: ON PK Fc 100 Hz Gain -2.5 dB Q 1.41
 *     Filter 2: ON HS Fc 8000 Hz Gain 3 dB
 *     GraphicEQ: 20 0; 50 1.5; 20000 -3
 *
 * Capitals, blanks and the filter's number do not matter; decimals may have a comma, a filter a bandwidth in octaves ("BW Oct 1") instead
 * of Q. Lines that begin with # or // say nothing, and what is OFF counts for nothing. Any bytes are a text: what is not understood
 * is a problem of its line, and left out.
 */
class EqualizerText
{
public:
    /// About one line.
    struct Remark
    {
        int line; ///< from 1
        QString text;
    };

    struct Filter
    {
        std::optional<EqualizerResponse::Shelf> shelf; ///< none: a peak
        EqualizerResponse::Band band;
    };

    /// A graphic list: points in the order of their frequencies, straight lines over the logarithm of the frequency between.
    using List = QVector<EqualizerResponse::Point>;

    static EqualizerText read(const QByteArray &bytes);

    /// The bands as such a text, with a preamp that lowers the curve's highest point to 0 dB where it is above. @p title stands in its first line.
    static QString written(const EqualizerResponse::Bands &bands, const QString &title);

    /// What all of it makes of a frequency in Hz, in dB, without the preamp.
    double level(double frequency) const;
    /// Nothing to be seen in it, not even a filter that is off.
    bool isEmpty() const;

    QVector<Filter> filters;
    QVector<List> lists;
    int filtersOff = 0;
    double preamp = 0; ///< dB, of all lines together
    QVector<Remark> problems; ///< what was left out
    QVector<Remark> notes; ///< what was understood, but is not as it may seem

private:
    EqualizerText() = default;

    friend class EqualizerTextReader;
};

#endif
