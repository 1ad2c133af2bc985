#include "sourceobject.h"

#include "audiochip.h"
#include "call.h"

namespace simulator
{

SourceObject::SourceObject()
    : BookedObject(staticKind)
{
}

void SourceObject::destroyed()
{
    // Freed for real, so that a name used after its Source is found by a memory checker.
    m_lentName = QByteArray();
}

int SourceObject::setOutputSource(const char *track, const char *source)
{
    const QString trackName = nameFromPlatform(track);
    const QString sourceName = nameFromPlatform(source);
    return Call(*this, Operation::SetOutputSource).with(trackName).with(sourceName).run([&trackName, &sourceName](AudioChip &chip) {
        return chip.setOutputSource(trackName, sourceName);
    });
}

const char *SourceObject::getActiveSource(const char *track)
{
    const QString trackName = nameFromPlatform(track);
    QString active;
    Call(*this, Operation::GetActiveSource).with(trackName).query([&trackName, &active](AudioChip &chip) {
        active = chip.activeSource(trackName);
        return active.isNull() ? QVariant() : QVariant(active);
    });
    if (active.isNull())
        return nullptr;
    m_lentName = active.toLocal8Bit();
    return m_lentName.constData();
}

int SourceObject::setInputDestination(const char *track, const char *destination)
{
    const QString trackName = nameFromPlatform(track);
    const QString destinationName = nameFromPlatform(destination);
    return Call(*this, Operation::SetInputDestination).with(trackName).with(destinationName).run([&trackName, &destinationName](AudioChip &chip) {
        return chip.setInputDestination(trackName, destinationName);
    });
}

int SourceObject::setInputSelectPin(int input, int pin)
{
    return Call(*this, Operation::SetInputSelectPin).with(input).with(pin).run([input, pin](AudioChip &chip) { return chip.setInputSelectPin(input, pin); });
}

int SourceObject::getInputSelectPin(int input, unsigned char *pin)
{
    Call call(*this, Operation::GetInputSelectPin);
    return call.with(input).run([&call, input, pin](AudioChip &chip) -> int {
        if (!pin)
            return NullPointer;
        const int selected = chip.inputSelectPin(input);
        if (selected < 0)
            return UnknownInput;
        *pin = static_cast<unsigned char>(selected);
        call.output(selected);
        return Accepted;
    });
}

int SourceObject::setMicLeftRightSwitch(bool swap)
{
    return Call(*this, Operation::SetMicLeftRightSwitch).with(swap).run([swap](AudioChip &chip) { return chip.setMicLeftRightSwitch(swap); });
}

int SourceObject::setOutputChannelMask(int mask)
{
    return Call(*this, Operation::SetOutputChannelMask).with(mask).run([mask](AudioChip &chip) { return chip.setOutputChannelMask(mask); });
}

int SourceObject::queryAlterNumber(const char *track)
{
    const QString trackName = nameFromPlatform(track);
    int count = 0;
    const Call::Answer answer = Call(*this, Operation::QueryAlterNumber).with(trackName).query([&trackName, &count](AudioChip &chip) {
        count = chip.alternativeCount(trackName);
        return QVariant(count);
    });
    return answer.isDone ? count : answer.fault;
}

int SourceObject::setHandsfreeDelay(int delay)
{
    return Call(*this, Operation::SetHandsfreeDelay).with(delay).run([delay](AudioChip &chip) { return chip.setHandsfreeDelay(delay); });
}

} // namespace simulator
