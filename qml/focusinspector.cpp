#include "focusinspector.h"

#include "memberaccess.h"
#include "qmlaudiofocus.h"

#include <qzaudio/audiofocuscontrol.h>
#include <qzaudio/audiomanager.h>
#include <qzaudio/audioservice.h>

#include <QtCore/QMetaEnum>

#include <algorithm>

namespace
{

OPEN_MEMBER(AudioFocusControl, focusStack, QStack<FocusRequester>)
OPEN_MEMBER(AudioService, focusControl, AudioFocusControl)
OPEN_MEMBER(AudioManager, d, QxPrivate<AudioManager> *)

bool holds(const FocusInspector::Stack &stack, const QString &clientId)
{
    return !stack.isEmpty() && stack.constLast().hasSameClient(clientId);
}

/**
 * A stack to try something with: without dispatchers, since the library writes a line for whomever it tells.
 *
 * It writes one for a client, too, whom it takes away from below the top, so that this is done here.
 */
FocusInspector::Stack trialOf(const FocusInspector::Stack &stack, const QString &clientId)
{
    FocusInspector::Stack trial = stack;
    if (!holds(stack, clientId))
        trial.erase(std::remove_if(trial.begin(), trial.end(), [&clientId](const FocusRequester &entry) { return entry.hasSameClient(clientId); }),
                    trial.end());
    for (FocusRequester &entry : trial)
        entry.dispatcher = nullptr;
    return trial;
}

QStack<FocusRequester> &stackIn(AudioFocusControl &control)
{
    return control.*memberOf(focusStack_Member());
}

void fill(AudioFocusControl &control, const FocusInspector::Stack &stack)
{
    for (const FocusRequester &entry : stack)
        stackIn(control).append(entry);
}

} // namespace

namespace FocusInspector
{

AudioService &serviceOf(AudioManager &manager)
{
    // The manager's private object, whose class has no public header, is an object with the service as its child.
    auto *const owner = dynamic_cast<QObject *>(manager.*memberOf(d_Member()));
    return *owner->findChild<AudioService *>(QString(), Qt::FindDirectChildrenOnly);
}

Stack stackOf(AudioManager &manager)
{
    return stackIn(serviceOf(manager).*memberOf(focusControl_Member()));
}

Outcome afterRequest(const Stack &stack, const QString &clientId, int durationHint, int streamType)
{
    if (durationHint < AUDIOFOCUS_GAIN || durationHint > AUDIOFOCUS_GAIN_TRANSIENT_EXCLUSIVE)
        return {false, {}, stack};
    Stack before = trialOf(stack, clientId);
    AudioFocusControl control;
    fill(control, before);
    if (control.requestAudioFocus(streamType, durationHint, nullptr, clientId) != 0)
        return {false, {}, stack};
    Outcome outcome{true, {}, stackIn(control)};
    if (holds(before, clientId))
        before.removeLast();
    // The top is the client itself.
    for (int i = 0; i < qMin(before.size(), outcome.stack.size() - 1); ++i) {
        const FocusRequester &after = outcome.stack.at(i);
        if (after.focusLossReceived != before.at(i).focusLossReceived)
            outcome.told.append({after.clientId, after.focusLossReceived});
    }
    return outcome;
}

Outcome afterRelease(const Stack &stack, const QString &clientId)
{
    const Stack before = trialOf(stack, clientId);
    AudioFocusControl control;
    // Who is told the gain, forgets the loss: to be seen, it has to have one.
    fill(control, before);
    for (FocusRequester &entry : stackIn(control))
        entry.focusLossReceived = AUDIOFOCUS_LOSS;
    control.abandonAudioFocus(clientId);
    Outcome outcome{true, {}, stackIn(control)};
    for (int i = 0; i < outcome.stack.size(); ++i) {
        FocusRequester &after = outcome.stack[i];
        if (after.focusLossReceived == AUDIOFOCUS_NONE)
            outcome.told.append({after.clientId, AUDIOFOCUS_GAIN});
        else
            after.focusLossReceived = before.at(i).focusLossReceived;
    }
    return outcome;
}

QString changeName(int focusChange)
{
    const char *const key = QMetaEnum::fromType<QmlAudioFocus::FocusChange>().valueToKey(focusChange);
    return key ? QString::fromLatin1(key) : QString::number(focusChange);
}

QString changeScript(int focusChange)
{
    const bool isNamed = focusChange >= AUDIOFOCUS_LOSS_TRANSIENT_CAN_DUCK && focusChange <= AUDIOFOCUS_GAIN_TRANSIENT_EXCLUSIVE;
    return isNamed ? QStringLiteral("AudioFocus.") + changeName(focusChange) : QString::number(focusChange);
}

} // namespace FocusInspector
