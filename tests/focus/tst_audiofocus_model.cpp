#include "focusmodel.h"
#include "focusstackaccess.h"

#include <logrecorder.h>
#include <program.h>
#include <qzaudio/audiomanager.h>
#include <qzaudio/iaudiofocusdispatcher.h>

#include <rapidcheck.h>

#include <QtTest/QtTest>

#include <array>
#include <memory>
#include <ostream>

namespace
{

constexpr int operationsPerCase = 500;

/// A million operations; an emulator takes thirty times as long for them.
int cases()
{
    return program::isEmulated() ? 200 : 2000;
}

/// Writing millions of lines is what would take the time.
QString quiet()
{
    return QStringLiteral("default.debug=false\ndefault.critical=false");
}

/// Includes the one that nobody takes focus from, two that differ in case only, and the empty one.
constexpr std::array<const char *, 8> clients = {"music", "Music", "prompt", "call", "radio", "", "alarm", "IN_VOICE_COMM_FOCUS_ID"};
constexpr int audiences = 3;

/// One step; what it does follows from one number, so that RapidCheck can shrink it.
struct Operation
{
    enum Kind {
        Look,
        Request,
        Abandon,
        Unregister,
        NotifyTop,
        Propagate,
        Discard,
        Dump,
    };
    Kind kind = Look;
    int client = 0;
    int hint = 0;
    int stream = 0;
    int audience = 0; // -1: none
};

Operation operationFrom(quint32 number)
{
    const auto take = [&number](quint32 range) {
        const quint32 value = number % range;
        number /= range;
        return static_cast<int>(value);
    };
    constexpr std::array<Operation::Kind, 16> kinds = {Operation::Look,
                                                       Operation::Request,
                                                       Operation::Request,
                                                       Operation::Request,
                                                       Operation::Request,
                                                       Operation::Request,
                                                       Operation::Request,
                                                       Operation::Abandon,
                                                       Operation::Abandon,
                                                       Operation::Abandon,
                                                       Operation::Unregister,
                                                       Operation::NotifyTop,
                                                       Operation::Propagate,
                                                       Operation::Discard,
                                                       Operation::Dump,
                                                       Operation::Request};
    // Mostly valid hints, now and then one from beyond each end.
    constexpr std::array<int, 16> hints = {1, 2, 3, 4, 1, 2, 3, 4, 1, 2, 3, 4, 1, 3, 0, 5};
    Operation operation;
    operation.kind = kinds[static_cast<std::size_t>(take(kinds.size()))];
    operation.client = take(clients.size());
    operation.hint = hints[static_cast<std::size_t>(take(hints.size()))];
    operation.stream = take(10);
    operation.audience = take(audiences + 1) - 1;
    return operation;
}

std::ostream &operator<<(std::ostream &stream, const Operation &operation)
{
    if (operation.kind == Operation::Look)
        return stream << '-'; // what shrinking leaves of most
    constexpr std::array<const char *, 8> names = {"-", "request", "abandon", "unregister", "notifyTop", "propagate", "discard", "dump"};
    return stream << names[static_cast<std::size_t>(operation.kind)] << '(' << clients[static_cast<std::size_t>(operation.client)] << ' ' << operation.stream
                  << ' ' << operation.hint << ' ' << operation.audience << ')';
}

rc::Gen<std::vector<Operation>> someOperations(std::size_t count)
{
    // The size that RapidCheck grows from case to case is for numbers that should begin small; these are choices.
    const auto number = rc::gen::resize(rc::kNominalSize, rc::gen::inRange<quint32>(0, 16 * 8 * 16 * 10 * (audiences + 1)));
    return rc::gen::container<std::vector<Operation>>(count, rc::gen::map(number, operationFrom));
}

const char *nameOfClient(const Operation &operation)
{
    return clients[static_cast<std::size_t>(operation.client)];
}

QString nameOfHint(int hint)
{
    switch (hint) {
    case 1:
        return QStringLiteral("GAIN");
    case 2:
        return QStringLiteral("GAIN_TRANSIENT");
    case 3:
        return QStringLiteral("GAIN_TRANSIENT_MAY_DUCK");
    case 4:
        return QStringLiteral("GAIN_TRANSIENT_EXCLUSIVE");
    case 0:
        return QStringLiteral("NONE");
    default:
        return QStringLiteral("[invalid focus change %1]").arg(hint);
    }
}

QStringList dumpOf(const FocusModel &model)
{
    constexpr std::array<const char *, 4> losses = {"NONE", "LOSS_TRANSIENT_CAN_DUCK", "LOSS_TRANSIENT", "LOSS"};
    QStringList lines;
    for (const FocusModel::Entry &entry : model.waiting) {
        lines.append(QStringLiteral("[DBG] THREAD void FocusRequester::dump() LINE --  -- client:  \"%1\" \n -- gain:  \"%2\" \n -- loss:  \"%3\""
                                    " \n -- stream:  %4")
                         .arg(QString::fromStdString(entry.client), nameOfHint(entry.hint), QLatin1String(losses[static_cast<std::size_t>(entry.hardness)]))
                         .arg(entry.stream));
    }
    return lines;
}

/// One of several receivers of the library's news, in the form of the model's.
class Audience : public IAudioFocusDispatcher
{
public:
    void dispatchAudioFocusChange(int focusChange, const QString &clientId) override { heard->push_back({number, focusChange, clientId.toStdString()}); }

    int number = 0;
    std::vector<FocusModel::News> *heard = nullptr;
};

/// The library's stack and the model, side by side.
class Comparison
{
public:
    Comparison()
    {
        int number = 0;
        for (Audience &audience : m_audiences) {
            audience.number = number++;
            audience.heard = &m_heard;
        }
    }

    void run(const Operation &operation)
    {
        const std::string client = nameOfClient(operation);
        const QString id = QString::fromStdString(client);
        switch (operation.kind) {
        case Operation::Look:
            break;
        case Operation::Request: {
            Audience *const audience = operation.audience < 0 ? nullptr : &m_audiences[static_cast<std::size_t>(operation.audience)];
            const int result = m_control.requestAudioFocus(operation.stream, operation.hint, audience, id);
            RC_ASSERT(result == (m_model.request(client, operation.stream, operation.hint, operation.audience) ? 0 : 1));
            break;
        }
        case Operation::Abandon:
            RC_ASSERT(m_control.abandonAudioFocus(id) == 0);
            m_model.leave(client, true);
            break;
        case Operation::Unregister:
            m_control.unregisterAudioFocusClient(id);
            m_model.leave(client, false);
            break;
        case Operation::NotifyTop:
            m_control.notifyTopOfAudioFocusStack();
            m_model.holderGains();
            break;
        case Operation::Propagate:
            m_control.propagateFocusLossFromGain_syncAf(operation.hint);
            m_model.everybodyLoses(operation.hint);
            break;
        case Operation::Discard:
            m_control.discardAudioFocusOwner();
            m_model.holderIsThrownOut();
            break;
        case Operation::Dump:
            compareDumps();
            break;
        }
        compare();
    }

    /// Takes the stack apart from the top, as its clients would.
    void unwind()
    {
        while (!m_model.waiting.empty()) {
            const std::string client = m_model.waiting.back().client;
            RC_ASSERT(m_control.abandonAudioFocus(QString::fromStdString(client)) == 0);
            m_model.leave(client, true);
            compare();
        }
    }

private:
    void compare()
    {
        RC_ASSERT(std::exchange(m_heard, {}) == m_model.takeNews());
        RC_ASSERT(m_control.getCurrentAudioFocus() == m_model.currentHint());
        RC_ASSERT(m_control.canReassignAudioFocus() == m_model.isTakeable());
        const QStack<FocusRequester> &entries = focusStackOf(m_control);
        RC_ASSERT(static_cast<std::size_t>(entries.size()) == m_model.waiting.size());
        for (int index = 0; index < entries.size(); ++index) {
            const FocusModel::Entry &expected = m_model.waiting[static_cast<std::size_t>(index)];
            RC_ASSERT(entries.at(index).clientId.toStdString() == expected.client);
            RC_ASSERT(entries.at(index).streamType == expected.stream);
            RC_ASSERT(entries.at(index).durationHint == expected.hint);
            RC_ASSERT(entries.at(index).focusLossReceived == FocusModel::codeOfLoss(expected.hardness));
            RC_ASSERT(entries.at(index).dispatcher == (expected.audience < 0 ? nullptr : &m_audiences[static_cast<std::size_t>(expected.audience)]));
        }
    }

    void compareDumps()
    {
        QLoggingCategory::setFilterRules(QString());
        LogRecorder log;
        m_control.dumpFocusStack();
        const QStringList lines = log.takeTexts();
        QLoggingCategory::setFilterRules(quiet());
        RC_ASSERT(lines.join(QLatin1Char('|')).toStdString() == dumpOf(m_model).join(QLatin1Char('|')).toStdString());
    }

    AudioFocusControl m_control;
    FocusModel m_model;
    std::array<Audience, audiences> m_audiences;
    std::vector<FocusModel::News> m_heard;
};

/// A client of AudioManager, in the form of the model's audience.
class Listener : public IAudioFocusChangeListener
{
public:
    void onAudioFocusChange(int focusChange) override { heard->push_back({number, focusChange, client}); }
    QString clientId() override { return QString::fromStdString(client); }

    int number = 0;
    std::string client;
    std::vector<FocusModel::News> *heard = nullptr;
};

} // namespace

class AudioFocusModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void stack();
    void manager();
};

void AudioFocusModelTest::initTestCase()
{
    // Dumps switch the lines on for themselves.
    QLoggingCategory::setFilterRules(quiet());
}

void AudioFocusModelTest::cleanupTestCase()
{
    QLoggingCategory::setFilterRules(QString());
}

void AudioFocusModelTest::stack()
{
    int count = 0;
    const bool same = rc::check("the focus stack does what the model does", [&count] {
        const auto operations = *someOperations(operationsPerCase);
        Comparison comparison;
        for (const Operation &operation : operations) {
            comparison.run(operation);
            ++count;
        }
        comparison.unwind();
    });
    qInfo("%d random operations on AudioFocusControl compared with the model", count);
    QVERIFY(same);
    QVERIFY2(count >= cases() * operationsPerCase, "fewer operations than meant");
}

void AudioFocusModelTest::manager()
{
    int count = 0;
    const bool same = rc::check("the manager tells its listeners what the model tells", [&count] {
        const auto operations = *someOperations(operationsPerCase / 5);
        std::vector<FocusModel::News> heard;
        std::array<Listener, clients.size() * audiences> listeners;
        for (std::size_t number = 0; number < listeners.size(); ++number) {
            listeners[number].number = static_cast<int>(number);
            listeners[number].client = clients[number % clients.size()];
            listeners[number].heard = &heard;
        }
        // Several listeners have the same id; the first one that asks is told, until the id abandons.
        std::array<int, clients.size()> registered;
        registered.fill(-1);
        AudioManager manager;
        FocusModel model;
        for (const Operation &operation : operations) {
            const auto client = static_cast<std::size_t>(operation.client);
            const auto number = client + clients.size() * static_cast<std::size_t>(qMax(operation.audience, 0));
            if (operation.kind == Operation::Request) {
                const bool isValid = operation.hint >= 1 && operation.hint <= 4;
                if (isValid && registered[client] < 0)
                    registered[client] = static_cast<int>(number);
                const bool granted = isValid && model.request(clients[client], operation.stream, operation.hint, 0);
                RC_ASSERT(manager.requestAudioFocus(operation.stream, operation.hint, &listeners[number]) == (granted ? 0 : 1));
            } else if (operation.kind == Operation::Abandon) {
                registered[client] = -1;
                model.leave(clients[client], true);
                RC_ASSERT(manager.abandonAudioFocus(&listeners[number]) == 0);
            }
            std::vector<FocusModel::News> expected;
            for (FocusModel::News news : model.takeNews()) {
                const auto found = std::find(clients.begin(), clients.end(), news.client);
                news.audience = registered[static_cast<std::size_t>(found - clients.begin())];
                if (news.audience >= 0)
                    expected.push_back(news);
            }
            RC_ASSERT(std::exchange(heard, {}) == expected);
            ++count;
        }
    });
    qInfo("%d random operations through AudioManager compared with the model", count);
    QVERIFY(same);
    QVERIFY2(count >= cases() * operationsPerCase / 5, "fewer operations than meant");
}

int main(int argc, char *argv[])
{
    // How many cases there are, only RapidCheck's own variable says; a seed given there to repeat a failure is kept.
    qputenv("RC_PARAMS", QByteArray::number(cases()).prepend("max_success=").append(' ').append(qgetenv("RC_PARAMS")));
    QCoreApplication application(argc, argv);
    AudioFocusModelTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_audiofocus_model.moc"
