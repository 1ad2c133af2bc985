#include "operationstarget.h"

#include "corpus.h"

#include <logrecorder.h>
#include <virtualclock.h>

#include <QtTest/QtTest>

/// Operations in any order with any arguments: those that a fuzzer found worth keeping, and each by itself.
class OperationsTargetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void corpus_data() { corpus::addRows(QStringLiteral(CORPUS)); }
    void corpus();
    void eachWithOddArguments_data();
    void eachWithOddArguments();
    void nothing();

private:
    LogRecorder m_quiet;
};

void OperationsTargetTest::corpus()
{
    QFETCH(const QByteArray, bytes);
    QVERIFY(livedThrough(corpus::viewOf(bytes)) > 0);
}

void OperationsTargetTest::eachWithOddArguments_data()
{
    QTest::addColumn<int>("index");
    const int count = int(allOperations().size());
    QVERIFY(count > 100 && count < 256); // a byte chooses one
    for (int index = 0; index < count; ++index)
        QTest::newRow(allOperations().at(std::size_t(index)).name) << index;
}

/// Its arguments all lie where numbers end, or all are the same byte.
void OperationsTargetTest::eachWithOddArguments()
{
    QFETCH(const int, index);
    const QByteArray operation(1, char(index));
    constexpr int arguments = 12;
    for (const int first : {0x00, 0x50, 0x60, 0xef, 0xf0, 0xf1, 0xf2, 0xff}) {
        const QByteArray bytes = operation + QByteArray(arguments, char(first));
        QVERIFY(livedThrough(corpus::viewOf(bytes)) > 0);
    }
}

void OperationsTargetTest::nothing()
{
    QCOMPARE(livedThrough({}), 0);
}

int main(int argc, char **argv)
{
    simulator::VirtualClock::install();
    QCoreApplication application(argc, argv);
    OperationsTargetTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_operationstarget.moc"
