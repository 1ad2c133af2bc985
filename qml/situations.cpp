#include "situations.h"

#include "nearestname.h"
#include "policynames.h"
#include "qmlaudiopolicy.h"
#include "qmlplatform.h"
#include "scriptcall.h"

#include <qzaudio/audiotypes.h>

#include <QtQml/QQmlEngine>
#include <QtQml/qqml.h>

#include <algorithm>
#include <iterator>

namespace
{

/// An argument of an operation, and how a scenario writes it.
struct Argument
{
    enum Form {
        None,
        Number,
        Truth,
        Status,
        Channel,
        ChannelAfterCall,
    };

    Form form = None;
    int value = 0;
};

/// One call, "AudioPolicy.cpDuckAudio(0, 20);". A scenario's own function has no object.
struct Step
{
    const char *object;
    const char *operation;
    Argument first = {};
    Argument second = {};
};

struct Situation
{
    const char *name;
    const char *title;
    const char *group;
    Situations::Phase phase;
    const char *explanation;
    Step steps[2];
};

constexpr const char *policyName = "AudioPolicy";
constexpr const char *platformName = "Platform";
constexpr const char *switchOff = "powerOff";
constexpr const char *switchOn = "powerOn";

constexpr Step channelBecomes(int channel)
{
    return {policyName, "updateAudioChannel", {Argument::Channel, channel}};
}
constexpr Step statusBecomes(int status)
{
    return {policyName, "updateAudioStatus", {Argument::Status, status}};
}
constexpr Step policyCall(const char *operation, Argument first = {}, Argument second = {})
{
    return {policyName, operation, first, second};
}
constexpr Argument zero = {Argument::Number, 0};
/// The level that a telephone asks for; the policy only logs it.
constexpr Argument duckedLevel = {Argument::Number, 20};

constexpr Situation situations[] = {
    {"callComes",
     "A call comes",
     "Telephone",
     Situations::Begins,
     "The Bluetooth ringtone plays, at the ring volume.",
     {channelBecomes(AudioChannelBtRingtone), statusBecomes(AudioStatusBtPhoneRing)}},
    {"callAnswered",
     "Answer",
     "Telephone",
     Situations::Continues,
     "The Bluetooth telephone plays, at the telephony volume.",
     {channelBecomes(AudioChannelBtPhone), statusBecomes(AudioStatusBtPhoneTelephony)}},
    {"callEnds",
     "Hang up",
     "Telephone",
     Situations::Ends,
     "What played before the call is back, at the media volume.",
     {policyCall("updateAudioChannel", {Argument::ChannelAfterCall}), statusBecomes(AudioStatusNone)}},
    {"carPlayPromptBegins",
     "Prompt begins",
     "CarPlay",
     Situations::Begins,
     "The main audio is ducked at once; it gets the prompts' volume 1000 ms later, unless the prompt ends before.",
     {policyCall("cpDuckAudio", zero, duckedLevel)}},
    {"carPlayPromptEnds",
     "Prompt ends",
     "CarPlay",
     Situations::Ends,
     "The main audio is back after 500 ms without another prompt.",
     {policyCall("cpUnduckAudio", zero)}},
    {"androidAutoPromptBegins",
     "Prompt begins",
     "Android Auto",
     Situations::Begins,
     "The main audio is ducked and Android Auto has the prompts' volume, at once.",
     {policyCall("aaDuckAudio", zero, zero)}},
    {"androidAutoPromptEnds",
     "Prompt ends",
     "Android Auto",
     Situations::Ends,
     "Android Auto has the media volume and the main audio is back, at once.",
     {policyCall("aaUnduckAudio", zero)}},
    {"carLifePromptBegins",
     "Prompt begins",
     "CarLife",
     Situations::Begins,
     "The main audio is ducked and CarLife has the prompts' volume, at once.",
     {policyCall("clDuckAudio", zero, zero)}},
    {"carLifePromptEnds",
     "Prompt ends",
     "CarLife",
     Situations::Ends,
     "CarLife has the media volume and the main audio is back, at once.",
     {policyCall("clUnduckAudio", zero)}},
    {"reverseIn",
     "Into reverse",
     "Reverse gear",
     Situations::Begins,
     "As a prompt of CarPlay: ducked at once, with the prompts' volume 1000 ms later.",
     {{platformName, "setReverseGear", {Argument::Truth, true}}}},
    {"reverseOut",
     "Out of reverse",
     "Reverse gear",
     Situations::Ends,
     "The main audio is back after 500 ms.",
     {{platformName, "setReverseGear", {Argument::Truth, false}}}},
    {"ignitionOn", "Ignition on", "Ignition", Situations::Begins, "The audio starts up with what is stored.", {{"", switchOn}}},
    {"ignitionOff", "Ignition off", "Ignition", Situations::Ends, "What was not stored is lost.", {{"", switchOff}}},
};

const Situation *find(const QString &name)
{
    const auto *const found
        = std::find_if(std::begin(situations), std::end(situations), [&name](const Situation &candidate) { return name == QLatin1String(candidate.name); });
    return found == std::end(situations) ? nullptr : found;
}

void throwNameError(const Situations *callee, const QString &name)
{
    QStringList known;
    for (const Situation &situation : situations)
        known.append(QString::fromLatin1(situation.name));
    QString message = QStringLiteral("there is no situation \"%1\"").arg(name);
    const QString nearest = nearestName(name, known);
    if (!nearest.isEmpty())
        message += QStringLiteral("; the nearest is \"%1\"").arg(nearest);
    throwScriptError(callee, QJSValue::RangeError, message);
}

bool isOf(const Step &step, const char *object)
{
    return QLatin1String(step.object) == QLatin1String(object);
}

bool isPerformable(const Situation &situation)
{
    return QLatin1String(situation.steps[0].operation) != QLatin1String(switchOff);
}

/// A number by its name, where it has one.
template<std::size_t count>
QString named(const char *prefix, const policynames::Number (&numbers)[count], int number)
{
    if (number < 0 || number >= int(count))
        return QString::number(number);
    return QLatin1String(policyName) + QLatin1Char('.') + QLatin1String(prefix) + QLatin1String(numbers[number].name);
}

QString argumentText(const Argument &argument, int channelAfterCall)
{
    switch (argument.form) {
    case Argument::None:
        break;
    case Argument::Number:
        return QString::number(argument.value);
    case Argument::Truth:
        return argument.value ? QStringLiteral("true") : QStringLiteral("false");
    case Argument::Status:
        return named("Status", policynames::statuses, argument.value);
    case Argument::Channel:
        return named("Channel", policynames::channels, argument.value);
    case Argument::ChannelAfterCall:
        return named("Channel", policynames::channels, channelAfterCall);
    }
    return {};
}

QJSValue argumentValue(const Argument &argument, int channelAfterCall)
{
    switch (argument.form) {
    case Argument::Truth:
        return {argument.value != 0};
    case Argument::ChannelAfterCall:
        return {channelAfterCall};
    default:
        return {argument.value};
    }
}

QString lineOf(const Step &step, int channelAfterCall)
{
    QStringList arguments;
    for (const Argument &argument : {step.first, step.second}) {
        if (argument.form != Argument::None)
            arguments.append(argumentText(argument, channelAfterCall));
    }
    const QString object = QLatin1String(step.object);
    return QStringLiteral("%1%2(%3);")
        .arg(object.isEmpty() ? object : object + QLatin1Char('.'), QLatin1String(step.operation), arguments.join(QStringLiteral(", ")));
}

/// Calls an operation by its name: the object may be the class of another module's plugin.
void call(QObject &object, const Step &step, int channelAfterCall)
{
    const QJSValue first = argumentValue(step.first, channelAfterCall);
    const QJSValue second = argumentValue(step.second, channelAfterCall);
    const bool isDone = QMetaObject::invokeMethod(&object,
                                                  step.operation,
                                                  Qt::DirectConnection,
                                                  step.first.form == Argument::None ? QGenericArgument() : Q_ARG(QJSValue, first),
                                                  step.second.form == Argument::None ? QGenericArgument() : Q_ARG(QJSValue, second));
    Q_ASSERT(isDone);
    Q_UNUSED(isDone)
}

} // namespace

Situations::Situations(QObject *parent)
    : QAbstractListModel(parent)
{
}

void Situations::setChannelAfterCall(int channel)
{
    if (m_channelAfterCall == channel)
        return;
    m_channelAfterCall = channel;
    Q_EMIT channelAfterCallChanged();
    Q_EMIT dataChanged(index(0), index(rowCount() - 1), {LinesRole});
}

bool Situations::isChannelOfCall(int channel)
{
    return channel == AudioChannelBtRingtone || channel == AudioChannelBtPhone;
}

QObject &Situations::policy()
{
    QQmlEngine *const engine = qmlEngine(this);
    const int type = engine ? qmlTypeId("QzAudio", 1, 0, policyName) : -1;
    if (type >= 0) {
        if (auto *const shared = engine->singletonInstance<QObject *>(type))
            return *shared;
    }
    if (!m_ownPolicy)
        m_ownPolicy = new QmlAudioPolicy(this);
    return *m_ownPolicy;
}

bool Situations::perform(const QString &name)
{
    const Situation *const situation = find(name);
    if (!situation) {
        throwNameError(this, name);
        return false;
    }
    if (!isPerformable(*situation)) {
        throwScriptError(this, QJSValue::GenericError, QStringLiteral("%1: the audio of this process is on as long as the process runs").arg(name));
        return false;
    }
    // Asking for the channel also makes the manager, which is the ignition's part and what reverse gear arrives at.
    const int channel = policy().property("channel").toInt();
    if (!isChannelOfCall(channel))
        setChannelAfterCall(channel);
    for (const Step &step : situation->steps) {
        if (!step.operation || *step.object == '\0')
            continue;
        if (isOf(step, platformName)) {
            QmlPlatform platform;
            call(platform, step, m_channelAfterCall);
        } else {
            call(policy(), step, m_channelAfterCall);
        }
    }
    return true;
}

QStringList Situations::lines(const QString &name) const
{
    QStringList lines;
    if (const Situation *const situation = find(name)) {
        for (const Step &step : situation->steps) {
            if (step.operation)
                lines.append(lineOf(step, m_channelAfterCall));
        }
    }
    return lines;
}

int Situations::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(std::size(situations));
}

QVariant Situations::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Situation &situation = situations[index.row()];
    switch (role) {
    case NameRole:
        return QString::fromLatin1(situation.name);
    case TitleRole:
    case Qt::DisplayRole:
        return QString::fromLatin1(situation.title);
    case GroupRole:
        return QString::fromLatin1(situation.group);
    case ExplanationRole:
        return QString::fromLatin1(situation.explanation);
    case PhaseRole:
        return situation.phase;
    case LinesRole:
        return lines(QString::fromLatin1(situation.name));
    case PerformableRole:
        return isPerformable(situation);
    default:
        return {};
    }
}

QHash<int, QByteArray> Situations::roleNames() const
{
    return {
        {NameRole, "name"},
        {TitleRole, "title"},
        {GroupRole, "group"},
        {ExplanationRole, "explanation"},
        {PhaseRole, "phase"},
        {LinesRole, "lines"},
        {PerformableRole, "performable"},
    };
}
