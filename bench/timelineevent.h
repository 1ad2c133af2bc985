#ifndef TIMELINEEVENT_H
#define TIMELINEEVENT_H

#include "scenarioresult.h"

#include "journalentry.h"

#include <QtCore/QString>
#include <QtCore/QVector>

/// Something that happened while a scenario played, with what it caused.
struct TimelineEvent
{
    enum class Kind {
        Heading, ///< what the script says to its reader
        Note, ///< what the script was told, or printed on its console
        Request, ///< a call that the script made
        Timer, ///< what a timer caused
        Call, ///< of the platform
        Status, ///< the policy's status became another one by itself
        Check, ///< an expectation
        Log, ///< a line of the library's log
    };

    Kind kind = Kind::Note;
    qint64 time = 0; ///< ms on the scenario's clock
    QString text;
    QString result; ///< of a request; empty where it has none
    bool isStartUp = false; ///< of a request or a call: the unit was being switched on
    ScenarioResult::Check check; ///< of an expectation
    simulator::JournalEntry call; ///< of a call
    QVector<TimelineEvent> caused; ///< in order
};

#endif
