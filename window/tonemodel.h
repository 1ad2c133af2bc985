#ifndef TONEMODEL_H
#define TONEMODEL_H

#include "roommodel.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariantList>

/// The room Tone: the equalizer type in use, the custom curve, what the loudspeakers get of both, and loudness.
class ToneModel : public RoomModel
{
    Q_OBJECT
    /// The stored type, 0 to 7; -1 where it is not known.
    Q_PROPERTY(int equalizerType READ equalizerType NOTIFY equalizerTypeChanged)
    Q_PROPERTY(bool loudness READ isLoudnessOn NOTIFY loudnessChanged)
    /// The stored custom curve, dB of sixteen bands; empty where it is not known.
    Q_PROPERTY(QVariantList customGains READ customGains NOTIFY customGainsChanged)
    /// Whether the facade refuses the custom curve, because a stored gain is beyond what it takes.
    Q_PROPERTY(bool customRefused READ isCustomRefused NOTIFY customGainsChanged)
    /// Bands of the curve that the left front output has now, as ResponseCurve takes them.
    Q_PROPERTY(QVariantList bands READ bands NOTIFY bandsChanged)
    /// The same in words: "preset 3 of the store".
    Q_PROPERTY(QString curveText READ curveText NOTIFY curveTextChanged)
    /// ms for which the same gain for a band is ignored; 0 for none.
    Q_PROPERTY(int repeatLeft READ repeatLeft NOTIFY repeatLeftChanged)

    /// What the types are called, by their number.
    Q_PROPERTY(QStringList typeTexts READ typeTexts CONSTANT)
    /// What the facade's modes are called, by their number.
    Q_PROPERTY(QStringList modeTexts READ modeTexts CONSTANT)
    /// The curves that ResponseCurve::load() knows: {name, text}.
    Q_PROPERTY(QVariantList namedCurves READ namedCurves CONSTANT)
    /// Centres of the sixteen bands, for people: "50", "3.1k".
    Q_PROPERTY(QStringList bandTexts READ bandTexts CONSTANT)
    /// The same with their unit: "3.1 kHz".
    Q_PROPERTY(QStringList bandNames READ bandNames CONSTANT)
    /// dB, up and down.
    Q_PROPERTY(int highestGain READ highestGain CONSTANT)
    /// dB; the policy takes halves of a gain, which are whole numbers.
    Q_PROPERTY(int gainStep READ gainStep CONSTANT)

public:
    using RoomModel::RoomModel;

    int equalizerType() const { return m_type; }
    bool isLoudnessOn() const { return m_loudness; }
    QVariantList customGains() const { return m_customGains; }
    bool isCustomRefused() const;
    QVariantList bands() const { return m_bands; }
    QString curveText() const { return m_curveText; }
    int repeatLeft() const { return m_repeatLeft; }

    QStringList typeTexts() const;
    QStringList modeTexts() const;
    QVariantList namedCurves() const;
    QStringList bandTexts() const;
    QStringList bandNames() const;
    int highestGain() const;
    int gainStep() const;

    // Lines for Desk::perform().
    Q_INVOKABLE QString typeLine(int type) const;
    Q_INVOKABLE QString modeLine(int mode) const;
    Q_INVOKABLE QString loudnessLine(bool on) const;
    /// @param gain dB, taken to the nearest that the policy can set
    Q_INVOKABLE QString gainLine(int band, double gain) const;

    // The same for ExpectButton, of what is shown.
    Q_INVOKABLE QString typeExpectation(int type) const;
    Q_INVOKABLE QString loudnessExpectation(bool on) const;
    Q_INVOKABLE QString gainExpectation(int band, int gain) const;

Q_SIGNALS:
    void equalizerTypeChanged();
    void loudnessChanged();
    void customGainsChanged();
    void bandsChanged();
    void curveTextChanged();
    void repeatLeftChanged();

protected:
    void update(const QVariantMap &snapshot) override;

private:
    QString textOfCurve() const;

    int m_type = -1;
    bool m_loudness = false;
    QVariantList m_customGains;
    QVariantList m_bands;
    QString m_curveText;
    int m_repeatLeft = 0;
};

#endif
