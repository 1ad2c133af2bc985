#include <facadetest.h>
#include <platformobject.h>
#include <texts.h>

#include <QtTest/QtTest>

using audio::callPlatform;
using audio::PlatformObject;
using audio::SPAudioSetting::App;
using audio::SPAudioSetting::Mixer;
using audio::SPAudioSetting::Source;
using audio::SPAudioSetting::Volume;

static_assert(!std::is_copy_constructible_v<PlatformObject<Volume>> && !std::is_copy_assignable_v<PlatformObject<Volume>>, "one owner");
static_assert(!std::is_convertible_v<PlatformObject<Volume>, bool>, "tested on purpose only");

namespace
{

/// One harmless call for each kind, as the journal prints it.
struct Volumes
{
    using Object = Volume;
    static int call(const PlatformObject<Volume> &object) { return callPlatform(object, &Volume::setMasterVolume, static_cast<unsigned char>(40)); }
    static constexpr const char *text = "Volume.setMasterVolume(40) -> 0";
};
struct Sources
{
    using Object = Source;
    static int call(const PlatformObject<Source> &object) { return callPlatform(object, &Source::setHandsfreeDelay, 5); }
    static constexpr const char *text = "Source.setHandsfreeDelay(5) -> 0";
};
struct Mixers
{
    using Object = Mixer;
    static int call(const PlatformObject<Mixer> &object) { return callPlatform(object, &Mixer::setFrontRearMode, 0); }
    static constexpr const char *text = "Mixer.setFrontRearMode(0) -> 0";
};
struct Apps
{
    using Object = App;
    static int call(const PlatformObject<App> &object) { return callPlatform(object, &App::enableDps); }
    static constexpr const char *text = "App.enableDps() -> 0";
};

} // namespace

/// The piece that makes a platform object for one operation and destroys it on every path.
class PlatformObjectTest : public FacadeTest
{
    Q_OBJECT

private Q_SLOTS:
    void livesAsLongAsItsScope_data();
    void livesAsLongAsItsScope();
    void isDestroyedOnAnEarlyWayOut_data();
    void isDestroyedOnAnEarlyWayOut();
    void mayBeNull_data();
    void mayBeNull();
    void endsInTheOppositeOrder();
    void passesTheResultOn();
    void countsANullObjectAsAFailure();
    void saysThatThereIsNone();

private:
    void addKinds();
    template<typename Check>
    void forKind(const Check &check);
    template<typename Kind>
    int useAndLeaveEarly(bool early);
    QString line(const char *text) const;

    QString kind;
};

void PlatformObjectTest::addKinds()
{
    QTest::addColumn<QString>("kindName");
    for (const simulator::ObjectKind objectKind : simulator::allObjectKinds)
        QTest::newRow(simulator::objectKindName(objectKind).latin1()) << QString(simulator::objectKindName(objectKind));
}

template<typename Check>
void PlatformObjectTest::forKind(const Check &check)
{
    QFETCH(QString, kindName);
    kind = kindName;
    if (kind == "Volume"_s)
        check(Volumes());
    else if (kind == "Source"_s)
        check(Sources());
    else if (kind == "Mixer"_s)
        check(Mixers());
    else
        check(Apps());
}

QString PlatformObjectTest::line(const char *text) const
{
    return kind + QString::fromLatin1(text);
}

void PlatformObjectTest::livesAsLongAsItsScope_data()
{
    addKinds();
}

void PlatformObjectTest::livesAsLongAsItsScope()
{
    forKind([this](auto type) {
        using Kind = decltype(type);
        {
            const PlatformObject<typename Kind::Object> object;
            QVERIFY(bool(object));
            QVERIFY(object.operator->() != nullptr);
            QCOMPARE(takeCallsAndLifetimes(), QStringList{line(".create() -> ok")});
            QCOMPARE(Kind::call(object), 0);
            QCOMPARE(takeCallsAndLifetimes(), QStringList{QString::fromLatin1(Kind::text)});
        }
        QCOMPARE(takeCallsAndLifetimes(), QStringList{line(".destroy()")});
    });
}

template<typename Kind>
int PlatformObjectTest::useAndLeaveEarly(bool early)
{
    const PlatformObject<typename Kind::Object> object;
    if (early)
        return 1;
    return Kind::call(object);
}

void PlatformObjectTest::isDestroyedOnAnEarlyWayOut_data()
{
    addKinds();
}

void PlatformObjectTest::isDestroyedOnAnEarlyWayOut()
{
    forKind([this](auto type) {
        using Kind = decltype(type);
        QCOMPARE(useAndLeaveEarly<Kind>(true), 1);
        QCOMPARE(takeCallsAndLifetimes(), (QStringList{line(".create() -> ok"), line(".destroy()")}));
        QCOMPARE(useAndLeaveEarly<Kind>(false), 0);
        QCOMPARE(takeCallsAndLifetimes(), (QStringList{line(".create() -> ok"), QString::fromLatin1(Kind::text), line(".destroy()")}));
    });
}

void PlatformObjectTest::mayBeNull_data()
{
    addKinds();
}

void PlatformObjectTest::mayBeNull()
{
    forKind([this](auto type) {
        using Kind = decltype(type);
        QVERIFY(platform->faults()->failFactory(kind));
        {
            const PlatformObject<typename Kind::Object> object;
            QVERIFY(!object);
            QCOMPARE(object.operator->(), nullptr);
            QCOMPARE(Kind::call(object), -1);
        }
        QCOMPARE(takeCallsAndLifetimes(), QStringList{line(".create() -> null")}); // nothing to destroy
    });
}

void PlatformObjectTest::endsInTheOppositeOrder()
{
    {
        const PlatformObject<Source> source;
        const PlatformObject<Volume> volume;
    }
    QCOMPARE(takeCallsAndLifetimes(), (QStringList{"Source.create() -> ok"_s, "Volume.create() -> ok"_s, "Volume.destroy()"_s, "Source.destroy()"_s}));
}

void PlatformObjectTest::passesTheResultOn()
{
    QVERIFY(platform->faults()->fail("Volume.muteTrack"_s, 7));
    QCOMPARE(callPlatform(PlatformObject<Volume>(), &Volume::muteTrack, "main", 0), 7);
    QCOMPARE(callPlatform(inner->volume, &Volume::muteTrack, "main", 0), 7);
    unsigned char volume = 0;
    platform->chip()->setMasterVolume(42);
    QCOMPARE(callPlatform(inner->volume, &Volume::getMasterVolume, &volume, 0), 0);
    QCOMPARE(int(volume), 42);
    audio::audio_eq_parameter_t parameter = {}; // travels by reference
    parameter.channel = 0xFFFF;
    QCOMPARE(callPlatform(inner->app, &App::setEqParameter, parameter), 0);
    QCOMPARE(platform->chip()->lastEqParameter().channel, quint32(0xFFFF));
}

void PlatformObjectTest::countsANullObjectAsAFailure()
{
    Volume *const none = nullptr;
    QCOMPARE(callPlatform(none, &Volume::muteTrack, "main", 0), -1);
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
}

void PlatformObjectTest::saysThatThereIsNone()
{
    const logging::CodeLocation place = {"file.cpp", 12, "void operation()"};
    {
        const PlatformObject<Volume> object(place, "no volume for", "main");
        QVERIFY(bool(object));
    }
    QCOMPARE(log->takeTexts(), QStringList());
    QVERIFY(platform->faults()->failFactory("Volume"_s));
    const PlatformObject<Volume> object(place, "no volume for", "main");
    QVERIFY(!object);
    QCOMPARE(log->takeTexts(), QStringList{"[QT] [Error] [Audiocontrol] line: LINE no volume for main"_s});
}

QTEST_APPLESS_MAIN(PlatformObjectTest)
#include "tst_platformobject.moc"
