#include <QtCore/QCoreApplication>
#include <QtCore/QUrl>
#include <QtQml/QQmlApplicationEngine>

/// Shows the QML file that it is given, which ends it; with 2 when it cannot be loaded.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;

    QQmlApplicationEngine engine;
    QObject::connect(
        &engine,
        &QQmlApplicationEngine::objectCreated,
        &application,
        [](const QObject *view) {
            if (!view)
                QCoreApplication::exit(2);
        },
        Qt::QueuedConnection);
    engine.load(QUrl::fromLocalFile(QString::fromLocal8Bit(argv[1])));
    return application.exec();
}
