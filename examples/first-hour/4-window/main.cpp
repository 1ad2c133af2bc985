#include "player.h"

#include <QtGui/QGuiApplication>
#include <QtQml/QQmlApplicationEngine>

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    qmlRegisterSingletonType<Player>("Player", 1, 0, "Player", [](QQmlEngine *, QJSEngine *) -> QObject * { return new Player; });
    const QQmlApplicationEngine engine(QUrl(QStringLiteral("qrc:/player.qml")));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
