#include "responsecurve.h"

#include "equalizercurves.h"
#include "nearestname.h"
#include "scriptcall.h"

#include <QtCore/QPointF>
#include <QtCore/QVariantMap>
#include <QtQml/qqmlinfo.h>

#include <cmath>
#include <optional>

using EqualizerResponse::Band;
using EqualizerResponse::Bands;

namespace
{

std::optional<Band> bandOf(const QVariant &value)
{
    const QVariantMap object = value.toMap();
    bool isBand = true;
    const auto number = [&object, &isBand](const QString &name) {
        bool isNumber = false;
        const double read = object.value(name).toDouble(&isNumber);
        isBand = isBand && isNumber && std::isfinite(read);
        return read;
    };
    const Band band = {number(QStringLiteral("frequency")), number(QStringLiteral("q")), number(QStringLiteral("gain"))};
    return isBand ? std::make_optional(band) : std::nullopt;
}

bool isSame(const Bands &some, const Bands &others)
{
    const auto isSameBand = [](const Band &one, const Band &other) { return one.frequency == other.frequency && one.q == other.q && one.gain == other.gain; };
    return std::equal(some.cbegin(), some.cend(), others.cbegin(), others.cend(), isSameBand);
}

} // namespace

ResponseCurve::ResponseCurve(QObject *parent)
    : QObject(parent)
{
}

QVariantList ResponseCurve::bands() const
{
    QVariantList list;
    for (const Band &band : m_bands) {
        list.append(QVariantMap{{QStringLiteral("frequency"), band.frequency}, {QStringLiteral("q"), band.q}, {QStringLiteral("gain"), band.gain}});
    }
    return list;
}

void ResponseCurve::setBands(const QVariantList &bands)
{
    Bands read;
    for (const QVariant &value : bands) {
        const auto band = bandOf(value);
        if (!band) {
            qmlWarning(this) << "bands are objects {frequency, q, gain} of numbers; number " << read.size() << " is none";
            return;
        }
        read.append(*band);
    }
    take(read);
}

void ResponseCurve::setLoudness(bool on)
{
    if (on == m_loudness)
        return;
    m_loudness = on;
    becomeOther(&ResponseCurve::loudnessChanged);
}

void ResponseCurve::setPointCount(int count)
{
    if (count < fewestPoints || count > mostPoints) {
        qmlWarning(this) << "pointCount must be from " << fewestPoints << " to " << mostPoints << ", not " << count;
        return;
    }
    if (count == m_pointCount)
        return;
    m_pointCount = count;
    becomeOther(&ResponseCurve::pointCountChanged);
}

QVariantList ResponseCurve::points() const
{
    if (!m_points) {
        const QVector<double> frequencies = EqualizerResponse::spacedFrequencies(m_pointCount);
        m_points.emplace();
        for (int i = 0; i < frequencies.size(); ++i)
            m_points->append(QPointF(double(i) / (m_pointCount - 1), level(frequencies.at(i))));
    }
    return *m_points;
}

double ResponseCurve::highestFrequency() const
{
    return highest().frequency;
}

double ResponseCurve::highestLevel() const
{
    return highest().level;
}

QStringList ResponseCurve::names() const
{
    return EqualizerCurves::names();
}

void ResponseCurve::load(const QString &name)
{
    const auto bands = EqualizerCurves::named(name);
    if (bands) {
        take(*bands);
        return;
    }
    const QString nearest = nearestName(name, names());
    const QString known
        = nearest.isEmpty() ? QStringLiteral("curves are ") + names().join(QLatin1String(", ")) : QStringLiteral("the nearest is \"%1\"").arg(nearest);
    throwScriptError(this, QJSValue::RangeError, QStringLiteral("there is no curve \"%1\"; %2").arg(name, known));
}

double ResponseCurve::level(double frequency) const
{
    return EqualizerResponse::level(m_bands, frequency) + (m_loudness ? EqualizerCurves::loudnessLevel(frequency) : 0);
}

double ResponseCurve::position(double frequency) const
{
    using namespace EqualizerResponse;
    return std::log(frequency / lowestFrequency) / std::log(EqualizerResponse::highestFrequency / lowestFrequency);
}

double ResponseCurve::frequency(double position) const
{
    using namespace EqualizerResponse;
    return lowestFrequency * std::pow(EqualizerResponse::highestFrequency / lowestFrequency, position);
}

void ResponseCurve::take(const Bands &bands)
{
    if (isSame(bands, m_bands))
        return;
    m_bands = bands;
    becomeOther(&ResponseCurve::bandsChanged);
}

void ResponseCurve::becomeOther(void (ResponseCurve::*changed)())
{
    m_points.reset();
    m_highest.reset();
    Q_EMIT(this->*changed)();
    Q_EMIT curveChanged();
}

const EqualizerResponse::Point &ResponseCurve::highest() const
{
    if (!m_highest)
        m_highest = EqualizerResponse::highestPoint(m_bands, [this](double frequency) { return level(frequency); });
    return *m_highest;
}
