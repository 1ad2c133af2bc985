#ifndef SCENARIOENGINE_H
#define SCENARIOENGINE_H

#include "headunit.h"
#include "policytimers.h"
#include "qmlaudiocontrol.h"
#include "qmlaudiopolicy.h"
#include "qmlaudiosettings.h"
#include "qmlplatform.h"
#include "render/soundmeter.h"
#include "scenariohost.h"

#include <QtQml/QJSEngine>

/**
 * What a scenario runs in: the JavaScript engine with the objects of the QML modules and the functions of scenario.js, and the head unit
 * that they work on, which tells the timeline.
 */
class ScenarioEngine
{
public:
    /// @param collected gets the expectations @param heard what Sound measures; null for nothing
    ScenarioEngine(Timeline &shownIn, ScenarioResult &collected, const SoundRecorder *heard);

    QJSEngine &engine() { return m_engine; }
    ScenarioHost &host() { return m_host; }
    HeadUnit &unit() { return m_unit; }

    /// Called with no argument before a scenario's "throw".
    QJSValue atThrow() const { return m_functions.property(QStringLiteral("atThrow")); }
    /// Runs a function without parameters as the scenario. @return null, {text, stack}, or an error that nothing in the scenario could catch
    QJSValue run(const QJSValue &scenario);
    /// Runs a line in the global scope. @return {result} or {text, stack}, the result as it would stand in a script, "" for none; or as run()
    QJSValue perform(const QString &line);

private:
    Q_DISABLE_COPY(ScenarioEngine)

    HeadUnit m_unit;
    PolicyTimers m_timers;
    QmlAudioControl m_control;
    QmlAudioSettings m_settings;
    QmlAudioPolicy m_policy;
    QmlPlatform m_platform;
    ScenarioHost m_host;
    SoundMeter m_sound;
    QJSEngine m_engine;
    QJSValue m_functions;
};

#endif
