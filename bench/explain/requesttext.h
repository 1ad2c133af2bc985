#ifndef REQUESTTEXT_H
#define REQUESTTEXT_H

#include "loggedrequest.h"

/**
 * A request in the words of a scenario, as far as the log says what was given: AudioPolicy.setAudioMute(true, ?).
 */
QString requestText(const LoggedRequest &request);

/// A value of a line or call as scripts write it.
QString loggedValueText(const QVariant &value);

/// What a timer of policynames::timers is for.
QString timerPurpose(const QString &timer);

/// What began it, as the cause of something: the request, "timer: write pending volumes again".
QString causeText(const LoggedRequest &request);

#endif
