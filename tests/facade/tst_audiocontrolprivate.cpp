#include <facadetest.h>
#include <texts.h>

#include <QtTest/QtTest>

using audio::AudioControl;
using audio::AudioControlPrivate;
using simulator::ObjectKind;

namespace
{

struct Name
{
    const char *qtName;
    const char *spName;
};

/// Each name that applications use and the platform's name for the same source.
constexpr Name names[] = {
    {"S+FilePlayer_APP", "S+FilePlayer"},
    {"S+DiscPlayer_APP", "S+DiscPlayer"},
    {"BT_AUDIO_Track", "BT_AUDIO_Track"},
    {"S+BtRingtone_APP", "S+BtRingtone"},
    {"S+BtPcmPhone", "S+BtPcmPhone"},
    {"S+BtPcmPhone_APP", "S+BtPcmPhone"},
    {"BT_MIC_Record", "BT_MIC_Record"},
    {"S+AuxIn_APP", "S+AuxIn"},
    {"S+Mic_APP", "S+Mic"},
    {"S+GPS_APP", "S+GPS"},
    {"S+CarPlayMedia_APP", "S+CarPlayMedia"},
    {"S+CarPlayAlert_APP", "S+CarPlayAlert"},
    {"S+CarPlayTelephony_APP", "S+CarPlayTelephony"},
    {"S+CarPlaySpeech_APP", "S+CarPlaySpeech"},
    {"S+CarPlayDefault_APP", "S+CarPlayDefault"},
    {"S+AndroidAuto_APP", "S+AndroidAuto"},
    {"S+IPod_APP", "S+IPod"},
    {"S+CarLife_APP", "S+CarLife"},
    {"S+IosMirror_APP", "S+IosMirror"},
    {"S+WebLink_APP", "S+WebLink"},
    {"s+AirPlayMedia_APP", "S+AirPlayMedia"},
    {"S+none_APP", "S+none"},
};

constexpr const char *tracks[] = {"main", "second", "alternative", "uplink", "input0", "input1", "input2", "main_im"};

/// Every member of a private part, in the order that they stand in.
QVector<const void *> addressesOf(const AudioControlPrivate &part)
{
    return {&part.q,
            &part.volume,
            &part.app,
            &part.mute,
            &part.masterStepInited,
            &part.masterStepVolume,
            &part.alterStepVolume,
            &part.stepRange,
            &part.curMainTrack,
            &part.groupList,
            &part.mainStepVolumes,
            &part.secondStepVolumes,
            &part.qtToSpNames,
            &part.tagNames,
            &part.groups};
}

} // namespace

/// The facade's private part: its names, what it starts with, and its two long-lived objects.
class AudioControlPrivateTest : public FacadeTest
{
    Q_OBJECT

private Q_SLOTS:
    void translatesNames_data();
    void translatesNames();
    void knowsNoOtherNames();
    void findsNoPlatformNameOf_data();
    void findsNoPlatformNameOf();
    void findsTheNameBack_data();
    void findsTheNameBack();
    void findsEitherNameOfThePhoneBack();
    void findsNoNameOf_data();
    void findsNoNameOf();
    void namesTracks_data();
    void namesTracks();
    void findsNoTrackOf_data();
    void findsNoTrackOf();
    void groupsTheFilePlayerWithAndroidAuto();

    void startsWithTheseValues();
    void keepsItsMembersInOrder();
    void makesVolumeThenAppAndDestroysTheVolumeOnly();
    void keepsTheNullOfAFactory_data();
    void keepsTheNullOfAFactory();
};

void AudioControlPrivateTest::translatesNames_data()
{
    QTest::addColumn<QString>("qtName");
    QTest::addColumn<QString>("spName");
    for (const Name &name : names)
        QTest::newRow(name.qtName) << QString::fromLatin1(name.qtName) << QString::fromLatin1(name.spName);
}

void AudioControlPrivateTest::translatesNames()
{
    QFETCH(QString, qtName);
    QFETCH(QString, spName);
    QString result = "left from before"_s;
    inner->trackNameFromQtToSp(qtName, result);
    QCOMPARE(result, spName);
}

void AudioControlPrivateTest::knowsNoOtherNames()
{
    QHash<QString, QString> expected;
    for (const Name &name : names)
        expected.insert(QString::fromLatin1(name.qtName), QString::fromLatin1(name.spName));
    QCOMPARE(expected.size(), 22);
    QCOMPARE(inner->qtToSpNames, expected);
}

void AudioControlPrivateTest::findsNoPlatformNameOf_data()
{
    QTest::addColumn<QString>("qtName");
    QTest::newRow("a platform name") << "S+FilePlayer"_s;
    QTest::newRow("AirPlay with an upper-case first letter") << "S+AirPlayMedia_APP"_s;
    QTest::newRow("a name in lower case") << "s+fileplayer_app"_s;
    QTest::newRow("a name with a space behind it") << "S+FilePlayer_APP "_s;
    QTest::newRow("a boosted source that has no name") << "S+BtPhone_APP"_s;
    QTest::newRow("nobody's name") << "S+Unheard_APP"_s;
    QTest::newRow("an empty name") << ""_s;
    QTest::newRow("a null name") << QString();
}

void AudioControlPrivateTest::findsNoPlatformNameOf()
{
    QFETCH(QString, qtName);
    QString result = "left from before"_s;
    inner->trackNameFromQtToSp(qtName, result);
    QCOMPARE(result, QString());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioControlPrivateTest::findsTheNameBack_data()
{
    QTest::addColumn<QString>("qtName");
    QTest::addColumn<QString>("spName");
    for (const Name &name : names) {
        const bool isPhone = qstrcmp(name.spName, "S+BtPcmPhone") == 0;
        if (!isPhone)
            QTest::newRow(name.spName) << QString::fromLatin1(name.qtName) << QString::fromLatin1(name.spName);
    }
}

void AudioControlPrivateTest::findsTheNameBack()
{
    QFETCH(QString, qtName);
    QFETCH(QString, spName);
    QString result = "left from before"_s;
    inner->trackNameFromSpToQt(spName, result);
    QCOMPARE(result, qtName);
}

void AudioControlPrivateTest::findsEitherNameOfThePhoneBack()
{
    QString result;
    inner->trackNameFromSpToQt("S+BtPcmPhone"_s, result);
    QVERIFY2(result == "S+BtPcmPhone"_s || result == "S+BtPcmPhone_APP"_s, qPrintable(result));
}

void AudioControlPrivateTest::findsNoNameOf_data()
{
    QTest::addColumn<QString>("spName");
    QTest::newRow("a name that is none of the platform's") << "S+FilePlayer_APP"_s;
    QTest::newRow("AirPlay with a lower-case first letter") << "s+AirPlayMedia"_s;
    QTest::newRow("nobody's name") << "S+Unheard"_s;
    QTest::newRow("an empty name") << ""_s;
    QTest::newRow("a null name") << QString();
}

void AudioControlPrivateTest::findsNoNameOf()
{
    QFETCH(QString, spName);
    QString result = "left from before"_s;
    inner->trackNameFromSpToQt(spName, result);
    QCOMPARE(result, QString());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioControlPrivateTest::namesTracks_data()
{
    QTest::addColumn<int>("tag");
    QTest::addColumn<QString>("track");
    for (std::size_t tag = 0; tag < std::size(tracks); ++tag)
        QTest::newRow(tracks[tag]) << static_cast<int>(tag) << QString::fromLatin1(tracks[tag]);
}

void AudioControlPrivateTest::namesTracks()
{
    QFETCH(int, tag);
    QFETCH(QString, track);
    QString result = "left from before"_s;
    inner->tagNameFromQtToSp(static_cast<AudioControl::AudioTag>(tag), result);
    QCOMPARE(result, track);
    QCOMPARE(inner->tagNames.size(), 8);
}

void AudioControlPrivateTest::findsNoTrackOf_data()
{
    QTest::addColumn<int>("tag");
    QTest::newRow("the first beyond") << 8;
    QTest::newRow("the first below") << -1;
    QTest::newRow("lowest") << std::numeric_limits<int>::min();
    QTest::newRow("highest") << std::numeric_limits<int>::max();
    QTest::newRow("0 in its low byte") << 256;
}

void AudioControlPrivateTest::findsNoTrackOf()
{
    QFETCH(int, tag);
    QString result = "left from before"_s;
    inner->tagNameFromQtToSp(static_cast<AudioControl::AudioTag>(tag), result);
    QCOMPARE(result, QString());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioControlPrivateTest::groupsTheFilePlayerWithAndroidAuto()
{
    const QStringList members = {"S+AndroidAuto"_s, "S+FilePlayer"_s};
    QCOMPARE(inner->groupList, members);
    QCOMPARE(inner->groups, (QHash<QString, QStringList>{{"S+FilePlayer"_s, members}}));
}

void AudioControlPrivateTest::startsWithTheseValues()
{
    const AudioControlPrivate fresh;
    ++appsLeftBehind;
    QVERIFY(!fresh.q); // the owner's business
    QVERIFY(fresh.volume);
    QVERIFY(fresh.app);
    QCOMPARE(fresh.mute, false);
    QCOMPARE(fresh.masterStepInited, false);
    QCOMPARE(fresh.masterStepVolume, quint8(0));
    QCOMPARE(fresh.alterStepVolume, quint8(0));
    QCOMPARE(fresh.stepRange, quint8(100));
    QCOMPARE(fresh.curMainTrack, "S+FilePlayer_APP"_s);
    QCOMPARE(fresh.mainStepVolumes, (QHash<QString, quint8>()));
    QCOMPARE(fresh.secondStepVolumes, (QHash<QString, quint8>()));
}

void AudioControlPrivateTest::keepsItsMembersInOrder()
{
    const QVector<const void *> addresses = addressesOf(*inner);
    QVERIFY(std::is_sorted(addresses.cbegin(), addresses.cend(), std::less<>()));
    QCOMPARE(addresses.constFirst(), static_cast<const void *>(inner.get()));
}

void AudioControlPrivateTest::makesVolumeThenAppAndDestroysTheVolumeOnly()
{
    {
        const AudioControlPrivate another;
        ++appsLeftBehind;
        QCOMPARE(takeCallsAndLifetimes(), (QStringList{"Volume.create() -> ok"_s, "App.create() -> ok"_s}));
    }
    QCOMPARE(takeCallsAndLifetimes(), QStringList{"Volume.destroy()"_s});
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioControlPrivateTest::keepsTheNullOfAFactory_data()
{
    QTest::addColumn<bool>("hasVolume");
    QTest::addColumn<bool>("hasApp");
    QTest::newRow("no Volume") << false << true;
    QTest::newRow("no App") << true << false;
    QTest::newRow("neither") << false << false;
}

void AudioControlPrivateTest::keepsTheNullOfAFactory()
{
    QFETCH(bool, hasVolume);
    QFETCH(bool, hasApp);
    if (!hasVolume)
        platform->faults()->failFactory(ObjectKind::Volume);
    if (!hasApp)
        platform->faults()->failFactory(ObjectKind::App);
    {
        const AudioControlPrivate poor;
        appsLeftBehind += hasApp ? 1 : 0;
        QCOMPARE(poor.volume != nullptr, hasVolume);
        QCOMPARE(poor.app != nullptr, hasApp);
        QCOMPARE(poor.qtToSpNames.size(), 22);
        QCOMPARE(takeCallsAndLifetimes(),
                 (QStringList{hasVolume ? "Volume.create() -> ok"_s : "Volume.create() -> null"_s, //
                              hasApp ? "App.create() -> ok"_s : "App.create() -> null"_s}));
    }
    QCOMPARE(takeCallsAndLifetimes(), hasVolume ? QStringList{"Volume.destroy()"_s} : QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
}

QTEST_APPLESS_MAIN(AudioControlPrivateTest)
#include "tst_audiocontrolprivate.moc"
