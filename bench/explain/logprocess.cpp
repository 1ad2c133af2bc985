#include "logprocess.h"

#include "facaderules.h"
#include "linegrammar.h"

#include <qzaudio/audiotypes.h>

#include <algorithm>

using LogLines::Id;

namespace
{

/// ms without a line after which nothing belongs to what was there before: no operation waits for anything but the platform.
constexpr qint64 longestPause = 1000;
/// A request that does not end is told in parts of so many lines.
constexpr int mostLines = 5000;

/// Lines that another one follows always, so that they stand twice only where each line of the log does.
bool isFollowed(Id id)
{
    constexpr Id ids[] = {
        Id::ManagerStarts,    Id::Init,
        Id::SetVolume,        Id::UpdateAudioChannel,
        Id::StreamTag,        Id::StreamName,
        Id::OutputTag,        Id::OutputName,
        Id::OutputBegins,     Id::OutputTrack,
        Id::OutputSource,     Id::SetEqType,
        Id::SetEqTypeGains,   Id::Duck,
        Id::DuckingBegins,    Id::StoreAutoMicGainKey,
        Id::FadeBegins,       Id::SetLoudNess,
        Id::SetMicInputValue, Id::HandsfreeBegins,
        Id::InputTag,         Id::SetMicLeftRightSwitch,
        Id::TriggerAtt,       Id::AaDuckAudio,
        Id::AaUnduckAudio,    Id::ClDuckAudio,
        Id::ClUnduckAudio,    Id::CpDuckAudio,
    };
    return std::find(std::begin(ids), std::end(ids), id) != std::end(ids);
}

/// Whether an operation that only reads a setting of its own meanwhile would have gone on before.
bool isApart(qint64 milliseconds)
{
    constexpr qint64 longest = 100;
    constexpr qint64 second = 1000;
    // A log may have whole seconds only.
    return milliseconds > longest && milliseconds % second != 0;
}

bool isSame(const LogTime::Moment &one, const LogTime::Moment &other)
{
    return one.clock == other.clock && one.milliseconds == other.milliseconds;
}

} // namespace

LogProcess::Course LogProcess::add(const LogLine &line, const LogFrame &frame, qint64 time, QVector<LoggedRequest> &ended)
{
    if (isRepeated(line, frame))
        return Course::Repeats;

    if (m_request && m_request->lines.size() < mostLines && time - m_lastTime <= longestPause && accept(line, time)) {
        append(line, frame, time, m_open.isEmpty() ? 0 : m_open.constLast().line);
        return Course::Continues;
    }
    finish(ended);
    const bool isRestart = line.id() == Id::ManagerStarts && m_isStarted;
    begin(line, frame, time);
    return isRestart ? Course::Restarts : Course::Begins;
}

/// Equal lines follow each other also where nobody doubled them, so that some of them have to be seen that cannot.
bool LogProcess::isRepeated(const LogLine &line, const LogFrame &frame)
{
    const bool isEqual = m_lastText == frame.text && isSame(m_lastMoment, frame.time);
    if (!isEqual) {
        m_isDoubled = m_isDoubled && !m_lastIsFollowed;
        m_lastText = frame.text;
        m_lastMoment = frame.time;
        m_lastIsFollowed = isFollowed(line.id());
        return false;
    }
    m_isDoubled = m_isDoubled || m_lastIsFollowed;
    if (!m_isDoubled)
        return false;
    // The next equal one is the first of a pair.
    m_lastText.clear();
    m_lastIsFollowed = false;
    return true;
}

/// Closes the operations that the line cannot be part of. False where that is all of them; they are then left open.
bool LogProcess::accept(const LogLine &line, qint64 time)
{
    const bool isOtherThread = line.thread != LogLine::unknown && m_request->first().thread != LogLine::unknown && line.thread != m_request->first().thread;
    if (isOtherThread)
        return false;
    if (LineGrammar::isAnywhere(line.id()))
        return true;
    for (int i = m_open.size() - 1; i >= 0; --i) {
        const LogLine &parent = m_request->lines.at(m_open.at(i).line).line;
        const int position = LineGrammar::after(parent.id(), m_open.at(i).position, line.id());
        if (position == LineGrammar::notThere || !isPlausible(m_open.at(i).line, line, time))
            continue;
        m_open[i].position = position;
        m_open.resize(i + 1);
        return true;
    }
    return false;
}

/// Whether a line that may be part of an operation is part of this one, by what it says and what came before it.
bool LogProcess::isPlausible(int index, const LogLine &line, qint64 time) const
{
    const LogLine &parent = m_request->lines.at(index).line;
    const LogLine &last = m_request->lines.constLast().line;
    switch (line.id()) {
    case Id::StreamTag:
    case Id::VolumeTooHigh:
        if (parent.id() == Id::HandleChannelVolumeChanged)
            return countOf(index) < FacadeRules::channelsOfType(parent.number(0));
        if (parent.id() == Id::DelaySetVolume)
            return last.id() == Id::DelayedVolume;
        return last.id() != Id::CarPlayDuckIgnored;
    case Id::AlternativeSet:
    case Id::AlternativeRefused:
        return parent.id() != Id::HandleChannelVolumeChanged || countOf(index) < FacadeRules::channelsOfType(parent.number(0));
    case Id::CpDuckAudio:
    case Id::CpUnduckAudio:
        return last.id() == Id::OnRecvBackCar && last.isTrue(0) == (line.id() == Id::CpDuckAudio);
    case Id::UpdateAudioStatus:
        // A new duck came meanwhile, and nothing is restored.
        if (parent.id() == Id::DelayCpTruelyUnduck && m_isCarPlayDucking)
            return false;
        return line.number(0) == (parent.id() == Id::HandleNotComeCpAlte ? AudioStatusCarPlayDuck : AudioStatusCarPlayRestore);
    case Id::HandleVolumeTypeChanged:
        return parent.id() != Id::UpdateAudioStatus || parent.number(0) == line.number(0);
    case Id::SetVolume:
        return last.id() == Id::KeyVolume && last.values == line.values.mid(0, last.values.size());
    case Id::UnDuck: {
        // Without the status there was a new duck meanwhile.
        const auto &lines = m_request->lines;
        return parent.id() != Id::DelayCpTruelyUnduck
            || std::any_of(lines.cbegin(), lines.cend(), [](const LoggedRequest::Line &one) { return one.line.id() == Id::UpdateAudioStatus; });
    }
    case Id::MuteBegins:
        if (parent.id() == Id::MuteBegins)
            return parent.text(0) == QLatin1String("main") && line.text(0) == QLatin1String("alternative") && parent.isTrue(1) == line.isTrue(1);
        if (line.text(0) != QLatin1String("main"))
            return false;
        if (parent.id() == Id::SetMute)
            return parent.isTrue(0) == line.isTrue(1);
        if (parent.id() == Id::SetAudioMute)
            return line.isTrue(1) == (last.id() != Id::IsAttOn);
        return parent.id() != Id::DeMute || !line.isTrue(1);
    case Id::EqType:
        return parent.id() != Id::UpdateAudioChannel || last.id() == Id::EqualizerReset || m_isFirstChannel;
    case Id::SetEqType:
        // At the top it may be a question and then an answer to it.
        if (parent.id() != Id::EqType || m_open.size() > 1)
            return true;
        return !isApart(time - m_lastTime) && (m_equalizerType == LoggedRequest::none || m_equalizerType == line.number(0));
    case Id::IsAttOn:
        // A mute that is on already leaves no line, one that is to last asks.
        return parent.id() != Id::SetAudioMute || !parent.isTrue(0) || !isApart(time - m_lastTime);
    default:
        return true;
    }
}

/// Lines that the one at the index caused.
int LogProcess::countOf(int index) const
{
    const auto &lines = m_request->lines;
    return int(std::count_if(lines.cbegin(), lines.cend(), [index](const LoggedRequest::Line &line) { return line.parent == index; }));
}

void LogProcess::begin(const LogLine &line, const LogFrame &frame, qint64 time)
{
    m_request.emplace();
    m_request->moment = frame.time;
    m_request->process = frame.process != LogFrame::unknown ? frame.process : line.thread;
    m_request->program = QString::fromUtf8(frame.program.data(), int(frame.program.size()));
    m_open.clear();
    m_calls.begin();
    if (line.id() == Id::ManagerStarts) {
        m_status = AudioStatusNone;
        m_isStarted = true;
    }
    m_request->statusBefore = m_status;
    const char *const timer = LineGrammar::timerOf(line.id());
    const bool isTimer = timer && (line.id() != Id::DeMute || m_muteTimerMayRun);
    if (isTimer)
        m_request->timer = QLatin1String(timer);
    append(line, frame, time, LoggedRequest::none);
}

void LogProcess::append(const LogLine &line, const LogFrame &frame, qint64 time, int parent)
{
    m_lastTime = time;
    if (line.id() == Id::GetVolume && parent != LoggedRequest::none) {
        m_questionMoment = frame.time;
        m_questionText = textOf(frame);
    }
    const int index = m_request->lines.size();
    const int callsBefore = m_request->calls.size();
    m_request->lines.append({line, frame.line, time, parent, line.isError() || parent == LoggedRequest::none ? textOf(frame) : QString()});
    // A line that goes on with the same operation, such as the next of a list, opens none.
    const bool isNext = parent != LoggedRequest::none && m_request->lines.at(parent).line.id() == line.id();
    if (!LineGrammar::isAnywhere(line.id()) && !isNext)
        m_open.append({index, 0});
    m_calls.add(*m_request);
    const bool isRefusal
        = m_request->calls.size() > callsBefore || line.id() == Id::MuteRefused || line.id() == Id::LoudnessRefused || line.id() == Id::LoudspeakerRefused;
    if (!isRefusal && line.isError())
        m_request->events.append({LoggedRequest::none, index});
    learn(line);
}

void LogProcess::learnThread(const LogLine &line)
{
    m_isOfSecondThread = false;
    if (line.thread == LogLine::unknown || !QLatin1String(line.row->function).startsWith(QLatin1String("ZelAudioManager::")))
        return;
    if (m_thread == LogLine::unknown || line.id() == Id::ManagerStarts)
        m_thread = line.thread;
    m_isOfSecondThread = line.thread != m_thread;
}

void LogProcess::learn(const LogLine &line)
{
    learnThread(line);
    switch (line.id()) {
    case Id::UpdateAudioStatus:
        m_status = line.number(0);
        break;
    case Id::CpDuckAudio:
        m_isCarPlayDucking = true;
        break;
    case Id::CpUnduckAudio:
    case Id::ManagerStarts:
        m_isCarPlayDucking = false;
        break;
    case Id::SetVolume:
        m_status = line.number(3);
        break;
    case Id::SetEqType:
        m_equalizerType = line.number(0);
        break;
    case Id::AdjustCustomEq: {
        constexpr int customType = 7;
        m_equalizerType = customType;
        break;
    }
    case Id::UpdateAudioChannel:
        m_isFirstChannel = !m_channelSeen && line.number(0) != AudioChannelNone;
        m_channelSeen = m_channelSeen || m_isFirstChannel;
        break;
    case Id::SetAudioMute:
        m_muteTimerMayRun = m_muteTimerMayRun || line.isTrue(0);
        break;
    case Id::DeMute:
        m_muteTimerMayRun = false;
        break;
    default:
        break;
    }
}

QString LogProcess::textOf(const LogFrame &frame)
{
    return QString::fromUtf8(frame.text.data(), int(frame.text.size()));
}

void LogProcess::finish(QVector<LoggedRequest> &ended)
{
    if (!m_request)
        return;
    const std::optional<LoggedRequest> question = takeQuestion();
    m_request->statusAfter = m_status;
    ended.append(std::move(*m_request));
    m_request.reset();
    if (question)
        ended.append(*question);
    m_open.clear();
}

/// A key that has an effect asks for the volume and goes on. Where it does not, somebody else asked.
std::optional<LoggedRequest> LogProcess::takeQuestion()
{
    const bool isThere = m_request->first().id() == Id::UpdateCurrentAudioVolume && m_request->lines.constLast().line.id() == Id::GetVolume;
    if (!isThere)
        return {};
    LoggedRequest question;
    question.moment = m_questionMoment;
    question.process = m_request->process;
    question.program = m_request->program;
    question.statusBefore = m_status;
    question.statusAfter = m_status;
    question.lines.append(m_request->lines.takeLast());
    question.lines.first().parent = LoggedRequest::none;
    question.lines.first().text = m_questionText;
    return question;
}
