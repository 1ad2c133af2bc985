#include "replaycall.h"

#include "argumentlist.h"
#include "calltext.h"
#include "platformcall.h"

#include "journalentry.h"

#include <QtCore/QDataStream>

#include <algorithm>
#include <iterator>

namespace
{

constexpr const char *silentOperations[] = {"Source.getActiveSource", "Source.queryAlterNumber", "App.setSpeakerDelay", "Volume.getMicAnalogGain"};

/// Nothing is written about what came of these.
constexpr const char *unsaidResults[] = {
    "Volume.setMicAnalogGain",
    "Volume.getMicAnalogGain",
    "Volume.setMicOpGain",
    "Volume.setMicPgaGain",
    "Volume.startMicGainCalibration",
    "Volume.setMicGainCalibration",
    "Volume.getMicCalibrationGain",
    "App.startDownlinkDelayEstimation",
    "App.getDownlinkDelayEstimation",
};

template<std::size_t count>
bool contains(const char *const (&names)[count], const QString &name)
{
    return std::any_of(std::begin(names), std::end(names), [&name](const char *one) { return name == QLatin1String(one); });
}

} // namespace

ReplayCall ReplayCall::read(const QString &text)
{
    const QLatin1String arrow(") -> ");
    const int end = text.lastIndexOf(arrow);
    const int bracket = text.indexOf(QLatin1Char('('));
    if (end < 0 || bracket < 0 || bracket > end)
        return {text, {}, {}};
    // A remark in brackets, and what was written, follow the code.
    const QString result = text.mid(end + arrow.size()).section(QLatin1Char(','), 0, 0).section(QLatin1String(" ("), 0, 0);
    return {text.mid(0, bracket), ArgumentList::split(text.mid(bracket + 1, end - bracket - 1)), result};
}

ReplayCall ReplayCall::of(const LoggedCall &call)
{
    simulator::JournalEntry entry = PlatformCall::make(call);
    entry.note.clear();
    return read(callText(entry));
}

QString ReplayCall::toText() const
{
    return QStringLiteral("%1(%2) -> %3").arg(operation, arguments.join(QStringLiteral(", ")), result);
}

bool ReplayCall::canBe(const ReplayCall &other) const
{
    // "App.enableStereo/disableStereo" is either.
    const QString object = operation.section(QLatin1Char('.'), 0, 0) + QLatin1Char('.');
    const QStringList operations = operation.mid(object.size()).split(QLatin1Char('/'));
    if (!other.operation.startsWith(object) || !operations.contains(other.operation.mid(object.size())))
        return false;
    const QString unknown = QStringLiteral("?");
    if (arguments == QStringList(unknown))
        return true;
    return arguments.size() == other.arguments.size()
        && std::equal(arguments.cbegin(), arguments.cend(), other.arguments.cbegin(), [&unknown](const QString &one, const QString &another) {
               return one == unknown || one == another;
           });
}

bool ReplayCall::hasResultOf(const ReplayCall &other) const
{
    return result == other.result || contains(unsaidResults, operation);
}

bool ReplayCall::isSilent() const
{
    return contains(silentOperations, operation);
}

QDataStream &operator<<(QDataStream &stream, const ExpectedCall &expected)
{
    return stream << expected.call.operation << expected.call.arguments << expected.call.result << expected.line << expected.at << expected.request
                  << expected.isOfSteps << expected.isAfterOtherThread;
}

QDataStream &operator>>(QDataStream &stream, ExpectedCall &expected)
{
    return stream >> expected.call.operation >> expected.call.arguments >> expected.call.result >> expected.line >> expected.at >> expected.request
        >> expected.isOfSteps >> expected.isAfterOtherThread;
}
