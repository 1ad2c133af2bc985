#include "scenarioplayer.h"

#include "headunit.h"
#include "policytimers.h"
#include "qmlaudiocontrol.h"
#include "qmlaudiofocus.h"
#include "qmlaudiopolicy.h"
#include "qmlaudiosettings.h"
#include "qmlplatform.h"
#include "scenariohost.h"
#include "timeline.h"

#include <QtCore/QFile>
#include <QtCore/QMetaEnum>
#include <QtQml/QJSEngine>
#include <QtQml/QQmlEngine>

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

/// An object that lives outside the engine, as {object, enumerators}.
QJSValue scriptObject(QJSEngine &engine, QObject &object)
{
    QQmlEngine::setObjectOwnership(&object, QQmlEngine::CppOwnership);
    QJSValue pair = engine.newObject();
    pair.setProperty(QStringLiteral("object"), engine.newQObject(&object));
    pair.setProperty(QStringLiteral("enumerators"), enumerators(engine, *object.metaObject()));
    return pair;
}

QJSValue loadFunctions(QJSEngine &engine)
{
    registerResources();
    QFile file(QStringLiteral(":/bench/scenario.js"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the bench was built without its scenario functions");
    return engine.evaluate(QString::fromUtf8(file.readAll()), QStringLiteral("qrc:/bench/scenario.js"));
}

} // namespace

ScenarioPlayer::ScenarioPlayer(Timeline &shownIn, const ScenarioLimits & /*limits*/)
    : timeline(shownIn)
{
}

ScenarioResult ScenarioPlayer::play(const QString &file, const QString &program)
{
    ScenarioResult result;
    result.file = file;

    HeadUnit unit;
    QObject::connect(&unit, &HeadUnit::startsUp, &timeline, [this] { timeline.setStartingUp(true); });
    PolicyTimers timers;
    QObject::connect(&unit, &HeadUnit::startedUp, &timeline, [this, &unit, &timers] {
        timeline.setStartingUp(false);
        timers.watch(unit.manager());
    });
    QObject::connect(&timers, &PolicyTimers::runsOut, &timeline, &Timeline::beginTimer);
    QObject::connect(&timers, &PolicyTimers::statusChanged, &timeline, [this](int /*before*/, int now) { timeline.statusBecomes(now); });
    QObject::connect(&timers, &PolicyTimers::hasRun, &timeline, &Timeline::endTimer);
    QmlAudioControl control;
    QmlAudioSettings settings;
    QmlAudioPolicy policy([&unit] { return unit.manager(); });
    QmlPlatform platform;
    ScenarioHost host(timeline, unit, program.split(QLatin1Char('\n')), result);

    QJSEngine engine;
    engine.installExtensions(QJSEngine::ConsoleExtension);
    QJSValue objects = engine.newObject();
    objects.setProperty(QStringLiteral("host"), scriptObject(engine, host).property(QStringLiteral("object")));
    objects.setProperty(QStringLiteral("AudioControl"), scriptObject(engine, control));
    objects.setProperty(QStringLiteral("AudioSettings"), scriptObject(engine, settings));
    objects.setProperty(QStringLiteral("AudioPolicy"), scriptObject(engine, policy));
    objects.setProperty(QStringLiteral("Platform"), scriptObject(engine, platform));
    objects.setProperty(QStringLiteral("focusEnumerators"), enumerators(engine, QmlAudioFocus::staticMetaObject));
    objects.setProperty(QStringLiteral("file"), file);
    objects.setProperty(QStringLiteral("global"), engine.globalObject());
    QJSValue run = loadFunctions(engine).call({objects});

    // Inside a function on the file's own first line: lines keep their numbers, and what the script throws can be caught whole.
    const QJSValue scenario = engine.evaluate(QStringLiteral("(function(){") + program + QStringLiteral("\n})"), file);
    if (scenario.isError()) {
        result.error = scenario.toString();
        result.errorLine = scenario.property(QStringLiteral("lineNumber")).toInt();
    } else {
        const QJSValue thrown = run.call({scenario});
        if (!thrown.isNull()) {
            result.error = thrown.property(QStringLiteral("text")).toString();
            result.errorLine = thrown.property(QStringLiteral("line")).toInt();
        }
    }
    timeline.showUnfinished();
    result.duration = timeline.now();
    return result;
}
