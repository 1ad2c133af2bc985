#ifndef REQUESTTEXT_H
#define REQUESTTEXT_H

#include "loggedrequest.h"

/**
 * A request in the words of a scenario, as far as the log says what was given: AudioPolicy.setAudioMute(true, ?).
 */
QString requestText(const LoggedRequest &request);

#endif
