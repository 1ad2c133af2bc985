#include <qzaudio/focusrequester.h>

#include "focusloss.h"
#include "logging.h"

#include <qzaudio/iaudiofocusdispatcher.h>

namespace
{

struct FocusChangeName
{
    int focusChange;
    const char *name;
};

constexpr FocusChangeName focusChangeNames[] = {
    {AUDIOFOCUS_LOSS_TRANSIENT_CAN_DUCK, "LOSS_TRANSIENT_CAN_DUCK"},
    {AUDIOFOCUS_LOSS_TRANSIENT, "LOSS_TRANSIENT"},
    {AUDIOFOCUS_LOSS, "LOSS"},
    {AUDIOFOCUS_NONE, "NONE"},
    {AUDIOFOCUS_GAIN, "GAIN"},
    {AUDIOFOCUS_GAIN_TRANSIENT, "GAIN_TRANSIENT"},
    {AUDIOFOCUS_GAIN_TRANSIENT_MAY_DUCK, "GAIN_TRANSIENT_MAY_DUCK"},
    {AUDIOFOCUS_GAIN_TRANSIENT_EXCLUSIVE, "GAIN_TRANSIENT_EXCLUSIVE"},
};

} // namespace

FocusRequester::FocusRequester(int requestedStreamType, int requestedHint, IAudioFocusDispatcher *changeDispatcher, const QString &id)
    : streamType(requestedStreamType)
    , durationHint(requestedHint)
    , clientId(id)
    , dispatcher(changeDispatcher)
{
}

bool FocusRequester::hasSameClient(const QString &id) const
{
    return clientId == id;
}

QString FocusRequester::focusChangeToString(int focusChange)
{
    for (const FocusChangeName &row : focusChangeNames) {
        if (row.focusChange == focusChange)
            return QString::fromLatin1(row.name);
    }
    return QStringLiteral("[invalid focus change %1]").arg(focusChange);
}

int FocusRequester::focusLossForGainRequest(int gainRequest)
{
    if (!focusloss::isDefined(gainRequest, focusLossReceived)) {
        traceCritical() << "Invalid focus request " << gainRequest; // the request, also when the entry was at fault
        return AUDIOFOCUS_NONE;
    }
    return focusloss::loss(gainRequest, focusLossReceived);
}

void FocusRequester::handleFocusGain(int focusGain)
{
    if (dispatcher) {
        traceDebug() << "dispatching " << focusChangeToString(focusGain) << " to " << clientId;
        dispatcher->dispatchAudioFocusChange(focusGain, clientId);
    }
    focusLossReceived = AUDIOFOCUS_NONE;
}

void FocusRequester::handleFocusLoss(int focusLoss)
{
    if (focusLoss == focusLossReceived)
        return;
    if (dispatcher) {
        traceDebug() << "dispatching " << focusChangeToString(focusLoss) << " to " << clientId;
        dispatcher->dispatchAudioFocusChange(focusLoss, clientId);
    }
    focusLossReceived = focusLoss;
}

void FocusRequester::handleExternalFocusGain(int gainRequest)
{
    handleFocusLoss(focusLossForGainRequest(gainRequest));
}

void FocusRequester::dump()
{
    traceDebug() << " -- client: " << clientId << "\n -- gain: " << focusChangeToString(durationHint)
                 << "\n -- loss: " << focusChangeToString(focusLossReceived) << "\n -- stream: " << streamType;
}
