#ifndef LISTENING_H
#define LISTENING_H

#include "desk.h"
#include "loopdevice.h"
#include "soundoutput.h"

#include <QtCore/QDateTime>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QTimer>

#include <functional>
#include <memory>
#include <optional>

/**
 * Lets what the car plays now be heard, with the sources and filters that "qzaudio-bench render" has.
 *
 * Another loop is made, on another thread, when the car sounds otherwise; at most twice a second.
 */
class Listening : public QObject
{
    Q_OBJECT
    /// The car that is listened to. Set it once.
    Q_PROPERTY(Desk *desk READ desk WRITE setDesk NOTIFY deskChanged)
    /// Whether it is heard. Where it cannot be, it does not become so, and note says why.
    Q_PROPERTY(bool on READ isOn WRITE setOn NOTIFY onChanged)
    /// Why nothing is heard, for people; empty for nothing to say.
    Q_PROPERTY(QString note READ note NOTIFY noteChanged)

public:
    explicit Listening(QObject *parent = nullptr);
    ~Listening() override;

    using OutputFactory = std::function<std::unique_ptr<SoundOutput>()>;
    /// What all that are made from now on play with.
    static void setOutput(const OutputFactory &factory);

    Desk *desk() const { return m_desk; }
    void setDesk(Desk *desk);
    bool isOn() const { return m_output != nullptr; }
    void setOn(bool on);
    QString note() const { return m_note; }

    /// Another file than the desk's.
    void setSoundFile(const QString &file);

    static constexpr int interval = 500; ///< ms between two loops

Q_SIGNALS:
    void deskChanged();
    void onChanged();
    void noteChanged();
    /// What is heard from now on.
    void heard();

private:
    Q_DISABLE_COPY(Listening)

    struct Made
    {
        std::optional<SoundTrack::State> state; ///< empty where there is nothing new
        SoundLoop loop;
        QString problem;
    };

    void look();
    void take(const Made &made);
    void fail(const QString &problem);
    void setNote(const QString &note);
    void turnOff();

    QPointer<Desk> m_desk;
    QString m_soundFile;
    QString m_note;
    const std::shared_ptr<LoopDevice> m_device = std::make_shared<LoopDevice>();
    std::unique_ptr<SoundOutput> m_output; // while it is on
    std::shared_ptr<Rendering> m_rendering; // used by one thread at a time
    QTimer m_pause; // between two loops
    bool m_isMaking = false;
    int m_turn = 0; // how often it was switched on: what was made before comes too late
    qint64 m_size = -1; // of the file when it was read
    QDateTime m_time;
    std::optional<SoundTrack::State> m_state; // that is heard
};

#endif
