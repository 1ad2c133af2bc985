/*
 * A second process for the tests of the settings store.
 *
 *   read                             what every getter answers, one "name value" a line
 *   read-then-save KEY TEXT          the same, and then saves Volume/KEY
 *   value GROUP KEY                  "TYPE TEXT" of the stored value, or "default"
 *   save GROUP KEY TYPE TEXT         saves one value; TYPE is a name of QMetaType ("int", "float", ...)
 *   count KEY N                      says "counting" and saves Volume/KEY = 1, 2, ... N
 *   count-until MICROSECONDS KEY     saves Volume/KEY = 1, 2, ... until a signal kills it after so long
 *   memory                           makes a store and prints how many kilobytes more the process has then had at most
 *   fork-while-saving                saves for ever while another thread makes 20 children, which live on for five
 *                                    seconds, and says so when all are there
 *   fork-at-lock MOMENT              saves, and around one of its calls of flock() ("before-1", "after-1", "before-2", ...) another
 *                                    thread makes a child, which lives on for five seconds, and kills this process
 *   latency N                        how long each of N saves took, as "p50 MICROSECONDS p99 MICROSECONDS"
 *   save-between-stops KEY TEXT      stops itself by kill(SIGSTOP) right before and right after saving Volume/KEY
 *   save-and-go-on KEY TEXT          the same, then prints "value TEXT" as it reads the key, and saves Volume/later = 1
 *   save-named KEY TEXT              the same as if the file system had no unnamed files (O_TMPFILE)
 *   steps STEP...                    in one process that keeps its store; a STEP is one of
 *       GROUP/KEY=NUMBER             saves it
 *       GROUP/KEY                    prints data() as text, or "default"
 *       +NAME:BYTES                  makes a file beside the settings, as large as fits
 *       +NAME/                       makes a folder there
 *       -NAME                        removes the one or the other
 *       clear                        prints what clear() returns
 *       show                         prints the file as it is, its lines joined by blanks
 *   hold-lock MS                     says "held" and holds the lock file of QSettings for so long
 *   come-and-go                      says "coming", and takes and lets go that lock file until it is killed
 *   hold-folder MS                   says "held" and holds the folder's kernel lock for so long
 *   hang                             says "held", holds both, and never ends
 */
#include <qzaudio/audiodatabase.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QLockFile>
#include <QtCore/QTextStream>
#include <QtCore/QThread>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstddef>
#include <future>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace
{

QTextStream &output()
{
    static QTextStream stream(stdout);
    return stream;
}

int usage()
{
    QTextStream(stderr) << "settingsclient: see the head of its source" << Qt::endl;
    return 2;
}

void printAll(audio::AudioDataBase &store)
{
    for (int type = 0; type < 6; ++type)
        output() << "volume" << type << ' ' << store.getVolume(static_cast<ZelAudioType>(type)) << '\n';
    for (int band = 0; band < 16; ++band)
        output() << "customEq" << band << ' ' << store.getCustomEQ(band) << '\n';
    output() << "eqType " << store.eqType() << '\n';
    output() << "loudness " << store.loudNess() << '\n';
    output() << "micType " << store.micType() << '\n';
    output() << "micInputValue " << store.micInputValue() << '\n';
    output() << "autoMicGain " << store.getAutoMicGain() << '\n';
    output() << "handsfreeDelay " << store.getHandsfreeDelay() << '\n';
}

void readThenSave(const QString &key, const QString &text)
{
    audio::AudioDataBase store;
    printAll(store);
    if (!key.isEmpty())
        store.save(QStringLiteral("Volume"), key, text);
}

void printValue(const QString &group, const QString &key)
{
    audio::AudioDataBase store;
    const QVariant value = store.data(group, key, QVariant());
    if (value.isValid())
        output() << value.typeName() << ' ' << value.toString() << '\n';
    else
        output() << "default\n";
}

int save(const QString &group, const QString &key, const QString &type, const QString &text)
{
    QVariant value(text);
    if (!value.convert(QMetaType::type(type.toLatin1().constData())))
        return usage();
    audio::AudioDataBase().save(group, key, value);
    return 0;
}

void count(const QString &key, int last)
{
    audio::AudioDataBase store;
    output() << "counting" << Qt::endl;
    for (int value = 1; value <= last; ++value) {
        store.save(QStringLiteral("Volume"), key, value);
        QThread::usleep(100); // lets the others in: values are lost where writers alternate
    }
}

void measureLatency(int saves)
{
    audio::AudioDataBase store;
    std::vector<qint64> nanoseconds;
    for (int save = 0; save < saves; ++save) {
        QElapsedTimer timer;
        timer.start();
        store.setVolume(ZelAudioTypeMedia, save % 26, true);
        nanoseconds.push_back(timer.nsecsElapsed());
    }
    std::sort(nanoseconds.begin(), nanoseconds.end());
    const auto percentile = [&nanoseconds](int percent) { return nanoseconds.at((nanoseconds.size() - 1) * static_cast<size_t>(percent) / 100) / 1000; };
    output() << "p50 " << percentile(50) << " p99 " << percentile(99) << '\n';
}

/// The signal is one that nobody handles: it ends the process wherever it is.
void countUntil(int microseconds, const QString &key)
{
    audio::AudioDataBase store;
    const itimerval timer = {{0, 0}, {microseconds / 1000000, microseconds % 1000000}};
    setitimer(ITIMER_REAL, &timer, nullptr);
    for (int value = 1;; ++value)
        store.save(QStringLiteral("Volume"), key, value);
}

long highestMemory()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

void printMemory()
{
    const long before = highestMemory();
    {
        audio::AudioDataBase store;
        store.setEqType(3);
    }
    output() << highestMemory() - before << '\n';
}

/// In a child: who waits for the parent's output must not wait for this one.
[[noreturn]] void stayWithoutOutput(unsigned int seconds)
{
    close(STDOUT_FILENO);
    close(STDERR_FILENO);
    alarm(seconds);
    for (;;)
        pause();
}

[[noreturn]] void forkWhileSaving()
{
    constexpr int childCount = 20;
    constexpr unsigned int lifeSeconds = 5;
    constexpr unsigned int microsecondsBetween = 10000;
    audio::AudioDataBase store;
    std::thread maker([] {
        for (int child = 0; child < childCount; ++child, usleep(microsecondsBetween)) {
            if (fork() == 0)
                stayWithoutOutput(lifeSeconds);
        }
        output() << "children" << Qt::endl;
    });
    for (int value = 0;; ++value)
        store.setEqType(value);
}

/// Another thread forks around one of this thread's calls of flock(), and the process dies with the lock in its hand.
struct ForkAtLock
{
    int callsLeft = 0; // until that one
    bool isBefore = false;
    bool isOver = false;
    std::promise<void> moment;
    std::promise<void> forked;
    std::atomic_bool isForkLate{false}; // the library had it wait, as it should: then the one who forks kills
};
ForkAtLock *forkAtLock = nullptr;

void forkNow()
{
    constexpr std::chrono::milliseconds patience(100);
    forkAtLock->isOver = true;
    forkAtLock->moment.set_value();
    forkAtLock->isForkLate = forkAtLock->forked.get_future().wait_for(patience) != std::future_status::ready;
}

int lockWithForkNow(int file, int operation)
{
    if (forkAtLock->isBefore)
        forkNow();
    const auto outcome = static_cast<int>(syscall(SYS_flock, file, operation));
    if (!forkAtLock->isBefore)
        forkNow();
    if (!forkAtLock->isForkLate)
        kill(getpid(), SIGKILL);
    return outcome;
}

void saveWithForkAtLock(const QString &moment)
{
    constexpr unsigned int lifeSeconds = 5;
    ForkAtLock plan;
    plan.callsLeft = moment.section(QLatin1Char('-'), 1).toInt();
    plan.isBefore = moment.startsWith(QLatin1String("before"));
    forkAtLock = &plan;
    std::thread maker([&plan] {
        plan.moment.get_future().wait();
        if (fork() == 0)
            stayWithoutOutput(lifeSeconds);
        plan.forked.set_value();
        if (plan.isForkLate)
            kill(getpid(), SIGKILL);
    });
    audio::AudioDataBase().setEqType(1);
    maker.join();
}

void saveBetweenStops(const QString &key, const QString &text)
{
    audio::AudioDataBase store;
    const QString group = QStringLiteral("Volume");
    const pid_t self = getpid();
    kill(self, SIGSTOP);
    store.save(group, key, text);
    kill(self, SIGSTOP);
}

void saveAndGoOn(const QString &key, const QString &text)
{
    audio::AudioDataBase store;
    const QString group = QStringLiteral("Volume");
    const pid_t self = getpid();
    kill(self, SIGSTOP);
    store.save(group, key, text);
    kill(self, SIGSTOP);
    output() << "value " << store.data(group, key, QStringLiteral("default")).toString() << Qt::endl;
    store.save(group, QStringLiteral("later"), 1);
}

/// openat() with O_TMPFILE fails from now on in this process.
bool refuseUnnamedFiles()
{
    constexpr quint32 isOpenat = SYS_openat;
    constexpr quint32 flagsOffset = offsetof(seccomp_data, args) + 2 * sizeof(quint64) + (Q_BYTE_ORDER == Q_BIG_ENDIAN ? 4 : 0);
    sock_filter filter[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, isOpenat, 0, 4),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, flagsOffset),
        BPF_STMT(BPF_ALU | BPF_AND | BPF_K, O_TMPFILE),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, O_TMPFILE, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EOPNOTSUPP),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program = {static_cast<unsigned short>(sizeof filter / sizeof filter[0]), &filter[0]};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

void takeStep(audio::AudioDataBase &store, const QString &step)
{
    const QString folder = QStringLiteral("/media/flash/nvm/");
    const QString group = step.section(QLatin1Char('/'), 0, 0);
    const QString key = step.section(QLatin1Char('/'), 1).section(QLatin1Char('='), 0, 0);
    if (step == QLatin1String("clear")) {
        output() << (store.clear() ? "true" : "false") << '\n';
    } else if (step == QLatin1String("show")) {
        QFile file(folder + QStringLiteral("audioData.db"));
        output() << (file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll().simplified()) : QStringLiteral("no file")) << '\n';
    } else if (step.startsWith(QLatin1Char('+')) && step.endsWith(QLatin1Char('/'))) {
        QDir(folder).mkdir(step.mid(1).chopped(1));
    } else if (step.startsWith(QLatin1Char('+'))) {
        QFile file(folder + step.mid(1).section(QLatin1Char(':'), 0, 0));
        if (file.open(QIODevice::WriteOnly))
            file.write(QByteArray(step.section(QLatin1Char(':'), 1).toInt(), 'x'));
    } else if (step.startsWith(QLatin1Char('-'))) {
        if (!QFile::remove(folder + step.mid(1)))
            QDir(folder).rmdir(step.mid(1));
    } else if (step.contains(QLatin1Char('='))) {
        store.save(group, key, step.section(QLatin1Char('='), 1).toInt());
    } else {
        output() << store.data(group, key, QStringLiteral("default")).toString() << '\n';
    }
}

void takeSteps(const QStringList &steps)
{
    audio::AudioDataBase store;
    for (const QString &step : steps)
        takeStep(store, step);
}

/// Two who lie in the way. Both let go when the process ends.
class Holder
{
public:
    bool takeLock() { return m_lock.tryLock(); }
    bool takeFolder() { return flock(m_folder, LOCK_EX | LOCK_NB) == 0; }
    void stay(int milliseconds)
    {
        output() << "held" << Qt::endl;
        QThread::msleep(static_cast<unsigned long>(milliseconds));
    }

    [[noreturn]] void comeAndGo()
    {
        constexpr unsigned long microseconds = 100; // in which others get their turn
        output() << "coming" << Qt::endl;
        for (;; QThread::usleep(microseconds)) {
            if (m_lock.tryLock())
                m_lock.unlock();
        }
    }

private:
    QLockFile m_lock{QStringLiteral("/media/flash/nvm/audioData.db.lock")};
    const int m_folder = open("/media/flash/nvm", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
};

} // namespace

/// In the place of the C library's, also for the settings store.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the C library's names are reserved for it
extern "C" __attribute__((visibility("default"))) int flock(int file, int operation) noexcept
{
    if (forkAtLock && !forkAtLock->isOver && --forkAtLock->callsLeft == 0)
        return lockWithForkNow(file, operation);
    return static_cast<int>(syscall(SYS_flock, file, operation));
}

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    const QString command = words.value(1);
    const bool isNamed = command == QLatin1String("save-named");
    const bool holdsLock = command == QLatin1String("hold-lock") || command == QLatin1String("hang");
    const bool holdsFolder = command == QLatin1String("hold-folder") || command == QLatin1String("hang");
    if (command.startsWith(QLatin1String("read")) && (argc == 2 || argc == 4)) {
        readThenSave(words.value(2), words.value(3));
    } else if (command == QLatin1String("value") && argc == 4) {
        printValue(words.at(2), words.at(3));
    } else if (command == QLatin1String("save") && argc == 6) {
        return save(words.at(2), words.at(3), words.at(4), words.at(5));
    } else if (command == QLatin1String("count") && argc == 4) {
        count(words.at(2), words.at(3).toInt());
    } else if (command == QLatin1String("latency") && argc == 3 && words.at(2).toInt() > 0) {
        measureLatency(words.at(2).toInt());
    } else if ((isNamed || command == QLatin1String("save-between-stops")) && argc == 4) {
        if (isNamed && !refuseUnnamedFiles())
            return 1;
        saveBetweenStops(words.at(2), words.at(3));
    } else if (command == QLatin1String("save-and-go-on") && argc == 4) {
        saveAndGoOn(words.at(2), words.at(3));
    } else if (command == QLatin1String("count-until") && argc == 4) {
        countUntil(words.at(2).toInt(), words.at(3));
    } else if (command == QLatin1String("memory") && argc == 2) {
        printMemory();
    } else if (command == QLatin1String("fork-while-saving") && argc == 2) {
        forkWhileSaving();
    } else if (command == QLatin1String("fork-at-lock") && argc == 3) {
        saveWithForkAtLock(words.at(2));
    } else if (command == QLatin1String("steps") && argc > 2) {
        takeSteps(words.mid(2));
    } else if (command == QLatin1String("come-and-go")) {
        Holder().comeAndGo();
    } else if (holdsLock || holdsFolder) {
        Holder holder;
        if ((holdsLock && !holder.takeLock()) || (holdsFolder && !holder.takeFolder()))
            return 1;
        holder.stay(argc == 3 ? words.at(2).toInt() : INT_MAX);
    } else {
        return usage();
    }
    return 0;
}
