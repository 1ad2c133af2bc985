#include "lossyflash.h"

#include <QtTest/QtTest>

#include <algorithm>

using Calls = QVector<FlashCall>;
using Order = LossyFlash::Order;
using Kind = FlashCall::Kind;

Q_DECLARE_METATYPE(Calls)
Q_DECLARE_METATYPE(Order)

namespace
{

constexpr quint64 settings = 1; // inodes
constexpr quint64 temporary = 2;
constexpr quint64 other = 3;

const QByteArray oldText = QByteArrayLiteral("[Volume]\n0=1\n");
const QByteArray newText = QByteArrayLiteral("[Volume]\n0=20\n");

FlashCall create(const char *name, quint64 file)
{
    return {Kind::Create, file, name};
}

FlashCall write(quint64 file, const QByteArray &bytes, qint64 position = 0)
{
    return {Kind::Write, file, {}, {}, bytes, position};
}

FlashCall call(Kind kind, quint64 file = 0)
{
    return {kind, file};
}

FlashCall replaceSettings()
{
    return {Kind::Rename, 0, "new", "settings"};
}

/// After some calls of a save, or after all of them.
QVector<QByteArray> settingsAfterCut(const Calls &calls, int count, Order order)
{
    LossyFlash flash({{"settings", oldText}}, {{"settings", settings}});
    for (int number = 0; number < count; ++number)
        flash.apply(calls.at(number));
    QVector<QByteArray> contents;
    const QVector<LossyFlash::Folder> folders = flash.afterCut(order);
    for (const LossyFlash::Folder &folder : folders)
        contents.append(folder.value("settings", "missing"));
    return contents;
}

} // namespace

/// A flash that loses too little would prove nothing: each way to save that is known to be wrong has to lose a setting on it.
class LossyFlashTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void savesAreLostAsTheyMustBe_data();
    void savesAreLostAsTheyMustBe();
    void pagesAreLostOneByOne();
    void namesAreLostOneByOne();
    void numbersAreUsedAgain();
};

void LossyFlashTest::savesAreLostAsTheyMustBe_data()
{
    QTest::addColumn<Calls>("calls");
    QTest::addColumn<bool>("mayTear");
    QTest::addColumn<bool>("mayBeLost");
    const FlashCall begin = create("new", temporary);
    const FlashCall bytes = write(temporary, newText);
    const FlashCall safeBytes = call(Kind::SynchronizeFile, temporary);
    const FlashCall safeNames = call(Kind::SynchronizeFolder);
    QTest::newRow("all that is needed") << Calls{begin, bytes, safeBytes, replaceSettings(), safeNames} << false << false;
    QTest::newRow("without fsync() of the folder") << Calls{begin, bytes, safeBytes, replaceSettings()} << false << true;
    QTest::newRow("with fsync() of the folder too early") << Calls{begin, bytes, safeBytes, safeNames, replaceSettings()} << false << true;
    QTest::newRow("without fsync() of the file") << Calls{begin, bytes, replaceSettings(), safeNames} << true << true;
    QTest::newRow("with fsync() of the file too early") << Calls{begin, safeBytes, bytes, replaceSettings(), safeNames} << true << true;
    QTest::newRow("with fsync() of the file too late") << Calls{begin, bytes, replaceSettings(), safeBytes, safeNames} << true << false;
    QTest::newRow("with fsync() of another file")
        << Calls{begin, create("other", other), bytes, call(Kind::SynchronizeFile, other), replaceSettings(), safeNames} << true << true;
    QTest::newRow("in two pieces, the second one late")
        << Calls{begin, write(temporary, newText.left(5)), safeBytes, write(temporary, newText.mid(5), 5), replaceSettings(), safeNames} << true << true;
    QTest::newRow("by removing the old one first") << Calls{begin, bytes, safeBytes, {Kind::Unlink, 0, "settings"}, safeNames, replaceSettings(), safeNames}
                                                   << true << false;
    QTest::newRow("in place") << Calls{call(Kind::Truncate, settings), write(settings, newText), call(Kind::SynchronizeFile, settings)} << true << false;
    QTest::newRow("in place, without fsync()") << Calls{call(Kind::Truncate, settings), write(settings, newText)} << true << true;
    QTest::newRow("over the old one") << Calls{write(settings, newText), call(Kind::SynchronizeFile, settings)} << true << false;
}

void LossyFlashTest::savesAreLostAsTheyMustBe()
{
    QFETCH(Calls, calls);
    QFETCH(bool, mayTear);
    QFETCH(bool, mayBeLost);
    for (const Order order : {Order::InOrder, Order::OutOfOrder}) {
        QVector<QByteArray> anytime;
        for (int count = 0; count <= calls.size(); ++count)
            anytime += settingsAfterCut(calls, count, order);
        QVERIFY(anytime.contains(oldText));
        QVERIFY(anytime.contains(newText));
        QCOMPARE(std::any_of(anytime.cbegin(), anytime.cend(), [](const QByteArray &text) { return text != oldText && text != newText; }), mayTear);
        const QVector<QByteArray> atLast = settingsAfterCut(calls, calls.size(), order);
        QCOMPARE(std::any_of(atLast.cbegin(), atLast.cend(), [](const QByteArray &text) { return text != newText; }), mayBeLost);
    }
}

void LossyFlashTest::pagesAreLostOneByOne()
{
    LossyFlash flash({{"settings", QByteArray(1024, 'a')}}, {{"settings", settings}});
    flash.apply(write(settings, QByteArray(1536, 'b')));
    const LossyFlash::Folder holes{{"settings", QByteArray(512, 'a') + QByteArray(512, 'b') + QByteArray(512, '\0')}};
    QVERIFY(flash.afterCut(Order::OutOfOrder).contains(holes));
    QVERIFY(!flash.afterCut(Order::InOrder).contains(holes));
    const LossyFlash::Folder beginning{{"settings", QByteArray(512, 'b') + QByteArray(512, 'a')}};
    QVERIFY(flash.afterCut(Order::InOrder).contains(beginning));
    QCOMPARE(flash.whole(), (LossyFlash::Folder{{"settings", QByteArray(1536, 'b')}}));
}

void LossyFlashTest::namesAreLostOneByOne()
{
    LossyFlash flash({{"settings", oldText}}, {{"settings", settings}});
    flash.apply(create("lock", other));
    flash.apply({Kind::Link, 0, "settings", "kept"});
    flash.apply({Kind::Unlink, 0, "lock"});
    const LossyFlash::Folder none{{"settings", oldText}};
    const LossyFlash::Folder lock{{"lock", ""}, {"settings", oldText}};
    const LossyFlash::Folder lockAndLink{{"kept", oldText}, {"lock", ""}, {"settings", oldText}};
    const LossyFlash::Folder link{{"kept", oldText}, {"settings", oldText}};
    QCOMPARE(flash.afterCut(Order::InOrder), (QVector<LossyFlash::Folder>{none, lock, lockAndLink, link}));
    QCOMPARE(flash.afterCut(Order::OutOfOrder), (QVector<LossyFlash::Folder>{none, lock, link, lockAndLink}));
    flash.apply(call(Kind::SynchronizeFolder));
    QCOMPARE(flash.afterCut(Order::OutOfOrder), QVector<LossyFlash::Folder>{link});
}

/// A file system gives the number of a removed file to the next one.
void LossyFlashTest::numbersAreUsedAgain()
{
    LossyFlash flash({});
    flash.apply(create("first", temporary));
    flash.apply(write(temporary, "one"));
    flash.apply({Kind::Unlink, 0, "first"});
    flash.apply(create("second", temporary));
    flash.apply(write(temporary, "two"));
    QCOMPARE(flash.whole(), (LossyFlash::Folder{{"second", "two"}}));
}

QTEST_GUILESS_MAIN(LossyFlashTest)

#include "tst_lossyflash.moc"
