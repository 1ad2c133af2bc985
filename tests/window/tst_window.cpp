// Drives the desk window as a user does, with its real car behind it: tst_*.qml beside this file.

#include <desk.h>
#include <windowtypes.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtCore/QUrl>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>
#include <QtQuickControls2/QQuickStyle>
#include <QtQuickTest/QtQuickTest>

#include <memory>

/// What the tests need of the machine.
class Machine : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE QUrl file(const QString &name) const { return QUrl::fromLocalFile(m_folder.filePath(name)); }
    Q_INVOKABLE QString read(const QUrl &url) const
    {
        QFile file(url.toLocalFile());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    Q_INVOKABLE bool write(const QUrl &url, const QString &text) const
    {
        QFile file(url.toLocalFile());
        return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0;
    }
    /// What "qzaudio-bench play" says of a scenario, or does with other arguments.
    Q_INVOKABLE QString bench(const QStringList &arguments) const
    {
        QProcess process;
        process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/qzaudio-bench"), arguments);
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError());
    }

private:
    const QTemporaryDir m_folder;
};

class WindowSetup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void applicationAvailable()
    {
        QStandardPaths::setTestModeEnabled(true);
        QQuickStyle::setStyle(QStringLiteral("Fusion"));
    }
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        m_desk = std::make_unique<Desk>();
        registerWindowTypes(*m_desk);
        engine->rootContext()->setContextProperty(QStringLiteral("machine"), &m_machine);
    }
    void cleanupTestCase() { m_desk.reset(); }

private:
    std::unique_ptr<Desk> m_desk;
    Machine m_machine;
};

QUICK_TEST_MAIN_WITH_SETUP(window, WindowSetup)

#include "tst_window.moc"
