#include "requestscript.h"

#include "argumentlist.h"
#include "console.h"
#include "facaderules.h"
#include "requesttext.h"

#include "qmlaudiocontrol.h"
#include "qmlaudiopolicy.h"
#include "scriptobject.h"
#include "valuetext.h"

#include <algorithm>
#include <iterator>

using LogLines::Id;

namespace
{

/// Where the names of an argument's numbers are found by a script.
struct Scope
{
    const char *enumeration;
    const char *prefix;
};

constexpr Scope scopes[] = {
    {"Status", "AudioPolicy.Status"},
    {"Channel", "AudioPolicy.Channel"},
    {"VolumeType", "AudioPolicy."},
    {"AudioTag", "AudioControl."},
};

/// What an operation is given where the log does not say it.
struct Substitute
{
    const char *operation;
    const char *arguments;
    const char *remark; ///< empty where it makes no difference
};

constexpr Substitute substitutes[] = {
    {"AudioPolicy.aaDuckAudio", "0, 0", ""},
    {"AudioPolicy.aaUnduckAudio", "0", ""},
    {"AudioPolicy.clDuckAudio", "0, 0", ""},
    {"AudioPolicy.clUnduckAudio", "0", ""},
    {"AudioPolicy.cpDuckAudio", "0, 0", ""},
    {"AudioPolicy.cpUnduckAudio", "0", ""},
    {"AudioControl.setMasterVolume", "100", ""},
    {"AudioControl.setI2SINChannel", "0", ""},
    {"AudioControl.setStreamVolume", "0, \"\", 0", "the volume"},
    {"AudioControl.setMicroPhoneVolume", "0", "the volume"},
    {"AudioControl.setMicLeftRightSwitch", "false", "which way"},
    {"AudioControl.setDpsEnable", "true", "on or off"},
    {"AudioControl.setStereoEnable", "true", "on or off"},
    {"AudioControl.setDpsUserGain", "0", "the gain"},
    {"AudioControl.setFilter", "0, {value1: 0, flag: 0, kind: 0, value2: 0, value3: 0, value4: 0}", "the filter"},
    {"AudioControl.setEqGain", "[0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0]", "the gains"},
    {"AudioControl.setEqMode", "0", "which preset"},
    {"AudioControl.setLoudnessSwitch", "true", "on or off"},
};

/// Beside those that begin with "get" or "is".
constexpr const char *readers[] = {"eqType", "customEq", "loudNess", "micInputValue", "micTypeIsDefault", "currentAudioChannel"};

constexpr const char *tracks[] = {"main", "second", "alternative", "uplink", "input0", "input1", "input2", "main_im"};
constexpr const char *tags[] = {"Main", "Second", "Alternative", "Uplink", "Input0", "Input1", "Input2", "MainIm"};

constexpr int policyRange = 25;
constexpr int highestStepValue = 100;
constexpr int highestRange = 255;
constexpr int customBands = 16;

QString unknown()
{
    return QStringLiteral("?");
}

/// "AudioPolicy.setVolume(Media, 12, true)" in its parts.
struct Call
{
    QString object;
    QString operation;
    QStringList arguments;

    QString name() const { return object + QLatin1Char('.') + operation; }
    QString toText() const { return QStringLiteral("%1(%2);").arg(name(), arguments.join(QStringLiteral(", "))); }
};

Call read(const QString &text)
{
    const int bracket = text.indexOf(QLatin1Char('('));
    const int point = text.indexOf(QLatin1Char('.'));
    if (bracket < 0 || point < 0 || point > bracket || !text.endsWith(QLatin1Char(')')))
        return {};
    return {text.mid(0, point), text.mid(point + 1, bracket - point - 1), ArgumentList::split(text.mid(bracket + 1).chopped(1))};
}

const ScriptOperation *operationOf(const Call &call)
{
    const QVector<ScriptOperation> &all
        = call.object == QLatin1String("AudioPolicy") ? QmlAudioPolicy::scriptType().operations() : QmlAudioControl::scriptType().operations();
    const auto found = std::find_if(all.cbegin(), all.cend(), [&call](const ScriptOperation &one) { return call.operation == QLatin1String(one.name); });
    return found == all.cend() ? nullptr : &*found;
}

/// An argument as people read it, as a script has to have it.
QString scriptArgument(const QString &text, const char *enumeration)
{
    if (text == QLatin1String("nan"))
        return QStringLiteral("NaN");
    if (text.endsWith(QLatin1String("inf")))
        return text.startsWith(QLatin1Char('-')) ? QStringLiteral("-Infinity") : QStringLiteral("Infinity");
    const bool isName = !text.isEmpty() && text.at(0).isUpper();
    const auto *const scope = std::find_if(
        std::begin(scopes), std::end(scopes), [enumeration](const Scope &one) { return enumeration && qstrcmp(one.enumeration, enumeration) == 0; });
    return isName && scope != std::end(scopes) ? QLatin1String(scope->prefix) + text : text;
}

/// The first line of this kind; null for none.
const LogLine *find(const LoggedRequest &request, Id id)
{
    const auto found = std::find_if(request.lines.cbegin(), request.lines.cend(), [id](const LoggedRequest::Line &line) { return line.line.id() == id; });
    return found == request.lines.cend() ? nullptr : &found->line;
}

bool isReader(const QString &operation)
{
    return operation.startsWith(QLatin1String("get")) || operation.startsWith(QLatin1String("is"))
        || std::any_of(std::begin(readers), std::end(readers), [&operation](const char *one) { return operation == QLatin1String(one); });
}

QString tagOf(const QString &track)
{
    const auto *const found = std::find_if(std::begin(tracks), std::end(tracks), [&track](const char *one) { return track == QLatin1String(one); });
    return QLatin1String(found == std::end(tracks) ? tags[0] : tags[found - std::begin(tracks)]);
}

/// What applications call a source of the platform.
QString applicationName(const QString &source)
{
    if (source == QLatin1String("S+AirPlayMedia"))
        return QStringLiteral("s+AirPlayMedia_APP");
    return source.startsWith(QLatin1String("S+")) ? source + QLatin1String("_APP") : source;
}

/// A volume that the facade makes this one of.
int volumeBefore(int sent)
{
    constexpr int highest = 148;
    for (int volume = 0; volume <= highest; ++volume) {
        if (FacadeRules::sentAlternativeVolume(volume) == sent)
            return volume;
    }
    return 0;
}

int streamVolumeBefore(const QString &source, int sent)
{
    return FacadeRules::sentVolume(source, volumeBefore(sent)) == sent ? volumeBefore(sent) : sent;
}

/// What the lines say beyond the request's text.
void fillIn(Call &call, const LoggedRequest &request, bool wasMuted, QString &remark)
{
    const LogLine &first = request.first();
    switch (first.id()) {
    case Id::CpDuckAudio:
        if (const LogLine *const duck = find(request, Id::Duck))
            call.arguments = QStringList{QStringLiteral("0"), QString::number(duck->number(0))};
        break;
    case Id::SetAudioMute:
        if (!first.isTrue(0))
            call.arguments[1] = QStringLiteral("0");
        else // a negative count asks whether it is muted, and then unmutes; else somebody else asked
            call.arguments[1] = find(request, Id::IsAttOn) && (!wasMuted || find(request, Id::MuteBegins)) ? QStringLiteral("-1") : RequestScript::muteCount();
        break;
    case Id::GetMicAnalogGain:
        call.operation = QStringLiteral("getPlatformMicAnalogGain");
        break;
    case Id::StreamRead:
    case Id::StreamReadRefused:
        call.arguments = QStringList{tagOf(first.text(0)), simulator::quotedText(applicationName(first.text(1)))};
        break;
    case Id::StreamTag: {
        const LogLine *const set = find(request, Id::StreamSet);
        const LogLine *const name = find(request, Id::StreamName);
        if (set && name)
            call.arguments.last() = QString::number(streamVolumeBefore(name->text(1), set->number(1)));
        else if (request.calls.isEmpty())
            call.arguments.last() = QStringLiteral("0");
        break;
    }
    case Id::AlternativeSet:
        call.arguments = QStringList{QString::number(volumeBefore(first.number(0))), QStringLiteral("false")};
        remark = QStringLiteral("whether it was a HiCar call's volume, too");
        break;
    case Id::AlternativeRefused:
        call.arguments = QStringList{QStringLiteral("0"), QStringLiteral("false")};
        remark = QStringLiteral("the volume");
        break;
    case Id::AlternativeChanged:
        call.arguments = first.number(0) > 0 ? QStringList{QStringLiteral("true"), QString::number(first.number(0) - 1)}
                                             : QStringList{QStringLiteral("false"), QStringLiteral("1")};
        break;
    case Id::AlternativeChangeRefused:
        call.arguments = QStringList{QStringLiteral("true"), QStringLiteral("0")};
        remark = QStringLiteral("which step");
        break;
    case Id::OutputFrontTag:
    case Id::OutputFrontBegins:
        call.arguments.last() = find(request, Id::FrontChannels) ? QStringLiteral("true") : QStringLiteral("false");
        break;
    case Id::DuckingBegins:
        if (!request.calls.isEmpty() && request.calls.constFirst().operation == QLatin1String("setDuckingTargetGain"))
            call.operation = QStringLiteral("setMainAudioDunkingTargetGain");
        break;
    case Id::DpsRefused:
    case Id::StereoRefused:
        call.arguments = QStringList(simulator::valueText(first.isTrue(1)));
        break;
    default:
        break;
    }
}

void substitute(Call &call, QString &remark)
{
    if (!call.arguments.contains(unknown()))
        return;
    const auto *const found
        = std::find_if(std::begin(substitutes), std::end(substitutes), [&call](const Substitute &one) { return call.name() == QLatin1String(one.operation); });
    if (found == std::end(substitutes))
        return;
    const QStringList arguments = ArgumentList::split(QLatin1String(found->arguments));
    for (int i = 0; i < call.arguments.size() && i < arguments.size(); ++i) {
        if (call.arguments.at(i) == unknown())
            call.arguments[i] = arguments.at(i);
    }
    remark = QLatin1String(found->remark);
}

/// The platform was not asked. What the log does not say might be accepted here.
bool isRefusedByFacade(const LoggedRequest &request)
{
    return request.calls.isEmpty() && (request.first().isError() || request.first().id() == Id::MasterStepIgnored);
}

/// One that would end the process, or that no script can make.
bool isImpossible(const LoggedRequest &request)
{
    const LogLine &first = request.first();
    return first.id() == Id::AdjustCustomEq && (first.number(1) < 0 || first.number(1) >= customBands);
}

} // namespace

QString RequestScript::harmless(const QString &text)
{
    QString result;
    const auto characters = text.toUcs4();
    constexpr int hexadecimal = 16;
    constexpr int digits = 4;
    for (const uint character : characters) {
        if (!Console::isUnseen(character))
            result += QString::fromUcs4(&character, 1);
        else if (character <= 0xFFFF)
            result += QLatin1String("\\u") + QString::number(character, hexadecimal).rightJustified(digits, QLatin1Char('0'));
        else
            result += QLatin1Char('?');
    }
    return result;
}

RequestScript::Statements RequestScript::of(const LoggedRequest &request)
{
    switch (request.first().id()) {
    case Id::StepStreamSet:
    case Id::StepStreamRefused:
        return stepStatements(request);
    case Id::CurrentUnknown:
    case Id::GroupFound:
    case Id::TrackChanged:
    case Id::TrackRefused:
        return oneStepStatements(request);
    case Id::OnRecvBackCar: // the policy hears of the gear from the car
        return {{QStringLiteral("Platform.setReverseGear(%1);").arg(simulator::valueText(request.first().isTrue(0)))}, {}};
    default:
        break;
    }
    const QString text = requestText(request);
    if (isRefusedByFacade(request))
        return {{}, text + QStringLiteral(": the library refused it")};
    Call call = read(text);
    if (call.object == QLatin1String("AudioSettings") || (request.calls.isEmpty() && isReader(call.operation)))
        return {};
    Statements statements;
    if (call.object.isEmpty() || isImpossible(request))
        return {{}, text};
    fillIn(call, request, m_isMuted, statements.remark);
    substitute(call, statements.remark);
    const ScriptOperation *const operation = operationOf(call);
    if (!operation || call.arguments.contains(unknown()))
        return {{}, text};
    for (int i = 0; i < call.arguments.size() && i < operation->inputs.size(); ++i)
        call.arguments[i] = scriptArgument(call.arguments.at(i), operation->inputs.at(i).parameter->enumeration);
    statements.lines.append(harmless(call.toText()));
    return statements;
}

void RequestScript::learn(const LoggedRequest &request)
{
    if (request.first().id() == Id::ManagerStarts)
        m_range = policyRange;
    for (const LoggedRequest::Line &line : request.lines) {
        const LogLine &said = line.line;
        if (said.id() == Id::StepStreamSet)
            learnStep(said.text(1), said.number(2));
        else if (said.id() == Id::StepStreamRefused)
            learnStep(said.text(2), said.number(3));
        else if (said.id() == Id::TrackChanged)
            m_changedSteps.insert(said.text(1), said.number(2));
        else if (said.id() == Id::MuteBegins && said.text(0) == QLatin1String("main"))
            m_isMuted = said.isTrue(1);
    }
}

void RequestScript::learnStep(const QString &source, int step)
{
    m_sentSteps.insert(source, step);
    m_changedSteps.remove(applicationName(source));
}

/// The facade does not write how many steps there are, but what a step is worth.
void RequestScript::learnRange(int step, int value, QStringList &lines)
{
    const auto isWorth = [&](int range) { return qint64(highestStepValue) * step / range == value; };
    if (step == 0 || isWorth(m_range))
        return;
    for (int range = 1; range <= highestRange; ++range) {
        if (!isWorth(range))
            continue;
        m_range = range;
        lines.append(QStringLiteral("AudioControl.setStepRange(%1);").arg(range));
        return;
    }
}

/// The facade was given several steps at once. One by one they keep the log's order, which a script's object does not.
RequestScript::Statements RequestScript::stepStatements(const LoggedRequest &request)
{
    Statements statements;
    QString before;
    for (const LoggedRequest::Line &line : request.lines) {
        const bool isRefused = line.line.id() == Id::StepStreamRefused;
        if (!isRefused && line.line.id() != Id::StepStreamSet)
            continue;
        const int first = isRefused ? 1 : 0; // the failure's line number stands before
        const QString source = line.line.text(first + 1);
        const int step = line.line.number(first + 2);
        const int value = line.line.number(first + 3);
        const bool isBoosted = FacadeRules::sentVolume(source, highestStepValue) != highestStepValue;
        learnRange(step, isBoosted ? volumeBefore(value) : value, statements.lines);
        // A group's name stands for both of its sources.
        if (!before.isEmpty() && FacadeRules::othersOfGroup(source).contains(before))
            statements.lines.removeLast();
        const QString name = simulator::quotedText(applicationName(source));
        statements.lines.append(
            harmless(QStringLiteral("AudioControl.initTrackStepVolume(AudioControl.%1, {%2: %3});").arg(tagOf(line.line.text(first)), name).arg(step)));
        before = source;
    }
    return statements;
}

/// Several names of applications stand for one source, so that a step that was sent for it need not be of this name.
bool RequestScript::isStepUp(const QString &name, int step) const
{
    if (m_changedSteps.contains(name))
        return step > m_changedSteps.value(name);
    const int middle = m_range / 2;
    const int sent = m_sentSteps.value(FacadeRules::platformSource(name), middle);
    return step == sent + 1 || (step != sent - 1 && step == middle + 1);
}

/// One step of what plays; the lines tell where it led to.
RequestScript::Statements RequestScript::oneStepStatements(const LoggedRequest &request)
{
    Statements statements;
    const LogLine *const changed = find(request, Id::TrackChanged);
    const LogLine *const group = find(request, Id::GroupFound);
    bool isUp = true;
    if (changed) {
        learnRange(changed->number(2), changed->number(3), statements.lines);
        isUp = isStepUp(changed->text(1), changed->number(2));
    } else if (find(request, Id::TrackRefused)) {
        statements.remark = QStringLiteral("up or down");
    } else if (group) {
        // Nothing was sent: it is at one of the ends.
        const QString name = applicationName(group->text(0));
        isUp = m_changedSteps.value(name, m_sentSteps.value(group->text(0), 1)) > 0;
    }
    statements.lines.append(QStringLiteral("AudioControl.changeMainTrackStepVolume(%1);").arg(simulator::valueText(isUp)));
    return statements;
}
