#ifndef ECHO_H
#define ECHO_H

#include <QtCore/QObject>
#include <QtCore/QString>

/// The least that a service can do: it takes the same arguments and answers. One that tells sends the signal of a lost focus before.
class Echo : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "tavi.AudioService")

public:
    explicit Echo(bool tells);

Q_SIGNALS:
    void audioFocusChanged(int newState, const QString &clientId);

public Q_SLOTS:
    int requestAudioFocus(int mainStreamType, int durationHint, const QString &clientId);
    int abandonAudioFocus(const QString &clientId);

private:
    bool m_tells;
};

#endif
