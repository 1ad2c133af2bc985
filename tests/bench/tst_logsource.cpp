#include <explain/logsource.h>
#include <program.h>

#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

class LogSourceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesAreSplit_data();
    void linesAreSplit();
    void aLongLineIsCut();
    void aLogMayBeCompressed_data();
    void aLogMayBeCompressed();
    void whatCannotBeReadIsTold_data();
    void whatCannotBeReadIsTold();
    void aDamagedArchiveIsTold();
    void aLogIsFollowed();
    void aReplacedLogIsFollowed();
    void anEmptiedLogIsFollowed();

private:
    QString write(const QByteArray &text, const char *name = "log");
    static QByteArrayList linesOf(LogSource &source);

    QTemporaryDir folder;
};

QString LogSourceTest::write(const QByteArray &text, const char *name)
{
    QFile file(folder.filePath(QLatin1String(name)));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("no file can be written");
    return file.fileName();
}

QByteArrayList LogSourceTest::linesOf(LogSource &source)
{
    QByteArrayList lines;
    std::string_view line;
    while (source.next(line) == LogSource::Next::Line)
        lines.append(QByteArray(line.data(), int(line.size())));
    return lines;
}

void LogSourceTest::linesAreSplit_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArrayList>("lines");

    const QByteArrayList two{"one", "two"};
    QTest::newRow("LF") << QByteArray("one\ntwo\n") << two;
    QTest::newRow("CRLF") << QByteArray("one\r\ntwo\r\n") << two;
    QTest::newRow("without an end") << QByteArray("one\ntwo") << two;
    QTest::newRow("empty lines") << QByteArray("\none\n\n") << QByteArrayList{"", "one", ""};
    QTest::newRow("nothing") << QByteArray() << QByteArrayList();
    QTest::newRow("zero bytes and others") << QByteArray("o\0\xff\ntwo", 7) << QByteArrayList{QByteArray("o\0\xff", 3), "two"};
    QTest::newRow("one long line") << QByteArray(int(LogSource::longestLine), 'a') + "\nb" << QByteArrayList{QByteArray(int(LogSource::longestLine), 'a'), "b"};
    QByteArray many;
    QByteArrayList lines;
    constexpr int count = 20000;
    for (int i = 0; i < count; ++i) {
        lines.append(QByteArray::number(i) + QByteArray(i % 97, '.'));
        // A builder of strings would reserve the exact size each time, and so copy all of it.
        many.append(lines.last()).append('\n');
    }
    QTest::newRow("more than the buffer holds") << many << lines;
}

void LogSourceTest::linesAreSplit()
{
    QFETCH(const QByteArray, text);
    LogSource source;
    QCOMPARE(source.open(write(text), false), QString());
    QTEST(linesOf(source), "lines");
    QCOMPARE(source.bytes(), quint64(text.size()));
    QCOMPARE(source.failure(), QString());
}

void LogSourceTest::aLongLineIsCut()
{
    LogSource source;
    constexpr int size = 10 * int(LogSource::longestLine) + 5;
    QCOMPARE(source.open(write("one\n" + QByteArray(size, 'a') + "\ntwo\n"), false), QString());
    std::string_view line;
    QCOMPARE(source.next(line), LogSource::Next::Line);
    QVERIFY(!source.wasCut());
    QCOMPARE(source.next(line), LogSource::Next::Line);
    QVERIFY(source.wasCut());
    QCOMPARE(line.size(), LogSource::longestLine);
    QCOMPARE(source.lineNumber(), quint64(2));
    QCOMPARE(source.next(line), LogSource::Next::Line);
    QCOMPARE(line, std::string_view("two"));
    QCOMPARE(source.lineNumber(), quint64(3));
    QVERIFY(!source.wasCut());
    QCOMPARE(source.next(line), LogSource::Next::End);
}

void LogSourceTest::aLogMayBeCompressed_data()
{
    QTest::addColumn<QString>("tool");
    for (const char *const tool : {"gzip", "xz", "zstd"})
        QTest::newRow(tool) << QString::fromLatin1(tool);
}

void LogSourceTest::aLogMayBeCompressed()
{
    QFETCH(const QString, tool);
    const QString compressor = QStandardPaths::findExecutable(tool);
    if (compressor.isEmpty())
        QSKIP("the tool is not installed");
    if (program::isEmulated())
        QSKIP("an emulator runs one program only");
    QByteArray text;
    constexpr int count = 50000;
    for (int i = 0; i < count; ++i)
        text.append("line ").append(QByteArray::number(i)).append('\n');
    QProcess process;
    process.setStandardInputFile(write(text));
    process.start(compressor, {QStringLiteral("-c")});
    QVERIFY(process.waitForFinished());
    LogSource source;
    QCOMPARE(source.open(write(process.readAllStandardOutput(), "packed"), false), QString());
    const QByteArrayList lines = linesOf(source);
    QCOMPARE(lines.size(), count);
    QCOMPARE(lines.last(), QByteArray("line 49999"));
    QCOMPARE(source.failure(), QString());
}

void LogSourceTest::whatCannotBeReadIsTold_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("problem");

    QTest::newRow("a folder") << folder.path() << QStringLiteral("this is a folder");
    QTest::newRow("no file") << folder.filePath(QStringLiteral("none")) << QStringLiteral("No such file or directory");
}

void LogSourceTest::whatCannotBeReadIsTold()
{
    QFETCH(const QString, file);
    LogSource source;
    QTEST(source.open(file, false), "problem");
}

void LogSourceTest::aDamagedArchiveIsTold()
{
    if (program::isEmulated())
        QSKIP("an emulator runs one program only");
    LogSource source;
    QCOMPARE(source.open(write(QByteArray("\x1f\x8b\x08 and nothing of the kind")), false), QString());
    QCOMPARE(linesOf(source), QByteArrayList());
    QVERIFY2(source.failure().contains(QLatin1String("gzip")), qPrintable(source.failure()));
}

void LogSourceTest::aLogIsFollowed()
{
    QFile file(write("one\ntw"));
    LogSource source;
    QCOMPARE(source.open(file.fileName(), true), QString());
    QCOMPARE(linesOf(source), QByteArrayList{"one"});
    QVERIFY(file.open(QIODevice::Append));
    file.write("o\n");
    file.flush();
    QCOMPARE(linesOf(source), QByteArrayList{"two"});
    QVERIFY(source.takeNotes().empty());
}

void LogSourceTest::aReplacedLogIsFollowed()
{
    const QString name = write("one\ntw");
    LogSource source;
    QCOMPARE(source.open(name, true), QString());
    QCOMPARE(linesOf(source), QByteArrayList{"one"});
    QVERIFY(QFile::rename(name, name + QStringLiteral(".1")));
    QCOMPARE(linesOf(source), QByteArrayList());
    write("three\n");
    QCOMPARE(linesOf(source), (QByteArrayList{"tw", "three"}));
    const auto notes = source.takeNotes();
    QCOMPARE(notes.size(), std::size_t(1));
    QCOMPARE(notes.front().text, QStringLiteral("the log goes on in a new file"));
}

void LogSourceTest::anEmptiedLogIsFollowed()
{
    const QString name = write("one\ntwo\n");
    LogSource source;
    QCOMPARE(source.open(name, true), QString());
    QCOMPARE(linesOf(source), (QByteArrayList{"one", "two"}));
    write("3\n");
    QCOMPARE(linesOf(source), QByteArrayList{"3"});
    QCOMPARE(source.takeNotes().front().text, QStringLiteral("the log was emptied and begins anew"));
}

QTEST_GUILESS_MAIN(LogSourceTest)
#include "tst_logsource.moc"
