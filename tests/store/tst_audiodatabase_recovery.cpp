#include "powercut.h"
#include "storelife.h"
#include "storetest.h"

#include <program.h>

#include <QtTest/QtTest>

namespace
{

/// Of a life that begins after so many cuts each system call is cut at; of later ones those that may change files, which is as much.
constexpr int cutsAtEachCall = isFast ? 1 : -1;

const storelife::Save saveOfStart = {QStringLiteral("2"), 4321};

storelife::Folder firstFolder(bool hasFile)
{
    return hasFile ? storelife::Folder{{"audioData.db", flash::fullSettings()}} : storelife::Folder();
}

/// A folder that a number of cuts left.
struct Left
{
    storelife::Folder folder;
    int cuts = 0;
};

} // namespace

class RecoveryTest : public StoreTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cutsDuringSequencesOfSaves_data();
    void cutsDuringSequencesOfSaves();
    void cutsDuringRecovery_data();
    void cutsDuringRecovery();
};

void RecoveryTest::initTestCase()
{
    if (program::isEmulated())
        QTest::qSkip("the emulator does not let a process trace another", __FILE__, __LINE__);
}

void RecoveryTest::cutsDuringSequencesOfSaves_data()
{
    QTest::addColumn<QByteArray>("letters");
    QTest::addColumn<bool>("hasFile");
    // All ways in which up to three keys can be the same or not.
    for (const char *const letters : {"a", "aa", "ab", "aaa", "aab", "aba", "abb", "abc"}) {
        if (!isFast && qstrlen(letters) == 3)
            continue;
        for (const bool hasFile : {true, false})
            QTest::addRow("%s, %s", letters, hasFile ? "with settings" : "the first ones") << QByteArray(letters) << hasFile;
    }
}

/// What returned is not lost, and what did not is there whole or not at all.
void RecoveryTest::cutsDuringSequencesOfSaves()
{
    QFETCH(QByteArray, letters);
    QFETCH(bool, hasFile);
    log.reset(); // each life records its own
    const storelife::Saves saves = storelife::savesOf(letters.constData());
    const storelife::Folder before = firstFolder(hasFile);
    const QVector<flash::Entries> versions = storelife::versions(flash::parse(before.value("audioData.db")), saves);
    QVector<int> cutsBehind(saves.size() + 1); // by the number of saves that returned
    for (int last = 1;; ++last) {
        storelife::setFolder(before);
        const powercut::Cut cut = powercut::runAndKillAt(last, powercut::Calls::OfFiles, [&saves] { storelife::save(saves); });
        QVERIFY(cut.systemCalls >= 0);
        storelife::setFolder(storelife::folder());
        const QString problem = storelife::problemOf(versions.mid(cut.steps, 2));
        QVERIFY2(problem.isEmpty(), qPrintable(QStringLiteral("cut at call %1, behind save %2: %3").arg(last).arg(cut.steps).arg(problem)));
        ++cutsBehind[cut.steps];
        if (cut.isWhole)
            break;
    }
    for (const int cuts : qAsConst(cutsBehind))
        QVERIFY(cuts > 0);
}

void RecoveryTest::cutsDuringRecovery_data()
{
    QTest::addColumn<bool>("hasFile");
    QTest::newRow("with settings") << true;
    QTest::newRow("the first ones") << false;
}

/**
 * The start after a cut is cut again, at each of its system calls, and so is the start after that one, until no cut leaves a folder that was not
 * there before. So what holds here holds for any number of cuts in a row.
 */
void RecoveryTest::cutsDuringRecovery()
{
    QFETCH(bool, hasFile);
    log.reset(); // each life records its own
    const storelife::Saves saves = storelife::savesOf("a");
    QVector<storelife::Folder> known;
    QVector<Left> lefts{{firstFolder(hasFile), 0}};
    int lives = 0;
    for (int left = 0; left < lefts.size(); ++left) {
        const Left before = lefts.at(left);
        const flash::Entries entries = flash::parse(before.folder.value("audioData.db"));
        const QVector<flash::Entries> versions = storelife::versions(entries, before.cuts == 0 ? saves : storelife::Saves{saveOfStart});
        const powercut::Calls calls = before.cuts <= cutsAtEachCall ? powercut::Calls::OfFiles : powercut::Calls::ThatMayChangeFiles;
        powercut::Cut cut;
        for (int last = 1; !cut.isWhole; ++last, ++lives) {
            storelife::setFolder(before.folder);
            cut = powercut::runAndKillAt(last, calls, [&] { before.cuts == 0 ? storelife::save(saves) : storelife::startAndSave(saveOfStart); });
            QVERIFY(cut.systemCalls >= 0);
            const storelife::Folder folder = storelife::folder();
            const bool isKnown = known.contains(storelife::kindOf(folder));
            storelife::setFolder(folder);
            const QString problem = storelife::problemOf(versions.mid(cut.steps));
            QVERIFY2(problem.isEmpty(), qPrintable(QStringLiteral("%1 cuts, the last one at call %2: %3").arg(before.cuts + 1).arg(last).arg(problem)));
            if (isKnown)
                continue;
            known.append(storelife::kindOf(folder));
            lefts.append({folder, before.cuts + 1});
        }
    }
    qInfo("%d lives ended by a cut, at most %d cuts in a row until nothing new came; they left %d different folders", lives, lefts.last().cuts, known.size());
}

QTEST_GUILESS_MAIN(RecoveryTest)

#include "tst_audiodatabase_recovery.moc"
