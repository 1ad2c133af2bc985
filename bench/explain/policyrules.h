#ifndef POLICYRULES_H
#define POLICYRULES_H

#include <QtCore/QString>

/**
 * Which stored volume the policy gives to which source. The log says statuses and channels by number, and of a volume only what became of it.
 *
 * These follow the library's own tables; tst_logwhy compares with them.
 */
namespace PolicyRules
{

constexpr int none = -1;

/// Numbers of statuses are 0 to this.
constexpr int highestStatus = 19;
/// A stored volume is 0 to this.
constexpr int highestVolume = 25;
/// Gain in percent that a duck lowers the main track to.
constexpr int duckedGain = 60;

/// The volume type that a status applies; that of media for a number that is no status.
int typeOfStatus(int status);
/// The platform's name of the source that gets it; empty where that is the channel's.
QString sourceOfStatus(int status);
/// Whether the status has an enumerator of its own. The others do the same as one of these, or are not reported.
bool isNamed(int status);
/// Whether the status is one that a duck applies.
bool isOfDuck(int status);

/// The volume type of a channel.
int typeOfChannel(int channel);
/// The platform's name of its source: "S+none" where it has none.
QString sourceOfChannel(int channel);
/// The platform's name of the source that a status without one of its own applies to.
QString sourceInChannel(int channel);

/// The volume type that the volume keys work on; none where they do nothing.
int typeOfKeys(int status, int channel);

/// The volume type that a source starts with; none for one that the policy does not know.
int typeOfSource(const QString &source);

/// "telephony"; the number where there is no such type
QString typeText(int type);

} // namespace PolicyRules

#endif
