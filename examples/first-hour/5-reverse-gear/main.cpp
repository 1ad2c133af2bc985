#include "player.h"

#include <QtGui/QGuiApplication>
#include <QtQml/QQmlApplicationEngine>

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    qmlRegisterSingletonType<Player>("Player", 1, 0, "Player", [](QQmlEngine *, QJSEngine *) -> QObject * { return new Player; });
    QQmlApplicationEngine engine(QUrl(QStringLiteral("qrc:/player.qml")));
    const QStringList furtherWindows = QGuiApplication::arguments().mid(1);
    for (const QString &file : furtherWindows)
        engine.load(file);
    return engine.rootObjects().size() == 1 + furtherWindows.size() ? QGuiApplication::exec() : 1;
}
