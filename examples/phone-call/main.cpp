/*
 * What a telephone application tells the library, from the first ring to the end of the call.
 *
 *     qzaudio-with-flash ./phone-call
 *
 * Exit status: 0; 1 where the call was not granted focus.
 */

#include <qzaudio/audiomanager.h>
#include <qzaudio/focusrequester.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>

#include <chrono>
#include <cstdio>

namespace
{

constexpr int streamType = 0; // a number of the application's own

/// Who asks for focus, and tells what it hears.
class Client : public IAudioFocusChangeListener
{
public:
    explicit Client(const QString &id)
        : m_id(id)
    {
    }
    ~Client() override { abandon(); }

    bool request(int durationHint)
    {
        const bool granted = AudioManager::instance()->requestAudioFocus(streamType, durationHint, this) == 0;
        std::printf("%s %s\n", qPrintable(m_id), granted ? "granted" : "denied");
        return granted;
    }
    void abandon() { AudioManager::instance()->abandonAudioFocus(this); }

    void onAudioFocusChange(int focusChange) override
    {
        std::printf("%s %s\n", qPrintable(m_id), qPrintable(FocusRequester::focusChangeToString(focusChange)));
    }
    QString clientId() final { return m_id; }

private:
    Q_DISABLE_COPY(Client)

    QString m_id;
};

/// A call over Bluetooth. Nobody takes focus from the client of this id.
class PhoneCall final : public Client
{
public:
    PhoneCall()
        : Client(QStringLiteral("IN_VOICE_COMM_FOCUS_ID"))
    {
    }

    /// False where there is a call already.
    bool ring()
    {
        if (!request(AUDIOFOCUS_GAIN_TRANSIENT))
            return false;
        m_channelBefore = static_cast<AudioChannel>(m_audio->currentAudioChannel());
        m_audio->updateAudioChannel(AudioChannelBtRingtone);
        m_audio->updateAudioStatus(AudioStatusBtPhoneRing);
        return true;
    }
    void answer()
    {
        m_audio->updateAudioChannel(AudioChannelBtPhone);
        m_audio->updateAudioStatus(AudioStatusBtPhoneTelephony);
    }
    /// The channel first: the status that ends the call gives the channel's source the media volume. Then who waits for focus may sound.
    void hangUp()
    {
        m_audio->updateAudioChannel(m_channelBefore);
        m_audio->updateAudioStatus(AudioStatusNone);
        abandon();
    }

private:
    ZelAudioManager *m_audio = ZelAudioManager::instance();
    AudioChannel m_channelBefore = AudioChannelNone;
};

} // namespace

int main(int argc, char **argv)
{
    using namespace std::chrono_literals;

    QCoreApplication application(argc, argv);
    ZelAudioManager *const audio = ZelAudioManager::instance();

    // What is there before, and what wants to sound during the call.
    Client music(QStringLiteral("music"));
    Client navigation(QStringLiteral("navigation"));
    music.request(AUDIOFOCUS_GAIN);
    audio->updateAudioChannel(AudioChannelFilePlayer);

    PhoneCall call;
    if (!call.ring())
        return 1;
    audio->updateCurrentAudioVolume(true); // the volume key turns the ring
    std::printf("ring volume %d\n", audio->getVolume(ZelAudioTypeRing));

    QTimer::singleShot(300ms, &application, [&] {
        call.answer();
        audio->updateCurrentAudioVolume(false); // and now the call
        std::printf("call volume %d\n", audio->getVolume(ZelAudioTypeTelephony));
        navigation.request(AUDIOFOCUS_GAIN_TRANSIENT_MAY_DUCK);
    });
    QTimer::singleShot(600ms, &application, [&] {
        call.hangUp();
        std::printf("media volume %d\n", audio->getVolume(ZelAudioTypeMedia));
        QCoreApplication::quit();
    });
    return QCoreApplication::exec();
}
