// The simulated car of the desk window: a process of its own, so that each replay begins with a library that was never used.

#include "car.h"
#include "exitstatus.h"
#include "messages.h"

#include "virtualclock.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QLoggingCategory>
#include <QtCore/QThread>

#include <memory>
#include <mutex>

#include <unistd.h>

namespace
{

/// The car as far as the thread that reads may know it.
struct Driven
{
    std::mutex mutex;
    Car *car = nullptr;
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    constexpr int argumentCount = 4;
    if (arguments.size() != argumentCount) {
        qWarning("qzaudio-desk-car is started by qzaudio-desk");
        return UsageError;
    }
    QLoggingCategory::setFilterRules(QStringLiteral("qzaudio.simulator.info=false"));
    QFile input;
    QFile output;
    // Whatever prints by mistake must not stand between messages.
    const int channel = dup(STDOUT_FILENO);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    if (!input.open(STDIN_FILENO, QIODevice::ReadOnly | QIODevice::Unbuffered) || !output.open(channel, QIODevice::WriteOnly))
        return UsageError;

    Mailbox mailbox;
    Driven driven;
    const Car::Files files{arguments.at(1), arguments.at(2), arguments.at(3) == QLatin1String("measured")};
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        Car car(mailbox, files, [&output](const QVariantMap &message) {
            Messages::write(output, message);
            output.flush();
        });
        {
            const std::lock_guard<std::mutex> lock(driven.mutex);
            driven.car = &car;
        }
        car.run();
        const std::lock_guard<std::mutex> lock(driven.mutex);
        driven.car = nullptr;
    }));
    simulator::VirtualClock::install(*thread);
    thread->start();

    // Reads block, so that the car is stopped also where it is busy.
    QDataStream stream(&input);
    quint64 last = 0; // number of the last request
    for (;;) {
        QByteArray bytes;
        stream >> bytes;
        if (stream.status() != QDataStream::Ok)
            break;
        const QVariantMap request = Messages::parse(bytes);
        if (request.value(QStringLiteral("do")).toString() == QLatin1String("takeOver")) {
            const std::lock_guard<std::mutex> lock(driven.mutex);
            if (driven.car)
                driven.car->interrupt(last);
        }
        last = mailbox.put(request);
    }
    // The window is gone, or wants another car.
    mailbox.close();
    {
        const std::lock_guard<std::mutex> lock(driven.mutex);
        if (driven.car)
            driven.car->interrupt(last);
    }
    thread->wait();
    // The library's objects belong to the thread that made them; nothing of them has to outlive it.
    _exit(0);
}
