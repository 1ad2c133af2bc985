#include "bustarget.h"
#include "privatebus.h"
#include "servicethread.h"

#include <QtCore/QCoreApplication>

#include <cstddef>
#include <cstdint>
#include <cstdio>

// Called by the fuzzer, which brings main().

namespace
{

BusTarget *target = nullptr; // these live for ever: a finding ends the process anywhere

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv) // NOLINT(readability-non-const-parameter): the fuzzer declares it so
{
    new QCoreApplication(*argc, *argv);
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        if (type == QtFatalMsg)
            std::fprintf(stderr, "%s\n", qUtf8Printable(text));
    });
    static const auto *const bus = new PrivateBus;
    new ServiceThread(bus->address());
    target = new BusTarget(bus->address());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    target->play({reinterpret_cast<const char *>(data), size});
    return 0;
}
