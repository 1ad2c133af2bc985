#include "focusmodel.h"

#include "scriptnames.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>

#include <algorithm>

namespace
{

struct Hint
{
    int number;
    const char *meaning;
};

constexpr Hint hintTable[] = {
    {AUDIOFOCUS_GAIN, "for good: the others lose focus for good"},
    {AUDIOFOCUS_GAIN_TRANSIENT, "for a while: the others pause"},
    {AUDIOFOCUS_GAIN_TRANSIENT_MAY_DUCK, "for a while: the others may go on, quieter"},
    {AUDIOFOCUS_GAIN_TRANSIENT_EXCLUSIVE, "for a while, with nothing else: the others pause"},
};

constexpr int usualStreamType = 3;

/// A text as it stands in a script.
QString quoted(const QString &text)
{
    const QString list = QString::fromUtf8(QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact));
    return list.mid(1, list.size() - 2);
}

/// "music is told LossTransient, radio is told Loss", or that nobody is.
QString toldText(const QVector<FocusInspector::Told> &told)
{
    QStringList texts;
    for (const FocusInspector::Told &one : told)
        texts.append(QStringLiteral("%1 is told %2").arg(one.clientId, FocusInspector::changeName(one.change)));
    return texts.isEmpty() ? QStringLiteral("nobody is told anything") : texts.join(QStringLiteral(", "));
}

} // namespace

FocusModel::FocusModel(QObject *parent)
    : RoomModel(parent)
{
}

QVariantList FocusModel::hints() const
{
    QVariantList list;
    for (const Hint &hint : hintTable) {
        list.append(QVariantMap{{QStringLiteral("number"), hint.number},
                                {QStringLiteral("name"), FocusInspector::changeName(hint.number)},
                                {QStringLiteral("meaning"), QString::fromLatin1(hint.meaning)}});
    }
    return list;
}

QStringList FocusModel::clientIds() const
{
    QStringList ids;
    const FocusInspector::Stack &stack = m_stack.stack();
    for (auto entry = stack.crbegin(); entry != stack.crend(); ++entry)
        ids.append(entry->clientId);
    for (const ClientList::Client &client : m_clients.clients())
        ids.append(client.clientId);
    ids.removeDuplicates();
    return ids;
}

void FocusModel::setNextClient(const QString &clientId)
{
    if (m_nextClient == clientId)
        return;
    m_nextClient = clientId;
    Q_EMIT forecastChanged();
}

void FocusModel::setNextHint(int hint)
{
    if (m_nextHint == hint)
        return;
    m_nextHint = hint;
    Q_EMIT forecastChanged();
}

FocusInspector::Outcome FocusModel::next() const
{
    return FocusInspector::afterRequest(m_stack.stack(), m_nextClient, m_nextHint, usualStreamType);
}

bool FocusModel::isNextGranted() const
{
    return next().granted;
}

QString FocusModel::nextText() const
{
    const FocusInspector::Outcome outcome = next();
    if (!outcome.granted)
        return QStringLiteral("Denied: nobody can take focus from voice communication.");
    return QStringLiteral("Granted; %1.").arg(toldText(outcome.told));
}

QVariantList FocusModel::nextLosses() const
{
    const FocusInspector::Outcome outcome = next();
    QVariantList list;
    const FocusInspector::Stack &stack = m_stack.stack();
    for (auto entry = stack.crbegin(); entry != stack.crend(); ++entry) {
        const auto after = std::find_if(
            outcome.stack.cbegin(), outcome.stack.cend(), [entry](const FocusRequester &candidate) { return candidate.clientId == entry->clientId; });
        const bool isTold
            = std::any_of(outcome.told.cbegin(), outcome.told.cend(), [entry](const FocusInspector::Told &told) { return told.clientId == entry->clientId; });
        list.append(QVariantMap{{QStringLiteral("clientId"), entry->clientId},
                                {QStringLiteral("told"), isTold},
                                {QStringLiteral("lossName"), FocusInspector::changeName(after->focusLossReceived)}});
    }
    return list;
}

QString FocusModel::releaseText() const
{
    const FocusInspector::Stack &stack = m_stack.stack();
    if (stack.isEmpty())
        return QStringLiteral("Nobody holds focus.");
    const QString holder = stack.constLast().clientId;
    return QStringLiteral("When %1 releases focus, %2.").arg(holder, toldText(FocusInspector::afterRelease(stack, holder).told));
}

QStringList FocusModel::performed(const QString &line)
{
    if (Desk *const car = desk())
        car->perform(line);
    return {line};
}

QString FocusModel::variableOf(int row) const
{
    return row >= 0 && row < m_clients.count() ? m_clients.clients().at(row).variable : QString();
}

/// Like the id, as far as it can be: no name of the language, of scenarios or of anything that a step so far has written.
QString FocusModel::newVariable(const QString &clientId) const
{
    static const QRegularExpression unfit(QStringLiteral("[^A-Za-z0-9_]+"));
    QString name = clientId;
    name.replace(unfit, QStringLiteral("_"));
    if (name.isEmpty() || name == QLatin1String("_") || name.at(0).isDigit())
        name.prepend(QStringLiteral("client"));
    QStringList steps;
    if (const Desk *const car = desk()) {
        for (const Recording::Step &step : car->recording()->steps())
            steps.append(step.line);
    }
    const auto isTaken = [this, &steps](const QString &candidate) {
        const QRegularExpression word(QStringLiteral("\\b%1\\b").arg(candidate));
        return m_ownVariables.contains(candidate) || scriptnames::isTaken(candidate)
            || std::any_of(m_clients.clients().cbegin(),
                           m_clients.clients().cend(),
                           [&candidate](const ClientList::Client &client) { return client.variable == candidate; })
            || std::any_of(steps.cbegin(), steps.cend(), [&word](const QString &line) { return line.contains(word); });
    };
    QString candidate = name;
    for (int number = 2; isTaken(candidate); ++number)
        candidate = QStringLiteral("%1%2").arg(name).arg(number);
    return candidate;
}

QStringList FocusModel::addClient(const QString &clientId, int hint, int streamType)
{
    if (clientId.isEmpty())
        return {};
    const QString variable = newVariable(clientId);
    m_ownVariables.append(variable);
    QStringList properties = {QStringLiteral("clientId: ") + quoted(clientId)};
    if (streamType != usualStreamType)
        properties.append(QStringLiteral("streamType: %1").arg(streamType));
    properties.append(QStringLiteral("durationHint: ") + FocusInspector::changeScript(hint));
    return performed(QStringLiteral("var %1 = new AudioFocus({%2});").arg(variable, properties.join(QStringLiteral(", "))));
}

QStringList FocusModel::request(int row)
{
    const QString variable = variableOf(row);
    return variable.isEmpty() ? QStringList() : performed(variable + QStringLiteral(".request();"));
}

QStringList FocusModel::release(int row)
{
    const QString variable = variableOf(row);
    return variable.isEmpty() ? QStringList() : performed(variable + QStringLiteral(".release();"));
}

QStringList FocusModel::setHint(int row, int hint)
{
    const QString variable = variableOf(row);
    return variable.isEmpty() ? QStringList() : performed(QStringLiteral("%1.durationHint = %2;").arg(variable, FocusInspector::changeScript(hint)));
}

void FocusModel::update(const QVariantMap &snapshot)
{
    const QVariantMap focus = snapshot.value(QStringLiteral("focus")).toMap();
    const QStringList idsBefore = clientIds();
    const QVariantList stackBefore = m_stack.entries();
    m_stack.setEntries(focus.value(QStringLiteral("stack")).toList());
    m_clients.update(focus.value(QStringLiteral("clients")).toList());
    if (clientIds() != idsBefore)
        Q_EMIT clientIdsChanged();
    if (m_stack.entries() != stackBefore)
        Q_EMIT forecastChanged();
}
