#ifndef ROOMMODEL_H
#define ROOMMODEL_H

#include "desk.h"

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QVariantMap>

/**
 * What one room of the window shows of the car.
 *
 * A room that nobody looks at costs nothing: it is told of the car while it is active, and of all that it missed when it becomes so.
 */
class RoomModel : public QObject
{
    Q_OBJECT
    /// The car that is shown. Set it once.
    Q_PROPERTY(Desk *desk READ desk WRITE setDesk NOTIFY deskChanged)
    /// Whether somebody looks at the room.
    Q_PROPERTY(bool active READ isActive WRITE setActive NOTIFY activeChanged)

public:
    explicit RoomModel(QObject *parent = nullptr);
    ~RoomModel() override;

    Desk *desk() const { return m_desk; }
    void setDesk(Desk *desk);
    bool isActive() const { return m_active; }
    void setActive(bool active);

Q_SIGNALS:
    void deskChanged();
    void activeChanged();

protected:
    /// Takes over what the car is like now, as Desk::snapshot(). Emits change signals only for what is another value than before.
    virtual void update(const QVariantMap &snapshot) = 0;

private:
    Q_DISABLE_COPY(RoomModel)

    void updateIfActive();

    QPointer<Desk> m_desk;
    bool m_active = false;
};

#endif
