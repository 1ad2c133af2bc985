#include "flashcalls.h"
#include "lossyflash.h"
#include "storelife.h"
#include "storetest.h"

#include <program.h>

#include <qzaudio/audiodatabase.h>

#include <QtCore/QDataStream>
#include <QtCore/QSet>
#include <QtTest/QtTest>

#include <sys/stat.h>

using Order = LossyFlash::Order;
using storelife::Folder;

Q_DECLARE_METATYPE(Order)

namespace
{

const storelife::Save saveOfStart = {QStringLiteral("2"), 4321};

QMap<QByteArray, quint64> inodes()
{
    QMap<QByteArray, quint64> numbers;
    const QStringList names = flash::names();
    for (const QString &name : names) {
        struct stat status = {};
        if (stat(QFile::encodeName(flash::folder() + QLatin1Char('/') + name).constData(), &status) == 0)
            numbers.insert(name.toLatin1(), status.st_ino);
    }
    return numbers;
}

QByteArray keyOf(const Folder &folder)
{
    QByteArray key;
    QDataStream stream(&key, QIODevice::WriteOnly);
    stream << folder;
    return key;
}

/// One life of the store, and all that it can leave on the flash when the power is cut at any moment of it.
class Life
{
public:
    Life(const Folder &before, Order order)
        : m_before(before)
        , m_order(order)
    {
    }

    /// The settings may be this early at least, as an index, for each of left().
    struct Left
    {
        Folder folder;
        int steps;
    };

    /// @return what is wrong with what is known of the life; empty where all is well
    QString live(const std::function<void()> &work);
    QVector<Left> left() const { return m_left; }
    int moments() const { return m_moments; }

private:
    const Folder m_before;
    const Order m_order;
    QVector<Left> m_left; // each once
    int m_moments = 0;
};

QString Life::live(const std::function<void()> &work)
{
    storelife::setFolder(m_before);
    LossyFlash flash(m_before, inodes());
    const flashcalls::Record record = flashcalls::record(work);
    if (!record.isWhole)
        return QStringLiteral("it could not be traced to its end");
    if (!record.unknown.isEmpty())
        return QLatin1String("nobody knows what these do: ") + record.unknown.join(QLatin1String(", "));
    QSet<QByteArray> known;
    int steps = 0;
    for (const FlashCall &call : record.calls) {
        steps += call.kind == FlashCall::Kind::Step ? 1 : 0;
        flash.apply(call);
        ++m_moments;
        const QVector<Folder> folders = flash.afterCut(m_order);
        for (const Folder &folder : folders) {
            const QByteArray key = keyOf(folder) + char(steps);
            if (!known.contains(key))
                m_left.append({folder, steps});
            known.insert(key);
        }
    }
    // Had a call been missed, this would be another folder.
    return flash.whole() == storelife::folder() ? QString() : QStringLiteral("it left other files than its calls tell");
}

/// Where the file was damaged: it is there, or kept beside.
bool isKept(const Folder &folder, const QByteArray &damaged)
{
    return folder.value("audioData.db") == damaged || folder.value("audioData.db.damaged") == damaged;
}

} // namespace

class LossyFlashSettingsTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cutsDuringSaves_data();
    void cutsDuringSaves();
    void cutsAgainAndAgain_data();
    void cutsAgainAndAgain();
    void cutsWhileDamageIsKept_data();
    void cutsWhileDamageIsKept();
};

void LossyFlashSettingsTest::initTestCase()
{
    if (program::isEmulated())
        QTest::qSkip("the emulator does not let a process trace another", __FILE__, __LINE__);
}

void LossyFlashSettingsTest::cutsDuringSaves_data()
{
    QTest::addColumn<QByteArray>("letters");
    QTest::addColumn<bool>("hasFile");
    QTest::addColumn<Order>("order");
    for (const char *const letters : {"a", "aa", "ab", "aaa", "aab", "aba", "abb", "abc"}) {
        if (!isFast && qstrlen(letters) == 3)
            continue;
        for (const bool hasFile : {true, false}) {
            const char *const first = hasFile ? "with settings" : "the first ones";
            QTest::addRow("%s, %s, in order", letters, first) << QByteArray(letters) << hasFile << Order::InOrder;
            QTest::addRow("%s, %s, out of order", letters, first) << QByteArray(letters) << hasFile << Order::OutOfOrder;
        }
    }
}

/// A save that returned outlives the cut, and no cut leaves what was never whole.
void LossyFlashSettingsTest::cutsDuringSaves()
{
    QFETCH(QByteArray, letters);
    QFETCH(bool, hasFile);
    QFETCH(Order, order);
    log.reset(); // each life records its own
    const Folder before = hasFile ? Folder{{"audioData.db", flash::fullSettings()}} : Folder();
    const storelife::Saves saves = storelife::savesOf(letters.constData());
    const QVector<flash::Entries> versions = storelife::versions(flash::parse(before.value("audioData.db")), saves);
    Life life(before, order);
    const QString problem = life.live([&saves] { storelife::save(saves); });
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    const QVector<Life::Left> all = life.left();
    for (const Life::Left &left : all) {
        storelife::setFolder(left.folder);
        const QString wrong = storelife::problemOf(versions.mid(left.steps, 2));
        QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("behind save %1: %2").arg(left.steps).arg(wrong)));
    }
    qInfo("%d moments, %d different folders", life.moments(), all.size());
    QVERIFY(all.size() > life.moments()); // or nothing was ever lost
}

void LossyFlashSettingsTest::cutsAgainAndAgain_data()
{
    QTest::addColumn<bool>("hasFile");
    QTest::newRow("with settings") << true;
    QTest::newRow("the first ones") << false;
}

/// Each folder that a cut can leave is what the next start finds, which is cut as well, until no cut leaves a folder that was not there before.
void LossyFlashSettingsTest::cutsAgainAndAgain()
{
    QFETCH(bool, hasFile);
    log.reset(); // each life records its own
    QVector<Folder> befores{hasFile ? Folder{{"audioData.db", flash::fullSettings()}} : Folder()};
    QSet<QByteArray> known;
    int moments = 0;
    for (int number = 0; number < befores.size(); ++number) {
        const bool isFirst = number == 0;
        const storelife::Saves saves = isFirst ? storelife::savesOf("a") : storelife::Saves{saveOfStart};
        const QVector<flash::Entries> versions = storelife::versions(flash::parse(befores.at(number).value("audioData.db")), saves);
        Life life(befores.at(number), Order::OutOfOrder);
        const QString problem = life.live([&] { isFirst ? storelife::save(saves) : storelife::startAndSave(saveOfStart); });
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        moments += life.moments();
        const QVector<Life::Left> all = life.left();
        for (const Life::Left &left : all) {
            QVERIFY(versions.mid(left.steps).contains(flash::parse(left.folder.value("audioData.db"))));
            const QByteArray key = keyOf(storelife::kindOf(left.folder));
            if (known.contains(key))
                continue;
            known.insert(key);
            befores.append(left.folder);
            storelife::setFolder(left.folder);
            const QString wrong = storelife::problemOf(versions.mid(left.steps));
            QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
        }
    }
    qInfo("%d lives with %d moments to be cut at; %d different folders", befores.size(), moments, known.size());
}

void LossyFlashSettingsTest::cutsWhileDamageIsKept_data()
{
    QTest::addColumn<QByteArray>("damaged");
    QTest::newRow("a line that cannot be read") << flash::fullSettings() + "#!?\n";
    QTest::newRow("the end is missing") << flash::fullSettings().chopped(1);
}

void LossyFlashSettingsTest::cutsWhileDamageIsKept()
{
    QFETCH(QByteArray, damaged);
    log.reset(); // each life records its own
    flash::Entries readable = flash::parse(damaged);
    readable.remove("?");
    if (!damaged.endsWith('\n'))
        readable.remove("Elsewhere/empty"); // the last line may be half of one
    const QVector<flash::Entries> versions{flash::parse(damaged), storelife::versions(readable, {saveOfStart}).constLast()};
    Life life({{"audioData.db", damaged}}, Order::OutOfOrder);
    const QString problem = life.live([] { storelife::startAndSave(saveOfStart); });
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    const QVector<Life::Left> all = life.left();
    for (const Life::Left &left : all) {
        QVERIFY(versions.mid(left.steps).contains(flash::parse(left.folder.value("audioData.db"))));
        QVERIFY(isKept(left.folder, damaged));
        flash::Entries expected = left.folder.value("audioData.db") == damaged ? readable : versions.last();
        expected.insert("EQ/Type", "3");
        storelife::setFolder(left.folder);
        const LogRecorder recorder;
        audio::AudioDataBase().setEqType(3);
        QCOMPARE(flash::entries(), expected);
        QCOMPARE(flash::content(QStringLiteral("audioData.db.damaged")), damaged);
        QCOMPARE(flash::names(), (QStringList{QStringLiteral("audioData.db"), QStringLiteral("audioData.db.damaged")}));
    }
    qInfo("%d moments, %d different folders", life.moments(), all.size());
    QVERIFY(life.left().constLast().folder.contains("audioData.db.damaged"));
}

QTEST_GUILESS_MAIN(LossyFlashSettingsTest)

#include "tst_audiodatabase_lossyflash.moc"
