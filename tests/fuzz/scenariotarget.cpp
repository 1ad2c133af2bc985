#include "scenariotarget.h"

#include "flash.h"
#include "textview.h"

#include <platform.h>
#include <playsummary.h>
#include <scenarioplayer.h>
#include <timeline.h>

#include <qzaudio/audiocontrol.h>

#include <unistd.h>

namespace
{

constexpr qint64 longest = 500; // ms of real time
constexpr qint64 mostBytes = 1024LL * 1024 * 1024; // the fuzzer itself has some hundred MB

bool startsPrograms(std::string_view bytes)
{
    return bytes.find("Sound") != std::string_view::npos || bytes.find("cutPower") != std::string_view::npos;
}

void require(bool holds, const char *what)
{
    if (!holds)
        qFatal("does not hold: %s", what);
}

/// Every place that is told is one in the scenario.
void checkPlaces(const ScenarioResult &result, int lines)
{
    const auto isPlace = [lines](int line) { return line >= 0 && line <= lines; };
    require(isPlace(result.errorLine), "an error is in the scenario");
    require(!result.error.isEmpty() || result.errorStack.isEmpty(), "without an error there is no place of one");
    for (const ScenarioResult::Frame &frame : result.errorStack)
        require(isPlace(frame.line), "each frame of an error is in the scenario");
    for (const ScenarioResult::Check &check : result.checks) {
        require(check.line > 0 && isPlace(check.line), "a check is in the scenario");
        require(check.passed == check.cause.isEmpty(), "a check that fails has a cause");
    }
}

} // namespace

PlayedScenario played(std::string_view bytes)
{
    PlayedScenario scenario;
    if (startsPrograms(bytes))
        return scenario;
    flash::clean();
    simulator::Platform::instance()->reset();
    audio::AudioControl::getInstance()->setMute(false);
    const QString program = QString::fromUtf8(bytes.data(), int(bytes.size()));
    ScenarioLimits limits{longest, mostBytes, {}};
    limits.onStuck = [](const ScenarioResult &) { _exit(stuckStatus); };
    {
        TextView view;
        Timeline timeline(&view);
        scenario.result = ScenarioPlayer(timeline, limits).play(QStringLiteral("scenario.js"), program);
        scenario.texts = view.texts;
    }
    // Lines end as the language says.
    const int lines = 1 + program.count(QLatin1Char('\n')) + program.count(QLatin1Char('\r')) + program.count(QChar::LineSeparator)
        + program.count(QChar::ParagraphSeparator);
    checkPlaces(scenario.result, lines);
    scenario.texts += PlaySummary::toText({scenario.result, {}, 0, false, false}, false);
    return scenario;
}
