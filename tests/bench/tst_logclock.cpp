#include <explain/logclock.h>
#include <explain/logfilter.h>

#include <QtTest/QtTest>

using LogTime::Clock;
using LogTime::Moment;

namespace
{

constexpr qint64 second = 1000;
constexpr qint64 minute = 60 * second;
constexpr qint64 hour = 60 * minute;
constexpr qint64 day = 24 * hour;

Moment calendar(const char *text)
{
    const auto moment = LogTime::Reader(text).calendar();
    return moment ? *moment : Moment();
}

} // namespace

class LogClockTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void timeGoesForward_data();
    void timeGoesForward();
    void limitsAreFound_data();
    void limitsAreFound();
    void limitsAreAsLongAsWhatTheyLeaveOut_data();
    void limitsAreAsLongAsWhatTheyLeaveOut();
    void aClockThatIsSetHasStretches_data();
    void aClockThatIsSetHasStretches();
    void limitsMayNotFit_data();
    void limitsMayNotFit();
    void otherTextIsNoLimit_data();
    void otherTextIsNoLimit();
};

void LogClockTest::timeGoesForward_data()
{
    QTest::addColumn<int>("clock");
    QTest::addColumn<qint64>("one");
    QTest::addColumn<qint64>("other");
    QTest::addColumn<qint64>("passed");
    QTest::addColumn<QString>("jump");

    const auto row = [](const char *name, Clock clock, qint64 one, qint64 other, qint64 passed, const char *jump = "") {
        QTest::newRow(name) << int(clock) << one << other << passed << QString::fromLatin1(jump);
    };
    row("no time", Clock::None, 0, 0, 0);
    row("forward", Clock::Calendar, 5 * day, 5 * day + 1, 1);
    row("a day later", Clock::Calendar, 5 * day, 6 * day, day);
    row("a little out of order", Clock::Calendar, 5 * day, 5 * day - 900, 0);
    row("back", Clock::Calendar, 5 * day, 5 * day - 3 * minute, 0, "the clock goes back by 3 min, to 1970-01-05 23:57:00.000");
    row("set for the first time", Clock::Calendar, 5 * day, 20000 * day, 0, "the clock is set forward by 19995 days, to 2024-10-04 00:00:00.000");
    row("midnight", Clock::Daytime, day - second, second, 2 * second);
    row("back by an hour", Clock::Daytime, 5 * hour, 4 * hour, 0, "the clock goes back by 60 min, to 04:00:00.000");
    row("the new year", Clock::Yearless, 366 * day + 366 * day - second, 366 * day + second, 2 * second);
    row("another start", Clock::Uptime, 500 * second, 3 * second, 0, "the clock goes back by 8 min, to 3.000 s");
}

void LogClockTest::timeGoesForward()
{
    QFETCH(const int, clock);
    QFETCH(const qint64, one);
    QFETCH(const qint64, other);
    LogClock reader;
    QCOMPARE(reader.read({Clock(clock), one}).time, qint64(0));
    const LogClock::Reading reading = reader.read({Clock(clock), other});
    QTEST(reading.time, "passed");
    QTEST(reading.pause, "passed");
    QTEST(reading.jump, "jump");
    QCOMPARE(reading.isReboot, Clock(clock) == Clock::Uptime);
    // From there it goes on as ever.
    const qint64 next = reader.read({Clock(clock), other + second}).time;
    QVERIFY(Clock(clock) == Clock::None || next >= reading.time);
}

void LogClockTest::limitsAreFound_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("time");

    const auto row = [](const char *text, qint64 time) { QTest::newRow(text) << QString::fromLatin1(text) << time; };
    row("+12s", 12 * second);
    row("+12", 12 * second);
    row("+1.5min", 90 * second);
    row("+2h", 2 * hour);
    row("+300ms", 300);
    row("12:03:07", 0);
    row("12:03:08.5", 1500);
    row("12:04", 53 * second);
    row("00:03:07", 12 * hour);
    row("2026-11-22 13:03:07", hour);
    row("2026-11-22T12:03:06", -second);
}

void LogClockTest::limitsAreFound()
{
    QFETCH(const QString, text);
    LogClock clock;
    clock.read(calendar("2026-11-22 12:03:07+0100"));
    const auto limit = LogLimit::read(text);
    QVERIFY(limit.has_value());
    QVERIFY(limit->in(clock).has_value());
    QTEST(*limit->in(clock), "time");
}

void LogClockTest::limitsAreAsLongAsWhatTheyLeaveOut_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("end");
    const auto row = [](const char *text, qint64 end) { QTest::newRow(text) << QString::fromLatin1(text) << end; };
    row("+1.5s", 1500);
    row("12:03:07.000", 0);
    row("12:03:07", second - 1);
    row("12:04", 53 * second + minute - 1);
    row("2026-11-22 12:03:07", second - 1);
    row("2026-11-22 12:03:07.500", second / 2);
    row("2026-11-22 12:03", minute - 7 * second - 1);
}

void LogClockTest::limitsAreAsLongAsWhatTheyLeaveOut()
{
    QFETCH(const QString, text);
    LogClock clock;
    clock.read(calendar("2026-11-22 12:03:07"));
    const auto limit = LogLimit::read(text);
    QVERIFY(limit.has_value());
    QVERIFY(limit->endIn(clock).has_value());
    QTEST(*limit->endIn(clock), "end");
}

void LogClockTest::aClockThatIsSetHasStretches_data()
{
    QTest::addColumn<QVector<QByteArray>>("moments");
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("time");

    const auto row = [](const char *name, const QVector<QByteArray> &moments, const char *text, qint64 time) {
        QTest::newRow(name) << moments << QString::fromLatin1(text) << time;
    };
    const QVector<QByteArray> set{"1970-01-01 00:00:05", "1970-01-01 00:01:05", "2026-11-22 12:00:00", "2026-11-22 12:10:00"};
    row("behind the leap", set, "2026-11-22 12:03:00", 4 * minute);
    row("a daytime behind the leap", set, "12:03:00", 4 * minute);
    row("before the leap", set, "1970-01-01 00:00:35", 30 * second);
    row("leapt over", set, "2000-01-01 00:00:00", minute);
    row("before all", set, "1969-12-31 23:59:59", -6 * second);
    row("behind all", set, "2026-11-22 13:00:00", 61 * minute);
    const QVector<QByteArray> setBack{"2026-11-22 12:00:00", "2026-11-22 13:00:00", "2026-11-22 12:10:00", "2026-11-22 14:00:00"};
    row("twice", setBack, "2026-11-22 12:30:00", 30 * minute);
    row("a daytime twice", setBack, "12:30", 30 * minute);
    row("later than what was set back", setBack, "2026-11-22 13:05:00", hour + 55 * minute);
    row("where it was set back", setBack, "13:00", hour);
    row("the next day's, too", {"2026-11-22 12:00:00", "2026-11-23 13:00:00"}, "12:30", 30 * minute);
    row("the new year", {"2023-12-31 23:00:00", "2024-01-01 01:00:00"}, "00:30", 90 * minute);
}

void LogClockTest::aClockThatIsSetHasStretches()
{
    QFETCH(const QVector<QByteArray>, moments);
    QFETCH(const QString, text);
    LogClock clock;
    for (const QByteArray &moment : moments)
        clock.read(calendar(moment.constData()));
    QTEST(LogLimit::read(text)->in(clock).value_or(0), "time");
}

void LogClockTest::limitsMayNotFit_data()
{
    QTest::addColumn<int>("clock");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("fits");

    QTest::newRow("a day without days") << int(Clock::Daytime) << QStringLiteral("2026-11-22 12:03:07") << false;
    QTest::newRow("a daytime") << int(Clock::Daytime) << QStringLiteral("12:03:07") << true;
    QTest::newRow("a daytime since the start") << int(Clock::Uptime) << QStringLiteral("12:03:07") << false;
    QTest::newRow("seconds since the start") << int(Clock::Uptime) << QStringLiteral("12.5") << true;
    QTest::newRow("a daytime without a year") << int(Clock::Yearless) << QStringLiteral("12:03:07") << true;
    QTest::newRow("a day without a year") << int(Clock::Yearless) << QStringLiteral("Nov 22 12:03:07") << true;
    QTest::newRow("without any time") << int(Clock::None) << QStringLiteral("12:03:07") << false;
    QTest::newRow("an offset without any time") << int(Clock::None) << QStringLiteral("+1s") << true;
}

void LogClockTest::limitsMayNotFit()
{
    QFETCH(const int, clock);
    QFETCH(const QString, text);
    LogClock reader;
    reader.read({Clock(clock), hour});
    const auto limit = LogLimit::read(text);
    QVERIFY(limit.has_value());
    QTEST(limit->in(reader).has_value(), "fits");
}

void LogClockTest::otherTextIsNoLimit_data()
{
    QTest::addColumn<QString>("text");
    for (const char *const text : {"", "+", "+s", "+-1s", "+1d", "+nan", "+inf", "noon", "12", "25:00", "12:03:07 h", "2026-13-01 00:00:00"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void LogClockTest::otherTextIsNoLimit()
{
    QFETCH(const QString, text);
    QVERIFY(!LogLimit::read(text).has_value());
}

QTEST_GUILESS_MAIN(LogClockTest)
#include "tst_logclock.moc"
