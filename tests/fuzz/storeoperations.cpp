#include "inputbytes.h"
#include "operations.h"
#include "unitlife.h"

#include <QtCore/QHash>

#include <iterator>

using audio::AudioDataBase;

namespace
{

constexpr int types = 6;
constexpr int bands = 16;
constexpr int presets = 8;
constexpr int streams = 18;

bool isVolumeType(int type)
{
    return type >= 0 && type < types;
}

void setVolume(UnitLife &life, InputBytes &input)
{
    const auto type = input.enumerator<ZelAudioType>();
    const int volume = input.number();
    life.store().setVolume(type, volume, input.flag());
    if (isVolumeType(type))
        require(life.store().getVolume(type) == volume, "a volume that was set is the volume");
}

void readVolume(UnitLife &life, InputBytes &input)
{
    const auto type = input.enumerator<ZelAudioType>();
    const int folded = type % types;
    const int expected = folded < 0 ? 0 : life.store().getVolume(static_cast<ZelAudioType>(folded));
    require(life.store().getVolume(type) == expected, "a volume's type is folded");
}

void setCustomBand(UnitLife &life, InputBytes &input)
{
    const int value = input.number();
    const int band = input.number();
    life.store().setCustomEQ(value, band);
    const bool isBand = band >= 0 && band < bands;
    const int expected = isBand ? static_cast<int>(static_cast<unsigned int>(value) * 2U) : 0;
    require(life.store().getCustomEQ(band) == expected, "a band is stored doubled, and there are sixteen");
}

void readPresets(UnitLife &life, InputBytes &input)
{
    const auto isPreset = [](int index) { return index >= 0 && index < presets; };
    require(isPreset(life.store().getCurrentIndexInItem()), "the current preset is one of eight");
    require(isPreset(life.store().getCurrentIndexInDefault(input.number())), "each type has one of eight presets");
    require(isPreset(life.store().getNextEqType(input.flag())), "the next type is one of eight");
    const EqBaseData *const table = life.store().getEqBaseData();
    for (int type = 0; type < presets; ++type)
        require(table[type].type == type, "the presets stand in the order of their types");
}

void readTables(UnitLife &life, InputBytes &input)
{
    const auto status = input.enumerator<AudioStatus>();
    require(isVolumeType(life.store().getAudioStatusInfo(status).type), "each status has one of six volume types");
    require(!life.store().getStatusToSpName(status).isEmpty(), "each status has a source");
    const ZelAudioAChannelInfo channel = life.store().getChannelInfo(input.enumerator<AudioChannel>());
    require(isVolumeType(channel.type) && !channel.spName.isEmpty(), "each channel has a volume type and a source");
    QHash<QString, uchar> volumes{{QStringLiteral("left over"), 1}};
    life.store().getGroupDefaultData(volumes);
    require(volumes.size() == streams && !volumes.contains(QStringLiteral("left over")), "the streams' volumes replace what was there");
}

void setMicrophoneGain(UnitLife &life, InputBytes &input)
{
    const float gain = input.decimal();
    life.store().setAutoMicGain(gain);
    const float stored = life.store().getAutoMicGain();
    require(stored == static_cast<float>(static_cast<int>(stored)) || stored > 1e6F || stored < -1e6F, "a stored gain has no fraction");
}

void setDelay(UnitLife &life, InputBytes &input)
{
    const int delay = input.number();
    life.store().setHandsfreeDelay(delay);
    require(life.store().getHandsfreeDelay() == delay, "a delay that was set is the delay");
}

/// A name of the store's or another one, in a group of the store's or another one.
void saveAny(UnitLife &life, InputBytes &input)
{
    const QString group = QString::fromUtf8(input.textOf({QStringLiteral("EQ"), QStringLiteral("Volume"), QStringLiteral("General")}));
    const QString key = QString::fromUtf8(input.textOf({QStringLiteral("Type"), QStringLiteral("0"), QStringLiteral("MicType")}));
    const QString value = QString::fromUtf8(input.textOf({QStringLiteral("@Invalid()"), QStringLiteral("1, 2"), QStringLiteral("12")}));
    life.store().save(group, key, value);
    life.store().data(group, key, 0);
}

// clang-format off
constexpr Operation operations[] = {
    {"store.setVolume", setVolume},
    {"store.getVolume", readVolume},
    {"store.savevolume", [](UnitLife &life, InputBytes &) { life.store().savevolume(); }},
    {"store.setEqType", [](UnitLife &life, InputBytes &input) {
        const int type = input.number();
        life.store().setEqType(type);
        require(life.store().eqType() == type, "a type that was set is the type");
    }},
    {"store.setLoudNess", [](UnitLife &life, InputBytes &input) { life.store().setLoudNess(input.flag()); }},
    {"store.setmicType", [](UnitLife &life, InputBytes &input) { life.store().setmicType(input.flag()); }},
    {"store.setMicInputValue", [](UnitLife &life, InputBytes &input) {
        const int value = input.number();
        life.store().setMicInputValue(value);
        require(life.store().micInputValue() == value, "a microphone volume that was set is the volume");
    }},
    {"store.setCustomEQ", setCustomBand},
    {"store.getCustomEQ", [](UnitLife &life, InputBytes &input) {
        const int band = input.number();
        const int value = life.store().getCustomEQ(band);
        require((band >= 0 && band < bands) || value == 0, "a band that does not exist is 0");
    }},
    {"store.setAutoMicGain", setMicrophoneGain},
    {"store.setHandsfreeDelay", setDelay},
    {"store.getNextEqType", readPresets},
    {"store.getChannelInfo", readTables},
    {"store.save", saveAny},
    {"store.clear", [](UnitLife &life, InputBytes &) { life.store().clear(); }},
};
// clang-format on

} // namespace

std::vector<Operation> storeOperations()
{
    return {std::begin(operations), std::end(operations)};
}
