#include "plotcurves.h"

#include "drivelog.h"
#include "playedscenario.h"

#include "console.h"
#include "exitstatus.h"
#include "explain/loggedunit.h"
#include "explain/logstory.h"
#include "sound/customcurve.h"
#include "timeline.h"

#include "platform.h"

#include <qzaudio/audioplatformrecords.h>

#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>
#include <iterator>
#include <limits>

using EqualizerPlot::Curve;
using EqualizerResponse::Bands;

namespace
{

/// Makes the calls of a drive once more, up to a time.
class Replay : public LogStoryListener
{
public:
    Replay(const LogClock &clock, const std::optional<LogLimit> &until)
        : m_clock(clock)
        , m_until(until)
        , m_unit(m_timeline)
    {
    }

    void request(const LoggedRequest &request) override
    {
        const auto until = m_until ? m_until->in(m_clock) : std::nullopt;
        if (!until || request.time() <= *until)
            m_unit.apply(request);
    }
    void note(qint64 /*time*/, quint64 /*line*/, const QString & /*text*/) override { }
    void heading(qint64 /*time*/, quint64 /*line*/, const QString & /*text*/) override { }
    void reboot() override { LoggedUnit::restart(); }

private:
    const LogClock &m_clock;
    const std::optional<LogLimit> m_until;
    Timeline m_timeline;
    LoggedUnit m_unit;
};

/// The bands of a record that the platform was given, as the journal has it.
Bands bandsOfRecord(const QJsonObject &record)
{
    const QJsonArray bands = record.value(QLatin1String("band")).toArray();
    if (!bands.isEmpty()) {
        audio::audio_ext_eq_parameter_t extended = {};
        for (int i = 0; i < std::min(bands.size(), int(std::size(extended.band))); ++i) {
            const QJsonObject band = bands.at(i).toObject();
            extended.band[i].type = quint16(band.value(QLatin1String("type")).toInt());
            extended.band[i].frequency = quint16(band.value(QLatin1String("frequency")).toInt());
            extended.band[i].gain = float(band.value(QLatin1String("gain")).toDouble());
            extended.band[i].q = float(band.value(QLatin1String("q")).toDouble());
        }
        return EqualizerCurves::ofRecord(extended);
    }
    audio::audio_eq_parameter_t record8 = {};
    const auto list = [&record](const char *name) { return record.value(QLatin1String(name)).toArray(); };
    for (int i = 0; i < int(std::size(record8.gain)); ++i) {
        record8.type[i] = quint16(list("type").at(i).toInt());
        record8.frequency[i] = quint16(list("frequency").at(i).toInt());
        record8.gain[i] = float(list("gain").at(i).toDouble());
    }
    return EqualizerCurves::ofRecord(record8);
}

/// Takes what the event, and what it caused, set the equalizer to.
void takeEqualizer(const QJsonObject &event, qint64 until, Bands &bands)
{
    const QJsonArray caused = event.value(QLatin1String("caused")).toArray();
    for (const QJsonValue &one : caused)
        takeEqualizer(one.toObject(), until, bands);
    const QString text = event.value(QLatin1String("text")).toString();
    const bool isEqualizer = text.startsWith(QLatin1String("App.setEqParameter(")) || text.startsWith(QLatin1String("App.setExtEqParameter("));
    const bool isInTime = event.value(QLatin1String("time")).toDouble() <= double(until);
    if (isEqualizer && isInTime && event.value(QLatin1String("code")).toInt() == 0)
        bands = bandsOfRecord(event.value(QLatin1String("record")).toObject());
}

/// What a scenario does is told by itself: a log does not have all bands.
std::optional<Bands> bandsOfScenario(const QString &word, const std::optional<LogLimit> &time, int &status)
{
    const std::optional<qint64> until = time ? time->in(LogClock()) : std::numeric_limits<qint64>::max();
    if (!until) {
        Console::error(QStringLiteral("qzaudio-bench: %1: a scenario's times are from its beginning on, +12s\n").arg(Console::printable(word)));
        status = UsageError;
        return {};
    }
    const PlayedScenario played = PlayedScenario::play(word, {QStringLiteral("--json")});
    status = played.status;
    if (status != Success && status != Failed)
        return {};
    Bands bands = EqualizerCurves::ofGains();
    const auto lines = played.output.split('\n');
    for (const QByteArray &line : lines)
        takeEqualizer(QJsonDocument::fromJson(line).object(), *until, bands);
    return bands;
}

std::optional<Bands> bandsOfLog(const QString &word, const std::optional<LogLimit> &time, int &status)
{
    DriveLog drive;
    status = drive.open(word);
    if (status != Success)
        return {};
    LogFilter::Wanted limits;
    limits.to = time;
    LoggedUnit::restart();
    Replay replay(drive.clock(), time);
    status = drive.read(replay, limits);
    if (status != Success)
        return {};
    const Bands bands = EqualizerCurves::ofChip(*simulator::Platform::instance()->chip(), Heard::driversEar);
    return bands.isEmpty() ? EqualizerCurves::ofGains() : bands;
}

} // namespace

std::optional<Curve> PlotCurves::ofName(const QString &name)
{
    const auto bands = EqualizerCurves::named(name);
    if (!bands)
        return {};
    const bool isMode = name.startsWith(QLatin1String("mode"));
    return Curve{(isMode ? QStringLiteral("the facade's mode %1") : QStringLiteral("the store's preset %1")).arg(name.rightRef(1)), *bands};
}

std::optional<Curve> PlotCurves::ofGains(const QString &list, QString &problem)
{
    const auto gains = EqualizerCurves::gainsFromText(list, problem);
    return gains ? std::make_optional(Curve{QStringLiteral("the gains given"), EqualizerCurves::ofGains(*gains)}) : std::nullopt;
}

std::optional<Curve> PlotCurves::ofSettings(const QString &file, QString &problem)
{
    const auto gains = CustomCurve::read(file, problem);
    if (!gains)
        return {};
    return Curve{QStringLiteral("the curve in use in %1").arg(Console::printable(file)), EqualizerCurves::ofGains(*gains)};
}

std::optional<Curve> PlotCurves::ofDrive(const QString &word, const std::optional<LogLimit> &time, const QString &timeText, int &status)
{
    const std::optional<Bands> bands = PlayedScenario::isOne(word) ? bandsOfScenario(word, time, status) : bandsOfLog(word, time, status);
    if (!bands)
        return {};
    const QString name = QFileInfo(word).completeBaseName();
    return Curve{Console::printable(time ? QStringLiteral("%1 at %2").arg(name, timeText) : QStringLiteral("%1 at its end").arg(name)), *bands};
}
