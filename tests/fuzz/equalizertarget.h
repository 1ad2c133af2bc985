#ifndef EQUALIZERTARGET_H
#define EQUALIZERTARGET_H

#include <sound/equalizertext.h>

#include <string_view>

/// What the bench makes of an equalizer's text: the bytes as they are in a file, whatever they are. Ends the process where a level is no number.
EqualizerText importedFrom(std::string_view bytes);

#endif
