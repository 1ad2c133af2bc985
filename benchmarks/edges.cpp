// What a log handler that is slow costs, and what memory a process needs. Prints words and numbers in lines.

#include "filledstore.h"

#include <qzaudio/audiocontrol.h>
#include <qzaudio/audiolisteners.h>
#include <qzaudio/audiomanager.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QLoggingCategory>

#include <chrono>
#include <cstdio>
#include <thread>

#include <sys/resource.h>

namespace
{

int lines = 0;

void takeTime(QtMsgType, const QMessageLogContext &, const QString &)
{
    ++lines;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

/// Name, lines and ms of one call.
template<typename Operation>
void printCallWithSlowHandler(const char *name, Operation operation)
{
    constexpr int calls = 20;
    operation(0);
    lines = 0;
    const auto before = std::chrono::steady_clock::now();
    for (int i = 1; i <= calls; ++i)
        operation(i);
    const auto after = std::chrono::steady_clock::now();
    const double time = std::chrono::duration<double, std::milli>(after - before).count();
    std::printf("%s %.1f %.3f\n", name, double(lines) / calls, time / calls);
}

void measureSlowHandler()
{
    using audio::AudioControl;
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    ZelAudioManager *const manager = ZelAudioManager::instance();
    AudioControl *const control = AudioControl::getInstance();
    manager->updateAudioChannel(AudioChannelFilePlayer);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=true"));
    qInstallMessageHandler(takeTime);
    printCallWithSlowHandler("setStreamVolume", [control](int) { control->setStreamVolume(AudioControl::Main, "S+FilePlayer_APP", 80); });
    printCallWithSlowHandler("updateAudioStatus",
                             [manager](int i) { manager->updateAudioStatus(i % 2 ? AudioStatusBtPhoneTelephony : AudioStatusCarPlaySpeech); });
    manager->updateAudioStatus(AudioStatusNone);
    printCallWithSlowHandler("updateCurrentAudioVolume", [manager](int i) { manager->updateCurrentAudioVolume(i % 2); });
    printCallWithSlowHandler("setEqType", [manager](int i) { manager->setEqType(i % 2); });
    qInstallMessageHandler(nullptr);
}

/// In kB.
long mappedMemory(const char *field)
{
    QFile file(QStringLiteral("/proc/self/smaps_rollup"));
    if (!file.open(QFile::ReadOnly))
        return -1;
    const QList<QByteArray> rows = file.readAll().split('\n');
    for (const QByteArray &row : rows) {
        if (row.startsWith(field))
            return row.mid(row.indexOf(':') + 1).simplified().split(' ').first().toLong();
    }
    return -1;
}

class Listener final : public IAudioFocusChangeListener
{
public:
    void onAudioFocusChange(int) override { }
    QString clientId() override { return QStringLiteral("edges"); }
};

void printMemoryAfter(const QString &use)
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    Listener listener;
    if (use != QLatin1String("nothing"))
        audio::AudioControl::getInstance()->setStreamVolume(audio::AudioControl::Main, "S+FilePlayer_APP", 80);
    if (use == QLatin1String("all")) {
        filledStore();
        ZelAudioManager::instance()->updateAudioChannel(AudioChannelFilePlayer);
        ZelAudioManager::instance()->updateCurrentAudioVolume(true);
        AudioManager::instance()->requestAudioFocus(3, 1, &listener);
    }
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    std::printf("%ld %ld %ld\n", mappedMemory("Rss"), mappedMemory("Private_Dirty"), usage.ru_minflt);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QString what = QCoreApplication::arguments().value(1);
    if (what == QLatin1String("handler")) {
        measureSlowHandler();
        return 0;
    }
    if (what == QLatin1String("nothing") || what == QLatin1String("facade") || what == QLatin1String("all")) {
        printMemoryAfter(what);
        return 0;
    }
    std::fputs("Usage: qzaudio-edges handler|nothing|facade|all\n", stderr);
    return 2;
}
