#ifndef CALLTEXT_H
#define CALLTEXT_H

#include <QtCore/QString>

namespace simulator
{
struct JournalEntry;
}

/**
 * A platform call on as few lines as a person needs: as in the journal, but of an equalizer record the gains only.
 *
 *     App.setExtEqParameter(gains 4.8 4.3 3.8 3.4 3 2.7 2.5 0.5 -4 -3 0 1.1 2.2 2.7 3.2 3.8 dB) -> 0
 *     Volume.setTrackVolume("main", "S+FilePlayer", 149) -> 103 (volume out of range)
 */
QString callText(const simulator::JournalEntry &entry);

#endif
