/*
 * A settings page: equalizer, fade and balance.
 *
 *     qzaudio-with-flash --dir flash ./settings-page
 *
 * The folder "flash" keeps the settings for the next start.
 */

#include "soundsettings.h"

#include <QtGui/QGuiApplication>
#include <QtQml/QQmlApplicationEngine>

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    qmlRegisterSingletonType<SoundSettings>("Sound", 1, 0, "SoundSettings", [](QQmlEngine *, QJSEngine *) -> QObject * { return new SoundSettings; });
    const QQmlApplicationEngine engine(QUrl(QStringLiteral("qrc:/page.qml")));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
