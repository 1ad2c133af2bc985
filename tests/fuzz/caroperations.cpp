#include "flash.h"
#include "inputbytes.h"
#include "operations.h"
#include "unitlife.h"

#include <faults.h>

#include <QtCore/QDir>

#include <iterator>

namespace
{

void failOperation(UnitLife &life, InputBytes &input)
{
    static const QStringList names = simulator::Faults::operations();
    const QString &name = names.at(input.index(names.size()));
    const int code = input.number();
    const int call = input.index(8); // 0: each one
    const bool isAfterWriting = input.flag();
    simulator::Faults &faults = *life.platform().faults();
    if (call == 0)
        isAfterWriting ? faults.failAfterWriting(name, code) : faults.fail(name, code);
    else
        isAfterWriting ? faults.failAfterWriting(name, code, call) : faults.fail(name, code, call);
}

void failFactory(UnitLife &life, InputBytes &input)
{
    static const QStringList kinds{QStringLiteral("App"), QStringLiteral("Mixer"), QStringLiteral("Source"), QStringLiteral("Volume")};
    const QString &kind = kinds.at(input.index(kinds.size()));
    const int call = input.index(8); // 0: each one
    if (call == 0)
        life.platform().faults()->failFactory(kind);
    else
        life.platform().faults()->failFactory(kind, call);
}

/// What the platform finds by itself.
void findValues(UnitLife &life, InputBytes &input)
{
    simulator::AudioChip &chip = *life.platform().chip();
    chip.setAlternativeCount(input.number());
    const int first = input.number();
    chip.setCalibrationGains(first, input.number());
    chip.setDownlinkDelay(static_cast<short>(input.number()));
    static const QStringList sources{QStringLiteral("S+FilePlayer"), QStringLiteral("S+AndroidAuto"), QStringLiteral("S+none"), QStringLiteral("S+Tuner")};
    chip.setActiveSource(input.flag() ? QStringLiteral("main") : QStringLiteral("alternative"), QString::fromUtf8(input.textOf(sources)));
}

/// As another process does.
void writeSettings(UnitLife & /*life*/, InputBytes &input)
{
    constexpr int longest = 64;
    flash::clean();
    flash::setContent("[Volume]\n" + input.bytes(input.index(longest)) + '\n');
}

/// With a folder in their place nothing can be saved, until somebody takes it away.
void breakSettings(UnitLife & /*life*/, InputBytes & /*input*/)
{
    flash::clean();
    if (!QDir().mkpath(flash::settingsFile()))
        qFatal("no folder can be made");
}

// clang-format off
constexpr Operation operations[] = {
    {"time", [](UnitLife &life, InputBytes &input) { life.clock().advance(input.byte() * 10); }},
    {"power off", [](UnitLife &life, InputBytes &) { life.switchOff(); }},
    {"power on", [](UnitLife &life, InputBytes &) { life.manager(); }},
    {"start another store", [](UnitLife &life, InputBytes &) { life.restartStore(); }},
    {"fail", failOperation},
    {"failFactory", failFactory},
    {"repair", [](UnitLife &life, InputBytes &) { life.platform().faults()->clear(); }},
    {"find", findValues},
    {"reverse gear", [](UnitLife &life, InputBytes &input) { life.platform().setReverseGear(input.flag()); }},
    {"home screen", [](UnitLife &life, InputBytes &input) { life.platform().setHomeUiType(input.number()); }},
    {"call duration", [](UnitLife &life, InputBytes &input) { life.platform().setCallDuration(input.index(60)); }},
    {"settings of others", writeSettings},
    {"break the settings", breakSettings},
};
// clang-format on

} // namespace

std::vector<Operation> carOperations()
{
    return {std::begin(operations), std::end(operations)};
}
