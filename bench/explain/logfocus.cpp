#include "logfocus.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <iterator>

using LogLines::Id;

namespace
{

/// More processes with focus of their own, and clients of one, than a unit has; ids are longer in no unit either.
constexpr int mostStacks = 64;
constexpr int mostClients = 256;
constexpr int longestId = 255;
/// ms within which a request has taken its older one off the stack and told those who lose focus by it.
constexpr qint64 requestTime = 100;
/// ms within which the daemon has granted a call focus and found out whom it is from.
constexpr qint64 callTime = 1000;

/// The client whose focus nobody takes.
constexpr char callId[] = "IN_VOICE_COMM_FOCUS_ID";

QString quoted(const QString &text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QString clientOf(const LogLine &line, int index)
{
    return line.text(index).left(longestId);
}

QString whenText(const LogFrame &frame)
{
    return frame.time.clock == LogTime::Clock::None ? QStringLiteral("line %1").arg(frame.line) : LogTime::toText(frame.time);
}

} // namespace

bool LogFocus::isOfFocus(Id id)
{
    constexpr Id ids[] = {
        Id::FocusListenerThrew,
        Id::FocusHintInvalid,
        Id::FocusServiceTells,
        Id::FocusRequestInvalid,
        Id::FocusGained,
        Id::FocusLost,
        Id::FocusDumped,
        Id::FocusDumpBegins,
        Id::FocusEntryRemoved,
        Id::ServiceCallBegins,
        Id::ServiceCallEnds,
        Id::ServiceSays,
    };
    return std::find(std::begin(ids), std::end(ids), id) != std::end(ids);
}

std::optional<FocusChange> LogFocus::add(const LogLine &line, const LogFrame &frame, qint64 time)
{
    if (line.id() == Id::FocusServiceTells)
        return {};
    Stack &stack = stackOf(line, frame);
    const QString when = whenText(frame);
    FocusChange change = stack.origin;
    change.time = time;
    change.line = frame.line;
    change.moment = frame.time;
    const bool isOfRequest = stack.removed && time - stack.lastTime <= requestTime;
    if (line.id() != Id::FocusLost || !isOfRequest)
        stack.removed.reset();
    const bool isDump = line.id() == Id::FocusDumped || line.id() == Id::FocusDumpBegins;
    stack.isDumped = stack.isDumped && isDump;

    switch (line.id()) {
    case Id::FocusGained:
        change.client = clientOf(line, 1);
        regain(stack, change, when);
        break;
    case Id::FocusLost:
        change.client = clientOf(line, 1);
        lose(stack, change, line.text(0), when);
        break;
    case Id::FocusEntryRemoved:
        stack.removed = clientOf(line, 0);
        forget(stack, *stack.removed);
        change.text = QStringLiteral("%1 is removed from the stack, or asks again").arg(quoted(*stack.removed));
        break;
    case Id::FocusHintInvalid:
        change.text = QStringLiteral("a request with an invalid hint is denied");
        break;
    case Id::FocusRequestInvalid:
        change.text = QStringLiteral("an invalid request, %1").arg(line.number(0));
        break;
    case Id::FocusListenerThrew:
        change.text = QStringLiteral("the listener of %1 threw an exception, too").arg(quoted(line.text(0)));
        break;
    case Id::FocusDumped:
        dump(stack, line.text(2) == QLatin1String("NONE") ? clientOf(line, 0) : QString(), when);
        change.text = QStringLiteral("on the stack: %1 with %2, lost %3, stream %4").arg(quoted(line.text(0)), line.text(1), line.text(2)).arg(line.number(3));
        break;
    case Id::FocusDumpBegins:
        dump(stack, clientOf(line, 0), when);
        change.text = QStringLiteral("on the stack: %1").arg(quoted(line.text(0)));
        break;
    case Id::ServiceCallBegins:
        change.text = QStringLiteral("a call has focus, from %1").arg(line.text(0));
        beginCall(stack, change, when);
        break;
    case Id::ServiceCallEnds:
        endCall(stack);
        change.text = QStringLiteral("the call has no focus any more, from %1").arg(line.text(0));
        break;
    default:
        change.text = QStringLiteral("the service says: %1").arg(line.text(0));
        break;
    }
    stack.lastTime = time;
    change.text = told(change.text, stack);
    return change;
}

LogFocus::Stack &LogFocus::stackOf(const LogLine &line, const LogFrame &frame)
{
    // The daemon's own lines say no thread: they are of who wrote last.
    if (frame.process != LogFrame::unknown)
        m_lastKey = frame.process;
    else if (line.thread != LogLine::unknown)
        m_lastKey = line.thread;
    auto stack = m_stacks.find(m_lastKey);
    if (stack != m_stacks.end())
        return *stack;
    if (m_stacks.size() >= mostStacks) {
        const auto oldest
            = std::min_element(m_stacks.begin(), m_stacks.end(), [](const Stack &one, const Stack &other) { return one.lastTime < other.lastTime; });
        m_stacks.erase(oldest);
    }
    m_areSeveral = !m_stacks.isEmpty();
    stack = m_stacks.insert(m_lastKey, {});
    stack->writer = frame.writer(line.thread);
    stack->origin.process = frame.process != LogFrame::unknown ? frame.process : line.thread;
    stack->origin.program = QString::fromUtf8(frame.program.data(), int(frame.program.size()));
    return *stack;
}

/// A loss that becomes a longer one says nothing of who has focus: the one who has it may have asked for it in another way.
void LogFocus::lose(Stack &stack, FocusChange &change, const QString &loss, const QString &when)
{
    change.kind = FocusChange::Kind::Lost;
    const auto known = std::find_if(stack.waiting.begin(), stack.waiting.end(), [&change](const Waiting &one) { return one.client == change.client; });
    if (known != stack.waiting.end()) {
        known->loss = loss;
        change.text = QStringLiteral("%1, which is without focus already, loses it: %2").arg(quoted(change.client), loss);
        return;
    }
    const std::optional<QString> taker = stack.removed != change.client ? stack.removed : std::nullopt;
    change.text = taker ? QStringLiteral("%1 loses focus to %2, which asked again: %3").arg(quoted(change.client), quoted(*taker), loss)
                        : QStringLiteral("%1 loses focus: %2").arg(quoted(change.client), loss);
    const std::optional<Holder> before = stack.holder;
    if (before && before->client.value_or(change.client) == change.client) {
        change.text += QStringLiteral("; it had it since %1").arg(before->since);
        if (!before->from.isEmpty())
            change.text += QStringLiteral(", from %1").arg(before->from);
    }
    stack.holder = Holder{taker, when, quoted(change.client), change.time};
    if (stack.waiting.size() < mostClients)
        stack.waiting.append({change.client, loss, when});
}

void LogFocus::regain(Stack &stack, FocusChange &change, const QString &when)
{
    change.kind = FocusChange::Kind::Regained;
    change.text = QStringLiteral("%1 has focus again").arg(quoted(change.client));
    if (stack.holder && stack.holder->client && *stack.holder->client != change.client)
        change.text += QStringLiteral("; %1 gave it back").arg(quoted(*stack.holder->client));
    forget(stack, change.client);
    stack.holder = Holder{change.client, when, {}, change.time};
}

void LogFocus::beginCall(Stack &stack, FocusChange &change, const QString &when)
{
    const QString call = QLatin1String(&callId[0]);
    forget(stack, call);
    const bool hasTaken = stack.holder && !stack.holder->client && change.time - stack.holder->time <= callTime;
    if (!hasTaken) {
        stack.holder = Holder{call, when, {}, change.time};
        return;
    }
    stack.holder->client = call;
    if (!stack.holder->from.isEmpty())
        change.text += QStringLiteral("; taken from %1").arg(stack.holder->from);
}

void LogFocus::endCall(Stack &stack)
{
    const QString call = QLatin1String(&callId[0]);
    forget(stack, call);
    if (stack.holder && stack.holder->client == call)
        stack.holder.reset();
}

/// The stack is dumped from its bottom: the last one has focus.
void LogFocus::dump(Stack &stack, const QString &client, const QString &when)
{
    const bool isWaiting = std::any_of(stack.waiting.cbegin(), stack.waiting.cend(), [&client](const Waiting &one) { return one.client == client; });
    if (client.isNull() || isWaiting)
        return;
    if (!stack.holder)
        stack.holder = Holder{client, when, {}, 0};
    else if (!stack.holder->client || stack.isDumped)
        stack.holder->client = client;
    stack.isDumped = true;
}

void LogFocus::forget(Stack &stack, const QString &client)
{
    const auto end = std::remove_if(stack.waiting.begin(), stack.waiting.end(), [&client](const Waiting &one) { return one.client == client; });
    stack.waiting.erase(end, stack.waiting.end());
}

QVector<FocusChange> LogFocus::finish(qint64 time)
{
    QVector<FocusChange> changes;
    QList<qint64> keys = m_stacks.keys();
    std::sort(keys.begin(), keys.end());
    for (const qint64 key : qAsConst(keys))
        changes += endOf(m_stacks.value(key), time);
    m_stacks.clear();
    m_areSeveral = false;
    return changes;
}

QVector<FocusChange> LogFocus::finish(qint64 process, qint64 time)
{
    const auto stack = m_stacks.find(process);
    if (stack == m_stacks.end())
        return {};
    const QVector<FocusChange> changes = endOf(*stack, time);
    m_stacks.erase(stack);
    return changes;
}

QVector<FocusChange> LogFocus::endOf(const Stack &stack, qint64 time) const
{
    QVector<FocusChange> changes;
    const auto tell = [&](const QString &text) {
        FocusChange change = stack.origin;
        change.kind = FocusChange::Kind::InTheEnd;
        change.text = told(text, stack);
        change.time = time;
        changes.append(change);
    };
    if (stack.holder) {
        const Holder &holder = *stack.holder;
        const QString who = holder.client ? quoted(*holder.client) : QStringLiteral("somebody unknown");
        tell(holder.from.isEmpty() ? QStringLiteral("in the end %1 has focus, since %2").arg(who, holder.since)
                                   : QStringLiteral("in the end %1 has focus, taken from %2 (%3) and never given back").arg(who, holder.from, holder.since));
    }
    QStringList waiting;
    for (const Waiting &one : stack.waiting)
        waiting.append(QStringLiteral("%1 since %2 (%3)").arg(quoted(one.client), one.since, one.loss));
    if (!waiting.isEmpty())
        tell(QStringLiteral("in the end without focus: %1").arg(waiting.join(QStringLiteral(", "))));
    return changes;
}

QString LogFocus::told(const QString &text, const Stack &stack) const
{
    return m_areSeveral && !stack.writer.isEmpty() ? QStringLiteral("%1, in %2").arg(text, stack.writer) : text;
}
