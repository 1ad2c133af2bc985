#include "forkedlife.h"
#include "lifescenario.h"

#include <virtualclock.h>

#include <rapidcheck.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QLoggingCategory>
#include <QtTest/QtTest>

#include <algorithm>

namespace
{

using lives::Operation;

constexpr int shortest = 100;
constexpr int longest = 400;
constexpr int fewestOperations = LIVES * 240;

/// Lives of all lengths: the size that RapidCheck grows from case to case would make most of them short.
rc::Gen<std::vector<Operation>> anyLife()
{
    return [](const rc::Random &random, int) {
        rc::Random numbers = random;
        std::vector<Operation> life(static_cast<std::size_t>(shortest + numbers.next() % (longest - shortest + 1)));
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
    const bool isUsual = qgetenv("RC_PARAMS").contains("max_success=" QT_STRINGIFY(LIVES));
    QVERIFY2(!isUsual || operations >= fewestOperations, "fewer operations than meant");
}

int main(int argc, char *argv[])
{
    // Which lives, and how many, only RapidCheck's own variable says; what is given there counts.
    QByteArray parameters = qgetenv("RC_PARAMS");
    if (!parameters.contains("max_success="))
        parameters += " max_success=" QT_STRINGIFY(LIVES);
    if (!parameters.contains("seed="))
        parameters += " seed=1";
    qputenv("RC_PARAMS", parameters.trimmed());
    // So that what is done in the order of a hash is the same each time.
    qSetGlobalQHashSeed(0);
    simulator::VirtualClock::install();
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false\ndefault.critical=false\nqzaudio.simulator=false"));
    LivesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_lives.moc"
