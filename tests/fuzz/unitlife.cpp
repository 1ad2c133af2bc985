#include "unitlife.h"

#include "flash.h"
#include "operations.h"

#include <journal.h>
#include <refusal.h>

#include <qzaudio/audiolisteners.h>

#include <algorithm>
#include <cstring>
#include <iterator>

using simulator::JournalEntry;
using simulator::ObjectKind;

namespace
{

constexpr int standardSteps = 100;

/// What the platform refuses only because it was sent what the library never sends, whatever it was given itself.
constexpr int impossibleRefusals[] = {
    simulator::GainOutOfRange,
    simulator::UnknownChannel,
    simulator::UnknownInput,
    simulator::PinOutOfRange,
    simulator::ModeOutOfRange,
    simulator::QualityOutOfRange,
    simulator::NullPointer,
    simulator::KindOutOfRange,
    simulator::CountOutOfRange,
    simulator::ObjectDestroyed,
};

/// Those that wait to be written, too.
void forgetSettings()
{
    audio::AudioDataBase store;
    flash::clean();
    flash::setContent({});
    if (!store.clear())
        qFatal("the flash cannot be emptied");
}

bool isImpossible(const JournalEntry &entry)
{
    const int code = entry.result.toInt();
    // A step beyond the range, which nobody tests, is worth more than a track takes.
    const bool isOfTrack = entry.operation == QLatin1String("setTrackVolume") || entry.operation == QLatin1String("setAlterTrackVolume");
    if (code == simulator::VolumeOutOfRange)
        return !isOfTrack;
    return std::find(std::begin(impossibleRefusals), std::end(impossibleRefusals), code) != std::end(impossibleRefusals);
}

bool isHearable(float gain)
{
    constexpr float most = 12; // dB
    return gain >= -most && gain <= most;
}

template<typename Record>
Record recordOf(const JournalEntry &entry)
{
    Record record = {};
    require(entry.record.size() == int(sizeof record), "a record is sent whole");
    std::memcpy(&record, entry.record.constData(), sizeof record);
    return record;
}

} // namespace

/// Hears of focus changes, each of which has to be one.
class UnitLife::Listener : public IAudioFocusChangeListener
{
public:
    explicit Listener(const QString &id)
        : m_id(id)
    {
    }

    void onAudioFocusChange(int focusChange) override
    {
        require(focusChange == AUDIOFOCUS_GAIN || (focusChange >= AUDIOFOCUS_LOSS_TRANSIENT_CAN_DUCK && focusChange <= AUDIOFOCUS_LOSS),
                "a listener is told a gain or a loss");
    }
    QString clientId() override { return m_id; }

private:
    const QString m_id;
};

UnitLife::UnitLife()
{
    m_platform->reset();
    forgetSettings();
    // What the facade remembers from the life before.
    m_control->setMute(false);
    m_control->setAlterMode(true);
    m_control->setStepRange(standardSteps);
    m_platform->reset();
    m_volumesBefore = m_platform->books()->alive(ObjectKind::Volume);
    m_appsBefore = m_platform->books()->alive(ObjectKind::App);
    for (std::size_t number = 0; number < m_listeners.size(); ++number)
        m_listeners[number] = std::make_unique<Listener>(clientIds().at(int(number)));
    QObject::connect(&m_focusService, &AudioService::audioFocusChanged, &m_focusService, [](int newState) {
        // An unchecked hint is told as no change at all.
        require(newState >= AUDIOFOCUS_LOSS_TRANSIENT_CAN_DUCK && newState <= AUDIOFOCUS_GAIN, "a focus change is between -3 and 1");
    });
    restartStore();
}

UnitLife::~UnitLife()
{
    switchOff();
    check();
}

ZelAudioManager &UnitLife::manager()
{
    if (!m_manager) {
        m_manager = std::make_unique<ZelAudioManager>();
        QObject::connect(m_manager.get(), &ZelAudioManager::zelvolumeChanged, m_manager.get(), [](bool mute, int volume, int type) {
            require(volume >= 0 && volume <= 25, "a volume is told between 0 and 25");
            require(mute == (volume == 0), "a mute is told with the volume 0");
            require(type >= ZelAudioTypeMedia && type <= ZelAudioTypeHiCarCall, "a volume's type is between 0 and 5");
        });
    }
    return *m_manager;
}

void UnitLife::restartStore()
{
    m_store.reset();
    m_store = std::make_unique<audio::AudioDataBase>();
}

IAudioFocusChangeListener *UnitLife::listener(int number)
{
    return number < int(m_listeners.size()) ? m_listeners[std::size_t(number)].get() : nullptr;
}

void UnitLife::check()
{
    checkBooks();
    const QVector<JournalEntry> calls = m_platform->journal()->entries();
    for (const JournalEntry &call : calls)
        checkCall(call);
    m_platform->journal()->clear();
}

void UnitLife::checkBooks() const
{
    const simulator::Books &books = *m_platform->books();
    require(books.problems().isEmpty(), "no object of the platform is used or destroyed wrongly");
    require(books.alive(ObjectKind::Source) == 0 && books.alive(ObjectKind::Mixer) == 0, "each Source and Mixer is destroyed");
    require(books.alive(ObjectKind::Volume) == m_volumesBefore, "each Volume is destroyed");
    require(books.alive(ObjectKind::App) == m_appsBefore, "each App is destroyed");
}

void UnitLife::checkCall(const JournalEntry &entry)
{
    const bool isRefusal = !entry.note.isEmpty() && entry.note == simulator::refusalText(entry.result.toInt());
    if (isRefusal && isImpossible(entry))
        require(false, qUtf8Printable(entry.call() + QLatin1String(" is never sent: ") + entry.note));
    if (entry.operation == QLatin1String("setExtEqParameter")) {
        const auto record = recordOf<audio::audio_ext_eq_parameter_t>(entry);
        for (const audio::audio_ext_eq_band_t &band : record.band)
            require(isHearable(band.gain), "a band has at most 12 dB");
    } else if (entry.operation == QLatin1String("setEqParameter")) {
        const auto record = recordOf<audio::audio_eq_parameter_t>(entry);
        require(std::all_of(std::begin(record.gain), std::end(record.gain), isHearable), "a preset has at most 12 dB");
    }
}

const QStringList &UnitLife::clientIds()
{
    static const QStringList ids{
        QStringLiteral("media"),
        QStringLiteral("navigation"),
        QStringLiteral("IN_VOICE_COMM_FOCUS_ID"),
        QStringLiteral("phone"),
    };
    return ids;
}
