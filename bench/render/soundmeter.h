#ifndef SOUNDMETER_H
#define SOUNDMETER_H

#include <QtCore/QObject>
#include <QtCore/QString>

#include <memory>

class Rendering;
class SoundRecorder;

/// What a scenario finds as Sound: how loud that was which it has played so far. FFmpeg makes it and measures it.
class SoundMeter : public QObject
{
    Q_OBJECT

public:
    /// @param recorder null for one that has recorded nothing
    explicit SoundMeter(const SoundRecorder *recorder, QObject *parent = nullptr);
    ~SoundMeter() override;

    /**
     * How far a source stood above another one, where both sounded last for at least 400 ms without a pause.
     *
     * @param other empty for all others together
     * @return LU, in tenths; infinite where the one or the other was silent; else throws in the script
     */
    Q_INVOKABLE double above(const QString &source, const QString &other);

private:
    Q_DISABLE_COPY(SoundMeter)

    double measure(const QString &source, const QString &other, QString &problem);

    const SoundRecorder *const m_recorder;
    std::unique_ptr<Rendering> m_rendering;
};

#endif
