#include "policytest.h"

#include <books.h>
#include <faults.h>
#include <journal.h>
#include <situationexpectations.h>
#include <valuetext.h>

#include <qzaudio/audiocontrol.h>

#include <QtCore/QFile>
#include <QtCore/QSettings>

#include <algorithm>

using simulator::Journal;
using simulator::ObjectKind;

namespace
{

QString settingsPath()
{
    return QStringLiteral("/media/flash/nvm/audioData.db");
}

struct Band
{
    int hertz;
    const char *quality;
};

constexpr std::array<Band, 16> bands = {{
    {50, "1"},
    {80, "1"},
    {125, "1"},
    {200, "1.5"},
    {315, "1.5"},
    {500, "1.5"},
    {630, "1.5"},
    {800, "2"},
    {1000, "2"},
    {2000, "2"},
    {3100, "2"},
    {4000, "2"},
    {5000, "2"},
    {6300, "1"},
    {16000, "1"},
    {20000, "1"},
}};

} // namespace

QStringList calls::fresh(const QString &call)
{
    const QString kind = call.section(QLatin1Char('.'), 0, 0);
    return {kind + QLatin1String(".create() -> ok"), call, kind + QLatin1String(".destroy()")};
}

QStringList calls::streamVolume(const QString &platformSource, int volume)
{
    return fresh(QStringLiteral("Volume.setTrackVolume(\"main\", \"%1\", %2) -> 0").arg(platformSource).arg(volume));
}

QStringList calls::volumeOfType(int type, int plain, int boosted)
{
    QStringList calls;
    const QList<int> channels = expectation::channelsOfType(type);
    for (const int channel : channels) {
        const expectation::Source &source = expectation::channel(channel).source;
        calls += streamVolume(QLatin1String(source.platformName), source.boosted ? boosted : plain);
    }
    return calls;
}

QStringList calls::equalizer(const Curve &gains)
{
    QStringList texts;
    for (std::size_t band = 0; band < gains.size(); ++band) {
        texts += QStringLiteral("{type: 3, frequency: %1, gain: %2, q: %3}")
                     .arg(bands[band].hertz)
                     .arg(simulator::floatText(gains[band]), QLatin1String(bands[band].quality));
    }
    return fresh(QStringLiteral("App.setExtEqParameter({channel: 65535, band: [%1]}) -> 0").arg(texts.join(QLatin1String(", "))));
}

calls::Curve calls::curveOf(float everyBand)
{
    Curve curve;
    curve.fill(everyBand);
    return curve;
}

void PolicyTest::initTestCase()
{
    const LogRecorder quiet;
    ZelAudioManager powerOn;
    powerOn.updateAudioChannel(AudioChannelFilePlayer);
}

void PolicyTest::init()
{
    QFile::remove(settingsPath());
    // QSettings keeps what it read by the file's size and time, in which this test's file may equal the last test's: let it see none.
    QSettings(settingsPath(), QSettings::IniFormat).sync();
    platform->reset();
    log = std::make_unique<LogRecorder>();
    audio::AudioControl::getInstance()->setMute(false);
    audio::AudioControl::getInstance()->setAlterMode(true);
    m_volumesBefore = platform->books()->alive(ObjectKind::Volume);
    m_appsBefore = platform->books()->alive(ObjectKind::App);
}

void PolicyTest::cleanup()
{
    manager.reset();
    log.reset();
    QCOMPARE(m_neverEmitted, 0);
    QCOMPARE(m_volumeChanges, QList<VolumeChange>());
    QCOMPARE(platform->books()->problems(), QStringList());
    QCOMPARE(platform->books()->alive(ObjectKind::Source), 0);
    QCOMPARE(platform->books()->alive(ObjectKind::Mixer), 0);
    QCOMPARE(platform->books()->alive(ObjectKind::Volume), m_volumesBefore);
    QCOMPARE(platform->books()->alive(ObjectKind::App), m_appsBefore);
}

void PolicyTest::startOnly()
{
    manager = std::make_unique<ZelAudioManager>();
    m_volumeChanges.clear();
    connect(manager.get(), &ZelAudioManager::zelvolumeChanged, this, [this](bool mute, int volume, int type) { m_volumeChanges.append({mute, volume, type}); });
    const auto count = [this] { ++m_neverEmitted; };
    connect(manager.get(), &ZelAudioManager::audioChannel, this, count);
    connect(manager.get(), &ZelAudioManager::volumeChanged, this, count);
    connect(manager.get(), &ZelAudioManager::audioVolumeChanged, this, count);
}

void PolicyTest::start()
{
    startOnly();
    managerstate::delayVolumeTimer(*manager).stop();
    managerstate::pendingVolumeTypes(*manager).clear();
    takeCalls();
    log->take();
}

QStringList PolicyTest::takeCalls()
{
    QStringList taken = platform->journal()->calls(Journal::Lifetimes::Include);
    platform->journal()->clear();
    return taken;
}

QStringList PolicyTest::takeManagerLines()
{
    return log->takeTexts().filter(QLatin1String(" ZelAudioManager::"));
}

QList<VolumeChange> PolicyTest::takeVolumeChanges()
{
    QList<VolumeChange> taken = m_volumeChanges;
    m_volumeChanges.clear();
    return taken;
}

QVariant PolicyTest::stored(const QString &key) const
{
    return QSettings(settingsPath(), QSettings::IniFormat).value(key);
}

QStringList PolicyTest::storedLines() const
{
    const QSettings file(settingsPath(), QSettings::IniFormat);
    QStringList lines;
    const QStringList keys = file.allKeys();
    for (const QString &key : keys)
        lines += key + QLatin1Char('=') + file.value(key).toString();
    lines.sort();
    return lines;
}

void PolicyTest::store(const QString &key, const QVariant &value) const
{
    QSettings file(settingsPath(), QSettings::IniFormat);
    file.setValue(key, value);
}
