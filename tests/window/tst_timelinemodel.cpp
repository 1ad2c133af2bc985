#include <desk.h>
#include <programs.h>
#include <timelinemodel.h>

#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace
{

/// A prompt, over which the music is ducked, and a call. A pixel has a second of it.
const QByteArray minute = QByteArrayLiteral("powerOn();\n"
                                            "AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);\n"
                                            "wait(10000);\n"
                                            "AudioPolicy.aaDuckAudio(0, 0);\n"
                                            "wait(5000);\n"
                                            "AudioPolicy.aaUnduckAudio(0);\n"
                                            "wait(10000);\n"
                                            "AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtTelephony);\n"
                                            "wait(20000);\n"
                                            "AudioPolicy.updateAudioStatus(AudioPolicy.StatusNone);\n"
                                            "wait(15000);\n"
                                            "AudioPolicy.updateCurrentAudioVolume(true);\n");

/// "60 % 10-15", in pixels
QString spansOf(TimelineModel &model, const char *lane, int row = 0)
{
    QStringList texts;
    const int index = model.lanes().indexOf(QLatin1String(lane));
    const auto spans = model.spans()->spans();
    for (const SpanList::Span &span : spans) {
        if (span.row == row && span.lane == index)
            texts.append(QStringLiteral("%1 %2-%3").arg(span.label).arg(qRound(span.left)).arg(qRound(span.left + span.length)));
    }
    return texts.join(QLatin1Char('|'));
}

QVariant member(const QVariant &map, const char *name)
{
    return map.toMap().value(QLatin1String(name));
}

QString held(const TimelineModel &model, const char *lane, const char *which = "drive")
{
    const auto rows = model.holding();
    for (const QVariant &row : rows) {
        if (member(row, "lane") == QLatin1String(lane))
            return member(row, which).toString();
    }
    return QStringLiteral("no such lane");
}

QString linkOf(TimelineModel &model, const char *what, const char *part = "text")
{
    const auto links = member(model.why()->answer(), "links").toList();
    for (const QVariant &link : links) {
        if (member(link, "what") == QLatin1String(what))
            return member(link, part).toString();
    }
    return QStringLiteral("no such link");
}

} // namespace

class TimelineModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void aLogHasItsLanes();
    void itIsZoomedAndScrolled();
    void aMomentIsExplained();
    void theKeysGoAlongIt();
    void theLastQuestionCounts();
    void aReplayDiffers();
    void aReplayIsTheSame();
    void whatIsNoLogIsSaid_data();
    void whatIsNoLogIsSaid();
    void anotherLogTakesItsPlace();
    void theCarsDriveIsShown();
    void nobodyLooksNobodyReads();

private:
    QString write(const char *name, const QByteArray &text) const;
    QString play(const char *name, const QByteArray &scenario) const;
    void open(const QString &file) { m_model->open(QUrl::fromLocalFile(file)); }
    void show(const QString &file);
    /// Half a minute of music, of which the last third is ducked.
    static void drive(Desk &desk);

    QTemporaryDir m_folder;
    QString m_log;
    std::unique_ptr<TimelineModel> m_model;
};

QString TimelineModelTest::write(const char *name, const QByteArray &text) const
{
    QFile file(m_folder.filePath(QLatin1String(name)));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("no file can be written");
    return file.fileName();
}

QString TimelineModelTest::play(const char *name, const QByteArray &scenario) const
{
    QString log = m_folder.filePath(QLatin1String(name));
    const int status = QProcess::execute(programPath(QStringLiteral("qzaudio-bench")),
                                         {QStringLiteral("play"), QStringLiteral("--brief"), QStringLiteral("--log-to"), log, write("drive.js", scenario)});
    if (status != 0)
        qFatal("no drive can be played");
    return log;
}

void TimelineModelTest::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    m_log = play("unit.log", minute);
}

void TimelineModelTest::init()
{
    m_model = std::make_unique<TimelineModel>();
    m_model->setWidth(60);
    m_model->setActive(true);
}

void TimelineModelTest::show(const QString &file)
{
    open(file);
    QTRY_VERIFY(m_model->hasDrive());
}

void TimelineModelTest::drive(Desk &desk)
{
    desk.setSpeed(0);
    desk.startAnew();
    desk.perform(QStringLiteral("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);"));
    QTRY_COMPARE(desk.recording()->doneCount(), 2); // with the start of the audio
    desk.goTo(20000);
    QTRY_COMPARE(desk.now(), 20000.0);
    desk.perform(QStringLiteral("AudioPolicy.aaDuckAudio(0, 0);"));
    QTRY_COMPARE(desk.recording()->doneCount(), 3);
    desk.goTo(30000);
    QTRY_COMPARE(desk.now(), 30000.0);
}

void TimelineModelTest::aLogHasItsLanes()
{
    open(m_log);
    QVERIFY(m_model->busy().startsWith(QStringLiteral("Reading unit.log, ")));
    QTRY_VERIFY(m_model->hasDrive());
    QCOMPARE(m_model->problem(), QString());
    QCOMPARE(m_model->lanes(), QStringLiteral("part status channel focus ducking mute keys reverse").split(QLatin1Char(' ')));
    QCOMPARE(spansOf(*m_model, "channel"), QLatin1String("FilePlayer 0-60"));
    QCOMPARE(spansOf(*m_model, "status"), QLatin1String("None 0-25|BtTelephony 25-45|None 45-60"));
    QCOMPARE(spansOf(*m_model, "ducking"), QLatin1String("60 % 10-15"));
    QCOMPARE(spansOf(*m_model, "keys"), QLatin1String("+ 60-60"));
    QCOMPARE(m_model->sources(), QStringList(QStringLiteral("file player")));
    QCOMPARE(m_model->platformName(0), QStringLiteral("S+FilePlayer"));
    const auto ticks = m_model->ticks();
    QCOMPARE(member(ticks.first(), "label").toString(), QStringLiteral("0:00"));
    // Of the music one line, four levels: the volume, ducked, and the same again.
    const QVariantList paths = member(m_model->curves().constFirst(), "paths").toList();
    QCOMPARE(paths.size(), 1);
    const QVariantList path = paths.first().toList();
    QCOMPARE(path.first().toPointF().x(), 0.0);
    QVERIFY(path.at(2).toPointF().y() > path.at(1).toPointF().y());
}

void TimelineModelTest::itIsZoomedAndScrolled()
{
    show(m_log);
    QVERIFY(m_model->isWhole());
    m_model->zoom(0.5, 10);
    // The prompt's beginning stays where it was, and all has twice the length.
    QCOMPARE(spansOf(*m_model, "ducking"), QLatin1String("60 % 10-20"));
    QVERIFY(!m_model->isWhole());
    QVERIFY(qFuzzyCompare(m_model->size(), 0.5));
    m_model->scroll(10);
    QCOMPARE(spansOf(*m_model, "ducking"), QLatin1String("60 % 0-10"));
    m_model->scroll(-1000);
    QCOMPARE(m_model->position(), 0.0);
    m_model->scrollTo(0.5);
    QCOMPARE(spansOf(*m_model, "ducking"), QString());
    m_model->zoom(1000, 0);
    QVERIFY(m_model->isWhole());
    m_model->zoom(1e-9, 30);
    QVERIFY(m_model->size() > 0);
    m_model->fit();
    QCOMPARE(spansOf(*m_model, "ducking"), QLatin1String("60 % 10-15"));
}

void TimelineModelTest::aMomentIsExplained()
{
    show(m_log);
    m_model->lookAt(12);
    QCOMPARE(m_model->cursorText(), QStringLiteral("0:12"));
    QCOMPARE(held(*m_model, "ducking"), QStringLiteral("60 %"));
    QCOMPARE(held(*m_model, "status"), QStringLiteral("None"));
    QCOMPARE(m_model->askedSource(), 0);
    QVERIFY2(m_model->sourceLevels().constFirst().endsWith(QStringLiteral(" dB")), qPrintable(m_model->sourceLevels().constFirst()));
    QTRY_COMPARE(linkOf(*m_model, "duck"), QStringLiteral("on, to 60 percent"));
    QVERIFY2(linkOf(*m_model, "duck", "place").endsWith(QStringLiteral("10.000 s, AudioPolicy.aaDuckAudio(?, ?)")),
             qPrintable(linkOf(*m_model, "duck", "place")));
    QCOMPARE(member(m_model->why()->answer(), "name").toString(), QStringLiteral("file player"));
    QVERIFY(member(m_model->why()->answer(), "outcome").toString().contains(QStringLiteral(" dB against full scale")));
    QVERIFY(!member(m_model->why()->answer(), "otherwise").toList().isEmpty());
    m_model->lookAt(17);
    QTRY_VERIFY(linkOf(*m_model, "duck").startsWith(QStringLiteral("off")));
    QCOMPARE(held(*m_model, "ducking"), QString());
}

void TimelineModelTest::theKeysGoAlongIt()
{
    show(m_log);
    m_model->lookAtChange(1);
    QCOMPARE(m_model->cursorText(), QStringLiteral("0:00"));
    m_model->lookAtTime(5);
    m_model->lookAtChange(1);
    QCOMPARE(m_model->cursorText(), QStringLiteral("0:10"));
    m_model->lookAtChange(1);
    QCOMPARE(m_model->cursorText(), QStringLiteral("0:15"));
    m_model->lookAtChange(-1);
    QCOMPARE(m_model->cursorText(), QStringLiteral("0:10"));
    // What is out of sight is scrolled to.
    m_model->zoom(0.1, 10);
    m_model->lookAtTime(50);
    QVERIFY(m_model->cursor() >= 0 && m_model->cursor() <= 60);
    m_model->lookAtTime(1e9);
    QCOMPARE(m_model->cursorText(), QStringLiteral("1:00"));
    QCOMPARE(held(*m_model, "keys"), QStringLiteral("+"));
    m_model->lookAtChange(1);
    QCOMPARE(m_model->cursorText(), QStringLiteral("1:00"));
}

void TimelineModelTest::theLastQuestionCounts()
{
    show(m_log);
    QSignalSpy changed(m_model->why(), &WhyQuestion::changed);
    for (int second = 0; second <= 12; ++second)
        m_model->lookAt(second);
    QTRY_COMPARE(member(m_model->why()->answer(), "at").toString(), QStringLiteral("12.000 s"));
    // The one that was asked, and its answer.
    QCOMPARE(changed.size(), 2);
}

void TimelineModelTest::aReplayDiffers()
{
    QByteArray refusing = minute;
    refusing.replace("AudioPolicy.aaUnduckAudio(0);", "Platform.failOnce('Volume.setDuckingMode', 7, 1);\nAudioPolicy.aaUnduckAudio(0);");
    show(play("refused.log", refusing));
    QTRY_VERIFY(m_model->hasReplay());
    QVERIFY2(m_model->replayText().contains(QStringLiteral("Likely cause: refused by the unit's platform with 7")), qPrintable(m_model->replayText()));
    QCOMPARE(spansOf(*m_model, "ducking", 0), QLatin1String("60 % 10-60"));
    QCOMPARE(spansOf(*m_model, "ducking", 1), QLatin1String("60 % 10-15"));
    QVERIFY(m_model->differenceCount() > 0);
    const QVariant first = m_model->differences().constFirst();
    QCOMPARE(member(first, "time").toString(), QStringLiteral("0:15"));
    QCOMPARE(member(first, "text").toString(), QStringLiteral("ducking: 60 % on the unit, nothing replayed, for 45 s"));
    const auto marks = m_model->marks()->spans();
    QCOMPARE(marks.size(), 1);
    QCOMPARE(qRound(marks.first().left), 15);
    QCOMPARE(qRound(marks.first().length), 45);
    m_model->lookAtDifference(0);
    QCOMPARE(m_model->cursorText(), QStringLiteral("0:15"));
    QCOMPARE(held(*m_model, "ducking", "drive"), QStringLiteral("60 %"));
    QCOMPARE(held(*m_model, "ducking", "replay"), QString());
    QTRY_VERIFY(linkOf(*m_model, "duck").startsWith(QStringLiteral("on, to 60 percent; another one since then refused with 7")));
    m_model->setAsksReplay(true);
    QTRY_VERIFY(linkOf(*m_model, "duck").startsWith(QStringLiteral("off")));
}

void TimelineModelTest::aReplayIsTheSame()
{
    show(m_log);
    QTRY_VERIFY(m_model->hasReplay());
    QVERIFY(m_model->replayText().startsWith(QStringLiteral("no difference in ")));
    QCOMPARE(m_model->differenceCount(), 0);
    QCOMPARE(spansOf(*m_model, "status", 1), spansOf(*m_model, "status", 0));
    QCOMPARE(m_model->busy(), QString());
}

void TimelineModelTest::whatIsNoLogIsSaid_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("said");
    QTest::newRow("no line of the library") << write("novel.txt", "It was a dark and stormy night.\n")
                                            << QStringLiteral("no line of the audio library in 1 lines");
    QTest::newRow("no such file") << m_folder.filePath(QStringLiteral("none.log")) << QStringLiteral("No such file or directory");
    QTest::newRow("a folder") << m_folder.path() << QStringLiteral("is a folder");
    QTest::newRow("an archive that is none") << write("broken.gz", QByteArray("\x1f\x8b\x08 and nothing of the kind", 28)) << QStringLiteral("broken.gz");
}

void TimelineModelTest::whatIsNoLogIsSaid()
{
    QFETCH(const QString, file);
    QFETCH(const QString, said);
    open(file);
    QTRY_VERIFY(!m_model->problem().isEmpty());
    QVERIFY2(m_model->problem().contains(said), qPrintable(m_model->problem()));
    QVERIFY(!m_model->hasDrive());
    QCOMPARE(m_model->busy(), QString());
    QCOMPARE(m_model->spans()->rowCount(), 0);
}

void TimelineModelTest::anotherLogTakesItsPlace()
{
    open(m_folder.filePath(QStringLiteral("none.log")));
    open(m_log);
    QTRY_VERIFY(m_model->hasReplay());
    QCOMPARE(m_model->problem(), QString());
    m_model->lookAt(12);
    m_model->close();
    QVERIFY(!m_model->hasDrive());
    QVERIFY(!m_model->hasReplay());
    QCOMPARE(m_model->replayText(), QString());
    QCOMPARE(m_model->cursorText(), QString());
    QCOMPARE(m_model->log(), QString());
}

void TimelineModelTest::theCarsDriveIsShown()
{
    Desk desk;
    drive(desk);
    m_model->setDesk(&desk);
    QTRY_COMPARE(spansOf(*m_model, "channel"), QLatin1String("FilePlayer 0-60"));
    QTRY_COMPARE(spansOf(*m_model, "ducking"), QLatin1String("60 % 40-60"));
    QVERIFY(!m_model->hasReplay());
    m_model->lookAt(50);
    QTRY_COMPARE(linkOf(*m_model, "duck"), QStringLiteral("on, to 60 percent"));
    // Time goes on though the log does not.
    desk.goTo(40000);
    QTRY_COMPARE(spansOf(*m_model, "ducking"), QLatin1String("60 % 30-60"));
    // The drive is another one.
    desk.undo();
    QTRY_COMPARE(spansOf(*m_model, "ducking"), QString());
    QVERIFY(m_model->hasDrive());
}

void TimelineModelTest::nobodyLooksNobodyReads()
{
    Desk desk;
    m_model->setActive(false);
    m_model->setDesk(&desk);
    QSignalSpy states(m_model.get(), &TimelineModel::stateChanged);
    drive(desk);
    QCOMPARE(states.size(), 0);
    m_model->setActive(true);
    QTRY_COMPARE(spansOf(*m_model, "channel"), QLatin1String("FilePlayer 0-60"));
}

QTEST_GUILESS_MAIN(TimelineModelTest)
#include "tst_timelinemodel.moc"
