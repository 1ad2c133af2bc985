#ifndef STARTS_H
#define STARTS_H

/// The first ZelAudioManager::instance() of a process. Like its floor to be called once in a process.
void start();

/// Its platform calls, its reads and its saves: as many, each with a QSettings of its own, and in the same places.
void startByHand();

#endif
