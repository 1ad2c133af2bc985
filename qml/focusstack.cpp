#include "focusstack.h"

#include <qzaudio/audiomanager.h>

#include <QtCore/QAbstractEventDispatcher>

#include <algorithm>

namespace
{

bool isSameClient(const FocusRequester &one, const FocusRequester &another)
{
    return one.clientId == another.clientId;
}

bool isSame(const FocusRequester &one, const FocusRequester &another)
{
    return one.streamType == another.streamType && one.durationHint == another.durationHint && one.focusLossReceived == another.focusLossReceived
        && isSameClient(one, another);
}

FocusRequester entryOf(const QVariantMap &map)
{
    FocusRequester entry(
        map.value(QStringLiteral("streamType")).toInt(), map.value(QStringLiteral("hint")).toInt(), nullptr, map.value(QStringLiteral("clientId")).toString());
    // The library complains of any other.
    entry.focusLossReceived = qBound<int>(AUDIOFOCUS_LOSS_TRANSIENT_CAN_DUCK, map.value(QStringLiteral("loss")).toInt(), AUDIOFOCUS_NONE);
    return entry;
}

QVariantList listOf(const QVector<FocusInspector::Told> &told)
{
    QVariantList list;
    for (const FocusInspector::Told &one : told) {
        list.append(QVariantMap{{QStringLiteral("clientId"), one.clientId},
                                {QStringLiteral("change"), one.change},
                                {QStringLiteral("changeName"), FocusInspector::changeName(one.change)}});
    }
    return list;
}

} // namespace

FocusStack::FocusStack(QObject *parent)
    : QAbstractListModel(parent)
{
}

QVariantList FocusStack::entriesOf(const FocusInspector::Stack &stack)
{
    QVariantList list;
    for (const FocusRequester &entry : stack) {
        list.append(QVariantMap{{QStringLiteral("clientId"), entry.clientId},
                                {QStringLiteral("streamType"), entry.streamType},
                                {QStringLiteral("hint"), entry.durationHint},
                                {QStringLiteral("loss"), entry.focusLossReceived}});
    }
    return list;
}

void FocusStack::setEntries(const QVariantList &entries)
{
    m_isGiven = true;
    FocusInspector::Stack stack;
    for (const QVariant &entry : entries)
        stack.append(entryOf(entry.toMap()));
    show(stack);
}

void FocusStack::resetEntries()
{
    m_isGiven = false;
    componentComplete();
}

void FocusStack::componentComplete()
{
    if (m_isGiven)
        return;
    if (!m_isFollowing) {
        m_isFollowing = true;
        if (auto *const loop = QAbstractEventDispatcher::instance()) {
            connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, &FocusStack::look);
            connect(loop, &QAbstractEventDispatcher::awake, this, &FocusStack::look);
        }
    }
    look();
}

void FocusStack::look()
{
    if (m_isFollowing && !m_isGiven)
        show(FocusInspector::stackOf(*AudioManager::instance()));
}

void FocusStack::show(const FocusInspector::Stack &stack)
{
    if (std::equal(stack.cbegin(), stack.cend(), m_stack.cbegin(), m_stack.cend(), isSame))
        return;
    if (std::equal(stack.cbegin(), stack.cend(), m_stack.cbegin(), m_stack.cend(), isSameClient)) {
        m_stack = stack;
        Q_EMIT dataChanged(index(0), index(count() - 1));
    } else {
        beginResetModel();
        m_stack = stack;
        endResetModel();
    }
    Q_EMIT entriesChanged();
}

QVariantMap FocusStack::next(const QString &clientId, int hint)
{
    look();
    // The stream is only remembered.
    const FocusInspector::Outcome outcome = FocusInspector::afterRequest(m_stack, clientId, hint, 0);
    return {{QStringLiteral("granted"), outcome.granted}, {QStringLiteral("told"), listOf(outcome.told)}};
}

QVariantMap FocusStack::afterRelease(const QString &clientId)
{
    look();
    return {{QStringLiteral("told"), listOf(FocusInspector::afterRelease(m_stack, clientId).told)}};
}

int FocusStack::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant FocusStack::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const FocusRequester &entry = m_stack.at(count() - 1 - index.row());
    switch (role) {
    case ClientIdRole:
    case Qt::DisplayRole:
        return entry.clientId;
    case StreamTypeRole:
        return entry.streamType;
    case HintRole:
        return entry.durationHint;
    case HintNameRole:
        return FocusInspector::changeName(entry.durationHint);
    case LossRole:
        return entry.focusLossReceived;
    case LossNameRole:
        return FocusInspector::changeName(entry.focusLossReceived);
    default:
        return {};
    }
}

QHash<int, QByteArray> FocusStack::roleNames() const
{
    return {
        {ClientIdRole, "clientId"},
        {StreamTypeRole, "streamType"},
        {HintRole, "hint"},
        {HintNameRole, "hintName"},
        {LossRole, "loss"},
        {LossNameRole, "lossName"},
    };
}
