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
    return QStringLiteral(
               "const clients = [%1].map(id => new AudioFocus({clientId: id}));\n"
               "const focus = client => clients[client];\n"
               "const endClient = client => focus(client).release();\n\n")
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
