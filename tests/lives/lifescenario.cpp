#include "lifescenario.h"

#include <algorithm>

namespace lives
{

namespace
{

QString prelude()
{
    QStringList clients;
    for (int client = 0; client < clientCount; ++client)
        clients.append(simulator::quotedText(QLatin1String(clientId(client))));
    return QStringLiteral("const clients = [%1];\n"
                          "const last = {};\n"
                          "const requestFocus = (client, streamType, durationHint) => {\n"
                          "    last[client] = new AudioFocus({clientId: clients[client], streamType: streamType, durationHint: durationHint});\n"
                          "    return last[client].request();\n"
                          "};\n"
                          "const releaseFocus = client => {\n"
                          "    if (last[client])\n"
                          "        last[client].release();\n"
                          "};\n"
                          "const endClient = releaseFocus;\n\n")
        .arg(clients.join(QLatin1String(", ")));
}

bool hasClient(const Operation &operation)
{
    return operation.what().arguments[0] == &kind::client;
}

} // namespace

QByteArray toScenario(const std::vector<Operation> &life, const QString &problem)
{
    QString text;
    if (!problem.isEmpty())
        text += QLatin1String("// ") + QString(problem).replace(QLatin1Char('\n'), QLatin1Char(' ')) + QLatin1String("\n\n");
    if (std::any_of(life.cbegin(), life.cend(), hasClient))
        text += prelude();
    for (const Operation &operation : life)
        text += operation.toText() + QLatin1String(";\n");
    return text.toUtf8();
}

} // namespace lives
