#include "operationtest.h"

#include <faults.h>
#include <journal.h>

#include <QtTest/QtTest>

OperationTest::Given OperationTest::refused(const char *operation, int code)
{
    return [operation, code](OperationTest &test) { QVERIFY(test.platform->faults()->fail(QString::fromLatin1(operation), code)); };
}

OperationTest::Given OperationTest::refusedAfterWriting(const char *operation, int code)
{
    return [operation, code](OperationTest &test) { QVERIFY(test.platform->faults()->failAfterWriting(QString::fromLatin1(operation), code)); };
}

OperationTest::Given OperationTest::refusedOnce(const char *operation, int code, int n)
{
    return [operation, code, n](OperationTest &test) { QVERIFY(test.platform->faults()->fail(QString::fromLatin1(operation), code, n)); };
}

OperationTest::Given OperationTest::noneMade(const char *kind)
{
    return [kind](OperationTest &test) { QVERIFY(test.platform->faults()->failFactory(QString::fromLatin1(kind))); };
}

OperationTest::Given OperationTest::startedWithoutObjects()
{
    return [](OperationTest &test) {
        simulator::Faults *const faults = test.platform->faults();
        QVERIFY(faults->failFactory(QStringLiteral("Volume")));
        QVERIFY(faults->failFactory(QStringLiteral("App")));
        test.control = std::make_unique<audio::AudioControl>();
        test.inner = std::make_unique<audio::AudioControlPrivate>();
        test.inner->q = test.control.get();
        faults->clear();
        test.platform->journal()->clear();
    };
}

QString OperationTest::info(const QString &text)
{
    return QStringLiteral("[QT] [Audiocontrol] ") + text;
}

QString OperationTest::error(const QString &text)
{
    return QStringLiteral("[QT] [Error] [Audiocontrol] line: LINE ") + text;
}

QString OperationTest::trace(const char *signature, const char *text)
{
    return QStringLiteral("[DBG] THREAD ") + QString::fromLatin1(signature) + QStringLiteral(" LINE -- ") + QString::fromLatin1(text);
}

QStringList OperationTest::translation(const char *signature, int tag, const char *track, const char *qtName, const char *name, const char *role)
{
    const QString text = QStringLiteral("%1 \"%2\" %3");
    return {
        trace(signature, qPrintable(text.arg(tag).arg(QLatin1String(track), QLatin1String("tag")))),
        trace(signature, qPrintable(text.arg(QLatin1String(qtName), QLatin1String(name), QLatin1String(role)))),
    };
}

QStringList OperationTest::fresh(const char *kind, const QStringList &calls)
{
    return QStringList{created(kind)} + calls + QStringList{destroyed(kind)};
}

QString OperationTest::created(const char *kind)
{
    return QString::fromLatin1(kind) + QStringLiteral(".create() -> ok");
}

QString OperationTest::notCreated(const char *kind)
{
    return QString::fromLatin1(kind) + QStringLiteral(".create() -> null");
}

QString OperationTest::destroyed(const char *kind)
{
    return QString::fromLatin1(kind) + QStringLiteral(".destroy()");
}

void OperationTest::addColumns()
{
    QTest::addColumn<QVector<Given>>("given");
    QTest::addColumn<Act>("act");
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QStringList>("lines");
}

void OperationTest::addRow(
    const char *name, const QVector<Given> &given, const Act &act, const QVariant &result, const QStringList &calls, const QStringList &lines)
{
    QTest::newRow(name) << given << act << result << calls << lines;
}

void OperationTest::checkRow()
{
    QFETCH(QVector<OperationTest::Given>, given);
    QFETCH(OperationTest::Act, act);
    QFETCH(QVariant, result);
    QFETCH(QStringList, calls);
    QFETCH(QStringList, lines);

    for (const Given &wrong : qAsConst(given))
        wrong(*this);
    QCOMPARE(act(*control), result);
    QCOMPARE(takeCallsAndLifetimes(), calls);
    QCOMPARE(log->takeTexts(), lines);
    QCOMPARE(platform->faults()->pending().filter(QLatin1String(" in ")), QStringList()); // what was ordered for one call was met
}
