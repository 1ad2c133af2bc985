#include <qzaudio/taviaudioserviceinterface.h>

TaviAudioServiceInterface::TaviAudioServiceInterface(const QString &service, const QString &path, const QDBusConnection &connection, QObject *parent)
    : QDBusAbstractInterface(service, path, staticInterfaceName(), connection, parent)
{
}

TaviAudioServiceInterface::~TaviAudioServiceInterface() = default;
