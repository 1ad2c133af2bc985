// What a process waits for at its first use of the policy manager. One time, in ns, is all that a process can measure.

#include "filledstore.h"
#include "starts.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QLoggingCategory>

#include <chrono>
#include <cstdio>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    const QString what = QCoreApplication::arguments().value(1);
    if (what == QLatin1String("fill")) {
        filledStore();
        return 0;
    }
    if (what != QLatin1String("work") && what != QLatin1String("floor")) {
        std::fputs("Usage: qzaudio-start-time fill|work|floor\n", stderr);
        return 2;
    }
    const auto before = std::chrono::steady_clock::now();
    if (what == QLatin1String("work"))
        start();
    else
        startByHand();
    const auto after = std::chrono::steady_clock::now();
    std::printf("%lld\n", static_cast<long long>(std::chrono::nanoseconds(after - before).count()));
    return 0;
}
