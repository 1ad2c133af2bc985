#include "audiochip_p.h"

namespace simulator
{

namespace
{

constexpr int pinCount = 6;

} // namespace

QString AudioChip::activeSource(const QString &track) const
{
    return d->state.activeSources.value(track);
}

bool AudioChip::setActiveSource(const QString &track, const QString &source)
{
    if (!isTrack(track))
        return false;
    const QString current = activeSource(track);
    if (current == source && current.isNull() == source.isNull())
        return true;
    if (source.isNull())
        d->state.activeSources.remove(track);
    else
        d->state.activeSources.insert(track, source);
    d->tell("active source", track, source.isNull() ? QVariant() : QVariant(source));
    return true;
}

QString AudioChip::outputSource(const QString &track) const
{
    return d->state.outputSources.value(track);
}

quint32 AudioChip::outputChannelMask(const QString &track) const
{
    return d->state.outputChannelMasks.value(track, isTrack(track) ? allOutputBits : 0);
}

QString AudioChip::lastRoutedTrack() const
{
    return d->state.lastRoutedTrack;
}

int AudioChip::frontRearMode() const
{
    return d->state.frontRearMode;
}

QString AudioChip::inputDestination(const QString &track) const
{
    return d->state.inputDestinations.value(track);
}

int AudioChip::inputSelectPin(int input) const
{
    return isInput(input) ? d->state.inputPins[static_cast<std::size_t>(input - firstInput)] : -1;
}

int AudioChip::alternativeCount(const QString &track) const
{
    if (d->state.alternativeCount)
        return *d->state.alternativeCount;
    const QString source = activeSource(track);
    return source.isEmpty() || source == QLatin1String("S+none") ? 0 : 1;
}

void AudioChip::setAlternativeCount(int count)
{
    d->assign(d->state.alternativeCount, std::optional<int>(count), "routing", QStringLiteral("alternative count"), count);
}

int AudioChip::setOutputSource(const QString &track, const QString &source)
{
    if (const int refusal = checkTrackAndSource(track, source))
        return refusal;
    d->state.lastRoutedTrack = track;
    d->assign(d->state.outputSources[track], source, "output source", track, source);
    setActiveSource(track, source);
    return Accepted;
}

int AudioChip::setOutputChannelMask(int mask)
{
    const auto bits = static_cast<quint32>(mask);
    if (!isChannelMask(bits))
        return UnknownChannel;
    return d->assign(
        d->state.outputChannelMasks[d->state.lastRoutedTrack], bits & allOutputBits, "output channels", d->state.lastRoutedTrack, bits & allOutputBits);
}

int AudioChip::setFrontRearMode(int mode)
{
    if (mode != 0 && mode != 1)
        return ModeOutOfRange;
    return d->assign(d->state.frontRearMode, mode, "routing", QStringLiteral("front/rear mode"), mode);
}

int AudioChip::setInputDestination(const QString &track, const QString &destination)
{
    if (const int refusal = checkTrackAndSource(track, destination))
        return refusal;
    return d->assign(d->state.inputDestinations[track], destination, "input destination", track, destination);
}

int AudioChip::setInputSelectPin(int input, int pin)
{
    if (!isInput(input))
        return UnknownInput;
    if (pin < 0 || pin >= pinCount)
        return PinOutOfRange;
    return d->assign(d->state.inputPins[static_cast<std::size_t>(input - firstInput)], pin, "input pin", QString::number(input), pin);
}

} // namespace simulator
