#include "desk.h"
#include "windowtypes.h"

#include <QtGui/QGuiApplication>
#include <QtQml/QQmlApplicationEngine>
#include <QtQuickControls2/QQuickStyle>

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    Desk desk;
    desk.startAnew();
    registerWindowTypes(desk);
    QQmlApplicationEngine engine;
    engine.load(QUrl(QStringLiteral("qrc:/window/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;
    return QGuiApplication::exec();
}
