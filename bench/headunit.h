#ifndef HEADUNIT_H
#define HEADUNIT_H

#include <QtCore/QObject>

#include <memory>

class ZelAudioManager;

/**
 * The unit that a scenario drives: a policy manager that can be switched off and on again.
 *
 * Switching off destroys the manager; what it did not store is lost. Two things outlive it, because the process does: the
 * control facade, and the flag that the first channel was seen.
 */
class HeadUnit : public QObject
{
    Q_OBJECT

public:
    explicit HeadUnit(QObject *parent = nullptr);
    ~HeadUnit() override;

    bool isOn() const;
    /// The manager, made where the unit is off: the audio's start-up.
    ZelAudioManager *manager();
    void switchOff();

Q_SIGNALS:
    /// The manager is about to be made.
    void startsUp();
    void startedUp();

private:
    Q_DISABLE_COPY(HeadUnit)

    std::unique_ptr<ZelAudioManager> m_poweredManager;
};

#endif
