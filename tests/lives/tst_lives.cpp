#include "forkedlife.h"
#include "lifescenario.h"

#include <virtualclock.h>

#include <rapidcheck.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QLoggingCategory>
#include <QtTest/QtTest>

namespace
{

using lives::Operation;

constexpr int shortest = 100;
constexpr int longest = 400;

/// Lives of all lengths: the size that RapidCheck grows from case to case would make most of them short.
rc::Gen<std::vector<Operation>> anyLife()
{
    return [](const rc::Random &random, int) {
        rc::Random numbers = random;
        std::vector<Operation> life(shortest + numbers.next() % (longest - shortest + 1));
        std::generate(life.begin(), life.end(), [&numbers] { return lives::anyOperation([&numbers] { return numbers.next(); }); });
        return rc::shrinkable::shrinkRecur(life, [](const std::vector<Operation> &larger) {
            return rc::seq::concat(rc::shrink::removeChunks(larger),
                                   rc::shrink::eachElement(larger, [](const Operation &one) { return rc::seq::fromContainer(lives::smaller(one)); }));
        });
    };
}

} // namespace

class LivesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anyLifeIsAsTold();
};

void LivesTest::anyLifeIsAsTold()
{
    const QByteArray wanted = qgetenv("LIVES_OPERATIONS");
    qInfo("RC_PARAMS: %s", qgetenv("RC_PARAMS").constData());
    qint64 operations = 0;
    int livesLived = 0;
    std::vector<Operation> smallest;
    QString problem;
    QElapsedTimer timer;
    timer.start();
    const bool holds = rc::check("whatever a unit lives through, it does what the rules say", [&] {
        const std::vector<Operation> life = *anyLife();
        const ForkedLife lived(life);
        operations += lived.operations();
        ++livesLived;
        if (lived.problem().isEmpty())
            return;
        // The last one to fail is the smallest.
        smallest.assign(life.begin(), life.begin() + lived.operations());
        problem = lived.problem();
        fprintf(stderr, "DBG %d %s | %s\n", lived.operations(), qPrintable(problem), lives::toScenario(smallest, {}).right(300).replace('\n', ' ').constData());
        RC_FAIL(problem.toStdString());
    });
    qInfo("%lld operations in %d lives, %.0f in a second", operations, livesLived, double(operations) * 1000 / double(qMax<qint64>(1, timer.elapsed())));
    if (!holds) {
        const QByteArray scenario = lives::toScenario(smallest, problem);
        const QString file = QStringLiteral(FAILED_LIFE);
        QFile saved(file);
        if (saved.open(QIODevice::WriteOnly))
            saved.write(scenario);
        qInfo("%s\n%s", qPrintable(QLatin1String("The smallest life that fails; play it with ./run ") + file), scenario.constData());
    }
    QVERIFY2(holds, qPrintable(problem));
    QVERIFY2(operations >= wanted.toLongLong(), "fewer operations than meant");
}

int main(int argc, char *argv[])
{
    simulator::VirtualClock::install();
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false\ndefault.critical=false\nqzaudio.simulator=false"));
    LivesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_lives.moc"
