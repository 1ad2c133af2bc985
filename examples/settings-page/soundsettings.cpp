#include "soundsettings.h"

#include <qzaudio/audiocontrol.h>
#include <qzaudio/zelaudiomanager.h>

namespace
{

// The library keeps neither fade nor balance. In its store any application may keep numbers, safe from power cuts, in a group of its own.
QString group()
{
    return QStringLiteral("SettingsPage");
}

QString fadeKey()
{
    return QStringLiteral("Fade");
}

QString balanceKey()
{
    return QStringLiteral("Balance");
}

} // namespace

SoundSettings::SoundSettings(QObject *parent)
    : QObject(parent)
    , m_fade(m_store.data(group(), fadeKey(), 0).toInt())
    , m_balance(m_store.data(group(), balanceKey(), 0).toInt())
{
    ZelAudioManager::instance();
    applyPlace();
}

int SoundSettings::equalizerType() const
{
    return ZelAudioManager::instance()->eqType();
}

void SoundSettings::setEqualizerType(int type)
{
    ZelAudioManager::instance()->setEqType(type); // heard and saved
    Q_EMIT equalizerChanged();
}

QVector<int> SoundSettings::bands() const
{
    constexpr int bandCount = 16;
    QVector<int> steps;
    for (int band = 0; band < bandCount; ++band)
        steps.append(ZelAudioManager::instance()->customEq(band) / 2); // it is stored doubled
    return steps;
}

void SoundSettings::setBand(int band, int steps)
{
    ZelAudioManager::instance()->adjustCustomEq(steps, band); // heard and saved, and the type is 7 now
    Q_EMIT equalizerChanged();
}

void SoundSettings::setFade(int fade)
{
    m_fade = fade;
    applyPlace();
    Q_EMIT placeChanged();
}

void SoundSettings::setBalance(int balance)
{
    m_balance = balance;
    applyPlace();
    Q_EMIT placeChanged();
}

void SoundSettings::savePlace()
{
    m_store.save(group(), fadeKey(), m_fade);
    m_store.save(group(), balanceKey(), m_balance);
}

void SoundSettings::applyPlace()
{
    audio::AudioControl::getInstance()->setFadeBalance(m_fade, m_balance); // both in one call, so that one of them is never forgotten
}
