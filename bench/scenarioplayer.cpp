#include "scenarioplayer.h"

#include "headunit.h"
#include "policytimers.h"
#include "qmlaudiocontrol.h"
#include "qmlaudiofocus.h"
#include "qmlaudiopolicy.h"
#include "qmlaudiosettings.h"
#include "qmlplatform.h"
#include "render/soundmeter.h"
#include "render/soundrecorder.h"
#include "scenariohost.h"
#include "scenariosource.h"
#include "scenariostack.h"
#include "scenariowatch.h"
#include "timeline.h"

#include <QtCore/QFile>
#include <QtCore/QMetaEnum>
#include <QtCore/QMetaMethod>
#include <QtQml/QJSEngine>
#include <QtQml/QQmlEngine>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <functional>
#include <new>
#include <optional>

/// The functions stand in a static library, which registers no resources by itself. Qt wants this outside any namespace.
static void registerResources()
{
    Q_INIT_RESOURCE(bench);
}

namespace
{

/// The enumerators of a class as an object: {Main: 0, Second: 1, ...}.
QJSValue enumerators(QJSEngine &engine, const QMetaObject &type)
{
    QJSValue object = engine.newObject();
    for (int i = type.enumeratorOffset(); i < type.enumeratorCount(); ++i) {
        const QMetaEnum enumeration = type.enumerator(i);
        for (int key = 0; key < enumeration.keyCount(); ++key)
            object.setProperty(QLatin1String(enumeration.key(key)), enumeration.value(key));
    }
    return object;
}

/// The operations of a type, as {setVolume: {parameters: ["type", "volume", "save"], enumerations: ["VolumeType"], acts: true}, ...}.
QJSValue operations(QJSEngine &engine, const ScriptType &type)
{
    QJSValue object = engine.newObject();
    for (const ScriptOperation &operation : type.operations()) {
        QJSValue parameters = engine.newArray();
        QJSValue enumerations = engine.newArray();
        quint32 next = 0;
        for (const ScriptInput &input : operation.inputs) {
            parameters.setProperty(next, QLatin1String(input.name));
            enumerations.setProperty(next++, QLatin1String(input.parameter->enumeration));
        }
        QJSValue described = engine.newObject();
        described.setProperty(QStringLiteral("parameters"), parameters);
        described.setProperty(QStringLiteral("enumerations"), enumerations);
        described.setProperty(QStringLiteral("acts"), operation.kind == ScriptKind::Acts);
        object.setProperty(QLatin1String(operation.name), described);
    }
    return object;
}

/// Adds the names of a type's numbers, without prefix: {Status: {0: "None", 1: "BtRing", ...}, ...}.
void addNumberNames(QJSEngine &engine, QJSValue &object, const ScriptType &type)
{
    for (const ScriptEnumeration &enumeration : type.enumerations()) {
        QJSValue names = engine.newObject();
        for (std::size_t i = 0; i < enumeration.count; ++i)
            names.setProperty(QString::number(enumeration.numbers[i].number), QLatin1String(enumeration.numbers[i].name));
        object.setProperty(QLatin1String(enumeration.name), names);
    }
}

/// An object that lives outside the engine, for good.
QJSValue wrap(QJSEngine &engine, QObject &object)
{
    QQmlEngine::setObjectOwnership(&object, QQmlEngine::CppOwnership);
    return engine.newQObject(&object);
}

/// As {object, enumerators, operations}.
template<typename Scripted>
QJSValue scriptObject(QJSEngine &engine, Scripted &object)
{
    QJSValue described = engine.newObject();
    described.setProperty(QStringLiteral("object"), wrap(engine, object));
    described.setProperty(QStringLiteral("enumerators"), enumerators(engine, Scripted::staticMetaObject));
    described.setProperty(QStringLiteral("operations"), operations(engine, Scripted::scriptType()));
    return described;
}

QJSValue loadFunctions(QJSEngine &engine)
{
    registerResources();
    QFile file(QStringLiteral(":/bench/scenario.js"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the bench was built without its scenario functions");
    return engine.evaluate(QString::fromUtf8(file.readAll()), QStringLiteral("qrc:/bench/scenario.js"));
}

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
    HeadUnit unit;
    QObject::connect(&unit, &HeadUnit::startsUp, &m_timeline, [this] { m_timeline.setStartingUp(true); });
    PolicyTimers timers;
    QObject::connect(&unit, &HeadUnit::startedUp, &m_timeline, [this, &unit, &timers] {
        m_timeline.setStartingUp(false);
        timers.watch(unit.manager());
    });
    QObject::connect(&timers, &PolicyTimers::runsOut, &m_timeline, &Timeline::beginTimer);
    QObject::connect(&timers, &PolicyTimers::statusChanged, &m_timeline, [this](int /*before*/, int now) { m_timeline.statusBecomes(now); });
    QObject::connect(&timers, &PolicyTimers::hasRun, &m_timeline, &Timeline::endTimer);
    QmlAudioControl control;
    QmlAudioSettings settings;
    QmlAudioPolicy policy([&unit] { return unit.manager(); });
    QmlPlatform platform;
    ScenarioHost host(m_timeline, unit, source.lines(), result);
    // Each change costs time and memory, which only who asks has to pay.
    std::optional<SoundRecorder> recorder;
    if (program.contains(QLatin1String("Sound")))
        recorder.emplace(m_timeline);
    SoundMeter sound(recorder ? &*recorder : nullptr);

    QJSEngine engine;
    engine.installExtensions(QJSEngine::ConsoleExtension);
    QJSValue objects = engine.newObject();
    objects.setProperty(QStringLiteral("host"), wrap(engine, host));
    objects.setProperty(QStringLiteral("sound"), wrap(engine, sound));
    objects.setProperty(QStringLiteral("AudioControl"), scriptObject(engine, control));
    objects.setProperty(QStringLiteral("AudioSettings"), scriptObject(engine, settings));
    objects.setProperty(QStringLiteral("AudioPolicy"), scriptObject(engine, policy));
    objects.setProperty(QStringLiteral("Platform"), scriptObject(engine, platform));
    QJSValue numberNames = engine.newObject();
    addNumberNames(engine, numberNames, QmlAudioControl::scriptType());
    addNumberNames(engine, numberNames, QmlAudioPolicy::scriptType());
    objects.setProperty(QStringLiteral("numberNames"), numberNames);
    objects.setProperty(QStringLiteral("focusEnumerators"), enumerators(engine, QmlAudioFocus::staticMetaObject));
    objects.setProperty(QStringLiteral("global"), engine.globalObject());
    const QJSValue functions = loadFunctions(engine).call({objects});

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

    const QJSValue scenario = makeScenario(engine, source, file, functions.property(QStringLiteral("atThrow")));
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
        const QJSValue thrown = functions.property(QStringLiteral("run")).call({scenario});
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
