#ifndef SCENARIOHOST_H
#define SCENARIOHOST_H

#include "scenarioresult.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtQml/QJSValue>

#include <functional>

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
    ScenarioHost(Timeline &shownIn, HeadUnit &drivenUnit, ScenarioResult &collected, QObject *parent = nullptr);

    /// The text of the scenario that runs, for showing what an expectation is.
    void setProgramLines(const QStringList &lines);
    /// Who lets time pass for a scenario that waits, ms; without one virtual time passes at once, real time by waiting.
    void setPassing(const std::function<void(qint64)> &passing);

    /// A focus client that a script has made, and the variable that a recording calls it by.
    struct FocusClient
    {
        QmlAudioFocus *client;
        QString variable;
        QVector<int> changes; ///< that it was told, in order
    };
    const QVector<FocusClient> &focusClients() const { return m_focusClients; }
    /// The variable of the client that was made last; empty for one that has none.
    void nameLastClient(const QString &variable);

    Q_INVOKABLE void say(const QString &text);
    Q_INVOKABLE void beginRequest(const QString &request);
    Q_INVOKABLE void endRequest(const QString &requestResult);
    /// The scenario has done what this line would do. @param begun when, ms
    Q_INVOKABLE void record(const QString &line, double begun, const QString &outcome = {});
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

    /// Puts this text into the settings file, byte for byte as UTF-8. The unit must be off.
    Q_INVOKABLE void writeSettings(const QString &text);

    /// Takes the power from a unit in the middle of a save, see PowerCut. This unit must be off. @return what is left on the flash, in words
    Q_INVOKABLE QString cutPowerWhileSaving(double byte, const QString &line);

    /// A focus client that lives as long as the scenario.
    Q_INVOKABLE QObject *makeFocusClient();
    /// A variable for the client that was made last: no other has it, and it hides nothing that lines need.
    Q_INVOKABLE QString variableFor(const QString &clientId);
    /// Lets focus clients hear what they have been told, as the application's next turn of the event loop would.
    Q_INVOKABLE void deliverFocusChanges();

Q_SIGNALS:
    /// A line does the same as what the scenario has just done. @param begun when, ms of the timeline @param outcome its result, as a script would show it
    void recorded(const QString &line, qint64 begun, const QString &outcome);

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
    /// Throws in the script where it is on. @param purpose of which it has to be off
    bool requireOff(const QString &purpose);
    bool isUnderWay(int expectation, const QVector<ScenarioResult::Frame> &errorStack) const;
    void addCheck(int expectation, bool passed, const QString &cause);

    Timeline &m_timeline;
    HeadUnit &m_unit;
    QStringList m_lines;
    ScenarioResult &m_result;
    QVector<Expectation> m_expectations;
    QVector<int> m_expectationOfCheck; // for each check of the result
    QVector<FocusClient> m_focusClients;
    std::function<void(qint64)> m_passing;
};

#endif
