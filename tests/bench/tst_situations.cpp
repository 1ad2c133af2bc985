#include "audiopolicyinspector.h"
#include "logrecorder.h"
#include "platform.h"
#include "qmlaudiopolicy.h"
#include "qmlplatform.h"
#include "situations.h"
#include "virtualclock.h"

#include <qzaudio/zelaudiomanager.h>

#include <QtQml/QQmlComponent>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlExpression>
#include <QtQml/qqml.h>
#include <QtTest/QtTest>

#include <functional>
#include <memory>

using simulator::Platform;
using simulator::VirtualClock;

/// What happens in a car at the push of a button: the same whether it is performed here or a scenario does its lines.
class SituationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void performedAsItsLines_data();
    void performedAsItsLines();
    void everyLineIsExpected();
    void hangingUpGoesBack_data();
    void hangingUpGoesBack();
    void linesFollowTheChannel();
    void mistakesThrow_data();
    void mistakesThrow();
    void ignition();
    void rows();
    void boundPolicyFollows();
    void worksWithoutAnEngine();

private:
    QString evaluate(const QString &script);
    QStringList observe(const std::function<void()> &deed);

    QQmlEngine engine;
    std::unique_ptr<QObject> root;
    Situations *situations = nullptr;
};

namespace
{

struct Expected
{
    const char *name;
    const char *lines[2];
    int statusSoon;
    int statusLater; ///< two seconds later
    int channel;
    bool ducked;
};

/// In the order in which they are listed.
constexpr Expected expected[] = {
    {"callComes",
     {"AudioPolicy.updateAudioChannel(AudioPolicy.ChannelBtRingtone);", "AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtRing);"},
     1,
     1,
     11,
     false},
    {"callAnswered",
     {"AudioPolicy.updateAudioChannel(AudioPolicy.ChannelBtPhone);", "AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtTelephony);"},
     2,
     2,
     12,
     false},
    {"callEnds", {"AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);", "AudioPolicy.updateAudioStatus(AudioPolicy.StatusNone);"}, 0, 0, 3, false},
    {"carPlayPromptBegins", {"AudioPolicy.cpDuckAudio(0, 20);"}, 0, 10, 3, true},
    {"carPlayPromptEnds", {"AudioPolicy.cpUnduckAudio(0);"}, 0, 11, 3, false},
    {"androidAutoPromptBegins", {"AudioPolicy.aaDuckAudio(0, 0);"}, 0, 0, 3, true},
    {"androidAutoPromptEnds", {"AudioPolicy.aaUnduckAudio(0);"}, 0, 0, 3, false},
    {"carLifePromptBegins", {"AudioPolicy.clDuckAudio(0, 0);"}, 0, 0, 3, true},
    {"carLifePromptEnds", {"AudioPolicy.clUnduckAudio(0);"}, 0, 0, 3, false},
    {"reverseIn", {"Platform.setReverseGear(true);"}, 0, 10, 3, true},
    {"reverseOut", {"Platform.setReverseGear(false);"}, 0, 11, 3, false},
};

Platform &platform()
{
    return *Platform::instance();
}

int statusNow()
{
    return AudioPolicyInspector(*ZelAudioManager::instance()).status();
}

void pass(int milliseconds)
{
    VirtualClock::installed()->advance(milliseconds);
}

/// The file player plays, nothing is ducked, and no timer runs.
void calmDown()
{
    ZelAudioManager &manager = *ZelAudioManager::instance();
    manager.updateAudioChannel(AudioChannelFilePlayer);
    manager.updateAudioStatus(AudioStatusCarPlaySpeech);
    manager.updateAudioStatus(AudioStatusNone);
    platform().setReverseGear(false);
    pass(5000);
    manager.updateAudioStatus(AudioStatusNone);
    platform().journal()->clear();
}

QObject *makePolicy(QQmlEngine * /*engine*/, QJSEngine * /*scriptEngine*/)
{
    return new QmlAudioPolicy;
}

QObject *makePlatform(QQmlEngine * /*engine*/, QJSEngine * /*scriptEngine*/)
{
    return new QmlPlatform;
}

QStringList valuesOf(const Situations &model, Situations::Role role)
{
    QStringList values;
    for (int row = 0; row < model.rowCount(); ++row)
        values.append(model.data(model.index(row), role).toString());
    return values;
}

} // namespace

void SituationsTest::initTestCase()
{
    qmlRegisterSingletonType<QmlAudioPolicy>("QzAudio", 1, 0, "AudioPolicy", &makePolicy);
    qmlRegisterSingletonType<QmlPlatform>("QzAudio.Simulator", 1, 0, "Platform", &makePlatform);
    qmlRegisterType<Situations>("QzAudio.Simulator", 1, 1, "Situations");
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\nimport QzAudio 1.0\nimport QzAudio.Simulator 1.1\n"
                      "Situations { property int status: AudioPolicy.status }",
                      QUrl());
    const LogRecorder quiet;
    root.reset(component.create());
    QVERIFY2(root, qPrintable(component.errorString()));
    situations = qobject_cast<Situations *>(root.get());
    QVERIFY(situations);
}

void SituationsTest::init()
{
    const LogRecorder quiet;
    calmDown();
}

void SituationsTest::cleanup()
{
    const LogRecorder quiet;
    calmDown();
}

/// Empty, or what is thrown.
QString SituationsTest::evaluate(const QString &script)
{
    QQmlExpression expression(qmlContext(root.get()), root.get(), script);
    expression.evaluate();
    return expression.hasError() ? expression.error().description() : QString();
}

/// Everything that the platform sees and the log says, at the time and for two seconds more.
QStringList SituationsTest::observe(const std::function<void()> &deed)
{
    LogRecorder recorder;
    calmDown();
    recorder.take();
    deed();
    QStringList seen = platform().journal()->calls();
    seen.append(QStringLiteral("reverse gear %1").arg(platform().reverseGear()));
    pass(2000);
    seen += platform().journal()->calls();
    seen.append(QStringLiteral("status %1, channel %2").arg(statusNow()).arg(ZelAudioManager::instance()->currentAudioChannel()));
    return seen + recorder.takeTexts();
}

void SituationsTest::performedAsItsLines_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("statusSoon");
    QTest::addColumn<int>("statusLater");
    QTest::addColumn<int>("channel");
    QTest::addColumn<bool>("ducked");
    for (const Expected &row : expected) {
        QStringList lines;
        for (const char *const line : row.lines) {
            if (line)
                lines.append(QString::fromLatin1(line));
        }
        QTest::newRow(row.name) << lines << row.statusSoon << row.statusLater << row.channel << row.ducked;
    }
}

void SituationsTest::performedAsItsLines()
{
    QFETCH(QStringList, lines);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    situations->setChannelAfterCall(AudioChannelFilePlayer);
    QCOMPARE(situations->lines(name), lines);
    QString thrown;
    const QStringList byLines = observe([&] {
        for (const QString &line : qAsConst(lines))
            thrown += evaluate(line);
    });
    QCOMPARE(thrown, QString());
    const QStringList byName = observe([&] { QVERIFY(situations->perform(name)); });
    // To look for the channel leaves no line, and no call.
    QCOMPARE(byName, byLines);

    const LogRecorder quiet;
    calmDown();
    QVERIFY(situations->perform(name));
    QTEST(statusNow(), "statusSoon");
    QTEST(platform().chip()->isDucked(), "ducked");
    pass(2000);
    QTEST(statusNow(), "statusLater");
    QTEST(ZelAudioManager::instance()->currentAudioChannel(), "channel");
}

void SituationsTest::everyLineIsExpected()
{
    QStringList names = valuesOf(*situations, Situations::NameRole);
    for (const char *const ownTest : {"ignitionOn", "ignitionOff"})
        QVERIFY(names.removeAll(QLatin1String(ownTest)) == 1);
    QStringList known;
    for (const Expected &row : expected)
        known.append(QString::fromLatin1(row.name));
    QCOMPARE(names, known);
}

void SituationsTest::hangingUpGoesBack_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<QString>("performed");
    QTest::addColumn<int>("after");
    QTest::newRow("a call that is answered") << 13 << "callComes, callAnswered, callEnds" << 13;
    QTest::newRow("one that is not") << 2 << "callComes, callEnds" << 2;
    QTest::newRow("a second one comes") << 2 << "callComes, callAnswered, callComes, callAnswered, callEnds" << 2;
    QTest::newRow("a prompt in between") << 19 << "callComes, carPlayPromptBegins, callEnds" << 19;
    QTest::newRow("without a call") << 15 << "callEnds" << 15;
    QTest::newRow("without a channel") << 0 << "callComes, callEnds" << 0;
}

void SituationsTest::hangingUpGoesBack()
{
    QFETCH(int, before);
    QFETCH(QString, performed);
    const LogRecorder quiet;
    ZelAudioManager::instance()->updateAudioChannel(static_cast<AudioChannel>(before));
    const QStringList names = performed.split(QStringLiteral(", "));
    for (const QString &name : names)
        QVERIFY(situations->perform(name));
    QTEST(ZelAudioManager::instance()->currentAudioChannel(), "after");
    QTEST(situations->channelAfterCall(), "after");
}

void SituationsTest::linesFollowTheChannel()
{
    situations->setChannelAfterCall(AudioChannelFilePlayer);
    QSignalSpy changed(situations, &Situations::channelAfterCallChanged);
    QSignalSpy dataChanged(situations, &Situations::dataChanged);
    situations->setChannelAfterCall(AudioChannelDiscPlayer);
    situations->setChannelAfterCall(AudioChannelDiscPlayer);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(dataChanged.count(), 1);
    QCOMPARE(situations->lines(QStringLiteral("callEnds")).constFirst(), QStringLiteral("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelDiscPlayer);"));
    situations->setChannelAfterCall(77);
    QCOMPARE(situations->lines(QStringLiteral("callEnds")).constFirst(), QStringLiteral("AudioPolicy.updateAudioChannel(77);"));
}

void SituationsTest::mistakesThrow_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("thrown");
    QTest::newRow("an unknown name") << "perform('callcomes')"
                                     << "RangeError: there is no situation \"callcomes\"; the nearest is \"callComes\"";
    QTest::newRow("no name") << "perform('')"
                             << "RangeError: there is no situation \"\"";
    QTest::newRow("ignition off") << "perform('ignitionOff')"
                                  << "Error: ignitionOff: the audio of this process is on as long as the process runs";
}

void SituationsTest::mistakesThrow()
{
    QFETCH(QString, script);
    LogRecorder recorder;
    QTEST(evaluate(script), "thrown");
    QCOMPARE(recorder.takeTexts(), QStringList());
    QCOMPARE(platform().journal()->calls(), QStringList());
    QCOMPARE(situations->lines(QStringLiteral("callcomes")), QStringList());
}

void SituationsTest::ignition()
{
    QCOMPARE(situations->lines(QStringLiteral("ignitionOn")), QStringList(QStringLiteral("powerOn();")));
    QCOMPARE(situations->lines(QStringLiteral("ignitionOff")), QStringList(QStringLiteral("powerOff();")));
    QVERIFY(situations->perform(QStringLiteral("ignitionOn")));
    QCOMPARE(platform().journal()->calls(), QStringList());
}

void SituationsTest::rows()
{
    QCOMPARE(valuesOf(*situations, Situations::TitleRole).size(), situations->rowCount());
    QStringList names = valuesOf(*situations, Situations::NameRole);
    QCOMPARE(names.removeDuplicates(), 0);
    const QHash<int, QByteArray> roles = situations->roleNames();
    QHash<QString, int> begun;
    for (int row = 0; row < situations->rowCount(); ++row) {
        const QModelIndex index = situations->index(row);
        for (auto role = roles.cbegin(); role != roles.cend(); ++role)
            QVERIFY2(!situations->data(index, role.key()).toString().isEmpty() || role.key() == Situations::LinesRole, role.value().constData());
        const QString &name = names.at(row);
        QCOMPARE(situations->data(index, Situations::LinesRole).toStringList(), situations->lines(name));
        QCOMPARE(situations->data(index, Situations::PerformableRole).toBool(), name != QLatin1String("ignitionOff"));
        const int phase = situations->data(index, Situations::PhaseRole).toInt();
        begun[situations->data(index, Situations::GroupRole).toString()] += phase == Situations::Begins ? 1 : phase == Situations::Ends ? -1 : 0;
    }
    // What begins, ends.
    QCOMPARE(begun.size(), 6);
    for (const int open : qAsConst(begun))
        QCOMPARE(open, 0);
    QCOMPARE(situations->data(situations->index(99), Situations::NameRole), QVariant());
}

/// The status that QML shows is that of the engine's own AudioPolicy, which is told nothing of what others do to the manager.
void SituationsTest::boundPolicyFollows()
{
    const LogRecorder quiet;
    QCOMPARE(evaluate(QStringLiteral("AudioPolicy.updateAudioStatus(AudioPolicy.StatusNone)")), QString());
    QCOMPARE(root->property("status").toInt(), 0);
    QVERIFY(situations->perform(QStringLiteral("callComes")));
    QCOMPARE(root->property("status").toInt(), 1);
}

void SituationsTest::worksWithoutAnEngine()
{
    const LogRecorder quiet;
    Situations inCode;
    QVERIFY(inCode.perform(QStringLiteral("callComes")));
    QCOMPARE(ZelAudioManager::instance()->currentAudioChannel(), 11);
    QCOMPARE(inCode.channelAfterCall(), 3);
    QVERIFY(inCode.perform(QStringLiteral("callEnds")));
    QCOMPARE(ZelAudioManager::instance()->currentAudioChannel(), 3);
}

int main(int argc, char **argv)
{
    VirtualClock::install();
    QCoreApplication application(argc, argv);
    SituationsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_situations.moc"
