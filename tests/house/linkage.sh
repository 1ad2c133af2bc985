#!/bin/sh
# The library has the name that clients link with, and takes the platform from outside.
#
#   linkage.sh READELF NM LIBRARY
set -eu
readelf=$1 nm=$2 library=$3

failed=0
complain()
{
    echo "$1"
    failed=1
}

soname=$("$readelf" -d "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
[ "$soname" = libqzaudio.so.1 ] || complain "SONAME is \"$soname\", not libqzaudio.so.1"

undefined=$("$nm" -D --undefined-only --demangle "$library" | sed 's/^ *[Uw] //')
defined=$("$nm" -D --defined-only --demangle "$library")
for function in \
    'audio::SPAudioSetting::createApp()' \
    'audio::SPAudioSetting::createMixer()' \
    'audio::SPAudioSetting::createSource()' \
    'audio::SPAudioSetting::createVolume()' \
    'audio::SPAudioSetting::destroy(audio::SPAudioSetting::App*)' \
    'audio::SPAudioSetting::destroy(audio::SPAudioSetting::Mixer*)' \
    'audio::SPAudioSetting::destroy(audio::SPAudioSetting::Source*)' \
    'audio::SPAudioSetting::destroy(audio::SPAudioSetting::Volume*)' \
    'zelmcu::ZEL_McuService::instance()' \
    'vd::SettingsProvider::instance()'; do
    printf '%s\n' "$undefined" | grep -qxF "$function" || complain "not asked of the platform: $function"
done
for name in 'simulator::' 'audio::SPAudioSetting::' 'zelmcu::' 'vd::'; do
    if printf '%s\n' "$defined" | grep -F " $name"; then
        complain "defined in the library, but not its own: $name"
    fi
done
if printf '%s\n' "$undefined" | grep -F 'simulator::'; then
    complain "the library knows the simulator by name"
fi
exit $failed
