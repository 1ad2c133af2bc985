#include <listening.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <cmath>

namespace
{

/// Plays nothing, and can be read from.
class FakeOutput : public SoundOutput
{
public:
    void start(const std::shared_ptr<LoopDevice> &sound) override
    {
        playing() = sound;
        if (!problem().isEmpty())
            Q_EMIT failed(problem());
    }
    ~FakeOutput() override { playing().reset(); }

    /// What sounds now.
    static std::shared_ptr<LoopDevice> &playing()
    {
        static std::shared_ptr<LoopDevice> device;
        return device;
    }
    /// Why the next one will not sound; empty: it will.
    static QString &problem()
    {
        static QString text;
        return text;
    }
};

SoundLoop loopOf(int frames, qint16 value)
{
    SoundLoop loop;
    loop.samples.fill(value, frames * SoundLoop::channels);
    return loop;
}

QVector<qint16> read(LoopDevice &device, int frames)
{
    QVector<qint16> samples(frames * SoundLoop::channels);
    const qint64 size = samples.size() * qint64(sizeof(qint16));
    if (device.read(reinterpret_cast<char *>(samples.data()), size) != size)
        qFatal("a loop ends");
    return samples;
}

double loudnessOf(const QVector<qint16> &samples)
{
    double sum = 0;
    for (const qint16 sample : samples)
        sum += double(sample) * sample;
    return std::sqrt(sum / samples.size());
}

QByteArray stateLine(qint64 time, const char *source, double gain)
{
    SoundTrack::State state;
    state.time = time;
    if (source)
        state.voices.insert({QStringLiteral("main"), QLatin1String(source)}, {gain, gain, gain, gain});
    return QJsonDocument(SoundTrack::toJson(state)).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

class ListeningTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void theLastStateCounts_data();
    void theLastStateCounts();
    void wavesAreRead();
    void theEndGoesOverIntoTheBeginning();
    void loopsFollowWithoutAGap();
    void aLoopGoesOnOrBeginsAnew();
    void theCarIsHeard();
    void aMissingProgramIsSaid();
    void aMissingDeviceIsSaid();
    void withoutOutputItStaysOff();

private:
    QString write(const QByteArray &lines) const;

    QTemporaryDir m_folder;
};

void ListeningTest::init()
{
    FakeOutput::problem().clear();
    Listening::setOutput([] { return std::make_unique<FakeOutput>(); });
}

QString ListeningTest::write(const QByteArray &lines) const
{
    QFile file(m_folder.filePath(QStringLiteral("drive.sound")));
    if (!file.open(QIODevice::WriteOnly) || file.write(lines) != lines.size())
        qFatal("no file can be written");
    return file.fileName();
}

void ListeningTest::theLastStateCounts_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<double>("gain");
    const QByteArray first = stateLine(0, "S+FilePlayer", 0.5);
    const QByteArray second = stateLine(5, "S+FilePlayer", 0.25);
    QTest::newRow("of two") << first + second << 0.25;
    QTest::newRow("before a heading") << first + second + "{\"heading\":\"a tunnel\",\"time\":7}\n" << 0.25;
    QTest::newRow("before half a line") << first + second + "{\"voices\":[" << 0.25;
    QTest::newRow("of many") << first.repeated(2000) + second << 0.25;
    QTest::newRow("none") << QByteArray() << -1.0; // it is silent
}

void ListeningTest::theLastStateCounts()
{
    QFETCH(const QByteArray, lines);
    QFETCH(const double, gain);
    const auto state = SoundLoop::lastState(write(lines));
    QVERIFY(state);
    QCOMPARE(state->voices.isEmpty() ? -1 : state->voices.first()[0], gain);
    QVERIFY(!SoundLoop::lastState(m_folder.filePath(QStringLiteral("none"))));
}

void ListeningTest::wavesAreRead()
{
    const QByteArray head("RIFF\0\0\0\0WAVE", 12);
    const QByteArray format = QByteArray("fmt ", 4) + QByteArray("\x03\0\0\0", 4) + "abc" + '\0'; // odd sizes are filled
    const QByteArray samples("\xff\x00\x40\xff\x00\x80\x01\xff\xff", 9);
    const QByteArray wave = head + format + QByteArray("data\x09\0\0\0", 8) + samples;
    QCOMPARE(SoundLoop::samplesOf(wave), QVector<qint16>({0x4000, -0x8000}));
    for (int size = 0; size < wave.size(); ++size)
        QVERIFY(SoundLoop::samplesOf(wave.left(size)).size() <= 2);
}

void ListeningTest::theEndGoesOverIntoTheBeginning()
{
    // One that rises all the time would jump at its end.
    QVector<qint16> rising;
    for (int frame = 0; frame < 1100; ++frame)
        rising << qint16(frame * 10) << qint16(-frame * 10);
    const QVector<qint16> closed = SoundLoop::closed(rising, 100).samples;
    QCOMPARE(closed.size(), 1000 * SoundLoop::channels);
    QCOMPARE(closed.at(0), rising.at(1000 * SoundLoop::channels));
    QCOMPARE(closed.at(1), rising.at(1000 * SoundLoop::channels + 1));
    int greatest = 0;
    for (int i = 0; i < closed.size(); ++i)
        greatest = std::max(greatest, std::abs(closed.at((i + SoundLoop::channels) % closed.size()) - closed.at(i)));
    QVERIFY2(greatest < 150, qPrintable(QString::number(greatest)));
}

void ListeningTest::loopsFollowWithoutAGap()
{
    LoopDevice device;
    QCOMPARE(loudnessOf(read(device, 100)), 0.0);
    device.setLoop(loopOf(500, 1000), true);
    QVector<qint16> heard = read(device, 3000);
    QCOMPARE(heard.first(), qint16(0));
    QCOMPARE(heard.last(), qint16(1000));
    device.setLoop(loopOf(500, -1000), false);
    heard += read(device, 3000);
    QCOMPARE(heard.last(), qint16(-1000));
    for (int i = SoundLoop::channels; i < heard.size(); ++i)
        QVERIFY2(std::abs(heard.at(i) - heard.at(i - SoundLoop::channels)) < 5, qPrintable(QString::number(i)));
    device.setLoop({}, false);
    QCOMPARE(read(device, 3000).constLast(), qint16(0));
}

void ListeningTest::aLoopGoesOnOrBeginsAnew()
{
    SoundLoop counting;
    for (int frame = 0; frame < 10000; ++frame)
        counting.samples << qint16(frame) << qint16(frame);
    LoopDevice device;
    device.setLoop(counting, true);
    QCOMPARE(read(device, 4000).constLast(), qint16(3999));
    device.setLoop(counting, false);
    QCOMPARE(read(device, 2000).constLast(), qint16(5999));
    device.setLoop(counting, true);
    QCOMPARE(read(device, 2000).constLast(), qint16(1999));
}

void ListeningTest::theCarIsHeard()
{
    Listening listening;
    listening.setSoundFile(write(stateLine(0, "S+FilePlayer", 0.5)));
    QSignalSpy heard(&listening, &Listening::heard);
    listening.setOn(true);
    if (!listening.isOn())
        QSKIP(qPrintable(listening.note()));
    QTRY_COMPARE_WITH_TIMEOUT(heard.size(), 1, 30000);
    const std::shared_ptr<LoopDevice> playing = FakeOutput::playing();
    QVERIFY(playing);
    constexpr int second = 48000;
    read(*playing, second);
    const double loud = loudnessOf(read(*playing, 4 * second));
    QVERIFY2(loud > 100, qPrintable(QString::number(loud)));
    // What came while that was made is heard next: 12 dB less.
    listening.setSoundFile(write(stateLine(0, "S+FilePlayer", 0.5) + stateLine(9, "S+FilePlayer", 0.125)));
    QTRY_COMPARE_WITH_TIMEOUT(heard.size(), 2, 30000);
    read(*playing, 4 * second);
    const double quiet = loudnessOf(read(*playing, 4 * second));
    QVERIFY2(std::abs(20 * std::log10(loud / quiet) - 12) < 1, qPrintable(QStringLiteral("%1 and %2").arg(loud).arg(quiet)));
    listening.setSoundFile(write(stateLine(0, nullptr, 0)));
    QTRY_COMPARE_WITH_TIMEOUT(heard.size(), 3, 30000);
    read(*playing, second);
    QCOMPARE(loudnessOf(read(*playing, second)), 0.0);
    QCOMPARE(listening.note(), QString());
    listening.setOn(false);
    QVERIFY(!FakeOutput::playing());
}

void ListeningTest::aMissingProgramIsSaid()
{
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", m_folder.path().toLocal8Bit());
    Listening listening;
    QSignalSpy changed(&listening, &Listening::onChanged);
    listening.setOn(true);
    qputenv("PATH", path);
    QVERIFY(!listening.isOn());
    QCOMPARE(listening.note(), QStringLiteral("ffmpeg is not installed: the Debian package ffmpeg has it"));
    QCOMPARE(changed.size(), 1); // a switch goes back
}

void ListeningTest::aMissingDeviceIsSaid()
{
    FakeOutput::problem() = QStringLiteral("there is no loudspeaker");
    Listening listening;
    listening.setOn(true);
    if (!listening.isOn())
        QSKIP(qPrintable(listening.note()));
    QTRY_VERIFY(!listening.isOn());
    QCOMPARE(listening.note(), FakeOutput::problem());
    // Nothing else is the matter: it can be tried again.
    FakeOutput::problem().clear();
    listening.setOn(true);
    QVERIFY(listening.isOn());
    QCOMPARE(listening.note(), QString());
}

void ListeningTest::withoutOutputItStaysOff()
{
    Listening::setOutput({});
    Listening listening;
    listening.setOn(true);
    QVERIFY(!listening.isOn());
    QVERIFY(!listening.note().isEmpty());
}

QTEST_GUILESS_MAIN(ListeningTest)
#include "tst_listening.moc"
