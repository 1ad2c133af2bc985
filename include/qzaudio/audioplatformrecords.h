#ifndef QZAUDIO_AUDIOPLATFORMRECORDS_H
#define QZAUDIO_AUDIOPLATFORMRECORDS_H

#include <QtCore/qglobal.h>

#include <cstddef>

/**
 * @file
 * The records and enumerations that cross the border to the platform's audio-setting library.
 *
 * The platform reads them by address, so size and offset of every field are part of its binary interface: all little-endian,
 * no hidden padding. The static assertions below hold them on every architecture. Always zero a record before filling it: the
 * reserved fields travel too.
 */

/// The control facade, the settings store, and the platform's records.
namespace audio
{

/// ADC pin that an input is taken from, 0 to 5. Addressed by value only.
enum audio_input_select_pin_e : int {};

/// Quality of the echo cancelling: 0, 1 (the middle one, used for anything unknown) and 2. Addressed by value only.
enum audio_aec_quality_e : int {};

/// Short equalizer record: eight bands.
struct audio_eq_parameter_t
{
    quint32 channel; ///< mask of output channel bits, 0xFFFF for all
    quint16 frequency[8]; ///< centre of each band: the platform's index code or Hz, as the preset says
    float gain[8]; ///< dB
    quint16 type[8]; ///< filter type, 3 for a band in use
};
static_assert(sizeof(audio_eq_parameter_t) == 68, "read by the platform by address");
static_assert(offsetof(audio_eq_parameter_t, channel) == 0, "read by the platform by address");
static_assert(offsetof(audio_eq_parameter_t, frequency) == 4, "read by the platform by address");
static_assert(offsetof(audio_eq_parameter_t, gain) == 20, "read by the platform by address");
static_assert(offsetof(audio_eq_parameter_t, type) == 52, "read by the platform by address");

/// One band of the extended equalizer record.
struct audio_ext_eq_band_t
{
    quint32 type; ///< filter type: 3 for a band in use, 0 for one that is not
    quint16 frequency; ///< centre in Hz
    quint16 reserved0; ///< 0
    float gain; ///< dB
    float q; ///< quality factor
    quint32 reserved1[3]; ///< 0
};
static_assert(sizeof(audio_ext_eq_band_t) == 28, "read by the platform by address");
static_assert(offsetof(audio_ext_eq_band_t, type) == 0, "read by the platform by address");
static_assert(offsetof(audio_ext_eq_band_t, frequency) == 4, "read by the platform by address");
static_assert(offsetof(audio_ext_eq_band_t, reserved0) == 6, "read by the platform by address");
static_assert(offsetof(audio_ext_eq_band_t, gain) == 8, "read by the platform by address");
static_assert(offsetof(audio_ext_eq_band_t, q) == 12, "read by the platform by address");
static_assert(offsetof(audio_ext_eq_band_t, reserved1) == 16, "read by the platform by address");

/// Extended equalizer record: room for twenty bands, of which the library uses sixteen.
struct audio_ext_eq_parameter_t
{
    quint32 channel; ///< mask of output channel bits, 0xFFFF for all
    audio_ext_eq_band_t band[20]; ///< the sixteen in use first
};
static_assert(sizeof(audio_ext_eq_parameter_t) == 564, "read by the platform by address");
static_assert(offsetof(audio_ext_eq_parameter_t, channel) == 0, "read by the platform by address");
static_assert(offsetof(audio_ext_eq_parameter_t, band) == 4, "read by the platform by address");

/// Loudness switch.
struct audio_loudness_t
{
    quint16 on; ///< 1 on, 0 off
    quint16 onAgain; ///< the same value once more
    quint16 level; ///< always 800; its meaning is the platform's
};
static_assert(sizeof(audio_loudness_t) == 6, "read by the platform by address");
static_assert(offsetof(audio_loudness_t, on) == 0, "read by the platform by address");
static_assert(offsetof(audio_loudness_t, onAgain) == 2, "read by the platform by address");
static_assert(offsetof(audio_loudness_t, level) == 4, "read by the platform by address");

/// Gain of one output channel, for fade and balance.
struct audio_channel_gain_t
{
    quint32 channel; ///< one output channel bit
    quint8 gain; ///< 0 to 100, percent of full level
    quint8 reserved[3]; ///< 0
};
static_assert(sizeof(audio_channel_gain_t) == 8, "read by the platform by address");
static_assert(offsetof(audio_channel_gain_t, channel) == 0, "read by the platform by address");
static_assert(offsetof(audio_channel_gain_t, gain) == 4, "read by the platform by address");
static_assert(offsetof(audio_channel_gain_t, reserved) == 5, "read by the platform by address");

/// Filter of one output channel. The meaning of the four values is the platform's.
struct audio_filter_t
{
    quint32 channel; ///< one output channel bit, or 0xFFFF for all
    quint16 value1; ///< as the caller gave it
    quint16 notFlag; ///< 1 when the caller's flag is 0, else 0
    quint16 value2; ///< as the caller gave it
    quint16 kind; ///< 0 or 1
    quint16 value3; ///< as the caller gave it
    quint16 value4; ///< as the caller gave it, but 0 when its kind is neither 0 nor 1
};
static_assert(sizeof(audio_filter_t) == 16, "read by the platform by address");
static_assert(offsetof(audio_filter_t, channel) == 0, "read by the platform by address");
static_assert(offsetof(audio_filter_t, value1) == 4, "read by the platform by address");
static_assert(offsetof(audio_filter_t, notFlag) == 6, "read by the platform by address");
static_assert(offsetof(audio_filter_t, value2) == 8, "read by the platform by address");
static_assert(offsetof(audio_filter_t, kind) == 10, "read by the platform by address");
static_assert(offsetof(audio_filter_t, value3) == 12, "read by the platform by address");
static_assert(offsetof(audio_filter_t, value4) == 14, "read by the platform by address");

} // namespace audio

#endif
