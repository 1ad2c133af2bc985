#include <qzaudio/audiofocuscontrol.h>

#include "focusloss.h"
#include "logging.h"

#include <algorithm>

namespace
{

constexpr int granted = 0;
constexpr int failed = 1;

/// Most ids differ in their length, which is seen without a call.
template<typename Text>
bool isOf(const FocusRequester &entry, const Text &clientId)
{
    return entry.clientId.size() == clientId.size() && entry.clientId == clientId;
}

/// While this client is on top, focus cannot be taken from it.
bool isVoiceCommunication(const FocusRequester &entry)
{
    return isOf(entry, QLatin1String("IN_VOICE_COMM_FOCUS_ID"));
}

/// Null for an empty stack.
const FocusRequester *topOf(const QStack<FocusRequester> &stack)
{
    return stack.isEmpty() ? nullptr : stack.constData() + stack.size() - 1;
}

/// The first entry of a client who is not on top; the index of the top where there is none.
int indexBelowTop(const QStack<FocusRequester> &stack, const QString &clientId)
{
    const FocusRequester *const begin = stack.constData();
    const FocusRequester *const top = begin + qMax(0, stack.size() - 1);
    return static_cast<int>(std::find_if(begin, top, [&clientId](const FocusRequester &entry) { return isOf(entry, clientId); }) - begin);
}

/// Changes one entry through a copy: who is told of the change may call back, and then the entries move.
template<typename Change>
void changeEntry(QStack<FocusRequester> &stack, int index, Change change)
{
    FocusRequester entry = stack.at(index);
    change(entry);
    if (index < stack.size() && (stack.at(index).clientId.isSharedWith(entry.clientId) || isOf(stack.at(index), entry.clientId)))
        stack[index].focusLossReceived = entry.focusLossReceived;
}

} // namespace

AudioFocusControl::AudioFocusControl(QObject *parent)
    : QObject(parent)
{
}

AudioFocusControl::~AudioFocusControl() = default;

int AudioFocusControl::requestAudioFocus(int mainStreamType, int durationHint, IAudioFocusDispatcher *dispatcher, const QString &clientId)
{
    const FocusRequester *const top = topOf(focusStack);
    if (top && isVoiceCommunication(*top))
        return failed;
    if (top && isOf(*top, clientId)) {
        if (top->durationHint == durationHint)
            return granted;
        focusStack.removeLast();
        removeFocusStackEntry(clientId, false);
    } else if (indexBelowTop(focusStack, clientId) < focusStack.size() - 1) {
        removeFocusStackEntry(clientId, false);
    }
    propagateFocusLossFromGain_syncAf(durationHint);
    focusStack.append(FocusRequester(mainStreamType, durationHint, dispatcher, clientId));
    return granted;
}

int AudioFocusControl::abandonAudioFocus(const QString &clientId)
{
    removeFocusStackEntry(clientId, true);
    return granted;
}

void AudioFocusControl::unregisterAudioFocusClient(const QString &clientId)
{
    removeFocusStackEntry(clientId, false);
}

int AudioFocusControl::getCurrentAudioFocus() const
{
    const FocusRequester *const top = topOf(focusStack);
    return top ? top->durationHint : int(AUDIOFOCUS_NONE);
}

bool AudioFocusControl::canReassignAudioFocus() const
{
    const FocusRequester *const top = topOf(focusStack);
    return !top || !isVoiceCommunication(*top);
}

void AudioFocusControl::notifyTopOfAudioFocusStack()
{
    const FocusRequester *const top = topOf(focusStack);
    if (!top || isVoiceCommunication(*top))
        return;
    if (top->dispatcher)
        changeEntry(focusStack, focusStack.size() - 1, [](FocusRequester &entry) { entry.handleFocusGain(AUDIOFOCUS_GAIN); });
    else
        focusStack.last().handleFocusGain(AUDIOFOCUS_GAIN);
}

void AudioFocusControl::removeFocusStackEntry(const QString &clientId, bool signal)
{
    const FocusRequester *const top = topOf(focusStack);
    if (top && isOf(*top, clientId)) {
        focusStack.removeLast();
        if (signal)
            notifyTopOfAudioFocusStack();
        return; // further entries of the client lower down stay
    }
    for (int i = indexBelowTop(focusStack, clientId); i < focusStack.size() - 1; i = indexBelowTop(focusStack, clientId)) {
        traceDebug() << "AudioFocus  removeFocusStackEntry(): removing entry for " << clientId;
        focusStack.remove(i);
    }
}

void AudioFocusControl::propagateFocusLossFromGain_syncAf(int focusGain)
{
    // What is told may change the stack, so that nothing of it is kept from one entry to the next.
    for (int i = 0; i < focusStack.size(); ++i) {
        const FocusRequester &entry = focusStack.at(i);
        const bool isDefined = focusloss::isDefined(focusGain, entry.focusLossReceived);
        const int loss = isDefined ? focusloss::loss(focusGain, entry.focusLossReceived) : 0;
        if (isDefined && loss == entry.focusLossReceived)
            continue; // as for most in a deep stack
        if (!isDefined)
            changeEntry(focusStack, i, [focusGain](FocusRequester &changed) { changed.handleExternalFocusGain(focusGain); });
        else if (entry.dispatcher)
            changeEntry(focusStack, i, [loss](FocusRequester &changed) { changed.handleFocusLoss(loss); });
        else
            focusStack[i].focusLossReceived = loss;
    }
}

void AudioFocusControl::discardAudioFocusOwner()
{
    if (!focusStack.isEmpty())
        focusStack.pop().handleFocusLoss(AUDIOFOCUS_LOSS);
}

void AudioFocusControl::dumpFocusStack()
{
    for (FocusRequester &entry : focusStack)
        entry.dump();
}
