#ifndef RESPONSECURVE_H
#define RESPONSECURVE_H

#include "equalizerresponse.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariantList>

#include <optional>

/**
 * What bands of an equalizer do to a sound, as a curve for QML: the element ResponseCurve of the module QzAudio.Simulator 1.1.
 *
 *     ResponseCurve {
 *         id: curve
 *         bands: [{frequency: 80, q: 1, gain: 6}]
 *     }
 *     PathPolyline { path: curve.points.map(point => Qt.point(width * point.x, height / 2 - point.y)) }
 *
 * It only computes: no platform is asked. The bands are EqualizerResponse's.
 */
class ResponseCurve : public QObject
{
    Q_OBJECT
    /// Objects {frequency, q, gain}: Hz, centre frequency by bandwidth, dB. What is no such list is told of and leaves the curve as it was.
    Q_PROPERTY(QVariantList bands READ bands WRITE setBands NOTIFY bandsChanged)
    /// Whether the chip's loudness comes on top.
    Q_PROPERTY(bool loudness READ isLoudnessOn WRITE setLoudness NOTIFY loudnessChanged)
    /// How many points, 2 to 2000; 241 until set.
    Q_PROPERTY(int pointCount READ pointCount WRITE setPointCount NOTIFY pointCountChanged)
    /// The curve: points with x from 0 at 20 Hz to 1 at 20 kHz, logarithmically, and y in dB.
    Q_PROPERTY(QVariantList points READ points NOTIFY curveChanged)
    /// Hz, where the curve is highest from 20 Hz to 20 kHz, also where that is between two points.
    Q_PROPERTY(double highestFrequency READ highestFrequency NOTIFY curveChanged)
    /// dB; a signal needs so much headroom where it is above 0.
    Q_PROPERTY(double highestLevel READ highestLevel NOTIFY curveChanged)

public:
    static constexpr int fewestPoints = 2;
    static constexpr int mostPoints = 2000;

    explicit ResponseCurve(QObject *parent = nullptr);

    QVariantList bands() const;
    void setBands(const QVariantList &bands);
    bool isLoudnessOn() const { return m_loudness; }
    void setLoudness(bool on);
    int pointCount() const { return m_pointCount; }
    void setPointCount(int count);
    QVariantList points() const;
    double highestFrequency() const;
    double highestLevel() const;

    /// The curves that load() knows: "preset0" to "preset6" of the store, "mode0" to "mode6" of the facade.
    Q_INVOKABLE QStringList names() const;
    /// Takes over the bands of a curve. A name that there is not throws a RangeError and changes nothing.
    Q_INVOKABLE void load(const QString &name);
    /// dB at a frequency in Hz.
    Q_INVOKABLE double level(double frequency) const;
    /// x of a frequency in Hz.
    Q_INVOKABLE double position(double frequency) const;
    /// Hz at an x.
    Q_INVOKABLE double frequency(double position) const;

Q_SIGNALS:
    void bandsChanged();
    void loudnessChanged();
    void pointCountChanged();
    /// After each of the others.
    void curveChanged();

private:
    Q_DISABLE_COPY(ResponseCurve)

    void take(const EqualizerResponse::Bands &bands);
    /// @param changed the signal of what was set
    void becomeOther(void (ResponseCurve::*changed)());
    const EqualizerResponse::Point &highest() const;

    EqualizerResponse::Bands m_bands;
    bool m_loudness = false;
    int m_pointCount = 241;
    // Computed when first asked for: bindings ask several times.
    mutable std::optional<QVariantList> m_points;
    mutable std::optional<EqualizerResponse::Point> m_highest;
};

#endif
