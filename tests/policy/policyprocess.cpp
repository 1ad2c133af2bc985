#include <journal.h>
#include <platform.h>
#include <virtualclock.h>

#include <qzaudio/audiodatabase.h>
#include <qzaudio/audiomanager.h>
#include <qzaudio/focusrequester.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QMap>
#include <QtCore/QSettings>
#include <QtCore/QTextStream>

#include <sys/resource.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <memory>

/*
 * A process with one policy manager, for tests of what happens once in a process: its start and its end.
 *
 *   policy_process start HOME_UI_TYPE            prints the platform's calls and the file's changes of instance(), in order
 *   policy_process end destroyed|living|never    what becomes of the application object before the process exits
 *   policy_process band NUMBER                   adjusts a band of the custom curve
 *   policy_process late manager|focus|facade     what a static object still can do in its destructor
 */

namespace
{

/// Prints each call on the platform and, between them, what the settings file got.
class Diary
{
public:
    Diary() { noteFile(false); }

    void noteCall(const simulator::JournalEntry &entry)
    {
        noteFile(true);
        m_out << entry.call() << Qt::endl;
    }

    void noteFile(bool print)
    {
        struct stat status = {};
        const ino_t inode = ::stat("/media/flash/nvm/audioData.db", &status) == 0 ? status.st_ino : 0;
        if (inode == m_inode)
            return;
        m_inode = inode; // each write makes the file anew
        const QSettings file(QStringLiteral("/media/flash/nvm/audioData.db"), QSettings::IniFormat);
        QMap<QString, QString> content;
        const QStringList keys = file.allKeys();
        for (const QString &key : keys)
            content.insert(key, file.value(key).toString());
        QString change = QStringLiteral("nothing new");
        for (auto entry = content.cbegin(); entry != content.cend(); ++entry) {
            if (m_content.value(entry.key()) != entry.value())
                change = entry.key() + QLatin1Char('=') + entry.value();
        }
        m_content = content;
        if (print)
            m_out << "file: " << change << Qt::endl;
    }

private:
    QTextStream m_out{stdout};
    ino_t m_inode = 0;
    QMap<QString, QString> m_content;
};

int startUp(int argc, char **argv)
{
    simulator::VirtualClock::install();
    const QCoreApplication application(argc, argv);
    simulator::Platform *platform = simulator::Platform::instance();
    platform->setHomeUiType(QString::fromLocal8Bit(argv[2]).toInt());
    Diary diary;
    const QMetaObject::Connection calls
        = QObject::connect(platform->journal(), &simulator::Journal::appended, [pen = &diary](const simulator::JournalEntry &entry) { pen->noteCall(entry); });
    ZelAudioManager::instance();
    diary.noteFile(true);
    QObject::disconnect(calls);
    return 0;
}

/// Everything that may still be going on when the process ends.
void useManager()
{
    ZelAudioManager *manager = ZelAudioManager::instance();
    manager->updateAudioChannel(AudioChannelFilePlayer);
    manager->setVolume(ZelAudioTypeMedia, 10, true);
    manager->setAudioMute(true, 100);
    manager->adjustCustomEq(2, 3);
    manager->cpUnduckAudio(0);
    manager->cpDuckAudio(0, 0);
}

int endOfProcess(int argc, char **argv)
{
    if (std::strcmp(argv[2], "never") == 0) {
        useManager();
        return 0;
    }
    auto application = std::make_unique<QCoreApplication>(argc, argv);
    useManager();
    QCoreApplication::processEvents();
    if (std::strcmp(argv[2], "living") == 0) {
        static QCoreApplication *living = nullptr; // keeps it reachable
        living = application.release();
        return living == QCoreApplication::instance() ? 0 : 1;
    }
    return 0;
}

/// A static object of a program: made before main(), hence destroyed after all that main() caused to be made.
class LateClient : public IAudioFocusChangeListener
{
public:
    LateClient() = default;
    ~LateClient() override
    {
        if (!m_act)
            return;
        m_act(*this);
        std::puts("client is gone");
    }
    LateClient(const LateClient &) = delete;
    LateClient &operator=(const LateClient &) = delete;

    void actAtExit(void (*act)(LateClient &client)) { m_act = act; }
    void onAudioFocusChange(int focusChange) override { std::printf("told %d\n", focusChange); }
    QString clientId() override { return QStringLiteral("late client"); }

private:
    void (*m_act)(LateClient &) = nullptr;
};

LateClient lateClient; // clazy:exclude=non-pod-global-static

void printCalls()
{
    const QStringList calls = simulator::Platform::instance()->journal()->calls();
    for (const QString &call : calls)
        std::puts(qPrintable(call));
    simulator::Platform::instance()->journal()->clear();
}

int useLate(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (std::strcmp(argv[2], "manager") == 0) {
        ZelAudioManager *const manager = ZelAudioManager::instance();
        QObject::connect(manager, &QObject::destroyed, [] { std::puts("manager is gone"); });
        manager->updateAudioChannel(AudioChannelFilePlayer);
        lateClient.actAtExit([](LateClient &) {
            printCalls();
            ZelAudioManager *const same = ZelAudioManager::instance();
            std::printf("channel %d\n", same->currentAudioChannel());
            same->setMute(true);
            same->updateAudioStatus(AudioStatusCarPlayTelephony);
            printCalls();
            same->setMicInputValue(33); // which is saved
            std::printf("saved %d\n", audio::AudioDataBase().micInputValue());
            simulator::Platform::instance()->journal()->clear();
        });
    } else if (std::strcmp(argv[2], "focus") == 0) {
        AudioManager::instance()->requestAudioFocus(3, AUDIOFOCUS_GAIN, &lateClient);
        lateClient.actAtExit([](LateClient &client) {
            AudioManager *const same = AudioManager::instance();
            std::printf("null client requests %d\n", same->requestAudioFocus(3, AUDIOFOCUS_GAIN_TRANSIENT, nullptr));
            std::printf("null client abandons %d\n", same->abandonAudioFocus(nullptr));
            std::printf("client abandons %d\n", same->abandonAudioFocus(&client));
        });
    } else {
        audio::AudioControl::getInstance()->setMute(true);
        lateClient.actAtExit([](LateClient &) {
            printCalls();
            audio::AudioControl::getInstance()->setMute(false);
            printCalls();
        });
    }
    simulator::Platform::instance()->journal()->clear();
    return 0;
}

int adjustBand(int argc, char **argv)
{
    const rlimit none = {0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    const QCoreApplication application(argc, argv);
    ZelAudioManager *manager = ZelAudioManager::instance();
    simulator::Platform::instance()->journal()->clear();
    QTextStream out(stdout);
    QObject::connect(simulator::Platform::instance()->journal(), &simulator::Journal::appended, [stream = &out](const simulator::JournalEntry &entry) {
        *stream << entry.call() << Qt::endl;
    });
    manager->adjustCustomEq(3, QString::fromLocal8Bit(argv[2]).toInt());
    out << "alive" << Qt::endl;
    QObject::disconnect(simulator::Platform::instance()->journal(), nullptr, nullptr, nullptr);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    if (std::strcmp(argv[1], "start") == 0)
        return startUp(argc, argv);
    if (std::strcmp(argv[1], "end") == 0)
        return endOfProcess(argc, argv);
    if (std::strcmp(argv[1], "band") == 0)
        return adjustBand(argc, argv);
    if (std::strcmp(argv[1], "late") == 0)
        return useLate(argc, argv);
    return 2;
}
