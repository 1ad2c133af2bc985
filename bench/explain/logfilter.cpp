#include "logfilter.h"

#include "calltext.h"
#include "facaderules.h"
#include "timelineevent.h"

#include <algorithm>
#include <iterator>
#include <limits>

using Kind = TimelineEvent::Kind;
using LogTime::Clock;

namespace
{

struct Area
{
    const char *name;
    /// Parts of the names of operations, the platform's and the library's.
    const char *operations[8];
};

// An operation is of the first area that it fits.
constexpr Area areas[] = {
    {"microphone", {"Mic", "Handsfree", "Downlink", "Aec", "AEC"}},
    {"equalizer", {"Eq", "oudness", "oudNess", "Filter", "Dps", "Stereo", "SpeakerDel"}},
    {"routing", {"Source", "ChannelMask", "FrontRear", "Destination", "SelectPin", "AudioChannel", "Auxin", "I2S"}},
    {"volume", {"olume", "ute", "uck", "unk", "Att", "FadeBalance", "Status", "BackCar"}},
};
constexpr char focusArea[] = "focus";
constexpr char focusBegin[] = "focus: ";

/// Null for none.
const Area *areaOf(const QString &operation)
{
    const auto fits = [&operation](const Area &area) {
        return std::any_of(
            std::begin(area.operations), std::end(area.operations), [&operation](const char *part) { return part && operation.contains(QLatin1String(part)); });
    };
    const auto *const found = std::find_if(std::begin(areas), std::end(areas), fits);
    return found == std::end(areas) ? nullptr : found;
}

/// Calls that an event brought, with those of what it caused.
template<typename Test>
bool hasCall(const TimelineEvent &event, const Test &test)
{
    return (event.kind == Kind::Call && test(event.call))
        || std::any_of(event.caused.cbegin(), event.caused.cend(), [&test](const TimelineEvent &caused) { return hasCall(caused, test); });
}

bool isRefused(const simulator::JournalEntry &call)
{
    return call.result.toInt() != 0;
}

struct Unit
{
    const char *name;
    qint64 milliseconds;
};

constexpr Unit units[] = {{"ms", 1}, {"min", 60000}, {"s", 1000}, {"h", 3600000}, {"", 1000}};

/// What a time may leave out, and how many ms it means then.
struct Precision
{
    const char *missing;
    qint64 length;
};

// The first that makes it a time.
constexpr Precision precisions[] = {{":00.0", 60000}, {".0", 1000}, {"", 1}};

} // namespace

std::optional<LogLimit> LogLimit::read(const QString &text)
{
    LogLimit limit;
    if (text.startsWith(QLatin1Char('+'))) {
        for (const Unit &unit : units) {
            if (!text.endsWith(QLatin1String(unit.name)))
                continue;
            bool isNumber = false;
            const double number = text.mid(1).chopped(int(qstrlen(unit.name))).toDouble(&isNumber);
            constexpr double most = 1e9;
            if (!isNumber || !(number >= 0 && number <= most))
                return {};
            limit.m_offset = qint64(number * double(unit.milliseconds));
            return limit;
        }
    }
    const std::string given = text.toStdString();
    for (const Precision &precision : precisions) {
        const std::string written = given + precision.missing;
        LogTime::Reader reader(written);
        auto moment = reader.calendar();
        moment = moment ? moment : reader.yearless();
        moment = moment ? moment : reader.daytime();
        moment = moment ? moment : reader.seconds();
        // Seconds without a point are no such time: 12 could be anything.
        const bool isUnclear = moment && moment->clock == Clock::Uptime && *precision.missing;
        if (moment && reader.rest().empty() && !isUnclear) {
            limit.m_moment = *moment;
            limit.m_length = precision.length - 1;
            return limit;
        }
    }
    return {};
}

std::optional<qint64> LogLimit::in(const LogClock &clock) const
{
    if (m_moment.clock == Clock::None)
        return m_offset;
    const Clock written = clock.first().clock;
    const bool isDaytime = m_moment.clock == Clock::Daytime && (written == Clock::Calendar || written == Clock::Yearless);
    return isDaytime || m_moment.clock == written ? std::make_optional(clock.timeOf(m_moment)) : std::nullopt;
}

std::optional<qint64> LogLimit::endIn(const LogClock &clock) const
{
    const auto begin = in(clock);
    return begin ? std::make_optional(*begin + m_length) : std::nullopt;
}

LogFilter::LogFilter(TimelineView &shownBy, const LogClock &clock, const Wanted &wanted)
    : m_view(shownBy)
    , m_clock(clock)
    , m_wanted(wanted)
{
    m_wanted.source = FacadeRules::platformSource(wanted.source);
}

QStringList LogFilter::areaNames()
{
    QStringList names{QLatin1String(&focusArea[0])};
    for (const Area &area : areas)
        names.append(QLatin1String(area.name));
    names.sort();
    return names;
}

void LogFilter::show(const TimelineEvent &event, const Heard &ofChip, bool isNew)
{
    m_told.add(event);
    const Heard heard = m_told.withoutUntold(ofChip);
    if (!m_wanted.isInTime(event.time, m_clock) || !isWanted(event)) {
        m_before = heard;
        return;
    }
    if (!m_hasBegun && m_wanted.from && !m_before.sounds.isEmpty())
        m_view.begin(event.time, m_before);
    m_hasBegun = true;
    m_view.show(event, heard, isNew);
    if (!m_wanted.tellsRefusals)
        return;
    for (const TimelineEvent &caused : event.caused) {
        if (caused.kind != Kind::Call || !isRefused(caused.call))
            continue;
        TimelineEvent note;
        note.time = caused.time;
        note.text = QStringLiteral("refused: ") + callText(caused.call);
        m_view.show(note, heard, false);
    }
}

void LogFilter::finish(qint64 time)
{
    m_view.finish(time);
}

bool LogFilter::Wanted::isInTime(qint64 time, const LogClock &clock) const
{
    const auto first = from ? from->in(clock) : std::numeric_limits<qint64>::min();
    const auto last = to ? to->endIn(clock) : std::numeric_limits<qint64>::max();
    return first && last && time >= *first && time <= *last;
}

bool LogFilter::isWanted(const TimelineEvent &event) const
{
    if (event.kind == Kind::Heading)
        return true;
    if (event.kind == Kind::Note) {
        const bool isFocus = event.text.contains(QLatin1String(&focusBegin[0]));
        return !isFocus || (m_wanted.source.isEmpty() && (m_wanted.areas.isEmpty() || m_wanted.areas.contains(QLatin1String(&focusArea[0]))));
    }
    return isOfArea(event) && isOfSource(event);
}

bool LogFilter::isOfArea(const TimelineEvent &event) const
{
    const auto isWantedArea = [this](const QString &operation) {
        const Area *const area = areaOf(operation);
        return area && m_wanted.areas.contains(QLatin1String(area->name));
    };
    return m_wanted.areas.isEmpty() || isWantedArea(event.text.section(QLatin1Char('('), 0, 0))
        || hasCall(event, [&isWantedArea](const simulator::JournalEntry &call) { return isWantedArea(call.operation); });
}

bool LogFilter::isOfSource(const TimelineEvent &event) const
{
    return m_wanted.source.isEmpty() || event.text.contains(m_wanted.source)
        || hasCall(event, [this](const simulator::JournalEntry &call) { return call.arguments.contains(m_wanted.source); });
}
