#include "settingsmodel.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QStandardPaths>
#include <QtTest/QtTest>

#include <memory>

namespace
{

constexpr char fileName[] = "audioData.db";

/// As the library writes it.
constexpr char usualText[] = "[EQ]\nType=2\n\n[Volume]\n0=11\nLoudness=true\n";

} // namespace

/// The room Settings with a real car.
class SettingsModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void initTestCase();
    void init();
    void cleanup();

    void showsTheFile();
    void followsSaves();
    void writesText();
    void writesValue();
    static void values_data();
    static void values();
    void cutShowsWhatIsLeft();
    void cutsOff();
    void startTellsWhatItChanged();
    void erases();
    void leftoversAreShown();
    void takesThePower();
    void undoBringsTheFileBack();
    static void withoutCar();

private:
    QVariant setting(const char *key, const char *member) const;
    void writeAndWait(const QString &text);
    QString onFlash() const;
    QStringList lines() const;

    std::unique_ptr<Desk> m_desk;
    std::unique_ptr<SettingsModel> m_model;
};

void SettingsModelTest::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
}

void SettingsModelTest::init()
{
    m_desk = std::make_unique<Desk>();
    m_desk->startAnew();
    m_desk->setSpeed(0);
    m_model = std::make_unique<SettingsModel>();
    m_model->setDesk(m_desk.get());
    m_model->setActive(true);
    QTRY_VERIFY(m_model->isOn());
    QTRY_VERIFY(m_model->exists());
    QTRY_COMPARE(m_model->text(), onFlash());
}

void SettingsModelTest::cleanup()
{
    m_model.reset();
    m_desk.reset();
}

QVariant SettingsModelTest::setting(const char *key, const char *member) const
{
    for (const QVariantMap &row : m_model->settings()->rows()) {
        if (row.value(QStringLiteral("key")) == QLatin1String(key))
            return row.value(QLatin1String(member));
    }
    return {};
}

void SettingsModelTest::writeAndWait(const QString &text)
{
    m_model->write(text);
    QTRY_COMPARE(m_model->text(), text);
    QTRY_VERIFY(!m_model->isOn());
}

QString SettingsModelTest::onFlash() const
{
    QFile source(QDir(m_desk->flash()).filePath(QLatin1String(fileName)));
    return source.open(QIODevice::ReadOnly) ? QString::fromUtf8(source.readAll()) : QString();
}

/// The steps that were made.
QStringList SettingsModelTest::lines() const
{
    QStringList lines;
    for (const Recording::Step &step : m_desk->recording()->steps())
        lines.append(step.line);
    return lines;
}

void SettingsModelTest::showsTheFile()
{
    QCOMPARE(m_model->file(), QDir(m_desk->flash()).filePath(QLatin1String(fileName)));
    QVERIFY(m_model->text().contains(QStringLiteral("VolumeMic=12\n")));
    QCOMPARE(m_model->size(), m_model->text().size());
    QCOMPARE(setting("Volume/VolumeMic", "stored"), QVariant(QStringLiteral("12")));
    QCOMPARE(setting("Volume/VolumeMic", "isStored"), QVariant(true));
    QCOMPARE(setting("Volume/0", "isStored"), QVariant(false));
    QCOMPARE(setting("Volume/0", "inEffect"), QVariant(QStringLiteral("20, or 25 with home UI type 7")));
    QCOMPARE(m_model->problems(), 0);
    QCOMPARE(m_model->problem(), QString());
    QCOMPARE(m_model->files()->rows().size(), 1);
    QCOMPARE(m_model->files()->rows().constFirst().value(QStringLiteral("name")), QVariant(QLatin1String(fileName)));
    QCOMPARE(m_model->lastCause(), QStringLiteral("powerOn()"));
}

void SettingsModelTest::followsSaves()
{
    m_desk->perform(QStringLiteral("AudioPolicy.setVolume(0, 7, true);"));
    QTRY_COMPARE(setting("Volume/0", "stored"), QVariant(QStringLiteral("7")));
    QTRY_COMPARE(m_model->lastCause(), QStringLiteral("AudioPolicy.setVolume(Media, 7, true)"));
    QCOMPARE(m_model->text(), onFlash());
    // Also what comes without the car: saves put another file in its place.
    const QString path = m_model->file();
    QFile other(path + QStringLiteral(".other"));
    QVERIFY(other.open(QIODevice::WriteOnly));
    other.write(usualText);
    other.close();
    QVERIFY(QFile::remove(path) && other.rename(path));
    QTRY_COMPARE(setting("Volume/0", "stored"), QVariant(QStringLiteral("11")));
    QVERIFY(QFile::remove(path));
    QTRY_VERIFY(!m_model->exists());
    QCOMPARE(setting("Volume/0", "isStored"), QVariant(false));
}

void SettingsModelTest::writesText()
{
    const QString text = QStringLiteral("[Mine]\nnote=\"left \\\\ alone\"\n\n[Volume]\n0=\u00e4\t3\n");
    writeAndWait(text);
    QCOMPARE(onFlash(), text);
    QTRY_COMPARE(m_model->lastCause(), QStringLiteral("by hand"));
    QCOMPARE(setting("Volume/0", "problem"), QVariant(QStringLiteral("no whole number")));
    QCOMPARE(m_model->problems(), 1);
    QCOMPARE(setting("Mine/note", "known"), QVariant(false));
    QTRY_COMPARE(lines().mid(1, 1), QStringList(QStringLiteral("powerOff();")));
    QVERIFY(lines().value(2).startsWith(QLatin1String("writeSettings(\"[Mine]\\nnote=")));
}

void SettingsModelTest::writesValue()
{
    writeAndWait(QLatin1String(usualText));
    m_model->setValue(QStringLiteral("Volume/0"), QStringLiteral("99"));
    QTRY_COMPARE(setting("Volume/0", "stored"), QVariant(QStringLiteral("99")));
    QCOMPARE(setting("Volume/0", "problem"), QVariant(QStringLiteral("outside 0 to 25")));
    QCOMPARE(setting("Volume/Loudness", "stored"), QVariant(QStringLiteral("true")));
}

void SettingsModelTest::values_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");
    const QString usual = QLatin1String(usualText);
    const QString volume = QStringLiteral("Volume/0");
    const QString seven = QStringLiteral("7");
    QTest::newRow("another") << usual << volume << seven << QString(usual).replace(QLatin1String("0=11"), QLatin1String("0=7"));
    QTest::newRow("a new one") << usual << QStringLiteral("EQ/Custom3") << seven
                               << QString(usual).replace(QLatin1String("Type=2\n"), QLatin1String("Type=2\nCustom3=7\n"));
    QTest::newRow("a new one at the end") << usual << QStringLiteral("Volume/4") << seven << usual + QStringLiteral("4=7\n");
    QTest::newRow("a new section") << QStringLiteral("[Volume]\n0=1\n") << QStringLiteral("EQ/Type") << seven
                                   << QStringLiteral("[Volume]\n0=1\n[EQ]\nType=7\n");
    QTest::newRow("no file") << QString() << volume << seven << QStringLiteral("[Volume]\n0=7\n");
    QTest::newRow("cut line") << QStringLiteral("[EQ]\nType") << volume << seven << QStringLiteral("[EQ]\nType\n[Volume]\n0=7\n");
    QTest::newRow("the same name elsewhere") << QStringLiteral("[Mine]\n0=5\n\n[Volume]\n1=2\n0=5\n") << volume << seven
                                             << QStringLiteral("[Mine]\n0=5\n\n[Volume]\n1=2\n0=7\n");
    QTest::newRow("taken out") << usual << volume << QString() << QString(usual).remove(QStringLiteral("0=11\n"));
    QTest::newRow("taken out where it is not") << usual << QStringLiteral("Volume/3") << QString() << usual;
    QTest::newRow("taken out of no section") << QString() << volume << QString() << QString();
}

void SettingsModelTest::values()
{
    QFETCH(QString, text);
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QString, expected);
    QCOMPARE(SettingsModel::withValue(text, key, value), expected);
}

void SettingsModelTest::cutShowsWhatIsLeft()
{
    writeAndWait(QLatin1String(usualText));
    QSignalSpy changed(m_model.get(), &SettingsModel::cutChanged);
    const int size = int(sizeof usualText) - 1;
    m_model->setCut(size - 3);
    QCOMPARE(m_model->cutText(), QString::fromLatin1(usualText).left(size - 3));
    QCOMPARE(setting("Volume/0", "problem"), QVariant(QString()));
    QCOMPARE(setting("Volume/Loudness", "problem"), QVariant(QStringLiteral("the line is damaged and left out")));
    QCOMPARE(m_model->problems(), 1);
    m_model->setCut(0);
    QCOMPARE(setting("EQ/Type", "isStored"), QVariant(false));
    QCOMPARE(m_model->problems(), 0);
    m_model->setCut(100000);
    QCOMPARE(m_model->cut(), size);
    m_model->setCut(-5);
    QCOMPARE(m_model->cut(), -1);
    QCOMPARE(m_model->cutText(), m_model->text());
    QCOMPARE(changed.count(), 4);
    QCOMPARE(onFlash(), QLatin1String(usualText)); // all of it was only looked at
}

void SettingsModelTest::cutsOff()
{
    writeAndWait(QLatin1String(usualText));
    m_model->setCut(20);
    m_model->cutOff();
    QTRY_COMPARE(m_model->text(), QString::fromLatin1(usualText).left(20));
    QCOMPARE(m_model->cut(), -1);
    QCOMPARE(onFlash().size(), 20);
}

void SettingsModelTest::startTellsWhatItChanged()
{
    writeAndWait(QStringLiteral("[Volume]\n0=11\nLoudness=true\nMicType=true\nVolumeMic=1"));
    m_model->start();
    QTRY_VERIFY(m_model->isOn());
    QTRY_COMPARE(m_model->startChanges(),
                 QStringList({QStringLiteral("EQ/Type: not stored \u2192 6"),
                              QStringLiteral("Volume/Loudness: true \u2192 false"),
                              QStringLiteral("Volume/VolumeMic: 1 \u2192 12")}));
    QStringList names;
    for (const QVariantMap &row : m_model->files()->rows())
        names.append(row.value(QStringLiteral("name")).toString());
    QCOMPARE(names, QStringList({QLatin1String(fileName), QLatin1String(fileName) + QStringLiteral(".damaged")}));
    m_model->start(); // off and on
    QTRY_VERIFY(m_model->startChanges().isEmpty());
    QTRY_COMPARE(lines().mid(4), QStringList({QStringLiteral("powerOff();"), QStringLiteral("powerOn();")}));
}

void SettingsModelTest::erases()
{
    m_model->erase();
    QTRY_VERIFY(!m_model->exists());
    QCOMPARE(m_model->size(), 0);
    QTRY_COMPARE(lines().mid(1), QStringList({QStringLiteral("powerOff();"), QStringLiteral("eraseSettings();")}));
}

void SettingsModelTest::leftoversAreShown()
{
    QFile lock(m_model->file() + QStringLiteral(".lock"));
    QVERIFY(lock.open(QIODevice::WriteOnly));
    QTRY_COMPARE(m_model->files()->count(), 2);
    QCOMPARE(m_model->files()->rows().constLast().value(QStringLiteral("meaning")), QVariant(QStringLiteral("lock of a save")));
}

void SettingsModelTest::takesThePower()
{
    writeAndWait(QLatin1String(usualText));
    m_model->start();
    QTRY_VERIFY(m_model->isOn());
    QTRY_VERIFY(m_model->text().contains(QStringLiteral("Loudness=false")));
    const QString text = m_model->text();
    QSignalSpy performed(m_desk.get(), &Desk::performed);
    m_model->cutPower(20, QStringLiteral("AudioPolicy.setVolume(0, 7, true); "));
    QTRY_COMPARE(performed.count(), 2);
    QTRY_COMPARE(m_model->files()->count(), 3);
    QTRY_VERIFY(!m_model->isOn());
    QTRY_COMPARE(performed.count(), 2);
    QCOMPARE(performed.constLast().at(0).toString(), QStringLiteral("cutPowerWhileSaving(20, \"AudioPolicy.setVolume(0, 7, true)\");"));
    QVERIFY2(performed.constLast().at(1).toString().contains(QStringLiteral("cut at byte 20")), qPrintable(performed.constLast().at(1).toString()));
    QCOMPARE(onFlash(), text);
    const QVariantMap half = m_model->files()->rows().constLast();
    QCOMPARE(half.value(QStringLiteral("size")), QVariant(20));
    QCOMPARE(half.value(QStringLiteral("meaning")), QVariant(QStringLiteral("new settings, not in place yet")));
    m_model->start();
    QTRY_COMPARE(m_model->files()->count(), 1);
    QCOMPARE(setting("Volume/0", "stored"), QVariant(QStringLiteral("11")));
}

void SettingsModelTest::undoBringsTheFileBack()
{
    const QString before = m_model->text();
    writeAndWait(QLatin1String(usualText));
    m_desk->undo();
    QTRY_COMPARE(m_model->text(), before);
    m_desk->redo();
    QTRY_COMPARE(m_model->text(), QLatin1String(usualText));
}

void SettingsModelTest::withoutCar()
{
    SettingsModel model;
    model.setActive(true);
    model.write(QString());
    model.start();
    model.switchOff();
    model.cutPower(5, QStringLiteral("AudioPolicy.setVolume(0, 7, true)"));
    model.setCut(5);
    QCOMPARE(model.text(), QString());
    QVERIFY(!model.exists());
    QCOMPARE(model.file(), QString());
}

QTEST_GUILESS_MAIN(SettingsModelTest)

#include "tst_settingsmodel.moc"
