#include "focuswalk.h"

#include <qzaudio/audiolisteners.h>

#include <QtCore/QRegularExpression>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace
{

struct Request
{
    const char *client;
    int hint;
};

struct Stack
{
    const char *name;
    Request requests[2];
};

constexpr const char *voice = "IN_VOICE_COMM_FOCUS_ID";

constexpr Stack stacks[] = {
    {"empty stack", {{"", 0}, {"", 0}}},
    {"music below navi", {{"music", 1}, {"navi", 3}}},
    {"phone below music", {{"phone", 2}, {"music", 1}}},
    {"music below voice communication", {{"music", 1}, {voice, 2}}},
};

QString text(const char *name)
{
    return QString::fromLatin1(name);
}

FocusOperation request(FocusLevel level, const char *client, int hint)
{
    const QString id = text(client);
    return {level, QStringLiteral("requestAudioFocus"), QStringLiteral("%1, %2").arg(id).arg(hint), id, [id, hint](FocusWorld &world) {
                return QVariant(world.request(id, hint));
            }};
}

FocusOperation abandon(FocusLevel level, const char *client)
{
    const QString id = text(client);
    return {level, QStringLiteral("abandonAudioFocus"), id, level == FocusLevel::Manager ? id : QString(), [id](FocusWorld &world) {
                return QVariant(world.abandon(id));
            }};
}

template<typename Call>
FocusOperation other(FocusLevel level, const char *name, const char *arguments, Call call)
{
    return {level, text(name), text(arguments), QString(), [call](FocusWorld &world) -> QVariant {
                if constexpr (std::is_void_v<std::invoke_result_t<Call, FocusWorld &>>) {
                    call(world);
                    return {};
                } else {
                    return int(call(world));
                }
            }};
}

void addControlCalls(QVector<FocusOperation> &all)
{
    constexpr FocusLevel level = FocusLevel::Control;
    all += other(level, "unregisterAudioFocusClient", "navi", [](FocusWorld &world) { world.control.unregisterAudioFocusClient(text("navi")); });
    all += other(level, "unregisterAudioFocusClient", "music", [](FocusWorld &world) { world.control.unregisterAudioFocusClient(text("music")); });
    all += other(level, "getCurrentAudioFocus", "", [](FocusWorld &world) { return world.control.getCurrentAudioFocus(); });
    all += other(level, "canReassignAudioFocus", "", [](FocusWorld &world) { return world.control.canReassignAudioFocus(); });
    all += other(level, "notifyTopOfAudioFocusStack", "", [](FocusWorld &world) { world.control.notifyTopOfAudioFocusStack(); });
    all += other(level, "removeFocusStackEntry", "navi, true", [](FocusWorld &world) { world.control.removeFocusStackEntry(text("navi"), true); });
    all += other(level, "propagateFocusLossFromGain_syncAf", "1", [](FocusWorld &world) { world.control.propagateFocusLossFromGain_syncAf(1); });
    all += other(level, "discardAudioFocusOwner", "", [](FocusWorld &world) { world.control.discardAudioFocusOwner(); });
    all += other(level, "dumpFocusStack", "", [](FocusWorld &world) { world.control.dumpFocusStack(); });
}

void addServiceCalls(QVector<FocusOperation> &all)
{
    constexpr FocusLevel level = FocusLevel::Service;
    all += other(level, "unregisterAudioFocusClient", "navi", [](FocusWorld &world) { world.service.unregisterAudioFocusClient(text("navi")); });
    all += other(level, "getCurrentAudioFocus", "", [](FocusWorld &world) { return world.service.getCurrentAudioFocus(); });
    all += other(level, "dispatchAudioFocusChange", "-1, music", [](FocusWorld &world) { world.service.dispatchAudioFocusChange(-1, text("music")); });
}

class MegaBaseListener : public IMegaBaseChangeListener
{
public:
    void onMegaBaseChange(int) override { }
};

class VolumeListener : public IVolumeListener
{
public:
    ~VolumeListener() override = default;
};

void addManagerCalls(QVector<FocusOperation> &all)
{
    constexpr FocusLevel level = FocusLevel::Manager;
    all += other(level, "requestMegaBase", "a listener", [](FocusWorld &world) {
        MegaBaseListener listener;
        world.manager.requestMegaBase(&listener);
        world.manager.abandonMegaBase(&listener);
    });
    all += other(level, "abandonMegaBase", "null", [](FocusWorld &world) { world.manager.abandonMegaBase(nullptr); });
    all += other(level, "requestVolume", "a listener", [](FocusWorld &world) {
        VolumeListener listener;
        world.manager.requestVolume(&listener);
        world.manager.abandonVolume(&listener);
    });
    all += other(level, "abandonVolume", "null", [](FocusWorld &world) { world.manager.abandonVolume(nullptr); });
    all += other(level, "setReason", "5", [](FocusWorld &world) { world.manager.setReason(5); });
    all += other(level, "reason", "", [](FocusWorld &world) { return world.manager.reason(); });
    all += other(level, "nextMegaBase", "", [](FocusWorld &world) { world.manager.nextMegaBase(); });
}

// What a fault changes ----------------------------------------------------------------------------------------------------------

/// Nobody is told in the client's name. The stack keeps it all the same, and remembers its loss; a null listener is the client without a name.
FocusRun withoutClient(const FocusOperation &operation, FocusRun run, const QString &client)
{
    const QString end = QLatin1Char(' ') + client;
    QStringList told;
    for (const QString &change : qAsConst(run.told)) {
        if (operation.level != FocusLevel::Service && !change.endsWith(end))
            told += change;
    }
    run.told = told;
    if (operation.level == FocusLevel::Control) {
        const QRegularExpression dispatching(QStringLiteral(" dispatching .* to .*\"%1\"$").arg(client));
        QStringList lines;
        for (const QString &line : qAsConst(run.lines)) {
            if (!dispatching.match(line).hasMatch())
                lines += line;
        }
        run.lines = lines;
    } else if (operation.level == FocusLevel::Manager) {
        run.lines.replaceInStrings(QLatin1Char('"') + client + QLatin1Char('"'), QStringLiteral("\"\""));
        run.stack.replaceInStrings(QRegularExpression(QLatin1Char('^') + client + QLatin1Char(' ')), QStringLiteral(" "));
    }
    return run;
}

QString compare(const char *what, const QStringList &seen, const QStringList &expected)
{
    return seen == expected
        ? QString()
        : QStringLiteral("%1\n    %2\ninstead of\n    %3").arg(QLatin1String(what), seen.join(QLatin1String("; ")), expected.join(QLatin1String("; ")));
}

QString differenceOf(const FocusRun &seen, const FocusRun &expected)
{
    QString found = compare("told is", seen.told, expected.told);
    if (found.isEmpty())
        found = compare("the stack is", seen.stack, expected.stack);
    if (found.isEmpty())
        found = compare("the lines are", seen.lines, expected.lines);
    if (found.isEmpty() && seen.result != expected.result)
        found = QStringLiteral("the result is %1 instead of %2").arg(seen.result.toString(), expected.result.toString());
    if (found.isEmpty() && seen.callbacks != expected.callbacks)
        found = QStringLiteral("%1 callbacks instead of %2").arg(seen.callbacks).arg(expected.callbacks);
    return found;
}

struct Pair
{
    FocusRun first;
    FocusRun next; ///< the same call again
};

Pair observe(const FocusOperation &operation, const Stack &stack, const FocusFault &fault)
{
    FocusWorld world(operation.level, fault);
    for (const Request &request : stack.requests) {
        if (request.hint != 0)
            world.request(text(request.client), request.hint);
    }
    Pair seen;
    seen.first = world.run(operation.call);
    seen.next = world.run(operation.call);
    return seen;
}

int countOf(const QStringList &told, const QString &client)
{
    return told.filter(QRegularExpression(QLatin1Char(' ') + client + QLatin1Char('$'))).size();
}

FocusRun expectationOf(const FocusOperation &operation, FocusRun run, const FocusFault &fault)
{
    if (fault.way == FocusFault::NobodyThere)
        return withoutClient(operation, run, fault.client);
    run.callbacks = fault.way == FocusFault::CallsBack ? countOf(run.told, fault.client) : 0;
    return run;
}

/// Everybody who is told, and who the call hands over.
QVector<FocusFault> faultsOf(const FocusOperation &operation, const Pair &smooth)
{
    QStringList clients;
    const QStringList told = smooth.first.told + smooth.next.told;
    for (const QString &change : told)
        clients += change.section(QLatin1Char(' '), 1);
    clients.removeDuplicates();
    QVector<FocusFault> faults;
    for (const QString &client : qAsConst(clients))
        faults.append({FocusFault::CallsBack, client});
    const QString &caller = operation.caller;
    if (operation.level != FocusLevel::Service && !caller.isEmpty() && !clients.contains(caller))
        clients += caller;
    for (const QString &client : qAsConst(clients))
        faults.append({FocusFault::NobodyThere, client});
    return faults;
}

/// The same number from the dispatches in the log, and what the call hands over.
int countCases(const FocusOperation &operation, const Pair &smooth)
{
    QSet<QString> told;
    const QRegularExpression dispatch(QStringLiteral(" (?:dispatching|dispathing) .* to .*\"(.*)\"$"));
    const QStringList lines = smooth.first.lines + smooth.next.lines;
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = dispatch.match(line);
        if (match.hasMatch())
            told.insert(match.captured(1));
    }
    const bool handsOver = operation.level != FocusLevel::Service && !operation.caller.isEmpty();
    return 2 * told.size() + (handsOver && !told.contains(operation.caller) ? 1 : 0);
}

} // namespace

QString FocusOperation::className() const
{
    switch (level) {
    case FocusLevel::Control:
        return QStringLiteral("AudioFocusControl");
    case FocusLevel::Service:
        return QStringLiteral("AudioService");
    case FocusLevel::Manager:
        break;
    }
    return QStringLiteral("AudioManager");
}

QString FocusOperation::text() const
{
    return className() + QLatin1Char('.') + name + QLatin1Char('(') + arguments + QLatin1Char(')');
}

QVector<FocusOperation> focusOperations()
{
    QVector<FocusOperation> all;
    for (const FocusLevel level : {FocusLevel::Control, FocusLevel::Service, FocusLevel::Manager}) {
        for (const int hint : {1, 2, 3, 4})
            all += request(level, "navi", hint);
        all += request(level, "radio", 1);
        all += abandon(level, "navi");
        all += abandon(level, "music");
        all += abandon(level, voice);
    }
    all += request(FocusLevel::Manager, "navi", 5);
    addControlCalls(all);
    addServiceCalls(all);
    addManagerCalls(all);
    return all;
}

FocusWalk walkFocus(const FocusOperation &operation)
{
    FocusWalk walk;
    for (const Stack &stack : stacks) {
        const Pair smooth = observe(operation, stack, {});
        walk.existing += countCases(operation, smooth);
        const QVector<FocusFault> faults = faultsOf(operation, smooth);
        for (const FocusFault &fault : faults) {
            const Pair seen = observe(operation, stack, fault);
            ++walk.cases;
            QString found = differenceOf(seen.first, expectationOf(operation, smooth.first, fault));
            if (found.isEmpty())
                found = differenceOf(seen.next, expectationOf(operation, smooth.next, fault));
            if (!found.isEmpty())
                walk.failures += QStringLiteral("%1, %2; %3:\n    %4").arg(operation.text(), QLatin1String(stack.name), fault.describe(), found);
        }
    }
    return walk;
}

bool nullListenerStops(const std::function<void(AudioManager &)> &call)
{
    const pid_t process = ::fork();
    if (process == 0) {
        const rlimit none = {0, 0};
        ::setrlimit(RLIMIT_CORE, &none);
        std::signal(SIGABRT, SIG_DFL); // the test's own handler would tell its stack
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        AudioManager manager;
        call(manager);
        ::_exit(0);
    }
    int status = 0;
    return ::waitpid(process, &status, 0) == process && WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
}
