#ifndef WINDOWTYPES_H
#define WINDOWTYPES_H

class Desk;

/// Makes the module QzAudio.Desk 1.0 known to QML: the singleton Desk and the models of the rooms.
void registerWindowTypes(Desk &desk);

#endif
