#include "timelinemodel.h"

#include "background.h"
#include "exitstatus.h"
#include "timelinelayout.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int renewalInterval = 1000; // ms
constexpr double millisecondsPerSecond = 1000;
constexpr double nearbyPixels = 3; // of a moment

QStringList plotting(const QString &log)
{
    return {QStringLiteral("plot"), QStringLiteral("timeline"), QStringLiteral("--json"), QStringLiteral("--squeeze=0"), QStringLiteral("--"), log};
}

QString replayLog()
{
    return QStringLiteral("replay.log");
}

/// Seconds that the first line of the car's log begins with.
double originOf(const QString &log)
{
    constexpr int longest = 20;
    static const QRegularExpression form(QStringLiteral(R"(^\[ *(\d+\.\d+)\])"));
    QFile file(log);
    return file.open(QIODevice::ReadOnly) ? form.match(QString::fromLatin1(file.readLine(longest))).captured(1).toDouble() : 0;
}

} // namespace

TimelineModel::TimelineModel(QObject *parent)
    : RoomModel(parent)
{
    m_renewal.setSingleShot(true);
    m_renewal.setInterval(renewalInterval);
    connect(&m_renewal, &QTimer::timeout, this, &TimelineModel::renewIfStale);
    connect(&m_driveQuery, &BenchQuery::answered, this, &TimelineModel::takeDrive);
    connect(&m_replayQuery, &BenchQuery::answered, this, &TimelineModel::takeReplay);
    connect(&m_replayFigureQuery, &BenchQuery::answered, this, [this](int /*status*/, const QByteArray &output) { readReplay(output); });
}

TimelineModel::~TimelineModel() = default;

QString TimelineModel::shownLog() const
{
    if (!m_log.isEmpty())
        return m_log;
    return desk() ? desk()->logFile() : QString();
}

QString TimelineModel::busy() const
{
    const QString name = QFileInfo(m_log).fileName();
    if (m_driveQuery.isOpen() && !m_log.isEmpty())
        return tr("Reading %1, %2 ...").arg(name, QLocale::c().formattedDataSize(QFileInfo(m_log).size()));
    if (m_replayQuery.isOpen() || m_replayFigureQuery.isOpen())
        return tr("Playing what %1 tells ...").arg(name);
    return {};
}

void TimelineModel::open(const QUrl &file)
{
    forget();
    m_log = file.isLocalFile() ? file.toLocalFile() : file.toString();
    readDrive();
    Q_EMIT logChanged();
}

void TimelineModel::close()
{
    forget();
    m_log.clear();
    Q_EMIT logChanged();
    renewIfStale();
}

void TimelineModel::forget()
{
    ++m_reading;
    for (BenchQuery *const query : {&m_driveQuery, &m_replayQuery, &m_replayFigureQuery})
        query->cancel();
    m_why.clear();
    m_problem.clear();
    m_replayText.clear();
    m_drive.reset();
    m_replay.reset();
    m_changes.clear();
    m_differences.clear();
    m_readSize = -1;
    m_readTime = {};
    m_cursor = -1;
    m_source = -1;
    m_asksReplay = false;
    m_scale.setDuration(1);
    m_scale.fit();
    lay();
    Q_EMIT stateChanged();
    Q_EMIT pictureChanged();
    Q_EMIT sourcesChanged();
    Q_EMIT cursorChanged();
}

void TimelineModel::update(const QVariantMap & /*snapshot*/)
{
    if (!m_log.isEmpty())
        return;
    renewIfStale();
    goOn();
}

void TimelineModel::renewIfStale()
{
    if (!m_log.isEmpty() || !isActive() || !desk())
        return;
    const QFileInfo file(desk()->logFile());
    const bool isStale = file.size() != m_readSize || file.lastModified() != m_readTime;
    const bool isEarly = m_renewal.isActive() && desk()->speed() > 0;
    if (!isStale || isEarly || m_driveQuery.isOpen() || file.size() == 0)
        return;
    m_readSize = file.size();
    m_readTime = file.lastModified();
    m_renewal.start();
    readDrive();
}

void TimelineModel::readDrive()
{
    ++m_reading;
    m_driveQuery.ask(plotting(shownLog()));
    Q_EMIT stateChanged();
}

void TimelineModel::setProblem(const QString &problem)
{
    m_problem = problem;
    Q_EMIT stateChanged();
}

void TimelineModel::takeDrive(int status, const QByteArray &output, const QString &said)
{
    Q_EMIT stateChanged();
    if (status != Success) {
        // The car's log has no line of the library until its audio has started.
        const bool isNothingYet = m_log.isEmpty() && status == NothingFound;
        if (!m_log.isEmpty() || isNothingYet)
            m_drive.reset();
        setProblem(isNothingYet ? QString() : said);
        lay();
        Q_EMIT pictureChanged();
        Q_EMIT sourcesChanged();
        return;
    }
    const auto work = [output, log = shownLog(), isCar = m_log.isEmpty()] {
        Read read;
        read.figure = DriveFigure::read(output);
        if (read.figure)
            read.changes = read.figure->changes();
        read.origin = isCar ? originOf(log) : 0;
        return read;
    };
    Background::run(this, work, [this, reading = m_reading](const Read &read) {
        if (reading == m_reading)
            showDrive(read);
    });
}

void TimelineModel::showDrive(const Read &read)
{
    m_drive = read.figure;
    m_changes = read.changes;
    m_origin = read.origin;
    m_logEnd = m_drive ? m_drive->duration() : 0;
    setProblem(m_drive ? QString() : tr("qzaudio-bench told nothing that can be drawn"));
    if (m_drive)
        m_scale.setDuration(m_drive->duration());
    goOn();
    lay();
    Q_EMIT pictureChanged();
    Q_EMIT sourcesChanged();
    if (m_cursor >= 0)
        look(m_cursor);
    if (m_drive && !m_log.isEmpty())
        playReplay();
}

/// The car drives on while nothing happens that its log has a line of.
void TimelineModel::goOn()
{
    if (!m_drive || !m_log.isEmpty() || !desk())
        return;
    constexpr double leastStep = 0.1; // s
    const double now = desk()->now() / millisecondsPerSecond - m_origin;
    if (now - m_drive->duration() < (desk()->speed() > 0 ? leastStep : 0.001))
        return;
    m_drive->extendTo(now);
    if (!m_changes.isEmpty())
        m_changes.last() = now;
    m_scale.setDuration(now);
    lay();
}

void TimelineModel::playReplay()
{
    const QString kept = m_folder.filePath(replayLog());
    m_replayQuery.ask({QStringLiteral("explain"), QStringLiteral("--replay"), QStringLiteral("--log-to"), kept, QStringLiteral("--"), m_log});
    Q_EMIT stateChanged();
}

void TimelineModel::takeReplay(int status, const QByteArray &output, const QString &said)
{
    const bool isPlayed = status == Success || status == Failed;
    m_replayText = isPlayed ? QString::fromUtf8(output).trimmed() : tr("The log could not be played: %1").arg(said);
    if (isPlayed)
        m_replayFigureQuery.ask(plotting(m_folder.filePath(replayLog())));
    Q_EMIT stateChanged();
}

void TimelineModel::readReplay(const QByteArray &output)
{
    Q_EMIT stateChanged();
    const auto work = [output, drive = m_drive] {
        Read read;
        read.figure = DriveFigure::read(output);
        if (read.figure && drive)
            read.differences = drive->differences(*read.figure);
        return read;
    };
    Background::run(this, work, [this, reading = m_reading](const Read &read) {
        if (reading != m_reading)
            return;
        m_replay = read.figure;
        m_differences = read.differences;
        lay();
        Q_EMIT pictureChanged();
        Q_EMIT sourcesChanged();
        Q_EMIT cursorChanged();
    });
}

QStringList TimelineModel::remarks() const
{
    return m_drive ? m_drive->remarks : QStringList();
}

QStringList TimelineModel::lanes() const
{
    QStringList names;
    if (m_drive) {
        for (const Figure::Lane &lane : m_drive->lanes.lanes)
            names.append(lane.name);
    }
    return names;
}

void TimelineModel::setWidth(double pixels)
{
    if (pixels == m_scale.width() || pixels < 1)
        return;
    m_scale.setWidth(pixels);
    lay();
    Q_EMIT cursorChanged();
}

void TimelineModel::setLevelHeight(double pixels)
{
    if (pixels == m_levelHeight)
        return;
    m_levelHeight = pixels;
    layCurves();
    Q_EMIT viewChanged();
}

void TimelineModel::fit()
{
    m_scale.fit();
    lay();
    Q_EMIT cursorChanged();
}

void TimelineModel::zoom(double factor, double place)
{
    m_scale.zoom(factor, place);
    lay();
    Q_EMIT cursorChanged();
}

void TimelineModel::scroll(double pixels)
{
    m_scale.scroll(pixels);
    lay();
    Q_EMIT cursorChanged();
}

void TimelineModel::scrollTo(double position)
{
    scroll((position * m_scale.duration() - m_scale.from()) / m_scale.secondsPerPixel());
}

void TimelineModel::lay()
{
    QVector<SpanList::Span> spans;
    if (m_drive)
        spans += TimelineLayout::spansOf(*m_drive, 0, m_scale);
    if (m_drive && m_replay)
        spans += TimelineLayout::spansOf(*m_replay, 1, m_scale);
    m_spans.assign(spans);
    m_marks.assign(TimelineLayout::marksOf(m_differences, m_scale));
    layCurves();
    Q_EMIT viewChanged();
}

void TimelineModel::layCurves()
{
    m_curves = m_drive ? TimelineLayout::curvesOf(*m_drive, m_replay, m_scale, m_levelHeight) : QVariantList();
}

QVariantList TimelineModel::ticks() const
{
    QVariantList all;
    if (!m_drive)
        return all;
    const auto ticks = m_scale.ticks(m_origin);
    for (const TimeScale::Tick &tick : ticks)
        all.append(QVariantMap{{QStringLiteral("place"), tick.place}, {QStringLiteral("label"), tick.label}});
    return all;
}

QVariantList TimelineModel::levelTicks() const
{
    return m_drive ? TimelineLayout::levelTicks(TimelineLayout::leastLevel(*m_drive, m_replay), m_levelHeight) : QVariantList();
}

double TimelineModel::cursor() const
{
    const bool isShown = m_cursor >= m_scale.from() && m_cursor <= m_scale.to();
    return m_drive && isShown ? m_scale.placeOf(m_cursor) : -1;
}

QString TimelineModel::cursorText() const
{
    return m_cursor < 0 ? QString() : TimeScale::text(m_cursor + m_origin);
}

QVariantList TimelineModel::holding() const
{
    QVariantList rows;
    if (!m_drive || m_cursor < 0)
        return rows;
    const double nearby = nearbyPixels * m_scale.secondsPerPixel();
    for (int lane = 0; lane < m_drive->lanes.lanes.size(); ++lane) {
        const QString name = m_drive->lanes.lanes.at(lane).name;
        const int there = m_replay ? m_replay->laneNamed(name) : -1;
        rows.append(QVariantMap{
            {QStringLiteral("lane"), name},
            {QStringLiteral("drive"), m_drive->holding(lane, m_cursor, nearby)},
            {QStringLiteral("replay"), there < 0 ? QString() : m_replay->holding(there, m_cursor, nearby)},
        });
    }
    return rows;
}

const DriveFigure *TimelineModel::asked() const
{
    if (m_asksReplay && m_replay)
        return &*m_replay;
    return m_drive ? &*m_drive : nullptr;
}

int TimelineModel::askedSource() const
{
    const DriveFigure *const figure = asked();
    if (!figure || m_cursor < 0)
        return -1;
    return m_source >= 0 && m_source < figure->levels.sources.size() ? m_source : figure->loudestAt(m_cursor);
}

QStringList TimelineModel::sources() const
{
    const DriveFigure *const figure = asked();
    return figure ? figure->levels.legend : QStringList();
}

QStringList TimelineModel::sourceLevels() const
{
    QStringList levels;
    const DriveFigure *const figure = asked();
    for (int i = 0; figure && i < figure->levels.legend.size(); ++i)
        levels.append(m_cursor < 0 ? QString() : DriveFigure::levelText(figure->levelAt(i, m_cursor)));
    return levels;
}

QString TimelineModel::platformName(int source) const
{
    const DriveFigure *const figure = asked();
    return figure ? figure->levels.sources.value(source) : QString();
}

void TimelineModel::setSource(int source)
{
    if (m_source == source)
        return;
    m_source = source;
    look(m_cursor);
}

void TimelineModel::setAsksReplay(bool asks)
{
    if (m_asksReplay == asks)
        return;
    m_asksReplay = asks;
    m_source = -1;
    Q_EMIT sourcesChanged();
    look(m_cursor);
}

void TimelineModel::lookAt(double place)
{
    if (m_drive)
        look(m_scale.timeAt(place));
}

void TimelineModel::lookAtTime(double time)
{
    if (!m_drive)
        return;
    m_scale.show(std::clamp(time, 0.0, m_scale.duration()));
    lay();
    look(std::clamp(time, 0.0, m_scale.duration()));
}

void TimelineModel::lookAtChange(int steps)
{
    if (m_changes.isEmpty())
        return;
    int index = 0;
    if (m_cursor >= 0 && steps > 0)
        index = int(std::upper_bound(m_changes.cbegin(), m_changes.cend(), m_cursor) - m_changes.cbegin()) + steps - 1;
    else if (m_cursor >= 0)
        index = int(std::lower_bound(m_changes.cbegin(), m_changes.cend(), m_cursor) - m_changes.cbegin()) + steps;
    lookAtTime(m_changes.at(std::clamp(index, 0, m_changes.size() - 1)));
}

void TimelineModel::lookAtDifference(int index)
{
    if (index >= 0 && index < m_differences.size())
        lookAtTime(m_differences.at(index).from);
}

void TimelineModel::look(double time)
{
    m_cursor = time;
    if (m_drive && m_cursor >= 0)
        askWhy();
    Q_EMIT cursorChanged();
}

void TimelineModel::askWhy()
{
    const DriveFigure *const figure = asked();
    const int source = askedSource();
    if (!figure || source < 0) {
        m_why.clear(figure ? tr("Nothing has been heard until then.") : QString());
        return;
    }
    // A log has no moment behind its last line.
    const double end = m_asksReplay || !m_log.isEmpty() ? figure->duration() : m_logEnd;
    m_why.ask(m_asksReplay ? m_folder.filePath(replayLog()) : shownLog(), figure->levels.sources.value(source), std::min(m_cursor, end));
}

QVariantList TimelineModel::differences() const
{
    QVariantList rows;
    const QVector<DriveFigure::Difference> shown = m_differences.mid(0, mostDifferences);
    for (const DriveFigure::Difference &one : shown) {
        const auto text = [](const QString &given) { return given.isEmpty() ? tr("nothing") : given; };
        rows.append(QVariantMap{
            {QStringLiteral("time"), TimeScale::text(one.from)},
            {QStringLiteral("text"), tr("%1: %2 on the unit, %3 replayed, for %4 s").arg(one.what, text(one.here), text(one.there)).arg(one.to - one.from)},
        });
    }
    return rows;
}
