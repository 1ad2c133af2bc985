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
    if (m_requesting) {
        // AudioManager asks for the id once it holds its mutex: what was told until now came before this request.
        const QMutexLocker locker(&m_undeliveredMutex);
        m_toldBeforeRequest = m_undelivered.size();
    }
    return m_id;
}

void QmlAudioFocus::setClientId(const QString &newId)
{
    if (newId == m_id)
        return;
    release();
    m_id = newId;
    Q_EMIT clientIdChanged();
}

int QmlAudioFocus::streamType() const
{
    return m_stream;
}

void QmlAudioFocus::setStreamType(int type)
{
    if (type != m_stream) {
        m_stream = type;
        Q_EMIT streamTypeChanged();
    }
}

int QmlAudioFocus::durationHint() const
{
    return m_hint;
}

void QmlAudioFocus::setDurationHint(int newHint)
{
    if (newHint != m_hint) {
        m_hint = newHint;
        Q_EMIT durationHintChanged();
    }
}

bool QmlAudioFocus::held() const
{
    return m_holding;
}

bool QmlAudioFocus::request()
{
    if (m_id.isEmpty()) {
        throwScriptError(this, QJSValue::GenericError, QStringLiteral("AudioFocus needs a clientId before request()"));
        return false;
    }
    m_registered = true;
    m_requesting = true;
    m_toldBeforeRequest = 0;
    const bool granted = AudioManager::instance()->requestAudioFocus(m_stream, m_hint, this) == 0;
    m_requesting = false;
    if (granted) {
        {
            const QMutexLocker locker(&m_undeliveredMutex);
            m_undelivered.erase(m_undelivered.begin(), m_undelivered.begin() + m_toldBeforeRequest);
        }
        setHeld(true);
    }
    return granted;
}

void QmlAudioFocus::release()
{
    if (!m_registered)
        return;
    AudioManager::instance()->abandonAudioFocus(this);
    m_registered = false;
    {
        const QMutexLocker locker(&m_undeliveredMutex);
        m_undelivered.clear();
    }
    setHeld(false);
}

void QmlAudioFocus::onAudioFocusChange(int focusChange)
{
    {
        const QMutexLocker locker(&m_undeliveredMutex);
        m_undelivered.append(focusChange);
    }
    QMetaObject::invokeMethod(this, &QmlAudioFocus::deliver, Qt::QueuedConnection);
}

void QmlAudioFocus::deliver()
{
    int change = None;
    {
        const QMutexLocker locker(&m_undeliveredMutex);
        if (m_undelivered.isEmpty())
            return;
        change = m_undelivered.takeFirst();
    }
    setHeld(change == Gain);
    Q_EMIT focusChanged(change);
}

void QmlAudioFocus::setHeld(bool now)
{
    if (now != m_holding) {
        m_holding = now;
        Q_EMIT heldChanged();
    }
}
