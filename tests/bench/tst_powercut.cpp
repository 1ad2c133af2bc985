#include "powercut.h"
#include "settingsreader.h"

#include <program.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtTest/QtTest>

namespace
{

constexpr char flashFolder[] = "/media/flash/nvm";
constexpr char volume[] = "AudioPolicy.setVolume(0, 7, true)";

// A start-up would store something else: a microphone volume, and loudness off.
const QByteArray before = QByteArrayLiteral("[EQ]\nType=2\n\n[Volume]\n0=11\n1=12\nLoudness=true\nMicType=false\n");
const QByteArray after = QByteArrayLiteral("[EQ]\nType=2\n\n[Volume]\n0=7\n1=12\nLoudness=true\nMicType=false\n");

QString pathOf(const QString &name)
{
    return QDir(QLatin1String(flashFolder)).filePath(name);
}

QString settingsFile()
{
    return pathOf(QStringLiteral("audioData.db"));
}

QByteArray content(const QString &file)
{
    QFile source(file);
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

void setContent(const QByteArray &text)
{
    QFile file(settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

/// The file of a save, which is called after a number.
QByteArray newSettings()
{
    const QStringList names = QDir(QLatin1String(flashFolder)).entryList({QStringLiteral("audioData.db.new-*")});
    return names.isEmpty() ? QByteArray() : content(pathOf(names.first()));
}

QStringList names(const PowerCut::Outcome &outcome)
{
    QStringList names;
    for (const PowerCut::File &file : outcome.files)
        names.append(file.name.section(QLatin1Char('-'), 0, 0));
    return names;
}

std::optional<PowerCut::Outcome> cut(qint64 byte, const char *line, QString &problem)
{
    return PowerCut::whileSaving(byte, QLatin1String(line), problem, QStringLiteral(BENCH_PROGRAM));
}

} // namespace

class PowerCutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void initTestCase();
    static void init();
    static void cutInTheMiddle_data();
    static void cutInTheMiddle();
    static void theFirstSaveOfAll();
    static void afterTheSave();
    static void withoutASave();
    static void busyLine();
    static void nextSaveCleansUp();
    static void problems_data();
    static void problems();
};

void PowerCutTest::initTestCase()
{
    if (program::isEmulated())
        QTest::qSkip("an emulator runs one program only", __FILE__, __LINE__);
}

void PowerCutTest::init()
{
    QDir folder{QLatin1String(flashFolder)};
    const QStringList files = folder.entryList(QDir::Files | QDir::Hidden);
    for (const QString &file : files)
        QVERIFY(folder.remove(file));
}

void PowerCutTest::cutInTheMiddle_data()
{
    QTest::addColumn<int>("byte");
    for (const int byte : {0, 1, 30, after.size() - 1})
        QTest::addRow("byte %d", byte) << byte;
}

void PowerCutTest::cutInTheMiddle()
{
    QFETCH(int, byte);
    setContent(before);
    QString problem;
    const auto outcome = cut(byte, volume, problem);
    QVERIFY2(outcome, qPrintable(problem));
    QVERIFY(outcome->isCut);
    const QStringList left = {QStringLiteral("audioData.db"), QStringLiteral("audioData.db.lock"), QStringLiteral("audioData.db.new")};
    QCOMPARE(names(*outcome), left);
    QCOMPARE(outcome->files.constFirst().size, qint64(before.size()));
    QCOMPARE(outcome->files.constLast().size, qint64(byte));
    QCOMPARE(content(settingsFile()), before);
    QCOMPARE(newSettings(), after.left(byte));
    QCOMPARE(
        outcome->toText(byte),
        QStringLiteral("cut at byte %1; left: audioData.db (%2 bytes), audioData.db.lock (0 bytes), audioData.db.new (%1 bytes)").arg(byte).arg(before.size()));
    for (const PowerCut::File &file : outcome->files)
        QVERIFY2(file.meaning != QLatin1String("unknown to the library"), qPrintable(file.name));
}

void PowerCutTest::theFirstSaveOfAll()
{
    QString problem;
    const auto outcome = cut(5, volume, problem);
    QVERIFY2(outcome, qPrintable(problem));
    QVERIFY(outcome->isCut);
    QCOMPARE(names(*outcome), QStringList({QStringLiteral("audioData.db.lock"), QStringLiteral("audioData.db.new")}));
    QCOMPARE(newSettings(), QByteArray("[Volu"));
}

void PowerCutTest::afterTheSave()
{
    setContent(before);
    QString problem;
    const auto outcome = cut(after.size(), volume, problem);
    QVERIFY2(outcome, qPrintable(problem));
    QVERIFY(!outcome->isCut);
    QCOMPARE(content(settingsFile()), after);
    QCOMPARE(outcome->toText(after.size()), QStringLiteral("not cut, the save was done; left: audioData.db (%1 bytes)").arg(after.size()));
}

void PowerCutTest::withoutASave()
{
    setContent(before);
    QString problem;
    const auto outcome = cut(0, "AudioPolicy.setVolume(0, 7, false)", problem);
    QVERIFY2(outcome, qPrintable(problem));
    QVERIFY(!outcome->isCut);
    QCOMPARE(content(settingsFile()), before);
}

/// Whatever memory and time the line takes before it comes to the save.
void PowerCutTest::busyLine()
{
    setContent(before);
    QString problem;
    const auto outcome = cut(30,
                             "var texts = []; for (var i = 0; i < 50000; ++i) texts.push('text ' + i); wait(60000);"
                             " [1, 2, 3].forEach(type => AudioPolicy.setVolume(0, 6 + type, true))",
                             problem);
    QVERIFY2(outcome, qPrintable(problem));
    QVERIFY(outcome->isCut);
    QCOMPARE(content(settingsFile()), before);
    QCOMPARE(newSettings(), after.left(30));
}

void PowerCutTest::nextSaveCleansUp()
{
    setContent(before);
    QString problem;
    QVERIFY(cut(30, volume, problem)->isCut);
    const auto next = cut(1000, "AudioPolicy.setVolume(0, 8, true)", problem);
    QVERIFY2(next, qPrintable(problem));
    QCOMPARE(names(*next), QStringList(QStringLiteral("audioData.db")));
    QCOMPARE(content(settingsFile()), QByteArray(before).replace("0=11", "0=8"));
}

void PowerCutTest::problems_data()
{
    QTest::addColumn<int>("byte");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("told");
    QTest::newRow("a byte that is none") << -1 << QStringLiteral("AudioPolicy.setVolume(0, 7, true)") << QStringLiteral("there is no byte -1");
    QTest::newRow("no such function") << 5 << QStringLiteral("AudioPolicy.setVolumes(0)") << QStringLiteral("setVolumes");
    QTest::newRow("no line of a scenario") << 5 << QStringLiteral("AudioPolicy.(") << QStringLiteral("SyntaxError");
}

void PowerCutTest::problems()
{
    QFETCH(int, byte);
    QFETCH(QString, line);
    QFETCH(QString, told);
    setContent(before);
    QString problem;
    QVERIFY(!cut(byte, line.toUtf8().constData(), problem));
    QVERIFY2(problem.contains(told), qPrintable(problem));
    QCOMPARE(content(settingsFile()), before);
    QVERIFY(!PowerCut::whileSaving(5, QLatin1String(volume), problem, QStringLiteral("/nonexistent/bench")));
    QVERIFY2(problem.contains(QLatin1String("/nonexistent/bench")), qPrintable(problem));
}

QTEST_GUILESS_MAIN(PowerCutTest)

#include "tst_powercut.moc"
