#include "inputbytes.h"
#include "operations.h"
#include "unitlife.h"

#include <iterator>

namespace
{

/// A client's id, or any text.
QString idOf(InputBytes &input)
{
    return QString::fromUtf8(input.textOf(UnitLife::clientIds()));
}

constexpr int listeners = 5; // and one more: null is a client, too

void requestByManager(UnitLife &life, InputBytes &input)
{
    const int stream = input.number();
    const int hint = input.number();
    const int result = life.focusManager().requestAudioFocus(stream, hint, life.listener(input.index(listeners)));
    require(result == 0 || result == 1, "a request is granted or fails");
    require((hint >= AUDIOFOCUS_GAIN && hint <= AUDIOFOCUS_GAIN_TRANSIENT_EXCLUSIVE) || result == 1, "a hint that does not exist is denied");
}

void requestByService(UnitLife &life, InputBytes &input)
{
    const int stream = input.number();
    const int hint = input.number();
    const int result = life.focusService().requestAudioFocus(stream, hint, idOf(input));
    require(result == 0 || result == 1, "the service grants or fails");
    require(result != 0 || life.focusService().getCurrentAudioFocus() == hint, "who is granted focus has it");
}

void requestByControl(UnitLife &life, InputBytes &input)
{
    AudioFocusControl &stack = life.focusControl();
    const bool isFree = stack.canReassignAudioFocus();
    const int stream = input.number();
    const int hint = input.number();
    const bool isTold = input.flag();
    const int result = stack.requestAudioFocus(stream, hint, isTold ? &life.focusService() : nullptr, idOf(input));
    require(result == (isFree ? 0 : 1), "only a call keeps focus");
}

/// Such as only tools do with a stack.
void tinker(UnitLife &life, InputBytes &input)
{
    AudioFocusControl &stack = life.focusControl();
    switch (input.index(5)) {
    case 0:
        stack.notifyTopOfAudioFocusStack();
        break;
    case 1:
        stack.propagateFocusLossFromGain_syncAf(input.number());
        break;
    case 2:
        stack.discardAudioFocusOwner();
        break;
    case 3:
        stack.dumpFocusStack();
        break;
    default: {
        const bool isTold = input.flag();
        stack.removeFocusStackEntry(idOf(input), isTold);
    }
    }
}

void askRequester(UnitLife & /*life*/, InputBytes &input)
{
    FocusRequester entry(input.number(), input.number(), nullptr, idOf(input));
    const int loss = entry.focusLossForGainRequest(input.number());
    require(loss >= AUDIOFOCUS_LOSS_TRANSIENT_CAN_DUCK && loss <= AUDIOFOCUS_NONE, "a loss is between -3 and 0");
    entry.handleExternalFocusGain(input.number());
    require(!FocusRequester::focusChangeToString(input.number()).isEmpty(), "each focus change has a text");
}

// clang-format off
constexpr Operation operations[] = {
    {"focusManager.requestAudioFocus", requestByManager},
    {"focusManager.abandonAudioFocus", [](UnitLife &life, InputBytes &input) {
        require(life.focusManager().abandonAudioFocus(life.listener(input.index(listeners))) == 0, "an abandonment always succeeds");
    }},
    {"focusManager.setReason", [](UnitLife &life, InputBytes &input) {
        const int reason = input.number();
        life.focusManager().setReason(reason);
        require(life.focusManager().reason() == reason, "a reason is kept");
    }},
    {"focusService.requestAudioFocus", requestByService},
    {"focusService.abandonAudioFocus", [](UnitLife &life, InputBytes &input) {
        require(life.focusService().abandonAudioFocus(idOf(input)) == 0, "leaving the service's stack always succeeds");
    }},
    {"focusService.unregisterAudioFocusClient", [](UnitLife &life, InputBytes &input) {
        life.focusService().unregisterAudioFocusClient(idOf(input));
    }},
    {"focusControl.requestAudioFocus", requestByControl},
    {"focusControl.abandonAudioFocus", [](UnitLife &life, InputBytes &input) {
        require(life.focusControl().abandonAudioFocus(idOf(input)) == 0, "leaving a stack always succeeds");
    }},
    {"focusControl.tinker", tinker},
    {"FocusRequester", askRequester},
};
// clang-format on

} // namespace

std::vector<Operation> focusOperations()
{
    return {std::begin(operations), std::end(operations)};
}
