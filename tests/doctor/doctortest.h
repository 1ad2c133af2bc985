#ifndef DOCTORTEST_H
#define DOCTORTEST_H

#include <program.h>

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <memory>

/// The unit that the doctor looks at.
struct Unit
{
    QStringList before; ///< words in front of the program's command line; empty: tools/with-flash with the test's own folder
    QMap<QString, QString> environment; ///< beside the test's
    bool isSick = false; ///< with the platform and fsync() of sickunit.cpp
};

/// What the doctor has to find there, in its lines and in its JSON object.
struct Expected
{
    int exitStatus;
    QString area;
    QString grade;
    QString subject;
    QString text; ///< is part of what is told
    QJsonObject facts; ///< are among the facts
};
Q_DECLARE_METATYPE(Unit)
Q_DECLARE_METATYPE(Expected)

/// Tests that run the program itself. Each test function has a flash of its own on the build's disk, and no bus.
class DoctorTest : public QObject
{
    Q_OBJECT

protected:
    /// As the test function was set up; a test of the doctor's lines.
    static program::Run look(const Unit &unit, const QStringList &arguments = {});
    /// Looks twice, with lines and with --json.
    static void finds(const Unit &unit, const QStringList &arguments, const Expected &expected);

    /// The folder that stands at /media/flash/nvm.
    QString folder() const { return m_folder->path(); }
    QString pathOf(const QString &name) const { return m_folder->filePath(name); }
    bool write(const QString &name, const QByteArray &content) const;
    bool setAge(const QString &name, int seconds) const;
    /// Names, sizes, times, owners, modes and content of all that is there, and of the folder.
    QStringList everythingThere() const;

    /// Arguments for what does not hang, on a machine that may be busy.
    static QStringList patient();
    /// tools/with-flash on folder().
    QStringList withFlash() const;
    /// The words in front of a command of an ordinary user's, who may enter the folders above folder().
    QStringList asOrdinaryUser() const;
    /// Why nothing can be run as an ordinary user; empty where it can.
    static QString whyNoOrdinaryUser();

    static Expected wrong(int exitStatus, const char *area, const char *subject, const QString &text, const QJsonObject &facts = {});
    static Expected note(const char *area, const char *subject, const QString &text, const QJsonObject &facts = {});
    static Expected good(const char *area, const char *subject, const QString &text, const QJsonObject &facts = {});

protected Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

#endif
