#include "roommodel.h"

RoomModel::RoomModel(QObject *parent)
    : QObject(parent)
{
}

RoomModel::~RoomModel() = default;

void RoomModel::setDesk(Desk *desk)
{
    if (m_desk == desk)
        return;
    m_desk = desk;
    if (desk)
        connect(desk, &Desk::snapshotChanged, this, &RoomModel::updateIfActive);
    updateIfActive();
    Q_EMIT deskChanged();
}

void RoomModel::setActive(bool active)
{
    if (m_active == active)
        return;
    m_active = active;
    updateIfActive();
    Q_EMIT activeChanged();
}

void RoomModel::updateIfActive()
{
    if (m_active && m_desk)
        update(m_desk->snapshot());
}
