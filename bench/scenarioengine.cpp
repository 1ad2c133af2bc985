#include "scenarioengine.h"

#include "qmlaudiofocus.h"
#include "timeline.h"

#include <QtCore/QFile>
#include <QtCore/QMetaEnum>
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

/// Adds how a script calls a type's numbers: {Status: {0: "AudioPolicy.StatusNone", ...}, ...}.
void addEnumeratorTexts(QJSEngine &engine, QJSValue &object, const ScriptType &type)
{
    for (const ScriptEnumeration &enumeration : type.enumerations()) {
        QJSValue texts = engine.newObject();
        for (std::size_t i = 0; i < enumeration.count; ++i) {
            const policynames::Number &number = enumeration.numbers[i];
            const QString text = type.name() + QLatin1Char('.') + QLatin1String(enumeration.prefix) + QLatin1String(number.name);
            texts.setProperty(QString::number(number.number), text);
        }
        object.setProperty(QLatin1String(enumeration.name), texts);
    }
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

} // namespace

ScenarioEngine::ScenarioEngine(Timeline &shownIn, ScenarioResult &collected, const SoundRecorder *heard)
    : m_policy([this] { return m_unit.manager(); })
    , m_host(shownIn, m_unit, collected)
    , m_sound(heard)
{
    QObject::connect(&m_unit, &HeadUnit::startsUp, &shownIn, [&shownIn] { shownIn.setStartingUp(true); });
    QObject::connect(&m_unit, &HeadUnit::startedUp, &shownIn, [this, &shownIn] {
        shownIn.setStartingUp(false);
        m_timers.watch(m_unit.manager());
    });
    QObject::connect(&m_timers, &PolicyTimers::runsOut, &shownIn, &Timeline::beginTimer);
    QObject::connect(&m_timers, &PolicyTimers::statusChanged, &shownIn, [&shownIn](int /*before*/, int now) { shownIn.statusBecomes(now); });
    QObject::connect(&m_timers, &PolicyTimers::hasRun, &shownIn, &Timeline::endTimer);

    m_engine.installExtensions(QJSEngine::ConsoleExtension);
    QJSValue objects = m_engine.newObject();
    objects.setProperty(QStringLiteral("host"), wrap(m_engine, m_host));
    objects.setProperty(QStringLiteral("sound"), wrap(m_engine, m_sound));
    objects.setProperty(QStringLiteral("AudioControl"), scriptObject(m_engine, m_control));
    objects.setProperty(QStringLiteral("AudioSettings"), scriptObject(m_engine, m_settings));
    objects.setProperty(QStringLiteral("AudioPolicy"), scriptObject(m_engine, m_policy));
    objects.setProperty(QStringLiteral("Platform"), scriptObject(m_engine, m_platform));
    QJSValue numberNames = m_engine.newObject();
    QJSValue enumeratorTexts = m_engine.newObject();
    for (const ScriptType *const type : {&QmlAudioControl::scriptType(), &QmlAudioPolicy::scriptType()}) {
        addNumberNames(m_engine, numberNames, *type);
        addEnumeratorTexts(m_engine, enumeratorTexts, *type);
    }
    objects.setProperty(QStringLiteral("numberNames"), numberNames);
    objects.setProperty(QStringLiteral("enumeratorTexts"), enumeratorTexts);
    objects.setProperty(QStringLiteral("focusEnumerators"), enumerators(m_engine, QmlAudioFocus::staticMetaObject));
    objects.setProperty(QStringLiteral("global"), m_engine.globalObject());
    m_functions = loadFunctions(m_engine).call({objects});
}

QJSValue ScenarioEngine::run(const QJSValue &scenario)
{
    return m_functions.property(QStringLiteral("run")).call({scenario});
}

QJSValue ScenarioEngine::perform(const QString &line)
{
    return m_functions.property(QStringLiteral("perform")).call({line});
}
