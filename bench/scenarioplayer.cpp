#include "scenarioplayer.h"

#include "render/soundrecorder.h"
#include "scenarioengine.h"
#include "scenariosource.h"
#include "scenariostack.h"
#include "scenariowatch.h"
#include "timeline.h"

#include <cstdlib>
#include <exception>
#include <functional>
#include <new>
#include <optional>

namespace
{

bool isSyntaxError(const QJSValue &value)
{
    return value.errorType() == QJSValue::SyntaxError;
}

int lineOf(const QJSValue &error)
{
    return error.property(QStringLiteral("lineNumber")).toInt();
}

/// The program as a function that a scenario runs in, so that what it throws can be caught whole. All of its lines keep their numbers.
/// @param atThrow called before each "throw"
QJSValue makeScenario(QJSEngine &engine, const ScenarioSource &source, const QString &file, const QJSValue &atThrow)
{
    const QString mark = QStringLiteral("$atThrow");
    const QString beginning = QStringLiteral("(function(%1){return function(){").arg(mark);
    const QString end = QStringLiteral("\n}})");
    QJSValue maker = engine.evaluate(beginning + source.marked(mark) + end, file);
    // Marks go wrong where only a parser would know better. They are not worth refusing the program.
    if (maker.isError())
        maker = engine.evaluate(beginning + source.text() + end, file);
    return maker.isError() ? maker : maker.call({atThrow});
}

/// Tells in the result what is wrong with a program that the engine refuses.
void explainSyntaxError(QJSEngine &engine, const ScenarioSource &source, const QString &file, const QJSValue &refusal, ScenarioResult &result)
{
    // By itself the program shows its own mistakes only, and nothing of it is run. But "return" is none in a scenario.
    const QString program = QStringLiteral("throw 0;") + source.text();
    const QJSValue alone = engine.evaluate(program, file);
    const bool aboutReturn = alone.toString().contains(QLatin1String("Return statement"));
    const QJSValue &error = isSyntaxError(alone) && !aboutReturn ? alone : refusal;
    result.errorLine = lineOf(error);

    // The end of the file is where the engine's line moves to when the file gets longer.
    const bool atEnd
        = result.errorLine > source.lastLine() || (&error == &alone && lineOf(engine.evaluate(program + QLatin1Char('\n'), file)) > result.errorLine);
    if (!source.problem().isEmpty() && (atEnd || source.problemLine() <= result.errorLine)) {
        result.error = QStringLiteral("SyntaxError: ") + source.problem();
        result.errorLine = source.problemLine();
    } else if (atEnd) {
        const QString unclosed = source.unclosed();
        result.error = QStringLiteral("SyntaxError: the file ends ")
            + (unclosed.isEmpty() ? QStringLiteral("in the middle of a statement") : QStringLiteral("before the %1 is closed").arg(unclosed));
        result.errorLine = source.lastLine();
    } else {
        result.error = error.toString().replace(QLatin1String("Unexpected token `'"), QLatin1String("Unexpected character"));
    }
}

/**
 * Tells of a single value for which there is not enough memory, such as a text of gigabytes: Qt throws through the engine then, whose
 * frames nothing can pass, so that the process ends.
 */
class OutOfMemory
{
public:
    /// @param whatToDo is called in the scenario's thread, from where the memory was missing, and is the last thing that is
    explicit OutOfMemory(std::function<void()> whatToDo)
        : m_act(std::move(whatToDo))
        , m_previous(std::set_terminate(&OutOfMemory::terminate))
    {
        current = this;
    }
    ~OutOfMemory()
    {
        std::set_terminate(m_previous);
        current = nullptr;
    }

private:
    Q_DISABLE_COPY(OutOfMemory)

    [[noreturn]] static void terminate()
    {
        try {
            if (const std::exception_ptr thrown = std::current_exception())
                std::rethrow_exception(thrown);
        } catch (const std::bad_alloc &) {
            current->m_act();
        } catch (...) {
            // Any other is a mistake of the bench itself.
        }
        std::abort();
    }

    const std::function<void()> m_act;
    const std::terminate_handler m_previous;
    static OutOfMemory *current;
};

OutOfMemory *OutOfMemory::current = nullptr;

} // namespace

ScenarioPlayer::ScenarioPlayer(Timeline &shownIn, ScenarioLimits scenarioLimits)
    : m_timeline(shownIn)
    , m_limits(std::move(scenarioLimits))
{
}

ScenarioResult ScenarioPlayer::play(const QString &file, const QString &program)
{
    ScenarioResult result;
    result.file = file;

    const ScenarioSource source(program);
    // Each change costs time and memory, which only who asks has to pay.
    std::optional<SoundRecorder> recorder;
    if (program.contains(QLatin1String("Sound")))
        recorder.emplace(m_timeline);
    ScenarioEngine scope(m_timeline, result, recorder ? &*recorder : nullptr);
    ScenarioHost &host = scope.host();
    host.setProgramLines(source.lines());
    QJSEngine &engine = scope.engine();

    const auto takeLimit = [&result](const ScenarioWatch &watch) {
        result.error = watch.error();
        result.errorStack = watch.stack();
        result.errorLine = ScenarioStack::line(result.errorStack);
    };
    const auto finish = [this, &result, &host] {
        host.finishExpectations(!result.error.isEmpty(), result.errorStack);
        m_timeline.showUnfinished();
        result.duration = m_timeline.now();
    };
    ScenarioWatch::Stuck stuck;
    if (m_limits.onStuck) {
        stuck = [this, &result, &takeLimit, &finish](const ScenarioWatch &watch) {
            takeLimit(watch);
            finish();
            m_limits.onStuck(result);
        };
    }

    const QJSValue scenario = makeScenario(engine, source, file, scope.atThrow());
    if (scenario.isError()) {
        explainSyntaxError(engine, source, file, scenario, result);
    } else {
        const OutOfMemory outOfMemory([this, &engine, &result, &finish] {
            result.error = QStringLiteral("needs more memory for one value than there is");
            result.errorStack = ScenarioWatch::place(engine);
            result.errorLine = ScenarioStack::line(result.errorStack);
            finish();
            if (m_limits.onStuck)
                m_limits.onStuck(result);
        });
        ScenarioWatch watch(engine, m_limits, stuck);
        const QJSValue thrown = scope.run(scenario);
        watch.stop();
        if (thrown.isError() && !watch.error().isEmpty()) {
            takeLimit(watch);
        } else if (!thrown.isNull()) {
            const auto frames = ScenarioStack::fromError(thrown.property(QStringLiteral("stack")).toString());
            result.error = thrown.isError() ? thrown.toString() : thrown.property(QStringLiteral("text")).toString();
            result.errorStack = ScenarioStack::shortened(frames);
            result.errorLine = ScenarioStack::line(frames);
        }
    }
    finish();
    return result;
}
