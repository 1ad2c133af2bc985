/*
 * Audio focus among processes: asks the focus daemon, and tells what it hears until it has lost focus for good.
 *
 *     ./bus-client music
 *
 * Needs a session bus with the focus daemon; examples/README.md tells how to get one.
 * Exit status: 0 after the loss; 1 where focus was denied, or nobody answers.
 */

#include <qzaudio/focusrequester.h>
#include <qzaudio/taviaudioserviceinterface.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusError>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusServiceWatcher>

#include <cstdio>

namespace
{

constexpr int streamType = 3; // a number of the application's own

class BusClient : public QObject
{
public:
    explicit BusClient(const QString &id)
        : m_id(id)
        , m_service(QStringLiteral("tavi.AudioService"), QStringLiteral("/tavi/AudioService"), QDBusConnection::sessionBus())
        , m_watcher(m_service.service(), m_service.connection(), QDBusServiceWatcher::WatchForUnregistration)
    {
        // Connected before the question, so that nothing which follows the grant is missed.
        connect(&m_service, &TaviAudioServiceInterface::audioFocusChanged, this, &BusClient::focusChanged);
        // A daemon that ends forgets its stack. The bus starts it anew at the next question.
        connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, &BusClient::request);
        request();
    }

private:
    Q_DISABLE_COPY(BusClient)

    static void tell(const QString &text)
    {
        std::printf("%s\n", qPrintable(text));
        std::fflush(stdout);
    }

    void request()
    {
        // Nothing blocks: the answer comes from the event loop.
        auto *const answer = new QDBusPendingCallWatcher(m_service.requestAudioFocus(streamType, AUDIOFOCUS_GAIN, m_id), this);
        connect(answer, &QDBusPendingCallWatcher::finished, this, &BusClient::answered);
    }

    void answered(QDBusPendingCallWatcher *answer)
    {
        const QDBusPendingReply<int> reply = *answer;
        answer->deleteLater();
        const bool granted = reply.isValid() && reply.value() == 0;
        if (reply.isError())
            std::fprintf(stderr, "%s\n", qPrintable(reply.error().message()));
        else
            tell(granted ? QStringLiteral("granted") : QStringLiteral("denied"));
        if (!granted)
            QCoreApplication::exit(1);
    }

    void focusChanged(int change, const QString &client)
    {
        if (client != m_id)
            return; // everybody gets the signal
        tell(FocusRequester::focusChangeToString(change));
        if (change == AUDIOFOCUS_LOSS) {
            m_service.abandonAudioFocus(m_id).waitForFinished(); // else it would be given focus again, when the other one ends
            QCoreApplication::quit();
        }
    }

    QString m_id;
    TaviAudioServiceInterface m_service;
    QDBusServiceWatcher m_watcher;
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (!QDBusConnection::sessionBus().isConnected()) { // a question would never be answered then
        std::fprintf(stderr, "%s\n", qPrintable(QDBusConnection::sessionBus().lastError().message()));
        return 1;
    }
    const BusClient client(QCoreApplication::arguments().value(1, QStringLiteral("bus-client")));
    return QCoreApplication::exec();
}
