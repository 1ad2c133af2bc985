#include "focusinspector.h"
#include "qmlaudiocontrol.h"
#include "scriptvalues.h"

#include <QtQml/QJSEngine>
#include <QtTest/QtTest>

#include <limits>

/// What a script's objects do for Qt's own machinery, and numbers as a script gets them.
class ScriptObjectTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void argumentTypes();
    static void callsThatAreNotTheirs();
    static void firstWrongArgumentIsTold();
    static void focusChanges_data();
    static void focusChanges();
    static void decimals_data();
    static void decimals();
};

/// Asked for by whoever calls by name from another thread.
void ScriptObjectTest::argumentTypes()
{
    QmlAudioControl control;
    const int method = control.metaObject()->indexOfMethod("setStepRange(QJSValue)");
    QVERIFY(method >= 0);
    int type = QMetaType::UnknownType;
    int argument = 0;
    void *arguments[] = {&type, &argument};
    QVERIFY(control.qt_metacall(QMetaObject::RegisterMethodArgumentMetaType, method, arguments) < 0);
    QCOMPARE(type, qMetaTypeId<QJSValue>());
}

/// Left for a class that is made of this one.
void ScriptObjectTest::callsThatAreNotTheirs()
{
    QmlAudioControl control;
    const int methods = control.metaObject()->methodCount();
    QCOMPARE(control.qt_metacall(QMetaObject::InvokeMetaMethod, methods, nullptr), 0);
    QCOMPARE(control.qt_metacall(QMetaObject::InvokeMetaMethod, methods + 3, nullptr), 3);
}

void ScriptObjectTest::firstWrongArgumentIsTold()
{
    QJSEngine engine;
    engine.globalObject().setProperty(QStringLiteral("control"), engine.newQObject(new QmlAudioControl));
    const QJSValue result = engine.evaluate(QStringLiteral("control.setFadeBalance('one', 'two')"));
    QVERIFY(result.isError());
    QVERIFY2(result.toString().endsWith(QLatin1String("not one")), qPrintable(result.toString()));
}

void ScriptObjectTest::focusChanges_data()
{
    QTest::addColumn<int>("change");
    QTest::addColumn<QString>("written");
    QTest::newRow("a gain") << 2 << QStringLiteral("AudioFocus.GainTransient");
    QTest::newRow("a loss") << -2 << QStringLiteral("AudioFocus.LossTransient");
    QTest::newRow("neither") << 0 << QStringLiteral("AudioFocus.None");
    QTest::newRow("the lowest one") << -3 << QStringLiteral("AudioFocus.LossTransientCanDuck");
    QTest::newRow("below it") << -4 << QStringLiteral("-4");
    QTest::newRow("the highest one") << 4 << QStringLiteral("AudioFocus.GainTransientExclusive");
    QTest::newRow("above it") << 5 << QStringLiteral("5");
}

void ScriptObjectTest::focusChanges()
{
    QFETCH(int, change);
    QTEST(FocusInspector::changeScript(change), "written");
    QCOMPARE(FocusInspector::changeName(9), QStringLiteral("9")); // of no name
}

void ScriptObjectTest::decimals_data()
{
    QTest::addColumn<float>("value");
    QTest::addColumn<double>("decimal");
    QTest::newRow("0") << 0.0F << 0.0;
    QTest::newRow("as it was written") << 0.1F << 0.1;
    QTest::newRow("with seven digits") << 1234567.0F << 1234567.0;
    QTest::newRow("with eight digits") << 12345678.0F << 12345678.0;
    QTest::newRow("the highest") << std::numeric_limits<float>::max() << 3.4028235e38;
    QTest::newRow("beyond") << std::numeric_limits<float>::infinity() << std::numeric_limits<double>::infinity();
}

void ScriptObjectTest::decimals()
{
    QFETCH(float, value);
    QFETCH(double, decimal);
    QVERIFY(ScriptValues::decimal(value) == decimal);
    QVERIFY(static_cast<float>(ScriptValues::decimal(value)) == value);
    QVERIFY(std::isnan(ScriptValues::decimal(std::numeric_limits<float>::quiet_NaN())));
}

QTEST_GUILESS_MAIN(ScriptObjectTest)
#include "tst_scriptobject.moc"
