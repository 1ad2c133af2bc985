#ifndef CALLREADING_H
#define CALLREADING_H

#include "loggedrequest.h"

#include <QtCore/QHash>

/// Finds the calls on the platform that the lines of a request tell of.
class CallReading
{
public:
    /// Forgets all of the request before.
    void begin();
    /// The last line of the request is new.
    void add(LoggedRequest &request);

private:
    using Line = LoggedRequest::Line;

    void addVolumeCalls(LoggedRequest &request, const Line &line);
    void addRoutingCalls(LoggedRequest &request, const Line &line);
    void addSoundCalls(LoggedRequest &request, const Line &line);
    void addMicrophoneCalls(LoggedRequest &request, const Line &line);

    void addRefusedStream(LoggedRequest &request, const Line &line);
    void addFrontSeatCall(LoggedRequest &request, const Line &line);
    void addStepCalls(LoggedRequest &request, const Line &line);

    QHash<QByteArray, int> m_refusedLoudspeakers; // codes, by the loudspeaker's letters
    QVariant m_delayedVolume; // that the next stream is given
};

#endif
