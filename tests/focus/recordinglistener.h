#ifndef RECORDINGLISTENER_H
#define RECORDINGLISTENER_H

#include <qzaudio/audiolisteners.h>

#include <QtCore/QList>
#include <QtCore/QString>

#include <utility>

/// A client that records what it is told.
class RecordingListener : public IAudioFocusChangeListener
{
public:
    explicit RecordingListener(QString id)
        : m_id(std::move(id))
    {
    }

    void onAudioFocusChange(int focusChange) override { m_changes.append(focusChange); }
    QString clientId() override { return m_id; }

    /// The changes since the last call.
    QList<int> take() { return std::exchange(m_changes, {}); }

private:
    QString m_id;
    QList<int> m_changes;
};

#endif
