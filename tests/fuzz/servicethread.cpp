#include "servicethread.h"

#include "audioserviceadaptor.h"
#include "focusservice.h"
#include "options.h"
#include "receivelimits.h"

#include <QtDBus/QDBusConnection>

ServiceThread::ServiceThread(const QString &busAddress)
    : m_address(busAddress)
{
    start();
    m_ready.acquire();
}

ServiceThread::~ServiceThread()
{
    quit();
    wait();
}

void ServiceThread::run()
{
    const QString name = QStringLiteral("fuzzed service");
    {
        QDBusConnection bus = QDBusConnection::connectToBus(m_address, name);
        const Options options;
        FocusService service(bus, options);
        new AudioServiceAdaptor(&service); // a child
        if (!liftReceiveLimits(bus) || !bus.registerObject(options.path, &service) || !bus.registerService(options.name))
            qFatal("there is no service at %s", qUtf8Printable(m_address));
        m_ready.release();
        exec();
        service.stop();
    }
    QDBusConnection::disconnectFromBus(name);
}
