#include "world.h"

#include <audiocontrol_p.h>
#include <memberaccess.h>

#include <qzaudio/audiocontrol.h>

#include <QtCore/QDataStream>
#include <QtCore/QFile>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

using audio::AudioControl;
using simulator::Journal;
using simulator::JournalEntry;
using simulator::Platform;

namespace
{

OPEN_MEMBER(AudioControl, d, audio::AudioControlPrivate *)

struct Singleton_Member
{
    using Member = AudioControl **;
    friend constexpr Member memberOf(Singleton_Member);
};
template struct MemberAccess<Singleton_Member, &AudioControl::adCtrl>;

AudioControl *&theFacade()
{
    return *memberOf(Singleton_Member());
}

QString settingsPath()
{
    return QStringLiteral("/media/flash/nvm/audioData.db");
}

/// Values that nobody takes for a neutral one.
void setUpChip(simulator::AudioChip &chip)
{
    const auto text = [](const char *name) { return QString::fromLatin1(name); };
    chip.setMasterVolume(87);
    chip.setTrackVolume(text("second"), text("S+CarLife"), 92);
    chip.setActiveSource(text("main"), text("S+GPS"));
    chip.setInputSelectPin(1, 3);
    chip.setAlternativeCount(6);
    chip.setMicAnalogGain(5.5F, 6.75F);
    chip.setCalibrationGains(61, 62);
    chip.setDownlinkDelay(63);
    chip.setMicrophoneTest({71, 72, 73, 74, 75, 76, 77, 78});
}

} // namespace

World::World(Has has, const Situation &situation, const QString &missing)
    : m_unit(nullptr, nullptr, nullptr, m_platform)
{
    QFile::remove(settingsPath());
    m_platform->reset();
    m_foreign = m_platform->books()->living();
    m_log = std::make_unique<LogRecorder>();
    setUpChip(*m_platform->chip());
    if (!missing.isEmpty())
        m_platform->faults()->failFactory(missing, 1);
    if (has != Has::Nothing)
        startFacade();
    m_platform->faults()->clear();
    if (has == Has::Manager) {
        startManager();
        letTimersRun();
    }
    situation.prepare(m_unit);
}

World::~World()
{
    end();
}

void World::startFacade()
{
    std::get<AudioControl *>(m_unit) = AudioControl::getInstance();
}

void World::startManager()
{
    m_manager.reset();
    m_manager = std::make_unique<ZelAudioManager>();
    std::get<ZelAudioManager *>(m_unit) = m_manager.get();
    QObject::connect(m_manager.get(), &ZelAudioManager::zelvolumeChanged, &m_context, [this](bool mute, int volume, int type) {
        note();
        m_current.lines += QStringLiteral("zelvolumeChanged(%1, %2, %3)").arg(mute).arg(volume).arg(type);
    });
}

void World::startInstance()
{
    std::get<ZelAudioManager *>(m_unit) = ZelAudioManager::instance();
}

void World::endManager()
{
    m_manager.reset();
}

/// Takes the lines that were written since the last time.
void World::note()
{
    m_current.lines += m_log->takeTexts();
}

void World::letTimersRun()
{
    while (m_clock->nextDeadline() >= 0)
        m_clock->advance(m_clock->nextDeadline() - m_clock->now());
}

PlatformRun World::run(const WalkedOperation &operation)
{
    m_log->take();
    m_current = PlatformRun();
    m_platform->journal()->clear();
    const auto connection = QObject::connect(m_platform->journal(), &Journal::appended, &m_context, [this] {
        note();
        m_current.linesBefore += m_current.lines.size();
    });
    m_current.begin = m_clock->now();
    m_current.result = operation.call(*this);
    note();
    m_current.promptEntries = m_platform->journal()->count();
    m_current.promptLines = m_current.lines.size();
    letTimersRun();
    note();
    QObject::disconnect(connection);
    m_current.entries = m_platform->journal()->entries();
    QFile file(settingsPath());
    if (file.open(QIODevice::ReadOnly))
        m_current.settings = file.readAll();
    const QStringList objects = living();
    for (const QString &object : objects)
        m_current.living += object.section(QLatin1Char('#'), 0, 0);
    m_current.problems = m_platform->books()->problems();
    return std::exchange(m_current, {});
}

QStringList World::living() const
{
    QStringList objects;
    const QStringList all = m_platform->books()->living();
    for (const QString &object : all) {
        if (!m_foreign.contains(object))
            objects += object;
    }
    return objects;
}

QStringList World::end()
{
    if (!m_log)
        return {};
    m_platform->faults()->clear();
    m_platform->setCallDuration(0);
    m_manager.reset();
    if (AudioControl *const facade = std::exchange(theFacade(), nullptr)) {
        audio::SPAudioSetting::App *const app = (facade->*memberOf(d_Member()))->app;
        delete facade;
        if (app)
            audio::SPAudioSetting::destroy(app); // which the facade leaves alive, and must
    }
    QStringList leftovers = m_platform->books()->problems();
    leftovers += living();
    m_log.reset();
    return leftovers;
}

Observation observe(const WalkedOperation &operation, const Situation &situation, const WalkedFault &fault)
{
    Platform *const platform = Platform::instance();
    Observation seen;
    World world(operation.needs, situation, fault.way == WalkedFault::KeptNull ? fault.call : QString());
    fault.order(*platform->faults());
    platform->setCallDuration(fault.callDuration());
    seen.first = world.run(operation);
    if (fault.way != WalkedFault::RefusedFromThenOn && fault.way != WalkedFault::NullFromThenOn)
        seen.unmet = platform->faults()->pending();
    platform->faults()->clear();
    platform->setCallDuration(0);
    seen.next = world.run(operation);
    seen.leftovers = world.end();
    return seen;
}

Observation observeApart(const WalkedOperation &operation, const Situation &situation, const WalkedFault &fault)
{
    int ends[2] = {};
    if (::pipe(&ends[0]) != 0)
        return {};
    const pid_t process = ::fork();
    if (process == 0) {
        const Observation seen = observe(operation, situation, fault);
        QFile output;
        bool isTold = output.open(ends[1], QIODevice::WriteOnly);
        {
            QDataStream stream(&output);
            stream << seen.first << seen.next << seen.unmet << seen.leftovers;
            isTold = isTold && stream.status() == QDataStream::Ok;
        }
        isTold = isTold && output.flush();
        ::_exit(isTold ? 0 : 1); // nothing of the test's own is torn down twice
    }
    ::close(ends[1]);
    Observation seen;
    QFile input;
    if (input.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        QDataStream stream(&input);
        stream >> seen.first >> seen.next >> seen.unmet >> seen.leftovers;
        if (stream.status() != QDataStream::Ok)
            seen.unmet += QStringLiteral("its process told nothing");
    }
    int status = 0;
    if (process < 0 || ::waitpid(process, &status, 0) != process || status != 0)
        seen.unmet += QStringLiteral("its process ended badly");
    return seen;
}
