#ifndef RECORDINGDISPATCHER_H
#define RECORDINGDISPATCHER_H

#include <qzaudio/iaudiofocusdispatcher.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <utility>

/// Records focus changes in order, each as "CODE ID": `-3 music`.
class RecordingDispatcher : public IAudioFocusDispatcher
{
public:
    void dispatchAudioFocusChange(int focusChange, const QString &clientId) override { m_changes.append(text(focusChange, clientId)); }

    static QString text(int focusChange, const QString &clientId) { return QString::number(focusChange) + QLatin1Char(' ') + clientId; }

    /// The changes since the last call.
    QStringList take() { return std::exchange(m_changes, {}); }

private:
    QStringList m_changes;
};

#endif
