#include <qzaudio/audiofocuscontrol.h>

#include "logging.h"

namespace
{

constexpr int granted = 0;
constexpr int failed = 1;

/// While this client is on top, focus cannot be taken from it.
bool isVoiceCommunication(const FocusRequester &entry)
{
    return entry.clientId == QLatin1String("IN_VOICE_COMM_FOCUS_ID");
}

/// Changes one entry through a copy: who is told of the change may call back, and then the entries move.
template<typename Change>
void changeEntry(QStack<FocusRequester> &stack, int index, Change change)
{
    FocusRequester entry = stack.at(index);
    change(entry);
    if (index < stack.size() && stack.at(index).hasSameClient(entry.clientId))
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
    if (!canReassignAudioFocus())
        return failed;
    if (!focusStack.isEmpty() && focusStack.top().hasSameClient(clientId)) {
        if (focusStack.top().durationHint == durationHint)
            return granted;
        focusStack.pop();
    }
    removeFocusStackEntry(clientId, false);
    if (!focusStack.isEmpty())
        propagateFocusLossFromGain_syncAf(durationHint);
    focusStack.push(FocusRequester(mainStreamType, durationHint, dispatcher, clientId));
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
    return focusStack.isEmpty() ? int(AUDIOFOCUS_NONE) : focusStack.top().durationHint;
}

bool AudioFocusControl::canReassignAudioFocus() const
{
    return focusStack.isEmpty() || !isVoiceCommunication(focusStack.top());
}

void AudioFocusControl::notifyTopOfAudioFocusStack()
{
    if (!focusStack.isEmpty() && canReassignAudioFocus())
        changeEntry(focusStack, focusStack.size() - 1, [](FocusRequester &entry) { entry.handleFocusGain(AUDIOFOCUS_GAIN); });
}

void AudioFocusControl::removeFocusStackEntry(const QString &clientId, bool signal)
{
    if (!focusStack.isEmpty() && focusStack.top().hasSameClient(clientId)) {
        focusStack.pop();
        if (signal)
            notifyTopOfAudioFocusStack();
        return; // further entries of the client lower down stay
    }
    for (auto entry = focusStack.begin(); entry != focusStack.end();) {
        if (entry->hasSameClient(clientId)) {
            traceDebug() << "AudioFocus  removeFocusStackEntry(): removing entry for " << clientId;
            entry = focusStack.erase(entry);
        } else {
            ++entry;
        }
    }
}

void AudioFocusControl::propagateFocusLossFromGain_syncAf(int focusGain)
{
    for (int i = 0; i < focusStack.size(); ++i)
        changeEntry(focusStack, i, [focusGain](FocusRequester &entry) { entry.handleExternalFocusGain(focusGain); });
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
