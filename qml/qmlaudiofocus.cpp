#include "qmlaudiofocus.h"

#include "scriptcall.h"

#include <qzaudio/audiomanager.h>

#include <QtCore/QMetaObject>
#include <QtCore/QMutexLocker>

QmlAudioFocus::QmlAudioFocus(QObject *parent)
    : QObject(parent)
{
}

QmlAudioFocus::~QmlAudioFocus()
{
    release();
}

QString QmlAudioFocus::clientId()
{
    if (requesting) {
        // AudioManager asks for the id once it holds its mutex: what was told until now came before this request.
        const QMutexLocker locker(&undeliveredMutex);
        toldBeforeRequest = undelivered.size();
    }
    return id;
}

void QmlAudioFocus::setClientId(const QString &newId)
{
    if (newId == id)
        return;
    release();
    id = newId;
    Q_EMIT clientIdChanged();
}

int QmlAudioFocus::streamType() const
{
    return stream;
}

void QmlAudioFocus::setStreamType(int type)
{
    if (type != stream) {
        stream = type;
        Q_EMIT streamTypeChanged();
    }
}

int QmlAudioFocus::durationHint() const
{
    return hint;
}

void QmlAudioFocus::setDurationHint(int newHint)
{
    if (newHint != hint) {
        hint = newHint;
        Q_EMIT durationHintChanged();
    }
}

bool QmlAudioFocus::held() const
{
    return holding;
}

bool QmlAudioFocus::request()
{
    if (id.isEmpty()) {
        throwScriptError(this, QJSValue::GenericError, QStringLiteral("AudioFocus needs a clientId before request()"));
        return false;
    }
    registered = true;
    requesting = true;
    toldBeforeRequest = 0;
    const bool granted = AudioManager::instance()->requestAudioFocus(stream, hint, this) == 0;
    requesting = false;
    if (granted) {
        {
            const QMutexLocker locker(&undeliveredMutex);
            undelivered.erase(undelivered.begin(), undelivered.begin() + toldBeforeRequest);
        }
        setHeld(true);
    }
    return granted;
}

void QmlAudioFocus::release()
{
    if (!registered)
        return;
    AudioManager::instance()->abandonAudioFocus(this);
    registered = false;
    {
        const QMutexLocker locker(&undeliveredMutex);
        undelivered.clear();
    }
    setHeld(false);
}

void QmlAudioFocus::onAudioFocusChange(int focusChange)
{
    {
        const QMutexLocker locker(&undeliveredMutex);
        undelivered.append(focusChange);
    }
    QMetaObject::invokeMethod(this, &QmlAudioFocus::deliver, Qt::QueuedConnection);
}

void QmlAudioFocus::deliver()
{
    int change = None;
    {
        const QMutexLocker locker(&undeliveredMutex);
        if (undelivered.isEmpty())
            return;
        change = undelivered.takeFirst();
    }
    setHeld(change == Gain);
    Q_EMIT focusChanged(change);
}

void QmlAudioFocus::setHeld(bool now)
{
    if (now != holding) {
        holding = now;
        Q_EMIT heldChanged();
    }
}
