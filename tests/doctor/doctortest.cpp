#include "doctortest.h"

#include <QtTest/QtTest>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <unistd.h>

namespace
{

// Of the columns in which people read.
constexpr int areaWidth = 10;
constexpr int gradeWidth = 7;
constexpr int subjectWidth = 11;

bool isIn(const QJsonObject &part, const QJsonObject &whole)
{
    for (auto fact = part.begin(); fact != part.end(); ++fact) {
        if (whole.value(fact.key()) != fact.value())
            return false;
    }
    return true;
}

} // namespace

void DoctorTest::initTestCase()
{
    struct statfs64 status = {};
    QCOMPARE(::statfs64(QFile::encodeName(QCoreApplication::applicationDirPath()).constData(), &status), 0);
    if (status.f_type == TMPFS_MAGIC)
        QSKIP("The build folder is in memory, and no flash there would be a good one");
}

void DoctorTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>(QCoreApplication::applicationDirPath() + QStringLiteral("/a unit's flash-XXXXXX"));
    QVERIFY2(m_folder->isValid(), qPrintable(m_folder->errorString()));
    qunsetenv("COLUMNS");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere");
}

void DoctorTest::cleanup()
{
    m_folder.reset();
}

program::Run DoctorTest::look(const Unit &unit, const QStringList &arguments)
{
    const QString doctor = unit.isSick ? QStringLiteral(SICK_DOCTOR) : QStringLiteral(DOCTOR);
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (auto variable = unit.environment.begin(); variable != unit.environment.end(); ++variable)
        environment.insert(variable.key(), variable.value());
    process.setProcessEnvironment(environment);
    return program::run(process, unit.before + program::commandLine(doctor, arguments));
}

void DoctorTest::finds(const Unit &unit, const QStringList &arguments, const Expected &expected)
{
    const program::Run lines = look(unit, arguments);
    const QString all = QString::number(lines.exitCode) + QLatin1Char('\n') + lines.output + lines.errors;
    QVERIFY2(lines.exitCode == expected.exitStatus, qPrintable(all));
    const QString head = expected.area.leftJustified(areaWidth) + expected.grade.leftJustified(gradeWidth) + expected.subject.leftJustified(subjectWidth);
    const QStringList found = program::lines(lines.output).filter(head).filter(expected.text);
    QVERIFY2(found.size() == 1 && found.first().startsWith(head), qPrintable(all));

    const program::Run json = look(unit, QStringList(arguments) << QStringLiteral("--json"));
    QCOMPARE(json.exitCode, expected.exitStatus);
    const QJsonObject object = QJsonDocument::fromJson(json.output.toUtf8()).object();
    QCOMPARE(object.value(QLatin1String("exitStatus")).toInt(-1), expected.exitStatus);
    int count = 0;
    const QJsonArray findings = object.value(QLatin1String("findings")).toArray();
    for (const QJsonValue &value : findings) {
        const QJsonObject finding = value.toObject();
        if (finding.value(QLatin1String("area")) == expected.area && finding.value(QLatin1String("grade")) == expected.grade
            && finding.value(QLatin1String("subject")) == expected.subject && finding.value(QLatin1String("text")).toString().contains(expected.text)
            && isIn(expected.facts, finding.value(QLatin1String("facts")).toObject()))
            ++count;
    }
    QVERIFY2(count == 1, qPrintable(json.output));
}

bool DoctorTest::write(const QString &name, const QByteArray &content) const
{
    QFile file(pathOf(name));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

bool DoctorTest::setAge(const QString &name, int seconds) const
{
    const timespec time = {::time(nullptr) - seconds, 0};
    const timespec both[] = {time, time};
    return ::utimensat(AT_FDCWD, QFile::encodeName(pathOf(name)).constData(), &both[0], 0) == 0;
}

QStringList DoctorTest::everythingThere() const
{
    QStringList all;
    QDir directory(folder());
    const QStringList names = directory.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotDot);
    for (const QString &name : names) {
        struct stat64 status = {};
        const bool isThere = ::lstat64(QFile::encodeName(pathOf(name)).constData(), &status) == 0;
        QFile file(pathOf(name));
        const QByteArray content = QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        all.append(QStringLiteral("%1 %2 inode %3 mode %4 owner %5 changed %6.%7 %8")
                       .arg(name, isThere ? QString() : QStringLiteral("gone"))
                       .arg(static_cast<quint64>(status.st_ino))
                       .arg(status.st_mode, 0, 8)
                       .arg(status.st_uid)
                       .arg(static_cast<qint64>(status.st_ctim.tv_sec))
                       .arg(static_cast<qint64>(status.st_ctim.tv_nsec))
                       .arg(QString::fromLatin1(content.toHex())));
    }
    return all;
}

QStringList DoctorTest::patient()
{
    return {QStringLiteral("--patience"), QStringLiteral("60")};
}

QStringList DoctorTest::withFlash() const
{
    return {QStringLiteral(WITH_FLASH), QStringLiteral("--dir"), folder()};
}

QStringList DoctorTest::asOrdinaryUser() const
{
    // bwrap makes what it has to above a mount for its own user only.
    const QStringList mounts{QStringLiteral("--tmpfs"), QStringLiteral("/media"), QStringLiteral("--dir"), QStringLiteral("/media/flash")};
    return QStringList{QStringLiteral("bwrap"), QStringLiteral("--dev-bind"), QStringLiteral("/"), QStringLiteral("/")} + mounts
        + QStringList{QStringLiteral("--bind"), folder(), QStringLiteral("/media/flash/nvm")} + program::asNobody();
}

QString DoctorTest::whyNoOrdinaryUser()
{
    return program::whyNobodyCannotRun(QStringLiteral(DOCTOR));
}

Expected DoctorTest::wrong(int exitStatus, const char *area, const char *subject, const QString &text, const QJsonObject &facts)
{
    return {exitStatus, QLatin1String(area), QStringLiteral("wrong"), QLatin1String(subject), text, facts};
}

Expected DoctorTest::note(const char *area, const char *subject, const QString &text, const QJsonObject &facts)
{
    return {0, QLatin1String(area), QStringLiteral("note"), QLatin1String(subject), text, facts};
}

Expected DoctorTest::good(const char *area, const char *subject, const QString &text, const QJsonObject &facts)
{
    return {0, QLatin1String(area), QStringLiteral("good"), QLatin1String(subject), text, facts};
}
