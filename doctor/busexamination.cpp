#include "busexamination.h"

#include "childprocess.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QStringList>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusError>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusReply>

#include <algorithm>

namespace
{

constexpr char service[] = "tavi.AudioService";
constexpr char path[] = "/tavi/AudioService";
constexpr const char *policyFolders[] = {"/etc/dbus-1/system.d", "/usr/share/dbus-1/system.d"};

QString isServedFact()
{
    return QStringLiteral("served");
}

QStringList commandLineOf(uint process)
{
    QFile file(QStringLiteral("/proc/%1/cmdline").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromLocal8Bit(file.readAll().replace('\0', '\n')).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// Without an address the bus's library would start a bus of its own where there is a display.
bool hasSessionAddress()
{
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    return address.isEmpty() ? QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus")) : !address.startsWith("autolaunch:");
}

/// One bus, in a process of its own.
class Examination
{
public:
    Examination(const char *name, int patienceMs)
        : m_name(QLatin1String(name))
        , m_isSystem(m_name == QLatin1String("system"))
        , m_patienceMs(patienceMs)
    {
    }

    Findings findings()
    {
        if (!m_isSystem && !hasSessionAddress()) {
            add(Finding::Grade::Note, "bus", QStringLiteral("there is none: DBUS_SESSION_BUS_ADDRESS names none"));
            return m_findings;
        }
        const QDBusConnection bus = m_isSystem ? QDBusConnection::systemBus() : QDBusConnection::sessionBus();
        if (!bus.isConnected()) {
            add(Finding::Grade::Note, "bus", QStringLiteral("there is none: ") + bus.lastError().message());
            return m_findings;
        }
        QDBusConnectionInterface &daemon = *bus.interface();
        daemon.setTimeout(m_patienceMs);
        if (QDBusReply<QString>(daemon.serviceOwner(QLatin1String(service))).isValid()) {
            lookAtService(bus);
            return m_findings;
        }
        const QDBusReply<QStringList> names = daemon.call(QStringLiteral("ListActivatableNames"));
        if (names.value().contains(QLatin1String(service)))
            serve(Finding::Grade::Good,
                  QStringLiteral("nobody has the name %1 yet; the first call makes the bus start the daemon").arg(QLatin1String(service)));
        else
            add(Finding::Grade::Note, "service", QStringLiteral("nobody has the name %1, and the bus cannot start a daemon").arg(QLatin1String(service)));
        if (m_isSystem)
            lookAtPolicy();
        return m_findings;
    }

    Finding silent(const QString &ending) const
    {
        return {Finding::Area::Bus, Finding::Grade::Wrong, QStringLiteral("bus"), m_name + QStringLiteral(": it ") + ending, {{QStringLiteral("bus"), m_name}}};
    }

private:
    void add(Finding::Grade grade, const char *subject, const QString &text, QJsonObject facts = {})
    {
        facts.insert(QStringLiteral("bus"), m_name);
        m_findings.append({Finding::Area::Bus, grade, QLatin1String(subject), m_name + QStringLiteral(": ") + text, facts});
    }

    void serve(Finding::Grade grade, const QString &text, QJsonObject facts = {})
    {
        facts.insert(isServedFact(), true);
        add(grade, "service", text, facts);
    }

    void lookAtService(const QDBusConnection &bus)
    {
        const uint process = bus.interface()->servicePid(QLatin1String(service));
        const QStringList command = commandLineOf(process);
        const QJsonObject facts{{QStringLiteral("process"), static_cast<int>(process)}, {QStringLiteral("command"), QJsonArray::fromStringList(command)}};
        // The one question beside the service's own that its policy lets through.
        QDBusMessage question = QDBusMessage::createMethodCall(
            QLatin1String(service), QLatin1String(path), QStringLiteral("org.freedesktop.DBus.Introspectable"), QStringLiteral("Introspect"));
        question.setAutoStartService(false);
        const QDBusMessage answer = bus.call(question, QDBus::Block, m_patienceMs);
        const QString who
            = QStringLiteral("%1 is process %2 (%3)").arg(QLatin1String(service), QString::number(process), command.value(0, QStringLiteral("?")));
        if (QDBusError(answer).type() == QDBusError::AccessDenied)
            serve(Finding::Grade::Wrong, QStringLiteral("%1, and the bus's policy does not let this user call it").arg(who), facts);
        else if (answer.type() == QDBusMessage::ErrorMessage)
            serve(Finding::Grade::Wrong, QStringLiteral("%1, and does not answer: %2").arg(who, answer.errorMessage()), facts);
        else if (!command.isEmpty() && !command.contains(QLatin1String("--no-volume")))
            serve(Finding::Grade::Note, who + QStringLiteral(", without --no-volume: the first question for the volume starts up the audio once more"), facts);
        else
            serve(Finding::Grade::Good, who, facts);
    }

    /// Nobody but its owner may try whether a name can be had.
    void lookAtPolicy()
    {
        QStringList tried;
        for (const char *const folder : policyFolders) {
            const QString file = QStringLiteral("%1/%2.conf").arg(QLatin1String(folder), QLatin1String(service));
            if (QFile::exists(file)) {
                add(Finding::Grade::Good, "policy", file, {{QStringLiteral("file"), file}});
                return;
            }
            tried.append(file);
        }
        add(Finding::Grade::Note, "policy", QStringLiteral("without %1 nobody may have the name").arg(tried.join(QStringLiteral(" or "))));
    }

    QString m_name;
    bool m_isSystem;
    int m_patienceMs;
    Findings m_findings;
};

Findings examineBus(const char *name, int patienceMs)
{
    Examination examination(name, patienceMs);
    // The bus gets some time more than its daemon, so that this tells which of them is silent.
    constexpr int timesAsPatient = 2;
    const ChildProcess::Outcome outcome = ChildProcess::run(
        [&examination](const ChildProcess::Tell &tell) {
            const Findings findings = examination.findings();
            for (const Finding &finding : findings)
                tell(QJsonDocument(toJson(finding)).toJson(QJsonDocument::Compact) + '\n');
        },
        timesAsPatient * patienceMs);
    if (!outcome.isWhole)
        return {examination.silent(outcome.ending)};
    Findings findings;
    const QList<QByteArray> lines = outcome.told.trimmed().split('\n');
    for (const QByteArray &line : lines)
        findings.append(findingOf(QJsonDocument::fromJson(line).object()));
    return findings;
}

} // namespace

Findings examineBuses(int patienceMs)
{
    Findings findings = examineBus("session", patienceMs) + examineBus("system", patienceMs);
    const bool isServed = std::any_of(findings.cbegin(), findings.cend(), [](const Finding &finding) { return finding.facts.contains(isServedFact()); });
    if (!isServed) {
        findings.append({Finding::Area::Bus,
                         Finding::Grade::Wrong,
                         QStringLiteral("focus"),
                         QStringLiteral("no bus has a daemon for audio focus: each process has a focus stack of its own"),
                         {}});
    }
    return findings;
}
