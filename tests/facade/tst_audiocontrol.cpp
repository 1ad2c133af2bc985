#include <facadetest.h>
#include <texts.h>

#include <QtTest/QtTest>

using audio::AudioControl;
using audio::AudioControlPrivate;
using simulator::ObjectKind;

namespace
{

/// Where the class keeps its two members, behind its base.
struct Members
{
    AudioControlPrivate *d;
    bool alterMode;
};

const Members &membersOf(const AudioControl &control)
{
    const void *const members = reinterpret_cast<const char *>(&control) + sizeof(QObject);
    return *static_cast<const Members *>(members);
}

} // namespace

/// The facade as an object: its singleton, its life, its small state.
class AudioControlTest : public FacadeTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyoneGetsTheSameInstance();
    void declaresNothingToItsMetaObject();
    void castsByName();
    void makesVolumeThenApp();
    void leavesItsAppAlive();
    void belongsToItsParent();
    void tellsItsPrivatePartWhoOwnsIt();
    void keepsItsMembersInPlace();

    void startsWithTheseValues();
    void remembersTheStepRange_data();
    void remembersTheStepRange();
    void remembersTheAlternativeMode();
    void ignoresTheProfileMode_data();
    void ignoresTheProfileMode();
};

void AudioControlTest::initTestCase()
{
    // The singleton's objects live on, so it is made before the first test takes stock.
    QVERIFY(platform->journal()->calls(simulator::Journal::Lifetimes::Include).isEmpty());
    QVERIFY(AudioControl::getInstance());
    QCOMPARE(takeCallsAndLifetimes(), (QStringList{"Volume.create() -> ok"_s, "App.create() -> ok"_s}));
}

void AudioControlTest::everyoneGetsTheSameInstance()
{
    AudioControl *const instance = AudioControl::getInstance();
    QCOMPARE(AudioControl::getInstance(), instance);
    QVERIFY(!instance->parent());
    QVERIFY(instance != control.get());
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
}

void AudioControlTest::declaresNothingToItsMetaObject()
{
    const QMetaObject *const meta = control->metaObject();
    QCOMPARE(meta->className(), "audio::AudioControl");
    QCOMPARE(meta->superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta->methodCount(), meta->methodOffset()); // neither signals nor slots
    QCOMPARE(meta->propertyCount(), meta->propertyOffset());
    QCOMPARE(meta->constructorCount(), 0);
}

void AudioControlTest::castsByName()
{
    QObject *const object = control.get();
    QCOMPARE(object->qt_metacast("audio::AudioControl"), control.get());
    QCOMPARE(object->qt_metacast("AudioControl"), nullptr);
    QCOMPARE(qobject_cast<AudioControl *>(object), control.get());
    QObject stranger;
    QCOMPARE(qobject_cast<AudioControl *>(&stranger), nullptr);
}

void AudioControlTest::makesVolumeThenApp()
{
    const AudioControl another;
    ++appsLeftBehind;
    QCOMPARE(takeCallsAndLifetimes(), (QStringList{"Volume.create() -> ok"_s, "App.create() -> ok"_s}));
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioControlTest::leavesItsAppAlive()
{
    const int volumes = platform->books()->alive(ObjectKind::Volume);
    const int apps = platform->books()->alive(ObjectKind::App);
    control.reset();
    QCOMPARE(takeCallsAndLifetimes(), QStringList{"Volume.destroy()"_s});
    QCOMPARE(platform->books()->alive(ObjectKind::Volume), volumes - 1);
    QCOMPARE(platform->books()->alive(ObjectKind::App), apps);
}

void AudioControlTest::belongsToItsParent()
{
    QObject parent;
    const AudioControl child(&parent);
    QCOMPARE(child.parent(), &parent);
    ++appsLeftBehind;
    QVERIFY(!control->parent());
}

void AudioControlTest::tellsItsPrivatePartWhoOwnsIt()
{
    QCOMPARE(membersOf(*control).d->q, control.get());
}

void AudioControlTest::keepsItsMembersInPlace()
{
    QCOMPARE(sizeof(AudioControl), sizeof(QObject) + sizeof(Members));
    QCOMPARE(membersOf(*control).alterMode, true);
    control->setAlterMode(false);
    QCOMPARE(membersOf(*control).alterMode, false);
    control->setStepRange(25);
    QCOMPARE(membersOf(*control).d->stepRange, quint8(25));
}

void AudioControlTest::startsWithTheseValues()
{
    QCOMPARE(control->getStepRang(), quint8(100));
    QCOMPARE(control->getAlterMode(), true);
    QCOMPARE(control->getMasterStepVolume(), quint8(0));
    QCOMPARE(control->getAlterStepVolume(), quint8(0));
    QCOMPARE(control->isMute(), false);
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioControlTest::remembersTheStepRange_data()
{
    QTest::addColumn<int>("range");
    QTest::newRow("0 is not refused") << 0;
    QTest::newRow("1") << 1;
    QTest::newRow("the policy manager's 25") << 25;
    QTest::newRow("255") << 255;
}

void AudioControlTest::remembersTheStepRange()
{
    QFETCH(int, range);
    control->setStepRange(static_cast<quint8>(range));
    QCOMPARE(int(control->getStepRang()), range);
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioControlTest::remembersTheAlternativeMode()
{
    control->setAlterMode(false);
    QCOMPARE(control->getAlterMode(), false);
    control->setAlterMode(true);
    QCOMPARE(control->getAlterMode(), true);
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioControlTest::ignoresTheProfileMode_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("zero") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("lowest") << std::numeric_limits<int>::min();
    QTest::newRow("highest") << std::numeric_limits<int>::max();
}

void AudioControlTest::ignoresTheProfileMode()
{
    QFETCH(int, mode);
    control->setProfileMode(mode);
    startsWithTheseValues();
}

QTEST_APPLESS_MAIN(AudioControlTest)
#include "tst_audiocontrol.moc"
