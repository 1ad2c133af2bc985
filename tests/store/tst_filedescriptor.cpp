#include <filedescriptor.h>

#include <QtTest/QtTest>

#include <fcntl.h>

using audio::FileDescriptor;

namespace
{

int openNothing()
{
    return open("/dev/null", O_RDONLY | O_CLOEXEC);
}

bool isOpen(int descriptor)
{
    return fcntl(descriptor, F_GETFD) >= 0;
}

} // namespace

class FileDescriptorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void none();
    void closes();
    void closesTheFirst();
    void closesAtItsEnd();
    void movesInto();
    void movesOnto();
    void callsAgainAfterSignals_data();
    void callsAgainAfterSignals();
};

void FileDescriptorTest::none()
{
    FileDescriptor file;
    QCOMPARE(file.number(), -1);
    QVERIFY(!file.isOpen());
    QVERIFY(file.close()); // there is nothing that could fail
}

void FileDescriptorTest::closes()
{
    const int descriptor = openNothing();
    FileDescriptor file(descriptor);
    QCOMPARE(file.number(), descriptor);
    QVERIFY(file.isOpen());
    QVERIFY(file.close());
    QVERIFY(!isOpen(descriptor));
    QCOMPARE(file.number(), -1);
    QVERIFY(file.close());

    FileDescriptor wrong(openNothing());
    ::close(wrong.number());
    QVERIFY(!wrong.close());
    QCOMPARE(errno, EBADF);
    QCOMPARE(wrong.number(), -1);
}

/// What a process without a standard input opens first has the number 0.
void FileDescriptorTest::closesTheFirst()
{
    const FileDescriptor standardInput(dup(STDIN_FILENO));
    ::close(STDIN_FILENO);
    FileDescriptor file(openNothing());
    const int number = file.number();
    const bool isOpened = file.isOpen();
    const bool isClosed = file.close() && !isOpen(STDIN_FILENO);
    dup2(standardInput.number(), STDIN_FILENO);
    QCOMPARE(number, 0);
    QVERIFY(isOpened);
    QVERIFY(isClosed);
}

void FileDescriptorTest::closesAtItsEnd()
{
    const int descriptor = openNothing();
    {
        const FileDescriptor file(descriptor);
        QVERIFY(isOpen(descriptor));
    }
    QVERIFY(!isOpen(descriptor));
}

void FileDescriptorTest::movesInto()
{
    const int descriptor = openNothing();
    {
        FileDescriptor file(descriptor);
        const FileDescriptor other(std::move(file));
        QCOMPARE(other.number(), descriptor);
        QCOMPARE(file.number(), -1); // NOLINT(bugprone-use-after-move): that it has none is what is shown
    }
    QVERIFY(!isOpen(descriptor));
}

void FileDescriptorTest::movesOnto()
{
    const int first = openNothing();
    const int second = openNothing();
    {
        FileDescriptor file(first);
        file = FileDescriptor(second);
        QCOMPARE(file.number(), second);
        QVERIFY(!isOpen(first));
    }
    QVERIFY(!isOpen(second));
}

void FileDescriptorTest::callsAgainAfterSignals_data()
{
    QTest::addColumn<int>("interruptions");
    QTest::addColumn<int>("error"); // of the calls that fail
    QTest::addColumn<int>("calls");
    QTest::addColumn<int>("result");
    QTest::newRow("none") << 0 << 0 << 1 << 7;
    QTest::newRow("one") << 1 << EINTR << 2 << 7;
    QTest::newRow("as many as are borne") << 99 << EINTR << 100 << 7;
    QTest::newRow("one more") << 100 << EINTR << 100 << -1;
    QTest::newRow("another failure") << 1 << EIO << 1 << -1;
}

void FileDescriptorTest::callsAgainAfterSignals()
{
    QFETCH(int, interruptions);
    QFETCH(int, error);
    int calls = 0;
    const int result = audio::untilNotInterrupted([&] {
        errno = error;
        return calls++ < interruptions ? -1 : 7;
    });
    QTEST(result, "result");
    QTEST(calls, "calls");
}

QTEST_GUILESS_MAIN(FileDescriptorTest)

#include "tst_filedescriptor.moc"
