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
    // Without a way out of the loop, so that the compiler looks at many at a time: almost every line is ASCII.
    char all = 0;
    for (const char character : text)
        all = char(all | character);
    if (static_cast<signed char>(all) >= 0)
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

QString joined(const QStringList &texts)
{
    QStringList filled = texts;
    filled.removeAll(QString());
    return filled.join(QStringLiteral(", "));
}

} // namespace

void LogStoryListener::focus(const FocusChange &change)
{
    note(change.time, change.line, QStringLiteral("focus: ") + change.text);
}

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
        noteFocus(m_focus.finish(reading.time));
        m_listener.heading(reading.time, frame.line, QStringLiteral("The system starts again"));
        m_listener.reboot();
    }
    addLine(*line, frame, reading);
}

void LogStory::addLine(const LogLine &line, const LogFrame &frame, const LogClock::Reading &reading)
{
    if (LogFocus::isOfFocus(line.id()))
        tellFocus(line, frame, reading.time);
    else
        addToProcess(line, frame, reading);
}

void LogStory::tellFocus(const LogLine &line, const LogFrame &frame, qint64 time)
{
    const std::optional<FocusChange> change = m_focus.add(line, frame, time);
    if (!change)
        return;
    // Whoever is told of a change answers with requests of his own: what came before has ended.
    if (line.thread != LogLine::unknown) {
        const auto writer = m_writers.find(keyOf(line, frame));
        if (writer != m_writers.end())
            end(writer->process);
    }
    noteFocus({*change});
}

void LogStory::noteFocus(const QVector<FocusChange> &changes)
{
    for (const FocusChange &change : changes)
        m_notes.append({change.time, change.line, {}, change});
    if (!isOpen())
        tellNotes();
}

void LogStory::addToProcess(const LogLine &line, const LogFrame &frame, const LogClock::Reading &reading)
{
    const qint64 key = keyOf(line, frame);
    Writer &writer = writerOf(key);
    writer.lastUnderstood = m_understood;
    LogProcess &process = writer.process;
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
        if (course == LogProcess::Course::Restarts)
            noteFocus(m_focus.finish(key, reading.time));
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
        texts = QStringList{isAgain ? QStringLiteral("The audio starts again") : QStringLiteral("The audio starts"), frame.writer(line.thread)};
        m_hasStarted = true;
    } else if (!m_hasBegun) {
        texts = QStringList{QStringLiteral("The log begins while the audio is on already"), frame.writer(line.thread)};
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
        if (m_lastKey == LogFrame::unknown && m_writers.contains(m_lastKey)) {
            m_writers.insert(line.thread, m_writers.take(m_lastKey));
            m_lastWriter = nullptr;
        }
        m_lastKey = line.thread;
    }
    return m_lastKey;
}

LogStory::Writer &LogStory::writerOf(qint64 key)
{
    if (m_lastWriter && m_lastWriterKey == key)
        return *m_lastWriter;
    if (!m_writers.contains(key) && m_writers.size() >= mostProcesses) {
        const auto oldest = std::min_element(
            m_writers.begin(), m_writers.end(), [](const Writer &one, const Writer &other) { return one.process.lastTime() < other.process.lastTime(); });
        end(oldest->process);
        m_writers.erase(oldest);
    }
    m_lastWriterKey = key;
    m_lastWriter = &m_writers[key];
    return *m_lastWriter;
}

/// A request of another process that stays open would be told much too late. One that may go on is left alone.
void LogStory::endOthers(qint64 key)
{
    for (auto writer = m_writers.begin(); writer != m_writers.end(); ++writer) {
        const bool isIdle = m_clock.now() - writer->process.lastTime() > idleTime || m_understood - writer->lastUnderstood > idleLines;
        if (writer.key() != key && isIdle)
            end(writer->process);
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
    for (Writer &writer : m_writers)
        end(writer.process);
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
    noteFocus(m_focus.finish(m_clock.now()));
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
        m_notes.append({m_clock.now(), line, text, {}});
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
    for (const Note &each : notes) {
        if (each.focus)
            m_listener.focus(*each.focus);
        else
            m_listener.note(each.time, each.line, each.text);
    }
}

bool LogStory::isOpen() const
{
    return std::any_of(m_writers.cbegin(), m_writers.cend(), [](const Writer &writer) { return writer.process.isOpen(); });
}
