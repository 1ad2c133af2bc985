// What the library itself costs: the simulated platform answers at once and keeps no journal.

#include <journal.h>
#include <platform.h>
#include <qzaudio/audiocontrol.h>
#include <qzaudio/audiodatabase.h>
#include <qzaudio/audiofocuscontrol.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QLoggingCategory>

#include <benchmark/benchmark.h>

namespace
{

/// A handler that drops every line: what remains is the cost of making it.
void dropLine(QtMsgType, const QMessageLogContext &, const QString &)
{
}

void setLogging(bool on)
{
    QLoggingCategory::setFilterRules(on ? QStringLiteral("default.debug=true") : QStringLiteral("default.debug=false"));
}

/// One volume for one source. Argument: whether the log is on.
void setStreamVolume(benchmark::State &state)
{
    setLogging(state.range(0) != 0);
    audio::AudioControl *control = audio::AudioControl::getInstance();
    for (auto _ : state)
        control->setStreamVolume(audio::AudioControl::Main, "S+FilePlayer_APP", 80);
}
BENCHMARK(setStreamVolume)->ArgName("log")->Arg(0)->Arg(1);

/// An equalizer curve of sixteen bands.
void setEqualizer(benchmark::State &state)
{
    setLogging(false);
    audio::AudioControl *control = audio::AudioControl::getInstance();
    const QList<float> gains = {1, 2, 3, 4, 5, 6, 7, 8, 7, 6, 5, 4, 3, 2, 1, 0};
    for (auto _ : state)
        control->setEqGain(gains);
}
BENCHMARK(setEqualizer);

/// The volume key, as the user feels it. Argument: whether the settings file is written, which is what takes the time.
void volumeKey(benchmark::State &state)
{
    setLogging(false);
    ZelAudioManager *manager = ZelAudioManager::instance();
    const bool saved = state.range(0) != 0;
    int volume = 0;
    for (auto _ : state) {
        manager->setVolume(ZelAudioTypeMedia, volume, saved);
        volume = volume == 25 ? 0 : volume + 1;
    }
}
BENCHMARK(volumeKey)->ArgName("saved")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

/// A prompt's focus over music, and back.
void focusToAndFro(benchmark::State &state)
{
    setLogging(false);
    AudioFocusControl stack;
    const QString music = QStringLiteral("music");
    const QString prompt = QStringLiteral("prompt");
    stack.requestAudioFocus(3, 1, nullptr, music);
    for (auto _ : state) {
        stack.requestAudioFocus(5, 3, nullptr, prompt);
        stack.abandonAudioFocus(prompt);
    }
}
BENCHMARK(focusToAndFro);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    qInstallMessageHandler(dropLine);
    simulator::Platform::instance()->journal()->setEnabled(false);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
