#ifndef SOURCEOBJECT_H
#define SOURCEOBJECT_H

#include "bookedobject.h"

#include <spaudiosetting.h>

#include <QtCore/QByteArray>

namespace simulator
{

/// The platform's Source on the simulated chip.
class SourceObject final : public audio::SPAudioSetting::Source, public BookedObject
{
public:
    static constexpr ObjectKind staticKind = ObjectKind::Source;

    SourceObject();

    void destroyed() override;

    int setOutputSource(const char *track, const char *source) override;
    /// The name belongs to this object: it goes with the next call of this operation and with the object.
    const char *getActiveSource(const char *track) override;
    int setInputDestination(const char *track, const char *destination) override;
    int setInputSelectPin(int input, int pin) override;
    int getInputSelectPin(int input, unsigned char *pin) override;
    int setMicLeftRightSwitch(bool swap) override;
    int setOutputChannelMask(int mask) override;
    int queryAlterNumber(const char *track) override;
    int setHandsfreeDelay(int delay) override;

private:
    QByteArray m_lentName;
};

} // namespace simulator

#endif
