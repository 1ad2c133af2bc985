#include "focusstack.h"
#include "journalmodel.h"
#include "nearestname.h"
#include "responsecurve.h"
#include "situations.h"

#include "platform.h"

#include <QtTest/QtTest>

#include <memory>

namespace
{

using Model = std::shared_ptr<QAbstractListModel>;

} // namespace

Q_DECLARE_METATYPE(Model)

/// What the lists for QML have in common, at the ends of what a view may ask.
class QmlListsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void init() { simulator::Platform::instance()->reset(); }

    static void askedBeyond_data();
    static void askedBeyond();
    static void propertiesSetAgain_data();
    static void propertiesSetAgain();
    static void propertiesOfTheOthers();
    static void nothingAppended();
    static void longNamesHaveNoNeighbour();
};

void QmlListsTest::askedBeyond_data()
{
    QTest::addColumn<Model>("model");
    const auto stack = std::make_shared<FocusStack>();
    stack->setEntries({QVariantMap{{QStringLiteral("clientId"), QStringLiteral("music")}, {QStringLiteral("hint"), 1}}});
    QTest::newRow("focus stack") << Model(stack);
    const auto journal = std::make_shared<JournalModel>();
    journal->append({QVariantMap{{QStringLiteral("call"), QStringLiteral("a call")}}});
    QTest::newRow("journal") << Model(journal);
    QTest::newRow("situations") << Model(std::make_shared<Situations>());
}

void QmlListsTest::askedBeyond()
{
    QFETCH(Model, model);
    const QModelIndex first = model->index(0, 0);
    QVERIFY(model->rowCount() > 0);
    QCOMPARE(model->rowCount(first), 0); // no tree
    const QList<int> roles = model->roleNames().keys();
    QVERIFY(!roles.isEmpty());
    for (const int role : roles)
        QVERIFY2(first.data(role).isValid(), model->roleNames().value(role).constData());
    QVERIFY(!first.data(Qt::DisplayRole).toString().isEmpty());
    QCOMPARE(first.data(Qt::DecorationRole), QVariant());
    QCOMPARE(model->data(model->index(model->rowCount(), 0), roles.constFirst()), QVariant());
    QCOMPARE(model->data(QModelIndex(), roles.constFirst()), QVariant());
}

void QmlListsTest::propertiesSetAgain_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("live") << QByteArray("live") << QVariant(true);
    QTest::newRow("limit") << QByteArray("limit") << QVariant(5);
    QTest::newRow("text") << QByteArray("text") << QVariant(QStringLiteral("volume"));
    QTest::newRow("refused only") << QByteArray("refusedOnly") << QVariant(true);
    QTest::newRow("operation") << QByteArray("operation") << QVariant(QStringLiteral("Volume.setMute"));
}

/// Told once.
void QmlListsTest::propertiesSetAgain()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);
    JournalModel model;
    const QMetaObject *const type = model.metaObject();
    const QMetaProperty described = type->property(type->indexOfProperty(property.constData()));
    const QSignalSpy changes(&model, QByteArray("2" + described.notifySignal().methodSignature()).constData());
    for (int time = 0; time < 2; ++time) {
        QVERIFY(model.setProperty(property.constData(), value));
        QCOMPARE(model.property(property.constData()), value);
        QCOMPARE(changes.count(), 1);
    }
}

void QmlListsTest::propertiesOfTheOthers()
{
    FocusStack stack;
    const QVariantMap entry{
        {QStringLiteral("clientId"), QStringLiteral("music")},
        {QStringLiteral("streamType"), 3},
        {QStringLiteral("hint"), 1},
        {QStringLiteral("loss"), -2},
    };
    QVERIFY(stack.setProperty("entries", QVariantList{entry}));
    QCOMPARE(stack.property("entries").toList(), QVariantList{entry});
    Situations situations;
    QVERIFY(situations.setProperty("channelAfterCall", 5));
    QCOMPARE(situations.property("channelAfterCall"), QVariant(5));
    ResponseCurve curve;
    QVERIFY(curve.setProperty("loudness", true));
    QCOMPARE(curve.property("loudness"), QVariant(true));
}

void QmlListsTest::nothingAppended()
{
    JournalModel model;
    const QSignalSpy counts(&model, &JournalModel::countChanged);
    const QSignalSpy totals(&model, &JournalModel::totalChanged);
    model.append({});
    model.clear();
    QCOMPARE(model.total(), 0);
    QCOMPARE(counts.count() + totals.count(), 0);
}

/// Nobody mistyped a page of text.
void QmlListsTest::longNamesHaveNoNeighbour()
{
    const QStringList known{QStringLiteral("volume"), QString(1000, QLatin1Char('x'))};
    QCOMPARE(nearestName(QStringLiteral("volumee"), known), QStringLiteral("volume"));
    QCOMPARE(nearestName(QString(1001, QLatin1Char('x')), known), QString());
}

QTEST_GUILESS_MAIN(QmlListsTest)
#include "tst_qmllists.moc"
