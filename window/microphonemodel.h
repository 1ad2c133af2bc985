#ifndef MICROPHONEMODEL_H
#define MICROPHONEMODEL_H

#include "roommodel.h"

#include <QtCore/QVariantList>

/// The microphone as the platform has it: gains, stages, calibration, and the voice's delays.
class MicrophoneModel : public RoomModel
{
    Q_OBJECT
    /// Input volume, 0 to 91.
    Q_PROPERTY(double volume READ volume NOTIFY changed)
    /// dB, left and right, of a gain as a whole; as the policy or the facade set it last.
    Q_PROPERTY(QVariantList analog READ analog NOTIFY changed)
    /// dB, the analogue stage of each side.
    Q_PROPERTY(QVariantList op READ op NOTIFY changed)
    /// dB, the programmable rest of each side.
    Q_PROPERTY(QVariantList pga READ pga NOTIFY changed)
    /// 0 never started, 1 running, 2 applied.
    Q_PROPERTY(int calibration READ calibration NOTIFY changed)
    /// dB that the calibration finds.
    Q_PROPERTY(QVariantList calibrationGains READ calibrationGains NOTIFY changed)
    /// Whether the left and the right input are swapped: the arm microphone is in use.
    Q_PROPERTY(bool swapped READ isSwapped NOTIFY changed)
    Q_PROPERTY(int aecQuality READ aecQuality NOTIFY changed)
    Q_PROPERTY(int handsfreeDelay READ handsfreeDelay NOTIFY changed)
    Q_PROPERTY(bool downlinkStarted READ isDownlinkStarted NOTIFY changed)
    Q_PROPERTY(int downlinkDelay READ downlinkDelay NOTIFY changed)
    /// The eight values that the self-test reads.
    Q_PROPERTY(QVariantList test READ test NOTIFY changed)
    /// Time in ms that a call on the platform takes.
    Q_PROPERTY(int callDuration READ callDuration NOTIFY changed)
    /// Rows {stage (dB), from (dB), to (dB), current (in use)}: which gains a stage serves.
    Q_PROPERTY(QVariantList stages READ stages NOTIFY changed)
    /// Whether the stages in use are what a start would split the analogue gain into.
    Q_PROPERTY(bool stagesFit READ stagesFit NOTIFY changed)

public:
    /// A gain as the policy splits it.
    struct Split
    {
        double stage = 0; ///< dB
        int rest = 0; ///< dB
    };

    explicit MicrophoneModel(QObject *parent = nullptr);

    double volume() const { return m_given.value(QStringLiteral("volume")).toDouble(); }
    QVariantList analog() const { return pair("analog"); }
    QVariantList op() const { return pair("op"); }
    QVariantList pga() const { return pair("pga"); }
    int calibration() const { return number("calibration"); }
    QVariantList calibrationGains() const { return pair("calibrationGains"); }
    bool isSwapped() const { return m_given.value(QStringLiteral("swapped")).toBool(); }
    int aecQuality() const { return number("aecQuality"); }
    int handsfreeDelay() const { return number("handsfreeDelay"); }
    bool isDownlinkStarted() const { return m_given.value(QStringLiteral("downlinkStarted")).toBool(); }
    int downlinkDelay() const { return number("downlinkDelay"); }
    QVariantList test() const { return m_given.value(QStringLiteral("test")).toList(); }
    int callDuration() const { return m_callDuration; }
    QVariantList stages() const;
    bool stagesFit() const;

    static Split split(double gain);
    /// "21 dB and -1 dB"
    Q_INVOKABLE static QString splitText(double gain);
    /// The line that sets the stages of a gain, as a start does.
    Q_INVOKABLE static QString stagesLine(double gain);

Q_SIGNALS:
    void changed();

protected:
    void update(const QVariantMap &snapshot) override;

private:
    int number(const char *key) const { return m_given.value(QLatin1String(key)).toInt(); }
    QVariantList pair(const char *key) const;

    QVariantMap m_given;
    int m_callDuration = 0;
};

#endif
