#include "equalizertarget.h"

#include <sound/equalizerfit.h>
#include <sound/equalizerreport.h>

#include <cmath>

EqualizerText importedFrom(std::string_view bytes)
{
    EqualizerText text = EqualizerText::read(QByteArray(bytes.data(), int(bytes.size())));
    const QVector<double> frequencies = EqualizerResponse::spacedFrequencies(20);
    for (const double frequency : frequencies) {
        if (!std::isfinite(text.level(frequency)))
            qFatal("no level at %g Hz", frequency);
    }
    // A fit takes a thousand times as long as reading; short texts lead everywhere in it.
    constexpr std::size_t longestFitted = 128;
    if (text.isEmpty() || bytes.size() > longestFitted)
        return text;
    const EqualizerFit fit = EqualizerFit::to([&text](double frequency) { return text.level(frequency); }, EqualizerFit::storedStep);
    if (!std::isfinite(fit.meanError))
        qFatal("no error");
    const EqualizerReport report(QStringLiteral("bytes"), text, fit);
    report.toText();
    report.toJson();
    return text;
}
