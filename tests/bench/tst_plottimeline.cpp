#include "benchprocess.h"

#include <explain/logframes.h>
#include <explain/logreading.h>
#include <plot/timelineplot.h>

#include <virtualclock.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <cmath>

namespace
{

/// What "play" told of a sound.
struct HeardSound
{
    qint64 time; ///< ms
    QString name;
    double level; ///< dB
};

/// "None 0-189", in s where all is drawn to scale
QStringList spansOf(const Figure &figure, const QString &lane)
{
    QStringList texts;
    const auto lanes = std::get<Figure::Lanes>(figure.panels.constFirst()).lanes;
    for (const Figure::Lane &one : lanes) {
        for (const Figure::Span &span : one.spans) {
            if (one.name == lane)
                texts.append(QStringLiteral("%1 %2-%3").arg(span.label).arg(span.from).arg(span.to));
        }
    }
    return texts;
}

/// Level of a line at a place; not a number where there is none.
double levelAt(const Figure::Series &series, double place)
{
    double level = std::nan("");
    for (const QPointF &point : series.points) {
        if (point.x() <= place + 1e-9)
            level = point.y();
    }
    return std::isfinite(level) ? level : std::nan("");
}

} // namespace

class PlotTimelineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void lanesTellTheDrive_data();
    void lanesTellTheDrive();
    void levelsAreThoseThatAreHeard();
    void quietTimesAreShortened();
    void limitsCutTheDrive();
    void headingsNameTheParts();
    void headingsAreLimited();
    void mutedSourcesAreSilent();
    void hugeDrivesAreCut();

private:
    static Figure plot(const QString &log, const TimelinePlot::Settings &settings);
    static Figure plot(const QString &log, qint64 longestStill, const char *from = nullptr, const char *to = nullptr);
    QString play(const QByteArray &scenario) const;

    QTemporaryDir m_folder;
    QString m_log;
    QVector<HeardSound> m_heard;
};

Figure PlotTimelineTest::plot(const QString &log, const TimelinePlot::Settings &settings)
{
    LogFrames frames;
    LogReading reading(frames, log);
    if (!reading.open())
        qFatal("the log cannot be read");
    LoggedUnit::restart();
    TimelinePlot plot(settings, reading.clock());
    reading.read(plot);
    return plot.finish();
}

Figure PlotTimelineTest::plot(const QString &log, qint64 longestStill, const char *from, const char *to)
{
    TimelinePlot::Settings settings;
    settings.longestStill = longestStill;
    if (from)
        settings.wanted.from = LogLimit::read(QLatin1String(from));
    if (to)
        settings.wanted.to = LogLimit::read(QLatin1String(to));
    return plot(log, settings);
}

QString PlotTimelineTest::play(const QByteArray &scenario) const
{
    const QString file = m_folder.filePath(QStringLiteral("drive.js"));
    QFile text(file);
    if (!text.open(QIODevice::WriteOnly) || text.write(scenario) != scenario.size())
        qFatal("no file can be written");
    text.close();
    QString log = m_folder.filePath(QStringLiteral("drive.log"));
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("--brief"), QStringLiteral("--log-to"), log, file});
    if (bench.exitCode != 0)
        qWarning("%s", qPrintable(bench.output + bench.errors));
    return log;
}

void PlotTimelineTest::initTestCase()
{
    if (!BenchProcess::canSupervise())
        QSKIP("no process that plays can be started here");
    m_log = m_folder.filePath(QStringLiteral("commute.log"));
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("--json"), QStringLiteral("--log-to"), m_log, QStringLiteral("commute")});
    QCOMPARE(bench.exitCode, 0);
    const auto lines = program::lines(bench.output);
    for (const QString &line : lines) {
        const QJsonObject event = QJsonDocument::fromJson(line.toUtf8()).object();
        const QJsonArray sounds = event.value(QLatin1String("sounds")).toArray();
        for (const QJsonValue &sound : sounds) {
            const auto time = qint64(event.value(QLatin1String("time")).toDouble());
            while (!m_heard.isEmpty() && m_heard.constLast().time == time)
                m_heard.removeLast();
            m_heard.append({time, sound.toObject().value(QLatin1String("name")).toString(), sound.toObject().value(QLatin1String("level")).toDouble()});
        }
    }
    QVERIFY(m_heard.size() > 8);
}

void PlotTimelineTest::lanesTellTheDrive_data()
{
    QTest::addColumn<QString>("lane");
    QTest::addColumn<QString>("spans");
    QTest::newRow("status") << "status"
                            << "None 0-189|BtRing 189-193|BtTelephony 193-373|None 373-494|CarPlayDuck 494-502.5";
    QTest::newRow("channel") << "channel"
                             << "FilePlayer 1-189|BtRingtone 189-193|BtPhone 193-373|FilePlayer 373-502.5";
    QTest::newRow("ducking") << "ducking"
                             << "60 % 66-69|60 % 493-502.5";
    QTest::newRow("keys") << "keys"
                          << "++ 6-6|+ 189-189|- 193-193";
    QTest::newRow("reverse gear") << "reverse"
                                  << "on 493-502";
    QTest::newRow("mute") << "mute"
                          << "";
}

void PlotTimelineTest::lanesTellTheDrive()
{
    QFETCH(const QString, lane);
    QFETCH(const QString, spans);
    QCOMPARE(spansOf(plot(m_log, 0), lane).join(QLatin1Char('|')), spans);
}

void PlotTimelineTest::levelsAreThoseThatAreHeard()
{
    const Figure figure = plot(m_log, 0);
    const auto charts = std::get<Figure::Charts>(figure.panels.at(1));
    QCOMPARE(charts.legend, QStringList({QStringLiteral("file player"), QStringLiteral("Bluetooth ringtone"), QStringLiteral("Bluetooth telephone")}));
    const Figure::Chart &chart = charts.charts.constFirst();
    QCOMPARE(chart.x.most, 502.5);
    QVERIFY(chart.x.breaks.isEmpty());
    for (const HeardSound &heard : qAsConst(m_heard)) {
        for (const Figure::Series &series : chart.series) {
            const double level = levelAt(series, double(heard.time) / 1000);
            const QByteArray where = QByteArray::number(heard.time) + ' ' + charts.legend.at(series.name).toUtf8();
            if (charts.legend.at(series.name) == heard.name)
                QVERIFY2(std::abs(level - heard.level) < 1e-9, where.constData());
            else
                QVERIFY2(std::isnan(level), where.constData());
        }
    }
}

void PlotTimelineTest::quietTimesAreShortened()
{
    const Figure figure = plot(m_log, 5000);
    const auto charts = std::get<Figure::Charts>(figure.panels.at(1));
    const Figure::Axis &axis = charts.charts.constFirst().x;
    // 1 min after the keys, 2 min after the prompt, 3 min on the telephone, 2 min before the garage, and 8 s in reverse.
    QCOMPARE(axis.breaks.size(), 5);
    QCOMPARE(axis.most, 502.5 - 55 - 115 - 175 - 115 - 3);
    // The times at the ticks are still those of the drive.
    QCOMPARE(axis.ticks.constLast().label, QStringLiteral("8:22.5"));
    QVERIFY(figure.remarks.join(QLatin1Char(' ')).contains(QStringLiteral("not to scale")));
    QVERIFY(!plot(m_log, 0).remarks.join(QLatin1Char(' ')).contains(QStringLiteral("not to scale")));
}

void PlotTimelineTest::limitsCutTheDrive()
{
    const Figure figure = plot(m_log, 0, "+60s", "+191s");
    QCOMPARE(spansOf(figure, QStringLiteral("channel")).join(QLatin1Char('|')), QStringLiteral("FilePlayer 0-129|BtRingtone 129-131"));
    QCOMPARE(spansOf(figure, QStringLiteral("ducking")).join(QLatin1Char('|')), QStringLiteral("60 % 6-9"));
    const auto charts = std::get<Figure::Charts>(figure.panels.at(1));
    const Figure::Chart &chart = charts.charts.constFirst();
    QCOMPARE(chart.x.most, 131.0);
    QCOMPARE(chart.x.ticks.constFirst().label, QStringLiteral("1:00"));
    QCOMPARE(charts.legend.size(), 2);
    // What was heard already when the picture begins.
    QVERIFY(std::isfinite(levelAt(chart.series.constFirst(), 0)));
}

void PlotTimelineTest::headingsNameTheParts()
{
    // Those of the log, where there are no others.
    QCOMPARE(spansOf(plot(m_log, 0), QStringLiteral("part")).size(), 1);
    QVERIFY(spansOf(plot(m_log, 0), QStringLiteral("part")).constFirst().startsWith(QStringLiteral("1 The audio starts")));

    TimelinePlot::Settings settings;
    settings.longestStill = 0;
    settings.headings
        = {{0, QStringLiteral("before")}, {59000, QStringLiteral("into it")}, {66500, QStringLiteral("a \033")}, {66500, QStringLiteral("b")}, {900000, {}}};
    settings.wanted.from = LogLimit::read(QStringLiteral("+60s"));
    settings.wanted.to = LogLimit::read(QStringLiteral("+70s"));
    const Figure figure = plot(m_log, settings);
    // Two at the same time make no part of no length.
    QCOMPARE(spansOf(figure, QStringLiteral("part")).join(QLatin1Char('|')), QStringLiteral("1 into it 0-6.5|3 b 6.5-10"));
    const QStringList items = std::get<Figure::List>(figure.panels.at(2)).items;
    QCOMPARE(items, QStringList({QStringLiteral("1 at 1:00: into it"), QStringLiteral("2 at 1:06.5: a \\x1b"), QStringLiteral("3 at 1:06.5: b")}));
}

void PlotTimelineTest::headingsAreLimited()
{
    TimelinePlot::Settings settings;
    settings.longestStill = 0;
    for (int second = 0; second < 100; ++second)
        settings.headings.append({second * 1000, QString::number(second)});
    const Figure figure = plot(m_log, settings);
    const QStringList items = std::get<Figure::List>(figure.panels.at(2)).items;
    QCOMPARE(items.size(), TimelinePlot::mostHeadings + 1);
    QCOMPARE(items.constLast(), QStringLiteral("and more"));
    QCOMPARE(spansOf(figure, QStringLiteral("part")).constLast(), QStringLiteral("30 29 29-30"));
}

void PlotTimelineTest::mutedSourcesAreSilent()
{
    const QString log = play("powerOn();\n"
                             "AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);\n"
                             "wait(3000);\n"
                             "AudioPolicy.setMute(true);\n"
                             "wait(2000);\n"
                             "AudioPolicy.setMute(false);\n"
                             "wait(1000);\n"
                             "AudioPolicy.getVolume(0);\n");
    const Figure figure = plot(log, 0);
    QCOMPARE(spansOf(figure, QStringLiteral("mute")).join(QLatin1Char('|')), QStringLiteral("main, alternative 3-5"));
    const Figure::Series series = std::get<Figure::Charts>(figure.panels.at(1)).charts.constFirst().series.constFirst();
    QVERIFY(std::isfinite(levelAt(series, 2.999)));
    QVERIFY(std::isnan(levelAt(series, 3)));
    QVERIFY(std::isnan(levelAt(series, 4.999)));
    QCOMPARE(levelAt(series, 5), levelAt(series, 0));
}

void PlotTimelineTest::hugeDrivesAreCut()
{
    const QString log = play("powerOn();\n"
                             "AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);\n"
                             "for (let i = 0; i < 3000; ++i) {\n"
                             "    wait(10);\n"
                             "    AudioPolicy.updateCurrentAudioVolume(i % 2 == 0);\n"
                             "}\n");
    const Figure figure = plot(log, 0);
    QVERIFY(figure.remarks.join(QLatin1Char(' ')).contains(QStringLiteral("a picture holds 5000 changes")));
    int drawn = 0;
    const auto charts = std::get<Figure::Charts>(figure.panels.at(1));
    for (const Figure::Series &series : charts.charts.constFirst().series)
        drawn += series.points.size();
    const auto lanes = std::get<Figure::Lanes>(figure.panels.constFirst());
    for (const Figure::Lane &lane : lanes.lanes)
        drawn += lane.spans.size();
    constexpr int tolerance = 20; // an end of each line and each lane, and a change between two of a lane
    QVERIFY2(std::abs(drawn - TimelinePlot::mostChanges) < tolerance, qPrintable(QString::number(drawn)));
}

// Drives are played on virtual time.
int main(int argc, char **argv)
{
    simulator::VirtualClock::install();
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("qzaudio.simulator.info=false"));
    PlotTimelineTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_plottimeline.moc"
