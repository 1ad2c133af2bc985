#include "logstory.h"

#include <QtCore/QStringList>
#include <QtCore/QTextCodec>

#include <algorithm>
#include <utility>

using LogLines::Id;

namespace
{

/// ms without a line of the library after which the clock's time is told again.
constexpr qint64 longPause = 600000;
/// So many oddities of a kind are told, the others counted.
constexpr quint64 toldOddities = 5;
/// More processes at a time than a unit has.
constexpr int mostProcesses = 64;
constexpr int mostNotes = 1000;
/// ms, or lines of others, after which a process does not go on with its request.
constexpr qint64 idleTime = 1000;
constexpr quint64 idleLines = 200;

bool isUtf8(std::string_view text)
{
    if (std::none_of(text.cbegin(), text.cend(), [](char character) { return static_cast<signed char>(character) < 0; }))
        return true;
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(text.data(), int(text.size()), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

QString lengthText(qint64 milliseconds)
{
    constexpr qint64 minute = 60000;
    constexpr qint64 hour = 60 * minute;
    return milliseconds >= 2 * hour ? QStringLiteral("%1 h").arg(milliseconds / hour) : QStringLiteral("%1 min").arg(milliseconds / minute);
}

/// Whom the log speaks of: "player (812)", "812"
QString whoText(const LogLine &line, const LogFrame &frame)
{
    QString program = QString::fromUtf8(frame.program.data(), int(frame.program.size()));
    const qint64 number = frame.process != LogFrame::unknown ? frame.process : line.thread;
    if (number == LogFrame::unknown)
        return program;
    return program.isEmpty() ? QStringLiteral("process %1").arg(number) : QStringLiteral("%1 (%2)").arg(program).arg(number);
}

QString joined(const QStringList &texts)
{
    QStringList filled = texts;
    filled.removeAll(QString());
    return filled.join(QStringLiteral(", "));
}

bool isOfFocus(Id id)
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

/// Empty for a line that another one says as well.
QString focusText(const LogLine &line)
{
    const auto quoted = [&line](int index) -> QString { return QLatin1Char('"') + line.text(index) + QLatin1Char('"'); };
    switch (line.id()) {
    case Id::FocusGained:
        return QStringLiteral("%1 has focus again").arg(quoted(1));
    case Id::FocusLost:
        return QStringLiteral("%1 loses focus: %2").arg(quoted(1), line.text(0));
    case Id::FocusEntryRemoved:
        return QStringLiteral("%1 is removed from the stack, or asks again").arg(quoted(0));
    case Id::FocusHintInvalid:
        return QStringLiteral("a request with an invalid hint is denied");
    case Id::FocusRequestInvalid:
        return QStringLiteral("an invalid request, %1").arg(line.number(0));
    case Id::FocusListenerThrew:
        return QStringLiteral("the listener of %1 threw an exception, too").arg(quoted(0));
    case Id::FocusDumped:
        return QStringLiteral("on the stack: %1 with %2, lost %3, stream %4").arg(quoted(0), line.text(1), line.text(2)).arg(line.number(3));
    case Id::FocusDumpBegins:
        return QStringLiteral("on the stack: %1").arg(quoted(0));
    case Id::ServiceCallBegins:
        return QStringLiteral("a call has focus, from %1").arg(line.text(0));
    case Id::ServiceCallEnds:
        return QStringLiteral("the call has no focus any more, from %1").arg(line.text(0));
    case Id::ServiceSays:
        return QStringLiteral("the service says: %1").arg(line.text(0));
    default:
        return {};
    }
}

} // namespace

LogStory::LogStory(LogFrames &frames, LogClock &clock, LogStoryListener &listener)
    : m_frames(frames)
    , m_clock(clock)
    , m_listener(listener)
{
}

void LogStory::add(std::string_view line, quint64 number, bool wasCut)
{
    m_lastLine = number;
    LogFrame frame;
    const LogFrames::Found found = m_frames.read(line, number, frame);
    if (found == LogFrames::Found::Nothing)
        return;
    if (wasCut)
        odd(Oddity::Cut, number);
    if (found == LogFrames::Found::UnknownForm)
        odd(Oddity::UnknownForm, number);
    addFrame(frame);
}

void LogStory::addNotes(const std::vector<LogSource::Note> &notes)
{
    for (const LogSource::Note &each : notes)
        note(each.line, each.text);
}

void LogStory::addFrame(const LogFrame &frame)
{
    const auto line = LogLine::read(frame.text);
    if (!line) {
        odd(Oddity::NotUnderstood, frame.line);
        return;
    }
    ++m_understood;
    if (!isUtf8(frame.text))
        odd(Oddity::NotUtf8, frame.line);
    const LogClock::Reading reading = m_clock.read(frame.time);
    if (!reading.jump.isEmpty()) {
        pause();
        note(frame.line, reading.jump);
    }
    if (reading.isReboot) {
        m_listener.heading(reading.time, frame.line, QStringLiteral("The system starts again"));
        m_listener.reboot();
    }
    addLine(*line, frame, reading);
}

void LogStory::addLine(const LogLine &line, const LogFrame &frame, const LogClock::Reading &reading)
{
    if (isOfFocus(line.id()))
        tellFocus(line, frame, reading.time);
    else
        addToProcess(line, frame, reading);
}

void LogStory::tellFocus(const LogLine &line, const LogFrame &frame, qint64 time)
{
    const QString text = focusText(line);
    if (text.isEmpty())
        return;
    // Whoever is told of a change answers with requests of his own: what came before has ended.
    if (line.thread != LogLine::unknown) {
        const auto process = m_processes.find(keyOf(line, frame));
        if (process != m_processes.end())
            end(*process);
    }
    m_notes.append({time, frame.line, QStringLiteral("focus: ") + text});
    if (!isOpen())
        tellNotes();
}

void LogStory::addToProcess(const LogLine &line, const LogFrame &frame, const LogClock::Reading &reading)
{
    const qint64 key = keyOf(line, frame);
    LogProcess &process = processOf(key);
    m_lastUnderstood[key] = m_understood;
    QVector<LoggedRequest> ended;
    const LogProcess::Course course = process.add(line, frame, reading.time, ended);
    tell(ended);
    switch (course) {
    case LogProcess::Course::Continues:
        break;
    case LogProcess::Course::Repeats:
        odd(Oddity::Repeated, frame.line);
        return;
    case LogProcess::Course::Begins:
    case LogProcess::Course::Restarts:
        endOthers(key);
        tellNotes();
        tellBeginning(line, frame, course, reading);
        break;
    }
    if (process.isOfSecondThread())
        odd(Oddity::SecondThread, frame.line);
}

void LogStory::tellBeginning(const LogLine &line, const LogFrame &frame, LogProcess::Course course, const LogClock::Reading &reading)
{
    QStringList texts;
    if (line.id() == Id::ManagerStarts) {
        const bool isAgain = course == LogProcess::Course::Restarts || m_hasStarted;
        texts = QStringList{isAgain ? QStringLiteral("The audio starts again") : QStringLiteral("The audio starts"), whoText(line, frame)};
        m_hasStarted = true;
    } else if (!m_hasBegun) {
        texts = QStringList{QStringLiteral("The log begins while the audio is on already"), whoText(line, frame)};
    } else if (reading.pause >= longPause) {
        texts = QStringList(QStringLiteral("After %1 without a line").arg(lengthText(reading.pause)));
    }
    m_hasBegun = true;
    if (!texts.isEmpty())
        m_listener.heading(reading.time, frame.line, joined(texts + QStringList(LogTime::toText(frame.time))));
}

qint64 LogStory::keyOf(const LogLine &line, const LogFrame &frame)
{
    // The facade's lines do not say their thread: they are of who wrote last, or of who writes first.
    if (frame.process != LogFrame::unknown) {
        m_lastKey = frame.process;
    } else if (line.thread != LogLine::unknown) {
        if (m_lastKey == LogFrame::unknown && m_processes.contains(m_lastKey))
            m_processes.insert(line.thread, m_processes.take(m_lastKey));
        m_lastKey = line.thread;
    }
    return m_lastKey;
}

LogProcess &LogStory::processOf(qint64 key)
{
    if (!m_processes.contains(key) && m_processes.size() >= mostProcesses) {
        const auto oldest = std::min_element(
            m_processes.begin(), m_processes.end(), [](const LogProcess &one, const LogProcess &other) { return one.lastTime() < other.lastTime(); });
        end(*oldest);
        m_lastUnderstood.remove(oldest.key());
        m_processes.erase(oldest);
    }
    return m_processes[key];
}

/// A request of another process that stays open would be told much too late. One that may go on is left alone.
void LogStory::endOthers(qint64 key)
{
    for (auto process = m_processes.begin(); process != m_processes.end(); ++process) {
        const bool isIdle = m_clock.now() - process->lastTime() > idleTime || m_understood - m_lastUnderstood.value(process.key()) > idleLines;
        if (process.key() != key && isIdle)
            end(*process);
    }
}

void LogStory::end(LogProcess &process)
{
    QVector<LoggedRequest> ended;
    process.finish(ended);
    tell(ended);
}

void LogStory::pause()
{
    for (LogProcess &process : m_processes)
        end(process);
    tellNotes();
}

void LogStory::finish()
{
    LogFrame frame;
    if (m_frames.finish(frame))
        addFrame(frame);
    pause();
    for (auto oddity = m_oddities.cbegin(); oddity != m_oddities.cend(); ++oddity) {
        if (oddity.value() <= toldOddities)
            continue;
        const QString more = QStringLiteral("%1 more").arg(oddity.value() - toldOddities);
        odd(oddity.key(), 0, more);
    }
    tellNotes();
}

void LogStory::odd(Oddity oddity, quint64 line, const QString &text)
{
    if (line > 0 && ++m_oddities[oddity] > toldOddities)
        return;
    const auto said = [&]() -> QString {
        switch (oddity) {
        case Oddity::Cut:
            return QStringLiteral("the line is longer than 64 kB and was cut");
        case Oddity::NotUnderstood:
            return QStringLiteral("this looks like a line of the library, but is cut, or of another release or program");
        case Oddity::UnknownForm:
            return QStringLiteral("what stands before the library's text is not understood, so its time is unknown; --pattern says what it is");
        case Oddity::NotUtf8:
            return QStringLiteral("the line is not UTF-8");
        case Oddity::Repeated:
            return QStringLiteral("the same line twice; the second one is left out");
        case Oddity::SecondThread:
            return QStringLiteral("a second thread calls the audio manager, which is made for one");
        }
        return {};
    };
    note(line, text.isEmpty() ? said() : said() + QStringLiteral(" (%1)").arg(text));
}

void LogStory::note(quint64 line, const QString &text)
{
    if (m_notes.size() < mostNotes)
        m_notes.append({m_clock.now(), line, text});
    if (!isOpen())
        tellNotes();
}

void LogStory::tell(const QVector<LoggedRequest> &ended)
{
    for (const LoggedRequest &request : ended)
        m_listener.request(request);
    if (!ended.isEmpty() && !isOpen())
        tellNotes();
}

void LogStory::tellNotes()
{
    const QVector<Note> notes = std::exchange(m_notes, {});
    for (const Note &each : notes)
        m_listener.note(each.time, each.line, each.text);
}

bool LogStory::isOpen() const
{
    return std::any_of(m_processes.cbegin(), m_processes.cend(), [](const LogProcess &process) { return process.isOpen(); });
}
