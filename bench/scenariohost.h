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
    /// @param programLines the scenario's text, for showing what an expectation is
    ScenarioHost(Timeline &shownIn, HeadUnit &drivenUnit, const QStringList &programLines, ScenarioResult &collected, QObject *parent = nullptr);

    Q_INVOKABLE void say(const QString &text);
    Q_INVOKABLE void beginRequest(const QString &request);
    Q_INVOKABLE void endRequest(const QString &requestResult);
    Q_INVOKABLE void note(const QString &text);

    /// The scenario reached an expect(). @param stack of an Error made there @return its number
    Q_INVOKABLE int beginExpectation(const QString &stack);
    /// The matcher of that name is about to be called; "not" counts as one.
    Q_INVOKABLE void readMatcher(int expectation, const QString &name);
    Q_INVOKABLE void check(int expectation, bool passed, const QString &cause);
    /**
     * The scenario has ended: an expectation without a matcher is a failed check.
     *
     * Not so where an error came before the matcher could be called. @param stack of that error; empty for none
     */
    void finishExpectations(bool endedByError, const QVector<ScenarioResult::Frame> &stack);

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

    struct Expectation
    {
        int line = 0;
        QString stack; // as the engine gave it
        QString matcher; // that was read last
        bool checked = false;
    };

    bool isInterrupted() const;
    bool isUnderWay(int expectation, const QVector<ScenarioResult::Frame> &errorStack) const;
    void addCheck(int expectation, bool passed, const QString &cause);

    Timeline &m_timeline;
    HeadUnit &m_unit;
    QStringList m_lines;
    ScenarioResult &m_result;
    QVector<Expectation> m_expectations;
    QVector<int> m_expectationOfCheck; // for each check of the result
    QList<QmlAudioFocus *> m_focusClients;
};

#endif
