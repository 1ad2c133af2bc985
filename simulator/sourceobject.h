#ifndef SOURCEOBJECT_H
#define SOURCEOBJECT_H

#include "bookedobject.h"

#include <spaudiosetting.h>

#include <QtCore/QByteArray>
#include <QtCore/QObject>

namespace simulator
{

/// The platform's Source on the simulated chip.
class SourceObject final : public audio::SPAudioSetting::Source, public BookedObject
{
    Q_GADGET

public:
    static constexpr ObjectKind staticKind = ObjectKind::Source;

    SourceObject()
        : BookedObject(staticKind)
    {
    }

    /// Freed for real, so that a name used after its Source is found by a memory checker.
    void destroyed() override { m_lentName = QByteArray(); }

public Q_SLOTS:
    int setOutputSource(const char *track, const char *source) override { return call(__func__, &AudioChip::setOutputSource, track, source); }
    /// The name belongs to this object: it goes with the next call of this operation and with the object.
    const char *getActiveSource(const char *track) override
    {
        const QString active = ask(__func__, &AudioChip::activeSource, track);
        if (active.isNull())
            return nullptr;
        m_lentName = active.toLocal8Bit();
        return m_lentName.constData();
    }
    int setInputDestination(const char *track, const char *destination) override { return call(__func__, &AudioChip::setInputDestination, track, destination); }
    int setInputSelectPin(int input, int pin) override { return call(__func__, &AudioChip::setInputSelectPin, input, pin); }
    int getInputSelectPin(int input, unsigned char *pin) override
    {
        const auto read = [](const AudioChip &chip, int wanted, unsigned char *out) {
            const int selected = chip.inputSelectPin(wanted);
            if (selected < 0)
                return UnknownInput;
            *out = static_cast<unsigned char>(selected);
            return Accepted;
        };
        return call(__func__, read, input, pin);
    }
    int setMicLeftRightSwitch(bool swap) override { return call(__func__, &AudioChip::setMicLeftRightSwitch, swap); }
    int setOutputChannelMask(int mask) override { return call(__func__, &AudioChip::setOutputChannelMask, mask); }
    int queryAlterNumber(const char *track) override { return ask(__func__, &AudioChip::alternativeCount, track); }
    int setHandsfreeDelay(int delay) override { return call(__func__, &AudioChip::setHandsfreeDelay, delay); }

private:
    QByteArray m_lentName;
};

} // namespace simulator

#endif
