#include "crash.h"
#include "recordinglistener.h"

#include <audiomanager_p.h>
#include <logrecorder.h>
#include <qzaudio/audioservice.h>

#include <QtTest/QtTest>

#include <limits>
#include <type_traits>

namespace
{

const char *const deniedLine = "[DBG] THREAD int AudioManager::requestAudioFocus(int, int, IAudioFocusChangeListener*) LINE -- "
                               "Invalid duration hint, audio focus request denied";

/// The private part: the first member of a manager, as those who were compiled against its header rely on.
AudioManagerPrivate *privateOf(AudioManager &manager)
{
    static_assert(std::is_standard_layout_v<AudioManager>);
    return static_cast<AudioManagerPrivate *>(*reinterpret_cast<QxPrivate<AudioManager> **>(&manager));
}

/// Looks before the next request is made: with the mutex still held that would wait for ever.
bool isUnlocked(AudioManager &manager)
{
    QMutex &mutex = privateOf(manager)->mutex;
    if (!mutex.tryLock())
        return false;
    mutex.unlock();
    return true;
}

/// What a ThrowingListener throws.
struct ListenerError
{
    QString client;
};

/// Records what it is told, and throws.
class ThrowingListener : public RecordingListener
{
public:
    using RecordingListener::RecordingListener;

    void onAudioFocusChange(int focusChange) override
    {
        RecordingListener::onAudioFocusChange(focusChange);
        if (isThrowing)
            throw ListenerError{clientId()};
    }

    bool isThrowing = true;
};

class MegaBaseRecorder : public IMegaBaseChangeListener
{
public:
    void onMegaBaseChange(int newValue) override { values.append(newValue); }
    QList<int> values;
};

class VolumeListener : public IVolumeListener
{
};

} // namespace

class AudioManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void instance();
    void privateBases();
    void privateMetaObject_data();
    void privateMetaObject();
    void privateMetaObjectSize();
    void fresh();

    void hints_data();
    void hints();
    void grantIsTheResult();
    void lossAndGain();
    void abandonedListenerHearsNothing();
    void firstListenerKeepsTheId();
    void idIsFreeAfterAbandoning();
    void abandonWithoutRequest();
    void abandonByAnotherObject();
    void failedRequestStaysRegistered();
    void nullListener();
    void idIsAskedForEachTime();
    void unknownIdIsIgnored();
    void nullEntryIsIgnored();
    void emptyTable();
    void throwingListener_data();
    void throwingListener();
    void throwingListenersHideNothing();
    void throwingListenerIsUnregistered();
    void throwingId();
    void throwingWithinAnotherManager();
    void mutexIsHeldAndNotRecursive();

    void megaBase();
    void megaBaseTwice();
    void megaBaseUnknown();
    void megaBaseListenerLeavesWhileTold();
    void megaBaseNullEntry();
    void megaBaseRemovesAllOccurrences();
    void volume();
    void volumeRemovesAllOccurrences();
    void nullMegaBaseListener();
    void nullVolumeListener();

    void reason();
    void nextMegaBase();
    void connectedByName();
};

void AudioManagerTest::instance()
{
    AudioManager *const manager = AudioManager::instance();
    QVERIFY(manager);
    QCOMPARE(AudioManager::instance(), manager);
    QCOMPARE(privateOf(*manager)->thread(), QThread::currentThread());
}

void AudioManagerTest::privateBases()
{
    AudioManager manager;
    AudioManagerPrivate *const inner = privateOf(manager);
    QCOMPARE(inner->q, &manager);
    QCOMPARE(static_cast<void *>(static_cast<QObject *>(inner)), static_cast<void *>(inner)); // QObject comes first
    QVERIFY(static_cast<void *>(static_cast<QxPrivate<AudioManager> *>(inner)) != static_cast<void *>(inner));
    QVERIFY(std::has_virtual_destructor_v<QxPrivate<AudioManager>>);
}

void AudioManagerTest::privateMetaObject_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<QList<QByteArray>>("names");
    QTest::newRow("onAudioFocusChanged") << 0 << QByteArray("onAudioFocusChanged(int,QString)") << (QList<QByteArray>{"newState", "clientId"});
    QTest::newRow("onMegaBaseChanged") << 1 << QByteArray("onMegaBaseChanged(int)") << (QList<QByteArray>{"newValue"});
}

void AudioManagerTest::privateMetaObject()
{
    QFETCH(int, index);
    const QMetaObject &meta = AudioManagerPrivate::staticMetaObject;
    const QMetaMethod method = meta.method(meta.methodOffset() + index);
    QTEST(method.methodSignature(), "signature");
    QTEST(method.parameterNames(), "names");
    QCOMPARE(method.methodType(), QMetaMethod::Slot);
    QCOMPARE(method.access(), QMetaMethod::Public);
    QCOMPARE(method.returnType(), int(QMetaType::Void));
}

void AudioManagerTest::privateMetaObjectSize()
{
    const QMetaObject &meta = AudioManagerPrivate::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
}

void AudioManagerTest::fresh()
{
    AudioManager manager;
    const AudioManagerPrivate *const inner = privateOf(manager);
    QVERIFY(!inner->parent());
    QVERIFY(inner->listeners.isEmpty());
    QVERIFY(inner->megaBaseListeners.isEmpty());
    QVERIFY(inner->volumeListeners.isEmpty());
    QCOMPARE(inner->service->parent(), inner);
    QCOMPARE(inner->service->getCurrentAudioFocus(), 0);
    QCOMPARE(manager.reason(), 0);
}

void AudioManagerTest::hints_data()
{
    QTest::addColumn<int>("hint");
    QTest::addColumn<int>("result");
    QTest::newRow("NONE") << 0 << 1;
    QTest::newRow("GAIN") << 1 << 0;
    QTest::newRow("GAIN_TRANSIENT") << 2 << 0;
    QTest::newRow("GAIN_TRANSIENT_MAY_DUCK") << 3 << 0;
    QTest::newRow("GAIN_TRANSIENT_EXCLUSIVE") << 4 << 0;
    QTest::newRow("above") << 5 << 1;
    QTest::newRow("LOSS") << -1 << 1;
    QTest::newRow("highest") << std::numeric_limits<int>::max() << 1;
    QTest::newRow("lowest") << std::numeric_limits<int>::min() << 1;
}

void AudioManagerTest::hints()
{
    QFETCH(int, hint);
    QFETCH(int, result);
    AudioManager manager;
    RecordingListener listener(QStringLiteral("A"));
    LogRecorder log;
    QCOMPARE(manager.requestAudioFocus(3, hint, &listener), result);
    const bool isGranted = result == 0;
    QCOMPARE(log.takeTexts(), isGranted ? QStringList() : QStringList(QString::fromLatin1(deniedLine)));
    QCOMPARE(privateOf(manager)->listeners.contains(QStringLiteral("A")), isGranted);
    QCOMPARE(privateOf(manager)->service->getCurrentAudioFocus(), isGranted ? hint : 0);
    QCOMPARE(listener.take(), QList<int>());
}

void AudioManagerTest::grantIsTheResult()
{
    AudioManager manager;
    RecordingListener listener(QStringLiteral("A"));
    QCOMPARE(manager.requestAudioFocus(3, 1, &listener), 0);
    QCOMPARE(manager.requestAudioFocus(3, 1, &listener), 0);
    QCOMPARE(listener.take(), QList<int>());
}

void AudioManagerTest::lossAndGain()
{
    AudioManager manager;
    RecordingListener music(QStringLiteral("music"));
    RecordingListener prompt(QStringLiteral("prompt"));
    RecordingListener call(QStringLiteral("call"));
    manager.requestAudioFocus(3, 1, &music);
    QCOMPARE(manager.requestAudioFocus(3, 3, &prompt), 0);
    QCOMPARE(music.take(), QList<int>{-3}); // told before the request returns
    QCOMPARE(manager.requestAudioFocus(3, 2, &call), 0);
    QCOMPARE(music.take(), QList<int>{-2});
    QCOMPARE(prompt.take(), QList<int>{-2});
    QCOMPARE(manager.abandonAudioFocus(&prompt), 0); // from below: nobody hears of it
    QCOMPARE(manager.abandonAudioFocus(&call), 0);
    QCOMPARE(music.take(), QList<int>{1});
    QCOMPARE(prompt.take(), QList<int>());
    QCOMPARE(call.take(), QList<int>());
}

void AudioManagerTest::abandonedListenerHearsNothing()
{
    AudioManager manager;
    RecordingListener first(QStringLiteral("A"));
    RecordingListener second(QStringLiteral("B"));
    manager.requestAudioFocus(3, 1, &first);
    manager.abandonAudioFocus(&first);
    QVERIFY(privateOf(manager)->listeners.isEmpty());
    manager.requestAudioFocus(3, 1, &second);
    QCOMPARE(first.take(), QList<int>());
    // Even when a change for its id still comes.
    privateOf(manager)->onAudioFocusChanged(-1, QStringLiteral("A"));
    QCOMPARE(first.take(), QList<int>());
}

void AudioManagerTest::firstListenerKeepsTheId()
{
    AudioManager manager;
    RecordingListener first(QStringLiteral("A"));
    RecordingListener second(QStringLiteral("A"));
    RecordingListener other(QStringLiteral("B"));
    manager.requestAudioFocus(3, 1, &first);
    QCOMPARE(manager.requestAudioFocus(3, 2, &second), 0);
    QCOMPARE(privateOf(manager)->listeners.size(), 1);
    QCOMPARE(privateOf(manager)->service->getCurrentAudioFocus(), 2);
    manager.requestAudioFocus(3, 1, &other);
    QCOMPARE(first.take(), QList<int>{-1});
    QCOMPARE(second.take(), QList<int>());
}

void AudioManagerTest::idIsFreeAfterAbandoning()
{
    AudioManager manager;
    RecordingListener first(QStringLiteral("A"));
    RecordingListener second(QStringLiteral("A"));
    RecordingListener other(QStringLiteral("B"));
    manager.requestAudioFocus(3, 1, &first);
    manager.abandonAudioFocus(&first);
    manager.requestAudioFocus(3, 1, &second);
    manager.requestAudioFocus(3, 1, &other);
    QCOMPARE(first.take(), QList<int>());
    QCOMPARE(second.take(), QList<int>{-1});
}

void AudioManagerTest::abandonWithoutRequest()
{
    AudioManager manager;
    RecordingListener holder(QStringLiteral("A"));
    RecordingListener stranger(QStringLiteral("B"));
    manager.requestAudioFocus(3, 1, &holder);
    LogRecorder log;
    QCOMPARE(manager.abandonAudioFocus(&stranger), 0);
    QCOMPARE(log.takeTexts(), QStringList());
    QCOMPARE(holder.take(), QList<int>());
    QCOMPARE(privateOf(manager)->service->getCurrentAudioFocus(), 1);
}

void AudioManagerTest::abandonByAnotherObject()
{
    AudioManager manager;
    RecordingListener first(QStringLiteral("A"));
    RecordingListener second(QStringLiteral("A"));
    manager.requestAudioFocus(3, 1, &first);
    QCOMPARE(manager.abandonAudioFocus(&second), 0); // the same id is the same client
    QVERIFY(privateOf(manager)->listeners.isEmpty());
    QCOMPARE(privateOf(manager)->service->getCurrentAudioFocus(), 0);
}

void AudioManagerTest::failedRequestStaysRegistered()
{
    AudioManager manager;
    RecordingListener voice(QStringLiteral("IN_VOICE_COMM_FOCUS_ID"));
    RecordingListener music(QStringLiteral("music"));
    manager.requestAudioFocus(0, 2, &voice);
    QCOMPARE(manager.requestAudioFocus(3, 1, &music), 1);
    QCOMPARE(privateOf(manager)->listeners.value(QStringLiteral("music")), &music);
    manager.abandonAudioFocus(&voice);
    QCOMPARE(music.take(), QList<int>()); // not in the stack
}

void AudioManagerTest::nullListener()
{
    AudioManager manager;
    RecordingListener other(QStringLiteral("B"));
    QCOMPARE(manager.requestAudioFocus(3, 1, nullptr), 0);
    QCOMPARE(privateOf(manager)->listeners.size(), 1);
    QVERIFY(privateOf(manager)->listeners.contains(QString()));
    QCOMPARE(manager.requestAudioFocus(3, 1, &other), 0); // the loss goes to nobody
    QCOMPARE(manager.abandonAudioFocus(&other), 0);
    QCOMPARE(privateOf(manager)->service->getCurrentAudioFocus(), 1);
    QCOMPARE(manager.abandonAudioFocus(nullptr), 0);
    QCOMPARE(privateOf(manager)->service->getCurrentAudioFocus(), 0);
    QVERIFY(privateOf(manager)->listeners.isEmpty());

    AudioManagerPrivate *const inner = privateOf(manager);
    QVERIFY(inner->getIdForAudioFocusListener(nullptr).isNull());
    QCOMPARE(inner->getIdForAudioFocusListener(&other), QStringLiteral("B"));
}

void AudioManagerTest::idIsAskedForEachTime()
{
    class Chameleon : public IAudioFocusChangeListener
    {
    public:
        void onAudioFocusChange(int) override { }
        QString clientId() override { return id; }
        QString id = QStringLiteral("A");
    };
    AudioManager manager;
    Chameleon listener;
    manager.requestAudioFocus(3, 1, &listener);
    listener.id = QStringLiteral("B");
    QCOMPARE(manager.abandonAudioFocus(&listener), 0);
    QCOMPARE(privateOf(manager)->listeners.keys(), QList<QString>{QStringLiteral("A")});
    QCOMPARE(privateOf(manager)->service->getCurrentAudioFocus(), 1);
}

void AudioManagerTest::unknownIdIsIgnored()
{
    AudioManager manager;
    RecordingListener listener(QStringLiteral("A"));
    manager.requestAudioFocus(3, 1, &listener);
    privateOf(manager)->onAudioFocusChanged(-1, QStringLiteral("B"));
    QCOMPARE(listener.take(), QList<int>());
    privateOf(manager)->onAudioFocusChanged(42, QStringLiteral("A")); // any code is passed on
    QCOMPARE(listener.take(), QList<int>{42});
}

void AudioManagerTest::nullEntryIsIgnored()
{
    AudioManager manager;
    privateOf(manager)->registerAudioFocusListener(nullptr);
    privateOf(manager)->onAudioFocusChanged(-1, QString());
    QCOMPARE(privateOf(manager)->listeners.size(), 1);
    privateOf(manager)->unregisterAudioFocusListener(nullptr);
    QVERIFY(privateOf(manager)->listeners.isEmpty());
}

void AudioManagerTest::emptyTable()
{
    AudioManager manager;
    LogRecorder log;
    privateOf(manager)->onAudioFocusChanged(-1, QStringLiteral("A"));
    QVERIFY(privateOf(manager)->listeners.isEmpty());
    QCOMPARE(log.takeTexts(), QStringList());
}

void AudioManagerTest::throwingListener_data()
{
    QTest::addColumn<bool>("onGain");
    QTest::newRow("told of a loss by a request") << false;
    QTest::newRow("told of a gain by an abandonment") << true;
}

void AudioManagerTest::throwingListener()
{
    QFETCH(bool, onGain);
    AudioManager manager;
    AudioService *const service = privateOf(manager)->service;
    ThrowingListener thrower(QStringLiteral("thrower"));
    RecordingListener above(QStringLiteral("above"));
    RecordingListener next(QStringLiteral("next"));
    manager.requestAudioFocus(3, 1, &thrower);
    if (onGain) {
        thrower.isThrowing = false;
        manager.requestAudioFocus(3, 2, &above);
        thrower.take();
        thrower.isThrowing = true;
        QVERIFY_EXCEPTION_THROWN(manager.abandonAudioFocus(&above), ListenerError);
        QCOMPARE(thrower.take(), QList<int>{1});
        QCOMPARE(service->getCurrentAudioFocus(), 1);
        // Whoever abandoned has done so.
        QVERIFY(!privateOf(manager)->listeners.contains(QStringLiteral("above")));
    } else {
        QVERIFY_EXCEPTION_THROWN(manager.requestAudioFocus(3, 2, &above), ListenerError);
        QCOMPARE(thrower.take(), QList<int>{-2});
        QCOMPARE(service->getCurrentAudioFocus(), 2); // granted all the same
    }

    // Work goes on as if the listener had returned: the loss that it threw at counts as told, and the gain undid the loss.
    thrower.isThrowing = false;
    QVERIFY(isUnlocked(manager));
    QCOMPARE(manager.requestAudioFocus(3, 2, &next), 0);
    QCOMPARE(thrower.take(), onGain ? QList<int>{-2} : QList<int>());
    QCOMPARE(above.take(), onGain ? QList<int>() : QList<int>{-2});
    QVERIFY(isUnlocked(manager));
    QCOMPARE(manager.abandonAudioFocus(&next), 0);
    QCOMPARE((onGain ? thrower.take() : above.take()), QList<int>{1});
    QVERIFY(isUnlocked(manager));
    QCOMPARE(manager.abandonAudioFocus(&thrower), 0);
    QCOMPARE(manager.abandonAudioFocus(&above), 0);
    QCOMPARE(service->getCurrentAudioFocus(), 0);
    QVERIFY(privateOf(manager)->listeners.isEmpty());
}

void AudioManagerTest::throwingListenersHideNothing()
{
    AudioManager manager;
    ThrowingListener first(QStringLiteral("first"));
    RecordingListener middle(QStringLiteral("middle"));
    ThrowingListener last(QStringLiteral("last"));
    RecordingListener call(QStringLiteral("call"));
    first.isThrowing = false;
    manager.requestAudioFocus(3, 1, &first);
    manager.requestAudioFocus(3, 2, &middle);
    manager.requestAudioFocus(3, 2, &last);
    first.isThrowing = true;
    first.take();
    middle.take();
    {
        LogRecorder log;
        QString who;
        try {
            manager.requestAudioFocus(3, 1, &call);
        } catch (const ListenerError &error) {
            who = error.client;
        }
        QCOMPARE(who, QStringLiteral("first"));
        const QStringList failures = log.takeTexts().filter(QLatin1String("[ERR]"));
        QCOMPARE(failures,
                 QStringList(QStringLiteral("[ERR] THREAD void AudioManagerPrivate::onAudioFocusChanged(int, QString) LINE -- audio focus listener \"last\" "
                                            "threw, too; only the first exception is passed on")));
    }
    QCOMPARE(first.take(), QList<int>{-1});
    QCOMPARE(middle.take(), QList<int>{-1});
    QCOMPARE(last.take(), QList<int>{-1});
    QVERIFY(isUnlocked(manager));
    QCOMPARE(privateOf(manager)->service->getCurrentAudioFocus(), 1);
    // What was thrown once is not thrown again.
    QCOMPARE(manager.requestAudioFocus(3, 1, &call), 0);
}

void AudioManagerTest::throwingListenerIsUnregistered()
{
    AudioManager manager;
    AudioService *const service = privateOf(manager)->service;
    ThrowingListener thrower(QStringLiteral("thrower"));
    RecordingListener other(QStringLiteral("other"));
    manager.requestAudioFocus(3, 1, &thrower);
    QVERIFY_EXCEPTION_THROWN(manager.requestAudioFocus(3, 3, &other), ListenerError);
    thrower.take();
    service->unregisterAudioFocusClient(QStringLiteral("thrower")); // from below, and nobody is told
    QVERIFY(isUnlocked(manager));
    QCOMPARE(manager.abandonAudioFocus(&other), 0);
    QCOMPARE(thrower.take(), QList<int>());
    QCOMPARE(service->getCurrentAudioFocus(), 0);
    QVERIFY(isUnlocked(manager));
    QCOMPARE(manager.abandonAudioFocus(&thrower), 0);
    QVERIFY(privateOf(manager)->listeners.isEmpty());

    // And from the top.
    manager.requestAudioFocus(3, 1, &thrower);
    QVERIFY_EXCEPTION_THROWN(manager.requestAudioFocus(3, 1, &other), ListenerError);
    service->unregisterAudioFocusClient(QStringLiteral("other"));
    QVERIFY(isUnlocked(manager));
    QCOMPARE(manager.requestAudioFocus(3, 4, &other), 0); // a loss that it received already, so it is not told, and does not throw
    QCOMPARE(service->getCurrentAudioFocus(), 4);
}

void AudioManagerTest::throwingId()
{
    AudioManager manager;
    class Nameless : public IAudioFocusChangeListener
    {
    public:
        void onAudioFocusChange(int) override { }
        QString clientId() override { throw ListenerError{}; }
    };
    Nameless nameless;
    RecordingListener other(QStringLiteral("other"));
    QVERIFY_EXCEPTION_THROWN(manager.requestAudioFocus(3, 1, &nameless), ListenerError);
    QVERIFY(isUnlocked(manager));
    QVERIFY_EXCEPTION_THROWN(manager.abandonAudioFocus(&nameless), ListenerError);
    QVERIFY(isUnlocked(manager));
    QVERIFY(privateOf(manager)->listeners.isEmpty());
    QCOMPARE(manager.requestAudioFocus(3, 1, &other), 0);
}

void AudioManagerTest::throwingWithinAnotherManager()
{
    // Each manager's exception goes to its own caller.
    class Forwarder : public IAudioFocusChangeListener
    {
    public:
        void onAudioFocusChange(int) override
        {
            try {
                inner->requestAudioFocus(3, 1, other);
            } catch (const ListenerError &error) {
                caught = error.client;
            }
            throw ListenerError{QStringLiteral("forwarder")};
        }
        QString clientId() override { return QStringLiteral("forwarder"); }
        AudioManager *inner = nullptr;
        IAudioFocusChangeListener *other = nullptr;
        QString caught;
    };
    AudioManager outer;
    AudioManager inner;
    ThrowingListener thrower(QStringLiteral("thrower"));
    RecordingListener other(QStringLiteral("other"));
    inner.requestAudioFocus(3, 1, &thrower);
    Forwarder forwarder;
    forwarder.inner = &inner;
    forwarder.other = &other;
    outer.requestAudioFocus(3, 1, &forwarder);
    QString who;
    try {
        outer.requestAudioFocus(3, 1, &other);
    } catch (const ListenerError &error) {
        who = error.client;
    }
    QCOMPARE(forwarder.caught, QStringLiteral("thrower"));
    QCOMPARE(who, QStringLiteral("forwarder"));
    QVERIFY(isUnlocked(inner));
    QVERIFY(isUnlocked(outer));
}

void AudioManagerTest::mutexIsHeldAndNotRecursive()
{
    class Prober : public IAudioFocusChangeListener
    {
    public:
        void onAudioFocusChange(int) override { wasFree.append(mutex->tryLock()); }
        QString clientId() override { return QStringLiteral("A"); }
        QMutex *mutex = nullptr;
        QList<bool> wasFree;
    };
    AudioManager manager;
    Prober prober;
    prober.mutex = &privateOf(manager)->mutex;
    RecordingListener other(QStringLiteral("B"));
    manager.requestAudioFocus(3, 1, &prober);
    manager.requestAudioFocus(3, 2, &other);
    manager.abandonAudioFocus(&other);
    QCOMPARE(prober.wasFree, (QList<bool>{false, false}));
    QVERIFY(!prober.mutex->isRecursive());
    // Free again afterwards, also after a denial.
    manager.requestAudioFocus(3, 0, &other);
    QVERIFY(prober.mutex->tryLock());
    prober.mutex->unlock();
}

void AudioManagerTest::megaBase()
{
    AudioManager manager;
    MegaBaseRecorder first;
    MegaBaseRecorder second;
    manager.requestMegaBase(&first);
    manager.requestMegaBase(&second);
    privateOf(manager)->onMegaBaseChanged(4);
    QCOMPARE(first.values, QList<int>{4});
    QCOMPARE(second.values, QList<int>{4});
    manager.abandonMegaBase(&first);
    privateOf(manager)->onMegaBaseChanged(-1);
    QCOMPARE(first.values, QList<int>{4});
    QCOMPARE(second.values, (QList<int>{4, -1}));
}

void AudioManagerTest::megaBaseTwice()
{
    AudioManager manager;
    MegaBaseRecorder listener;
    manager.requestMegaBase(&listener);
    manager.requestMegaBase(&listener);
    QCOMPARE(privateOf(manager)->megaBaseListeners, QList<IMegaBaseChangeListener *>{&listener});
    privateOf(manager)->onMegaBaseChanged(1);
    QCOMPARE(listener.values, QList<int>{1});
}

void AudioManagerTest::megaBaseUnknown()
{
    AudioManager manager;
    MegaBaseRecorder known;
    MegaBaseRecorder unknown;
    manager.requestMegaBase(&known);
    manager.abandonMegaBase(&unknown);
    manager.abandonMegaBase(nullptr);
    QCOMPARE(privateOf(manager)->megaBaseListeners, QList<IMegaBaseChangeListener *>{&known});
}

void AudioManagerTest::megaBaseListenerLeavesWhileTold()
{
    class Leaver : public IMegaBaseChangeListener
    {
    public:
        void onMegaBaseChange(int) override
        {
            ++told;
            manager->abandonMegaBase(this);
            manager->requestMegaBase(next);
        }
        AudioManager *manager = nullptr;
        IMegaBaseChangeListener *next = nullptr;
        int told = 0;
    };
    AudioManager manager;
    Leaver leaver;
    MegaBaseRecorder stayer;
    MegaBaseRecorder next;
    leaver.manager = &manager;
    leaver.next = &next;
    manager.requestMegaBase(&leaver);
    manager.requestMegaBase(&stayer);
    privateOf(manager)->onMegaBaseChanged(2);
    QCOMPARE(leaver.told, 1);
    QCOMPARE(stayer.values, QList<int>{2}); // nobody is skipped
    QCOMPARE(next.values, QList<int>()); // and who came meanwhile waits for the next change
}

void AudioManagerTest::megaBaseNullEntry()
{
    AudioManager manager;
    MegaBaseRecorder listener;
    privateOf(manager)->megaBaseListeners.append(nullptr);
    manager.requestMegaBase(&listener);
    privateOf(manager)->onMegaBaseChanged(3);
    QCOMPARE(listener.values, QList<int>{3});
}

void AudioManagerTest::megaBaseRemovesAllOccurrences()
{
    AudioManager manager;
    MegaBaseRecorder listener;
    MegaBaseRecorder other;
    privateOf(manager)->megaBaseListeners = {&listener, &other, &listener};
    manager.abandonMegaBase(&listener);
    QCOMPARE(privateOf(manager)->megaBaseListeners, QList<IMegaBaseChangeListener *>{&other});
}

void AudioManagerTest::volume()
{
    AudioManager manager;
    VolumeListener first;
    VolumeListener second;
    manager.requestVolume(&first);
    manager.requestVolume(&second);
    manager.requestVolume(&first);
    QCOMPARE(privateOf(manager)->volumeListeners, (QList<IVolumeListener *>{&first, &second}));
    manager.abandonVolume(&first);
    manager.abandonVolume(&first);
    manager.abandonVolume(nullptr);
    QCOMPARE(privateOf(manager)->volumeListeners, QList<IVolumeListener *>{&second});
}

void AudioManagerTest::volumeRemovesAllOccurrences()
{
    AudioManager manager;
    VolumeListener listener;
    VolumeListener other;
    privateOf(manager)->volumeListeners = {&listener, &other, &listener};
    manager.abandonVolume(&listener);
    QCOMPARE(privateOf(manager)->volumeListeners, QList<IVolumeListener *>{&other});
}

void AudioManagerTest::nullMegaBaseListener()
{
    const Crash crash = crashOf([] {
        AudioManager manager;
        manager.requestMegaBase(nullptr);
    });
    QVERIFY(crash.aborted);
    QVERIFY2(crash.errorOutput.startsWith("ASSERT: \"listener != NULL\" in file "), crash.errorOutput.constData());
}

void AudioManagerTest::nullVolumeListener()
{
    const Crash crash = crashOf([] {
        AudioManager manager;
        manager.requestVolume(nullptr);
    });
    QVERIFY(crash.aborted);
    QVERIFY2(crash.errorOutput.startsWith("ASSERT: \"listener != NULL\" in file "), crash.errorOutput.constData());

    // What does not assert comes back.
    QVERIFY(!crashOf([] { AudioManager().abandonVolume(nullptr); }).aborted);
}

void AudioManagerTest::reason()
{
    AudioManager manager;
    manager.setReason(7);
    QCOMPARE(manager.reason(), 7);
    manager.setReason(-1);
    QCOMPARE(manager.reason(), -1);
}

void AudioManagerTest::nextMegaBase()
{
    AudioManager manager;
    MegaBaseRecorder listener;
    manager.requestMegaBase(&listener);
    LogRecorder log;
    manager.nextMegaBase();
    QCOMPARE(listener.values, QList<int>());
    QCOMPARE(log.takeTexts(), QStringList());
}

void AudioManagerTest::connectedByName()
{
    AudioManager manager;
    RecordingListener listener(QStringLiteral("A"));
    manager.requestAudioFocus(3, 1, &listener);
    AudioService *const service = privateOf(manager)->service;
    service->dispatchAudioFocusChange(-2, QStringLiteral("A"));
    QCOMPARE(listener.take(), QList<int>{-2});
    QVERIFY(QMetaObject::invokeMethod(privateOf(manager), "onAudioFocusChanged", Q_ARG(int, -3), Q_ARG(QString, QStringLiteral("A"))));
    QCOMPARE(listener.take(), QList<int>{-3});
    MegaBaseRecorder megaBaseListener;
    manager.requestMegaBase(&megaBaseListener);
    QVERIFY(QMetaObject::invokeMethod(privateOf(manager), "onMegaBaseChanged", Q_ARG(int, 6)));
    QCOMPARE(megaBaseListener.values, QList<int>{6});
}

QTEST_GUILESS_MAIN(AudioManagerTest)
#include "tst_audiomanager.moc"
