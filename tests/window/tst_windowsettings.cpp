#include <windowsettings.h>

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

/// What the window remembers of its user.
class WindowSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsLook();
    void takesNothingElse();
};

void WindowSettingsTest::keepsLook()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("desk.ini"));
    {
        WindowSettings settings(file);
        QCOMPARE(settings.look(), QString());
        QSignalSpy changed(&settings, &WindowSettings::lookChanged);
        settings.setLook(QStringLiteral("dark"));
        settings.setLook(QStringLiteral("dark"));
        QCOMPARE(changed.size(), 1);
    }
    WindowSettings again(file);
    QCOMPARE(again.look(), QStringLiteral("dark"));
    again.setLook({});
    QCOMPARE(WindowSettings(file).look(), QString());
}

void WindowSettingsTest::takesNothingElse()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("desk.ini"));
    QFile written(file);
    QVERIFY(written.open(QIODevice::WriteOnly));
    written.write("[General]\nlook=plaid\n");
    written.close();
    WindowSettings settings(file);
    QCOMPARE(settings.look(), QString());
    settings.setLook(QStringLiteral("light"));
    settings.setLook(QStringLiteral("striped"));
    QCOMPARE(settings.look(), QString());
}

QTEST_GUILESS_MAIN(WindowSettingsTest)

#include "tst_windowsettings.moc"
