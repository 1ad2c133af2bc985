#include <startoptions.h>

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

/// The command line of the window.
class StartOptionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void understood_data();
    void understood();
    void refused_data();
    void refused();

private:
    QString write(const QString &name, const QByteArray &text)
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("no file could be written");
        return file.fileName();
    }
    static StartOptions parse(const QStringList &arguments) { return StartOptions::parse(QStringList{QStringLiteral("qzaudio-desk")} + arguments); }

    QTemporaryDir m_folder;
    QString m_drive;
    QString m_log;
};

void StartOptionsTest::initTestCase()
{
    m_drive = write(QStringLiteral("a drive.js"), "powerOn();\n");
    m_log = write(QStringLiteral("unit.log"), QByteArray("\0log", 4));
}

void StartOptionsTest::understood_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("expected"); // file, room, look

    const auto row = [](const char *name, const QStringList &arguments, const QString &file, const char *room, const char *look) {
        QTest::newRow(name) << arguments << QStringList{file, QString::fromLatin1(room), QString::fromLatin1(look)};
    };
    row("nothing", {}, {}, "", "");
    row("scenario", {m_drive}, m_drive, "", "");
    row("log, of any bytes", {m_log}, m_log, "", "");
    row("room", {QStringLiteral("--room"), QStringLiteral("Tone")}, {}, "Tone", "");
    row("dark", {QStringLiteral("--dark")}, {}, "", "dark");
    row("light, with a scenario", {m_drive, QStringLiteral("--light")}, m_drive, "", "light");
}

void StartOptionsTest::understood()
{
    QFETCH(const QStringList, arguments);
    const StartOptions options = parse(arguments);
    QCOMPARE(options.problem, QString());
    const QStringList found{options.file, options.room, options.look};
    QTEST(found, "expected");
}

void StartOptionsTest::refused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("problem");

    const QString binary = write(QStringLiteral("binary.js"), QByteArray(10, '\0'));
    QTest::newRow("option that there is none of") << QStringList{QStringLiteral("--flashy")} << QStringLiteral("Unknown option 'flashy'");
    QTest::newRow("room without a name") << QStringList{QStringLiteral("--room")} << QStringLiteral("Missing value after '--room'");
    QTest::newRow("two files") << QStringList{m_drive, m_log} << QStringLiteral("one file at a time, not 2");
    QTest::newRow("two looks") << QStringList{QStringLiteral("--dark"), QStringLiteral("--light")} << QStringLiteral("--dark and --light exclude each other");
    QTest::newRow("no text") << QStringList{binary} << QStringLiteral("\"%1\": is no scenario: it is no text").arg(binary);
    QTest::newRow("folder") << QStringList{m_folder.path()} << QStringLiteral("\"%1\": is a folder").arg(m_folder.path());
    QTest::newRow("no such file") << QStringList{QStringLiteral("none.js")} << QStringLiteral("\"none.js\": No such file or directory");
}

void StartOptionsTest::refused()
{
    QFETCH(const QStringList, arguments);
    QTEST(parse(arguments).problem, "problem");
}

QTEST_GUILESS_MAIN(StartOptionsTest)

#include "tst_startoptions.moc"
