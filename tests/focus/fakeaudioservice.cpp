/*
 * A stand-in for the audio service, in a process of its own, that behaves as its scenario says:
 *
 *   fakeaudioservice ADDRESS SCENARIO
 *
 *   normal        answers every method with a value of its own
 *   dies          ends in the middle of a call
 *   late          answers when it is told to
 *   wrong-types   answers with a text where a number belongs and the other way round
 *   too-few       answers without a value
 *   error         answers with an error
 *
 * Besides "tavi.AudioService" it takes calls of the interface "fake.Control" with which the test works it:
 *
 *   calls()       every call so far: "MEMBER(SIGNATURE) ARGUMENTS"
 *   answer()      sends the answers that are due
 *   signals()     sends each signal of the interface once
 *   malformed()   sends signals with wrong arguments, then one good one
 */

#include <QtCore/QCoreApplication>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusVirtualObject>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace
{

const char path[] = "/tavi/AudioService";
const char interfaceName[] = "tavi.AudioService";

QDBusMessage signalMessage(const char *member, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createSignal(QLatin1String(path), QLatin1String(interfaceName), QLatin1String(member));
    message.setArguments(arguments);
    return message;
}

QVariantList rightAnswer(const QString &member)
{
    if (member == QLatin1String("abandonAudioFocus"))
        return {11};
    if (member == QLatin1String("currentMegaBase"))
        return {12};
    if (member == QLatin1String("getCurrentAudioFocus"))
        return {13};
    if (member == QLatin1String("requestAudioFocus"))
        return {14};
    if (member == QLatin1String("volumeLevel"))
        return {15};
    if (member == QLatin1String("isVolumeAvailable") || member == QLatin1String("isVolumeMute"))
        return {true};
    return {};
}

} // namespace

class FakeAudioService : public QDBusVirtualObject
{
    Q_OBJECT

public:
    explicit FakeAudioService(const QString &scenario)
        : m_scenario(scenario)
    {
    }

    QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.interface() == QLatin1String("fake.Control"))
            return handleControl(message, connection);
        if (message.interface() != QLatin1String(interfaceName))
            return false;
        QStringList arguments;
        const QVariantList values = message.arguments();
        for (const QVariant &value : values)
            arguments.append(value.toString());
        m_calls.append(message.member() + QLatin1Char('(') + message.signature() + QStringLiteral(") ") + arguments.join(QLatin1Char(' ')));
        if (m_scenario == QLatin1String("dies"))
            ::_exit(EXIT_SUCCESS);
        if (m_scenario == QLatin1String("late"))
            m_due.append(message);
        else
            connection.send(answerTo(message));
        return true;
    }

private:
    bool handleControl(const QDBusMessage &message, const QDBusConnection &connection)
    {
        if (message.member() == QLatin1String("calls")) {
            connection.send(message.createReply(m_calls));
            return true;
        }
        if (message.member() == QLatin1String("answer")) {
            for (const QDBusMessage &due : qAsConst(m_due))
                connection.send(due.createReply(rightAnswer(due.member())));
            m_due.clear();
        } else if (message.member() == QLatin1String("signals")) {
            connection.send(signalMessage("audioFocusChanged", {-3, QStringLiteral("music")}));
            connection.send(signalMessage("megaBaseChanged", {2}));
            connection.send(signalMessage("volumeChanged", {true, 17}));
        } else if (message.member() == QLatin1String("malformed")) {
            connection.send(signalMessage("audioFocusChanged", {}));
            connection.send(signalMessage("audioFocusChanged", {-3}));
            connection.send(signalMessage("audioFocusChanged", {QStringLiteral("music"), -3}));
            connection.send(signalMessage("megaBaseChanged", {QStringLiteral("two")}));
            connection.send(signalMessage("megaBaseChanged", {2.5}));
            connection.send(signalMessage("megaBaseChanged", {}));
            connection.send(signalMessage("volumeChanged", {17, true}));
            connection.send(signalMessage("volumeChanged", {QStringList{QStringLiteral("loud")}}));
            connection.send(signalMessage("noSuchSignal", {1}));
            connection.send(signalMessage("megaBaseChanged", {99}));
        }
        connection.send(message.createReply());
        return true;
    }

    QDBusMessage answerTo(const QDBusMessage &message) const
    {
        const QVariantList right = rightAnswer(message.member());
        if (m_scenario == QLatin1String("wrong-types")) {
            const bool isNumber = !right.isEmpty() && right.first().type() == QVariant::Int;
            return message.createReply(isNumber ? QVariant(QStringLiteral("zero")) : QVariant(2.5));
        }
        if (m_scenario == QLatin1String("too-few"))
            return message.createReply();
        if (m_scenario == QLatin1String("error"))
            return message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("not today"));
        return message.createReply(right);
    }

    QString m_scenario;
    QStringList m_calls;
    QList<QDBusMessage> m_due;
};

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return EXIT_FAILURE;
    QDBusConnection bus = QDBusConnection::connectToBus(arguments.at(1), QStringLiteral("fake"));
    FakeAudioService service(arguments.at(2));
    if (!bus.registerVirtualObject(QLatin1String(path), &service) || !bus.registerService(QLatin1String(interfaceName)))
        return EXIT_FAILURE;
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

#include "fakeaudioservice.moc"
