#include "flash.h"
#include "settingstext.h"

#include <QtTest/QtTest>

using audio::SettingsText;

/// Names of groups and keys in the forms that people write by hand, beside what QSettings makes of the same.
class SettingsTextNamesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { flash::clean(); }

    void finds_data();
    void finds();
    void writesAgain_data() { finds_data(); }
    void writesAgain();
    void keysWithSlashes();
    void paths_data();
    void paths();
};

void SettingsTextNamesTest::finds_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("path");
    const auto row = [](const char *name, const char *content, const char *path) { QTest::newRow(name) << QByteArray(content) << QString::fromLatin1(path); };
    row("as QSettings writes it", "[Volume]\n0=20\n", "Volume/0");
    row("blanks within the brackets", "[ Volume\t]\n0=20\n", "Volume/0");
    row("blanks around the brackets", " [Volume] \n0=20\n", "Volume/0");
    row("blanks around the key", "[Volume]\n\t0 \t=20\n", "Volume/0");
    row("no group", "[General]\n0=20\n", "0");
    row("no group, in capital letters", "[GENERAL]\n0=20\n", "0");
    row("no head at all", "0=20\n", "0");
    row("a group that is called so", "[%General]\n0=20\n", "General/0");
    row("a group that is called so, in small letters", "[%general]\n0=20\n", "general/0");
    row("a group with the same first letter", "[gains]\n0=20\n", "gains/0");
    row("an encoded group", "[V%6Flume]\n0=20\n", "Volume/0");
    row("an encoded key", "[Volume]\n%30=20\n", "Volume/0");
    row("a group within a group", "[Volume]\n0\\1=20\n", "Volume/0/1");
    row("the last one of two", "[Volume]\n0=19\n0=20\n", "Volume/0");
    row("behind a group whose name goes on", "[Volumes]\n0=19\n\n[Volume]\n0=20\n", "Volume/0");
}

void SettingsTextNamesTest::finds()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, path);
    flash::setContent(content);
    QCOMPARE(QSettings(flash::settingsFile(), QSettings::IniFormat).value(path, 7).toInt(), 20);
    const SettingsText text(content);
    QCOMPARE(text.value(path, 7).toInt(), 20);
    QCOMPARE(text.rawValue(path), QByteArray("20"));
    QCOMPARE(text.value(path + QLatin1Char('0'), 7).toInt(), 7);
}

/// In its line, so that there is one value afterwards, too.
void SettingsTextNamesTest::writesAgain()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, path);
    SettingsText text(content);
    text.setValue(path, 21);
    QCOMPARE(text.bytes(), content.left(content.lastIndexOf("20")) + "21\n");
    QVERIFY(text.readsBack());
    flash::setContent(text.bytes());
    QCOMPARE(QSettings(flash::settingsFile(), QSettings::IniFormat).value(path, 7).toInt(), 21);
}

/// Below a group a slash is written as a backslash, and nothing else of such a name need be encoded.
void SettingsTextNamesTest::keysWithSlashes()
{
    const QByteArray lines = "[Volume]\nfront\\left=4\n";
    flash::setContent(lines);
    const QString path = QStringLiteral("Volume/front/left");
    QCOMPARE(QSettings(flash::settingsFile(), QSettings::IniFormat).value(path).toInt(), 4);
    SettingsText text(lines);
    QCOMPARE(text.value(path, 0).toInt(), 4);
    text.setValue(path, 5);
    QCOMPARE(text.bytes(), QByteArray("[Volume]\nfront\\left=5\n"));

    const QString added = QStringLiteral("Volume/rear/left/low");
    {
        QSettings settings(flash::settingsFile(), QSettings::IniFormat);
        settings.setValue(path, 5);
        settings.setValue(added, 6);
    }
    text.setValue(added, 6);
    QCOMPARE(text.bytes(), flash::content());
}

void SettingsTextNamesTest::paths_data()
{
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("path");
    const QString plain = QStringLiteral("Volume/0");
    QTest::newRow("as it is") << QStringLiteral("Volume") << QStringLiteral("0") << plain;
    QTest::newRow("a slash in front of the group") << QStringLiteral("/Volume") << QStringLiteral("0") << plain;
    QTest::newRow("a slash behind the group") << QStringLiteral("Volume/") << QStringLiteral("0") << plain;
    QTest::newRow("a slash in front of the key") << QStringLiteral("Volume") << QStringLiteral("/0") << plain;
    QTest::newRow("a slash behind the key") << QStringLiteral("Volume") << QStringLiteral("0/") << plain;
    QTest::newRow("slashes everywhere") << QStringLiteral("//Volume//") << QStringLiteral("//0//") << plain;
    QTest::newRow("no group") << QString() << QStringLiteral("0") << QStringLiteral("0");
    QTest::newRow("no key") << QStringLiteral("Volume") << QString() << QStringLiteral("Volume");
}

void SettingsTextNamesTest::paths()
{
    QFETCH(QString, group);
    QFETCH(QString, key);
    QTEST(SettingsText::path(group, key), "path");
}

QTEST_GUILESS_MAIN(SettingsTextNamesTest)

#include "tst_settingstext_names.moc"
