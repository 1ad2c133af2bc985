#include "flash.h"
#include "settingscodec.h"
#include "settingstext.h"
#include "storetest.h"

#include <program.h>

#include <QtTest/QtTest>

using audio::SettingsText;
namespace codec = audio::settingscodec;

namespace
{

const QString file = QStringLiteral("/media/flash/nvm/compared.ini");

QByteArray content()
{
    return flash::content(QStringLiteral("compared.ini"));
}

QString keyOf(int number)
{
    return QStringLiteral("k%1").arg(number, 6, 10, QLatin1Char('0'));
}

/// Characters that mean something in the file, and some that do not.
QString randomText(QRandomGenerator &random, const QString &letters, int longest)
{
    QString text;
    for (int length = random.bounded(longest + 1); length > 0; --length)
        text += letters.at(random.bounded(letters.size()));
    return text;
}

QString writableLetters()
{
    QString letters = QStringLiteral("aF09 =;,\"\\@()[]%x/\t\n\r\a\v");
    letters += QChar(0);
    letters += QChar(0x1f);
    letters += QChar(0x7f);
    letters += QChar(0xe4);
    letters += QChar(0x20ac);
    return letters;
}

QVariant randomValue(QRandomGenerator &random)
{
    const QString text = randomText(random, writableLetters(), 12);
    switch (random.bounded(14)) {
    case 0:
        return static_cast<int>(random.generate());
    case 1:
        return random.bounded(2) == 1;
    case 2:
        return static_cast<float>(random.bounded(1000.0) - 500.0);
    case 3:
        return random.bounded(1000.0) - 500.0;
    case 4:
        return text.toLatin1();
    case 5:
        return QStringList{text, randomText(random, writableLetters(), 5)};
    case 6:
        return QStringList{text};
    case 7:
        return QVariantList{random.bounded(9), text, 2.5F};
    case 8:
        return QRect(1, -2, 3, 4);
    case 9:
        return QSize(3, 4);
    case 10:
        return QPoint(-3, 4);
    case 11:
        return QDateTime(QDate(2020, 2, 3), QTime(4, 5, 6), Qt::UTC);
    case 12:
        return random.generate64();
    default:
        return text;
    }
}

/// Whether QSettings would read it as one line.
bool standsByItself(const QByteArray &text)
{
    bool isQuoted = false;
    for (int position = 0; position < text.size(); ++position) {
        if (text.at(position) == '\\') {
            if (++position == text.size())
                return false;
        } else if (text.at(position) == '"') {
            isQuoted = !isQuoted;
        }
    }
    return !isQuoted;
}

} // namespace

/// The text of the settings file, beside what QSettings makes of the same.
class SettingsTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { flash::clean(); }
    void writesValuesLikeQSettings_data();
    void writesValuesLikeQSettings();
    void writesRandomValuesLikeQSettings();
    void readsRandomValuesLikeQSettings();
    void readsSerializedValues_data();
    void readsSerializedValues();
    void readsAValueThatEndsInABackslash();
    void readsEveryEscape();
    void namesLikeQSettings();
    void savesLikeQSettings();
    void keepsCommentsAndOrder();
    void tellsWhetherItReadsBack_data();
    void tellsWhetherItReadsBack();
    void leavesOutDamagedLines_data();
    void leavesOutDamagedLines();
    void knowsGroupsByTheirKeys_data();
    void knowsGroupsByTheirKeys();
    void randomChanges();
};

void SettingsTextTest::writesValuesLikeQSettings_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("invalid") << QVariant();
    QTest::newRow("empty text") << QVariant(QString());
    QTest::newRow("text like a list") << QVariant(QStringLiteral("1, 2"));
    QTest::newRow("text like a value") << QVariant(QStringLiteral("@Size(1 2)"));
    QTest::newRow("text like another value") << QVariant(QStringLiteral("@@"));
    QTest::newRow("text with blanks") << QVariant(QStringLiteral("  two  "));
    QTest::newRow("zero and digit") << QVariant(QString(QChar(0)) + QStringLiteral("1f"));
    QTest::newRow("no elements") << QVariant(QStringList());
    QTest::newRow("one element") << QVariant(QStringList(QStringLiteral("1")));
    QTest::newRow("one empty element") << QVariant(QStringList(QString()));
    QTest::newRow("one number in a list") << QVariant(QVariantList{1});
    QTest::newRow("empty bytes") << QVariant(QByteArray());
    QTest::newRow("bytes") << QVariant(QByteArray("\0\1\xff\x7f\"", 5));
    QTest::newRow("gain") << QVariant(3.7F);
    QTest::newRow("no number") << QVariant(qQNaN());
    QTest::newRow("letter") << QVariant(QChar(0x20ac));
    QTest::newRow("local time") << QVariant(QDateTime(QDate(2020, 2, 3), QTime(4, 5, 6)));
    QTest::newRow("date") << QVariant(QDate(2020, 2, 3));
    QTest::newRow("map") << QVariant(QVariantMap{{QStringLiteral("a"), 1}});
}

void SettingsTextTest::writesValuesLikeQSettings()
{
    QFETCH(QVariant, value);
    {
        QSettings settings(file, QSettings::IniFormat);
        settings.setValue(QStringLiteral("Group/key"), value);
    }
    SettingsText text;
    text.setValue(QStringLiteral("Group/key"), value);
    QCOMPARE(text.bytes(), content());
}

void SettingsTextTest::writesRandomValuesLikeQSettings()
{
    QRandomGenerator random(1);
    SettingsText text;
    {
        QSettings settings(file, QSettings::IniFormat);
        for (int number = 0; number < 2000; ++number) {
            const QVariant value = randomValue(random);
            settings.setValue(QStringLiteral("Group/") + keyOf(number), value);
            text.setValue(QStringLiteral("Group/") + keyOf(number), value);
        }
    }
    const QByteArrayList expected = content().split('\n');
    const QByteArrayList actual = text.bytes().split('\n');
    QCOMPARE(actual.size(), expected.size());
    for (int line = 0; line < expected.size(); ++line)
        QCOMPARE(actual.at(line), expected.at(line));
    QCOMPARE(SettingsText(text.bytes()).damagedLines(), 0);
}

void SettingsTextTest::readsRandomValuesLikeQSettings()
{
    QRandomGenerator random(2);
    const QString letters = QStringLiteral("aF017 =,,\"\"\\\\\\@()xnt\t;.-\u00e4");
    QByteArrayList values;
    QByteArray lines = "[Group]\n";
    while (values.size() < 5000) {
        const QByteArray value = randomText(random, letters, 14).toLatin1();
        if (!standsByItself(value))
            continue;
        lines += keyOf(values.size()).toLatin1() + '=' + value + '\n';
        values.append(value);
    }
    flash::setContent(lines, QStringLiteral("compared.ini"));
    const QSettings settings(file, QSettings::IniFormat);
    const SettingsText text(lines);
    QCOMPARE(text.bytes(), lines);
    for (int number = 0; number < values.size(); ++number) {
        const QString path = QStringLiteral("Group/") + keyOf(number);
        const QVariant expected = settings.value(path);
        const QVariant actual = text.value(path, QStringLiteral("none"));
        QVERIFY2(actual == expected && actual.userType() == expected.userType(), values.at(number).constData());
    }
}

void SettingsTextTest::readsSerializedValues_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("isSafe");
    const auto row = [](const char *name, const char *value, bool isSafe) { QTest::newRow(name) << QByteArray(value) << isSafe; };
    row("float", R"(@Variant(\0\0\0\x87@`\0\0))", true);
    row("float cut short", R"(@Variant(\0\0\0\x87@))", true);
    row("int", R"(@Variant(\0\0\0\x2\0\0\0\a))", true);
    row("int with more behind it", R"(@Variant(\0\0\0\x2\0\0\0\a\0\0))", true);
    row("date and time", R"(@DateTime(\0\0\0\x10\0\0\0\0\0\0%\x86\xd1\0\xe0\x39\x10\x1))", true);
    row("no type", R"(@Variant(\0\0))", true);
    row("type only", R"(@Variant(\0\0\0\x2))", true);
    row("letter", R"(@Variant(\0\0\0\a\0\x41))", true);
    row("size", "@Size(1 2)", true);
    row("point", "@Point(-3 4)", true);
    row("rectangle", "@Rect(1 2 -3 4)", true);
    row("size with a number too few", "@Size(1)", true);
    row("point with a word", "@Point(3 four)", true);
    row("list of 2 G elements", R"(@Variant(\0\0\0\t\x7f\xff\xff\xff))", false);
    row("the same in a list", R"(1, @Variant(\0\0\0\t\x7f\xff\xff\xff), 2)", false);
    row("text of 2 GB", R"(@Variant(\0\0\0\n\x7f\xff\xff\xfe))", false);
    row("bytes of 2 GB", R"(@Variant(\0\0\0\f\x7f\xff\xff\xff))", false);
    row("map of 2 G elements", R"(@Variant(\0\0\0\b\x7f\xff\xff\xff))", false);
    row("bits of 2 G", R"(@Variant(\0\0\0\r\x7f\xff\xff\xff))", false);
    row("invalid value, which has a text", R"(@Variant(\0\0\0\0\x7f\xff\xff\xfe))", false);
    row("a type of the application's", R"(@Variant(\0\0\0\x7f\x7f\xff\xff\xff))", false);
    row("a type of Qt Gui", R"(@Variant(\0\0\0@\x7f\xff\xff\xff))", false);
    row("time with a zone's name", R"(@DateTime(\0\0\0\x10\0\0\0\0\0\0%\x86\xd1\0\xe0\x39\x10\x3\x7f\xff\xff\xfe))", false);
}

void SettingsTextTest::readsSerializedValues()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, isSafe);
    const QByteArray lines = "[Volume]\n0=" + value + "\n1=7\n";
    const SettingsText text(lines);
    QCOMPARE(text.damagedLines(), isSafe ? 0 : 1);
    QCOMPARE(text.value(QStringLiteral("Volume/1"), 0).toInt(), 7);
    if (!isSafe) {
        QCOMPARE(text.value(QStringLiteral("Volume/0"), 20), QVariant(20));
        QCOMPARE(text.bytes(), QByteArray("[Volume]\n1=7\n"));
        return;
    }
    flash::setContent(lines, QStringLiteral("compared.ini"));
    QCOMPARE(text.value(QStringLiteral("Volume/0"), 20), QSettings(file, QSettings::IniFormat).value(QStringLiteral("Volume/0")));
    QCOMPARE(text.bytes(), lines);
}

/// No line of the file hands it one: there it goes on in the next line.
void SettingsTextTest::readsAValueThatEndsInABackslash()
{
    QCOMPARE(codec::decodedValue("4\\", false), std::make_optional(QVariant(QStringLiteral("4"))));
}

void SettingsTextTest::readsEveryEscape()
{
    QByteArray lines = "[Group]\n";
    for (char letter = ' '; letter < 0x7f; ++letter)
        lines += keyOf(letter).toLatin1() + "=1\\" + letter + "2z\n";
    flash::setContent(lines, QStringLiteral("compared.ini"));
    const QSettings settings(file, QSettings::IniFormat);
    const SettingsText text(lines);
    for (char letter = ' '; letter < 0x7f; ++letter) {
        const QString path = QStringLiteral("Group/") + keyOf(letter);
        QVERIFY2(text.value(path, QString()) == settings.value(path, QStringLiteral("none")), QByteArray(1, letter).constData());
    }
}

void SettingsTextTest::namesLikeQSettings()
{
    QRandomGenerator random(3);
    const QString letters = QStringLiteral("aZ09_-. %U\\[]=;,\"\u00e4\u20ac");
    for (int number = 0; number < 300; ++number) {
        const QString name = QLatin1Char('n') + randomText(random, letters, 8);
        const QString group = random.bounded(2) == 0 ? QStringLiteral("general") : QLatin1Char('g') + randomText(random, letters, 8);
        QFile::remove(file);
        {
            QSettings settings(file, QSettings::IniFormat);
            settings.beginGroup(group);
            settings.setValue(name, number);
        }
        const QString path = SettingsText::path(group, name);
        SettingsText text;
        text.setValue(path, number);
        QCOMPARE(text.bytes(), content());
        if (group != QLatin1String("general")) // which QSettings itself reads back as "General"
            QCOMPARE(SettingsText(content()).value(path, -1).toInt(), number);
    }
}

/// A file that QSettings could have written stays one, save by save.
void SettingsTextTest::savesLikeQSettings()
{
    QRandomGenerator random(4);
    SettingsText text;
    for (int save = 0; save < 400; ++save) {
        const QString group = QStringList{QString(), QStringLiteral("EQ"), QStringLiteral("Volume"), QStringLiteral("A b")}.at(random.bounded(4));
        const QString key = random.bounded(3) == 0 ? QStringLiteral("Custom%1").arg(random.bounded(16)) : QString::number(random.bounded(7));
        const QString path = SettingsText::path(group, key);
        {
            QSettings settings(file, QSettings::IniFormat);
            settings.setValue(path, save);
        }
        text = SettingsText(text.bytes());
        text.setValue(path, save);
        QCOMPARE(text.bytes(), content());
    }
}

void SettingsTextTest::keepsCommentsAndOrder()
{
    SettingsText text("; mine\r\n[Volume]\r\n  1 = 4 ; half\r\n\r\n[EQ]\nType=3\nType=4\n; end");
    text.setValue(QStringLiteral("Volume/1"), 5);
    text.setValue(QStringLiteral("EQ/Type"), 6);
    text.setValue(QStringLiteral("Volume/0"), 7);
    QCOMPARE(text.bytes(), QByteArray("; mine\r\n[Volume]\r\n0=7\n  1 =5; half\r\n\r\n[EQ]\nType=3\nType=6\n; end\n"));
    QCOMPARE(text.damagedLines(), 0);
}

void SettingsTextTest::tellsWhetherItReadsBack_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QVariant>("value"); // of Volume/0
    QTest::addColumn<bool>("readsBack");
    const QByteArray usual = "[EQ]\nType=4\n\n[Volume]\n0=1\n1=2\n";
    QTest::newRow("number") << usual << QVariant(20) << true;
    QTest::newRow("gain") << usual << QVariant(3.7F) << true;
    QTest::newRow("text with marks") << usual << QVariant(QStringLiteral("a;b=\"c\"\\\n")) << true;
    QTest::newRow("text of the longest line") << usual << QVariant(QString(65534, QLatin1Char('a'))) << true;
    QTest::newRow("longer text") << usual << QVariant(QString(65535, QLatin1Char('a'))) << false;
    QTest::newRow("value that is not read") << usual << QVariant(QVariantMap{{QStringLiteral("a"), 1}}) << false;
    QTest::newRow("line with blanks and a comment") << QByteArray("[Volume]\n 0 = 1 ; half\n") << QVariant(2) << true;
    QTest::newRow("damage elsewhere") << QByteArray(usual + "2\n") << QVariant(20) << false;
}

/// A save that knows spares the next reader the work.
void SettingsTextTest::tellsWhetherItReadsBack()
{
    QFETCH(QByteArray, before);
    QFETCH(QVariant, value);
    QFETCH(bool, readsBack);
    SettingsText text(before);
    text.setValue(QStringLiteral("Volume/0"), value);
    QCOMPARE(text.readsBack(), readsBack);
    const SettingsText again(text.bytes());
    if (readsBack) {
        QCOMPARE(again.bytes(), text.bytes());
        QCOMPARE(again.damagedLines(), 0);
    }
    text.setValue(QStringLiteral("Volume/0"), 21);
    QCOMPARE(text.readsBack(), readsBack); // what is not known stays so until it is read
}

void SettingsTextTest::leavesOutDamagedLines_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("left");
    QTest::addColumn<int>("count");
    const auto row = [](const char *name, const QByteArray &content, const QByteArray &left, int count) { QTest::newRow(name) << content << left << count; };
    row("nothing", "", "", 0);
    row("quotation mark not closed", "[EQ]\nType=\"4\nCustom0=1\n", "[EQ]\nCustom0=1\n", 1);
    row("goes on in the next line", "[EQ]\nType=4\\\nCustom0=1\n", "[EQ]\nCustom0=1\n", 1);
    row("no equals sign", "[EQ]\nType\nCustom0=1\n", "[EQ]\nCustom0=1\n", 1);
    row("no name", "[EQ]\n=4\nCustom0=1\n", "[EQ]\nCustom0=1\n", 1);
    row("a zero byte", QByteArray("[EQ]\nTy\0e=4\nCustom0=1\n", 22), "[EQ]\nCustom0=1\n", 1);
    row("a bell", "[EQ]\nType=\a\nCustom0=1\n", "[EQ]\nCustom0=1\n", 1);
    row("entry that begins like a group", "[EQ]\n[ype=4\nCustom0=1\n", "[EQ]\nCustom0=1\n", 1);
    row("no end of the last line", "[EQ]\nCustom0=1\nType=4", "[EQ]\nCustom0=1\n", 1);
    row("group not closed", "[EQ]\nType=4\n\n[Volume\n0=1\n", "[EQ]\nType=4\n\n[Volume]\n0=1\n", 1);
    row("group not opened", "[EQ]\nType=4\n\nVolume]\n0=1\n", "[EQ]\nType=4\n\n[Volume]\n0=1\n", 1);
    row("group with a damaged name", "[E\x01]\nCustom3=4\n[Vol\xffme]\n0=1\n", "[EQ]\nCustom3=4\n[Volume]\n0=1\n", 2);
    row("group with a damaged name and first entry", "[Vol\xffme]\nType=@Variant(\\0\\0\\0\\x8)\n0=1\n", "[Volume]\n0=1\n", 2);
    row("two groups, the second not opened and with a blank behind it", "[\x01\nVolume] \n0=1\n", "[%01]\n[Volume]\n0=1\n", 2);
    row("a name like a byte order mark behind damage", "Type\n\xef\xbb\xbf=\xc3\xa4\n", "\n\xef\xbb\xbf=\xc3\xa4\n", 1);
    row("a stranger's group not closed", "[EQ]\nType=4\n[Mine\nKey=1\n[Volume]\n0=1\n", "[EQ]\nType=4\n[Mine]\nKey=1\n[Volume]\n0=1\n", 1);
    row("an entry that ends like a group", "[Mine]\nempty]\nKey=1\n", "[Mine]\nKey=1\n", 1);
    row("the last line that is asked for the group's name",
        "[\x01\n" + QByteArray("; mine\n").repeated(99) + "0=1\n",
        "[Volume]\n" + QByteArray("; mine\n").repeated(99) + "0=1\n",
        1);
    row("one line behind it", "[\x01\n" + QByteArray("; mine\n").repeated(100) + "0=1\n", "[%01]\n" + QByteArray("; mine\n").repeated(100) + "0=1\n", 1);
    row("a stranger's group with letters of its own", "[M\xc3\xado]\nKey=1\n", "[M\xc3\xado]\nKey=1\n", 0);
}

void SettingsTextTest::leavesOutDamagedLines()
{
    QFETCH(QByteArray, content);
    const SettingsText text(content);
    QTEST(text.bytes(), "left");
    QTEST(text.damagedLines(), "count");
    QCOMPARE(SettingsText(text.bytes()).damagedLines(), 0);
}

void SettingsTextTest::knowsGroupsByTheirKeys_data()
{
    QTest::addColumn<QByteArray>("group");
    QTest::addColumn<QByteArray>("key");
    const auto row = [](const char *group, const QByteArray &key) { QTest::newRow(key.constData()) << QByteArray(group) << key; };
    for (int type = 0; type < 6; ++type)
        row("Volume", QByteArray::number(type));
    for (const char *key : {"VolumeMic", "Loudness", "MicType", "AutoMicGainOrig", "AutoMicGainArm", "MicDelayOrig", "MicDelayArm"})
        row("Volume", key);
    row("EQ", "Type");
    for (int band = 0; band < 16; ++band)
        row("EQ", "Custom" + QByteArray::number(band));
}

/// Of each key that the store has: where nothing else is left of the group's name, it tells the group.
void SettingsTextTest::knowsGroupsByTheirKeys()
{
    QFETCH(QByteArray, group);
    QFETCH(QByteArray, key);
    const SettingsText text("[\x01\n" + key + "=1\n");
    QCOMPARE(text.bytes(), '[' + group + "]\n" + key + "=1\n");
    QCOMPARE(text.damagedLines(), 1);
}

/// Whatever happens to one to three bytes, all keys keep their value whose line and group nobody touched, also through the next save.
/// Only a damaged line that now has the name of another key counts in its place, as the later of two lines always does.
void SettingsTextTest::randomChanges()
{
    const int changes = program::isEmulated() ? 5000 : isFast ? 100000 : 10000;
    const QByteArray whole = flash::fullSettings() + R"(Gain=@Variant(\0\0\0\x87@`\0\0))" + '\n';
    struct Entry
    {
        int start, end, groupStart, groupEnd;
        QByteArray lineStart, path, value;
    };
    std::vector<Entry> all;
    QByteArray group;
    int groupStart = 0;
    int groupEnd = 0;
    int start = 0;
    const QList<QByteArray> lines = whole.split('\n');
    for (const QByteArray &line : lines) {
        const int end = start + line.size();
        const int equals = line.indexOf('=');
        if (line.startsWith('[')) {
            group = line.mid(1, line.size() - 2);
            groupStart = start;
            groupEnd = end;
        } else if (equals > 0 && !line.startsWith("VolumeMic=")) {
            all.push_back({start, end, groupStart, groupEnd, '\n' + line.left(equals + 1), group + '/' + line.left(equals), line.mid(equals + 1)});
        }
        start = end + 1;
    }
    QRandomGenerator random(5);
    qint64 kept = 0;
    for (int change = 0; change < changes; ++change) {
        QByteArray damaged = whole;
        std::vector<int> places;
        for (int count = random.bounded(1, 4); count > 0; --count) {
            places.push_back(random.bounded(damaged.size()));
            damaged[places.back()] = static_cast<char>(random.bounded(256));
        }
        // The end of the line before counts as well: without it there is one line of two.
        const auto isTouched = [&places](int first, int last) {
            return std::any_of(places.begin(), places.end(), [first, last](int place) { return place >= first - 1 && place <= last; });
        };
        SettingsText text(damaged);
        text.setValue(QStringLiteral("Volume/VolumeMic"), 77);
        QCOMPARE(SettingsText(text.bytes()).damagedLines(), 0);
        const flash::Entries entries = flash::parse(text.bytes());
        QCOMPARE(text.value(QStringLiteral("Volume/VolumeMic"), 0).toInt(), 77);
        for (const Entry &entry : all) {
            if (isTouched(entry.start, entry.end) || isTouched(entry.groupStart, entry.groupEnd))
                continue;
            const bool isKept = entries.value(entry.path) == entry.value;
            if (!isKept && text.bytes().count(entry.lineStart) == 1)
                QFAIL(QByteArray(entry.path + " lost in " + damaged.toPercentEncoding("=[]")).constData());
            kept += isKept;
        }
    }
    qInfo("%d files with one to three changed bytes: %lld untouched keys, 0 lost", changes, kept);
}

QTEST_GUILESS_MAIN(SettingsTextTest)

#include "tst_settingstext.moc"
