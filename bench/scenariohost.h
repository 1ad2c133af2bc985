#ifndef SCENARIOHOST_H
#define SCENARIOHOST_H

#include "scenarioresult.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtQml/QJSValue>

class HeadUnit;
class QmlAudioFocus;
class Timeline;

/**
 * What the script side of a scenario (scenario.js) is given to work with: the timeline, the clock, the unit, and a place for
 * the results of its expectations.
 */
class ScenarioHost : public QObject
{
    Q_OBJECT

public:
    /// @param programLines the scenario's text, for showing where an expectation stands
    ScenarioHost(Timeline &shownIn, HeadUnit &drivenUnit, const QStringList &programLines, ScenarioResult &collected, QObject *parent = nullptr);

    Q_INVOKABLE void say(const QString &text);
    Q_INVOKABLE void beginRequest(const QString &request);
    Q_INVOKABLE void endRequest(const QString &requestResult);
    Q_INVOKABLE void note(const QString &text);
    /// @param line of the scenario, from 1; 0 when unknown
    Q_INVOKABLE void check(bool passed, int line, const QString &cause);

    /// Lets time pass: virtual time at once, real time by waiting. Timers run.
    Q_INVOKABLE void wait(double milliseconds);
    /// ms since the scenario began.
    Q_INVOKABLE double now();

    Q_INVOKABLE void powerOn();
    Q_INVOKABLE void powerOff();
    /// Removes the settings file. The unit must be off.
    Q_INVOKABLE void eraseSettings();
    Q_INVOKABLE bool isOn();

    /// A focus client that lives as long as the scenario.
    Q_INVOKABLE QObject *makeFocusClient();
    /// Lets focus clients hear what they have been told, as the application's next turn of the event loop would.
    Q_INVOKABLE void deliverFocusChanges();

private:
    Q_DISABLE_COPY(ScenarioHost)

    Timeline &timeline;
    HeadUnit &unit;
    QStringList lines;
    ScenarioResult &result;
    QList<QmlAudioFocus *> focusClients;
};

#endif
