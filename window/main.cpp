#include "desk.h"
#include "windowtypes.h"

#include <QtQml/QQmlApplicationEngine>
#include <QtQuickControls2/QQuickStyle>
#include <QtWidgets/QApplication>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    Desk desk;
    registerWindowTypes(desk);
    QQmlApplicationEngine engine;
    engine.load(QUrl(QStringLiteral("qrc:/window/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;
    return QApplication::exec();
}
