#include "facademodel.h"

#include <array>

// The facade's equalizer, microphone and output processing.

namespace lives
{

using audio::AudioControl;
using simulator::JournalEntry;
using simulator::ObjectKind;

namespace
{

constexpr quint32 allOutputs = 0xFFFF;
constexpr int bandsInUse = 16;
constexpr float highestGain = 12;

constexpr float modes[7][bandsInUse] = {
    {4.8F, 4.3F, 3.8F, 3.4F, 3.0F, 2.7F, 2.5F, 0.5F, -4.0F, -3.0F, 0.0F, 1.1F, 2.2F, 2.7F, 3.2F, 3.8F},
    {7.0F, 5.5F, 4.0F, 3.5F, 3.0F, 2.0F, 1.5F, 0.5F, -5.0F, 0.5F, 2.0F, 3.0F, 5.0F, 4.0F, 6.0F, 5.0F},
    {5.0F, 4.5F, 3.0F, 1.0F, 2.0F, 4.0F, 5.0F, 0.0F, -2.0F, -2.0F, 3.0F, 4.0F, 5.0F, 5.5F, 5.5F, 2.0F},
    {6.0F, 5.0F, 4.0F, 0.0F, 0.0F, 0.0F, 3.0F, 4.0F, 4.0F, 2.0F, 0.0F, 0.0F, 5.0F, 5.0F, 5.0F, 5.0F},
    {-3.0F, -2.0F, 0.0F, 3.0F, 4.0F, 5.0F, 5.5F, 5.5F, 5.5F, 4.0F, 3.0F, 3.0F, 0.0F, -3.0F, 5.0F, 4.0F},
    {-4.0F, -5.0F, -5.0F, 3.0F, 4.0F, 6.0F, 6.0F, 5.0F, 5.0F, 5.5F, 2.0F, 1.0F, 0.0F, 0.0F, -4.0F, -5.0F},
    {},
};
constexpr int subModes[2][9] = {{0, 0, 7, -3, 3, 6, -2, 4, 0}, {0, 0, 0, -3, 3, 0, -2, 0, 0}};

quint32 bitOf(int channel)
{
    return channel < 0 || channel > 5 ? allOutputs : 1U << channel;
}

} // namespace

struct BandTable
{
    std::array<int, bandsInUse> frequency;
    std::array<float, bandsInUse> q;
};

namespace
{

constexpr BandTable sixteenBands
    = {{50, 80, 125, 200, 315, 500, 630, 800, 1000, 2000, 3100, 4000, 5000, 6300, 16000, 20000}, {1, 1, 1, 1.5F, 1.5F, 1.5F, 1.5F, 2, 2, 2, 2, 2, 2, 1, 1, 1}};
constexpr BandTable tenBands = {{30, 60, 125, 250, 500, 1000, 2000, 4000, 8000, 16000, 20000, 20000, 20000, 20000, 20000, 20000},
                                {1, 1, 1, 1.5F, 1.5F, 2, 2, 2, 1, 1, 1, 1, 1, 1, 1, 1}};

QList<float> floats(const QList<int> &values)
{
    QList<float> list;
    for (const int value : values)
        list.append(static_cast<float>(value));
    return list;
}

} // namespace

// Equalizer -----------------------------------------------------------------------------------------------------------------

void FacadeModel::setEqMode(AudioControl::EqMode mode)
{
    if (mode < 0 || mode > 6)
        return;
    constexpr std::array<quint16, 8> codes = {10, 18, 26, 35, 44, 52, 58, 33};
    audio::audio_eq_parameter_t record = {};
    record.channel = allOutputs;
    for (std::size_t band = 0; band < codes.size(); ++band) {
        record.frequency[band] = codes[band];
        record.gain[band] = modes[mode][band];
        record.type[band] = 3;
    }
    if (m_hasApp)
        m_calls.callWithRecord(ObjectKind::App, "setEqParameter", record);
}

QList<int> FacadeModel::getEqGain(AudioControl::EqMode mode)
{
    QList<int> gains;
    for (int band = 0; mode >= 0 && mode <= 6 && band < bandsInUse; ++band)
        gains.append(static_cast<int>(modes[mode][band]));
    return gains;
}

QList<int> FacadeModel::getSubGain(AudioControl::SubMode mode)
{
    QList<int> gains;
    if (mode == 0 || mode == 1) {
        for (const int gain : subModes[mode])
            gains.append(gain);
    }
    return gains;
}

void FacadeModel::sendBands(const QList<float> &gains, const BandTable &bands)
{
    audio::audio_ext_eq_parameter_t record = {};
    record.channel = allOutputs;
    for (int band = 0; band < bandsInUse; ++band) {
        const float gain = band < gains.size() ? gains.at(band) : 0;
        if (!(gain >= -highestGain && gain <= highestGain))
            return;
        const auto place = static_cast<std::size_t>(band);
        record.band[band] = {3, static_cast<quint16>(bands.frequency[place]), 0, gain, bands.q[place], {}};
    }
    if (!m_calls.create(ObjectKind::App))
        return;
    m_calls.callWithRecord(ObjectKind::App, "setExtEqParameter", record);
    m_calls.destroy(ObjectKind::App);
}

void FacadeModel::setEqGain(const QList<float> &gains)
{
    if (gains.size() == bandsInUse)
        sendBands(gains, sixteenBands);
}

void FacadeModel::setEqGain10(const QList<int> &gains)
{
    if (gains.size() == 10)
        sendBands(floats(gains), tenBands);
}

void FacadeModel::setEqValue(const QList<int> &gains)
{
    if (gains.size() == bandsInUse)
        sendBands(floats(gains), sixteenBands);
}

void FacadeModel::getEqInitValue(QList<int> &out)
{
    for (const int frequency : sixteenBands.frequency)
        out.append(frequency);
}

void FacadeModel::setLoudnessSwitch(bool on)
{
    const audio::audio_loudness_t record = {static_cast<quint16>(on ? 1 : 0), static_cast<quint16>(on ? 1 : 0), 800};
    if (m_hasApp)
        m_calls.callWithRecord(ObjectKind::App, "setLoudness", record);
}

// Microphone ----------------------------------------------------------------------------------------------------------------

void FacadeModel::setMicroPhoneVolume(int volume)
{
    if (volume >= 0 && volume <= 91)
        onVolume("setMicVolume", static_cast<float>(volume));
}

int FacadeModel::getMicAnalogGain(float *first, float *second)
{
    if (!m_calls.create(ObjectKind::Volume))
        return -1;
    const JournalEntry entry = m_calls.expect(ObjectKind::Volume, "getMicAnalogGain", {});
    if (entry.outputs.size() == 2) {
        *first = entry.outputs.at(0).toFloat();
        *second = entry.outputs.at(1).toFloat();
    }
    m_calls.destroy(ObjectKind::Volume);
    return entry.result.toInt();
}

int FacadeModel::setMicAnalogGain(float first, float second)
{
    return once(ObjectKind::Volume, "setMicAnalogGain", first, second);
}

int FacadeModel::setMicOpAndPga(float op, float pga)
{
    if (m_calls.create(ObjectKind::Volume)) {
        m_calls.call(ObjectKind::Volume, "setMicOpGain", 0, op, op);
        m_calls.call(ObjectKind::Volume, "setMicPgaGain", 0, pga, pga);
        m_calls.destroy(ObjectKind::Volume);
    }
    return -1;
}

int FacadeModel::startMicGainCalibration()
{
    return once(ObjectKind::Volume, "startMicGainCalibration");
}

int FacadeModel::setMicGainCalibration()
{
    return once(ObjectKind::Volume, "setMicGainCalibration");
}

int FacadeModel::getMicCalibrationGain(int *first, int *second)
{
    if (!m_calls.create(ObjectKind::Volume))
        return -1;
    const JournalEntry entry = m_calls.expect(ObjectKind::Volume, "getMicCalibrationGain", {});
    *first = entry.outputs.value(0).toInt();
    *second = entry.outputs.value(1).toInt();
    m_calls.destroy(ObjectKind::Volume);
    return entry.result.toInt();
}

void FacadeModel::setDownlinkDelayEstimation()
{
    once(ObjectKind::App, "startDownlinkDelayEstimation");
}

int FacadeModel::getDownlinkDelayEstimation(short *delay)
{
    if (!m_calls.create(ObjectKind::App))
        return -1;
    const JournalEntry entry = m_calls.expect(ObjectKind::App, "getDownlinkDelayEstimation", {});
    if (!entry.outputs.isEmpty())
        *delay = static_cast<short>(entry.outputs.first().toInt());
    m_calls.destroy(ObjectKind::App);
    return entry.result.toInt();
}

int FacadeModel::setHandsfreeDelay(int delay)
{
    return once(ObjectKind::Source, "setHandsfreeDelay", delay);
}

void FacadeModel::setAECQuality(AudioControl::AudioQuality quality)
{
    const int number = quality;
    onApp("setAecQuality", number < 0 || number > 2 ? 1 : number);
}

void FacadeModel::getMicrophoneTest(QList<int> &out)
{
    if (!m_hasApp)
        return;
    const JournalEntry &entry = m_calls.expect(ObjectKind::App, "getMicrophoneTest", {QStringLiteral("8")});
    if (entry.result.toInt() != 0)
        return;
    out.clear();
    for (const QVariant &value : entry.outputs)
        out.append(value.toInt());
}

void FacadeModel::setMicLeftRightSwitch(bool swap)
{
    once(ObjectKind::Source, "setMicLeftRightSwitch", swap);
}

// Output --------------------------------------------------------------------------------------------------------------------

void FacadeModel::setDpsEnable(bool enable)
{
    onApp(enable ? "enableDps" : "disableDps");
}

void FacadeModel::setStereoEnable(bool enable)
{
    onApp(enable ? "enableStereo" : "disableStereo");
}

void FacadeModel::setDpsUserGain(float gain)
{
    onApp("setDpsUserGain", gain);
}

void FacadeModel::setFilter(AudioControl::AudioOutChannel channel, const AudioControl::AudioFilter_t &filter)
{
    const bool isKnown = filter.kind <= 1;
    const audio::audio_filter_t record = {bitOf(channel),
                                          filter.value1,
                                          static_cast<quint16>(filter.flag == 0 ? 1 : 0),
                                          filter.value2,
                                          static_cast<quint16>(isKnown ? filter.kind : 0),
                                          filter.value3,
                                          static_cast<quint16>(isKnown ? filter.value4 : 0)};
    if (m_hasApp)
        m_calls.callWithRecord(ObjectKind::App, "setFilter", record);
}

void FacadeModel::setSpeakerDelay(const QList<float> &delays)
{
    for (int output = 0; delays.size() == 6 && output < delays.size(); ++output)
        onApp("setSpeakerDelay", 1 << output, delays.at(output));
}

void FacadeModel::setSpeakerDealy(AudioControl::AudioOutChannel channel, float delay)
{
    onApp("setSpeakerDelay", static_cast<int>(bitOf(channel)), delay);
}

} // namespace lives
