#include <scenarioengine.h>
#include <scriptnames.h>
#include <timeline.h>

#include <QtTest/QtTest>

/// Names that no variable of a recorded line may have.
class ScriptNamesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wordsOfTheLanguageAreTaken();
    void globalsAreTaken();
    void othersAreFree();
};

void ScriptNamesTest::wordsOfTheLanguageAreTaken()
{
    const QStringList words = QStringLiteral("break case catch class const continue debugger default delete do else enum export extends false finally for "
                                             "function if import in instanceof new null return super switch this throw true try typeof var void while with "
                                             "arguments eval implements interface let package private protected public static yield")
                                  .split(QLatin1Char(' '));
    QJSEngine engine;
    for (const QString &word : words) {
        QVERIFY2(engine.evaluate(QStringLiteral("'use strict'; var %1 = 1;").arg(word)).isError(), qPrintable(word));
        QVERIFY2(scriptnames::isTaken(word), qPrintable(word));
    }
    QVERIFY(scriptnames::isTaken(QStringLiteral("await"))); // a word of the language, which this engine does not know yet
}

/// A client that is called like one of them would take it from all lines behind its own.
void ScriptNamesTest::globalsAreTaken()
{
    Timeline timeline;
    ScenarioResult result;
    ScenarioEngine scripts(timeline, result, nullptr);
    const QStringList names = scripts.engine().evaluate(QStringLiteral("Object.getOwnPropertyNames(this)")).toVariant().toStringList();
    QVERIFY(names.contains(QStringLiteral("AudioPolicy")));
    QVERIFY(names.contains(QStringLiteral("Math")));
    QStringList free;
    for (const QString &name : names) {
        if (!scriptnames::isTaken(name))
            free.append(name);
    }
    QVERIFY2(free.isEmpty(), qPrintable(free.join(QLatin1Char(' '))));
}

void ScriptNamesTest::othersAreFree()
{
    for (const char *const name : {"music", "Music", "platform", "class2", "_", ""})
        QVERIFY2(!scriptnames::isTaken(QLatin1String(name)), name);
}

QTEST_GUILESS_MAIN(ScriptNamesTest)
#include "tst_scriptnames.moc"
