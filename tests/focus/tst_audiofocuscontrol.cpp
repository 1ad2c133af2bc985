#include "focusstackaccess.h"
#include "recordingdispatcher.h"

#include <logrecorder.h>

#include <QtTest/QtTest>

#include <memory>

namespace
{

QString voice()
{
    return QStringLiteral("IN_VOICE_COMM_FOCUS_ID");
}

QString lossLine(const char *change, const char *id)
{
    return QStringLiteral("[DBG] THREAD void FocusRequester::handleFocusLoss(int) LINE -- dispatching  \"%1\"  to  \"%2\"")
        .arg(QLatin1String(change), QLatin1String(id));
}

QString gainLine(const char *id)
{
    return QStringLiteral("[DBG] THREAD void FocusRequester::handleFocusGain(int) LINE -- dispatching  \"GAIN\"  to  \"%1\"").arg(QLatin1String(id));
}

QString removalLine(const char *id)
{
    // Two blanks after "AudioFocus", on purpose.
    return QStringLiteral("[DBG] THREAD void AudioFocusControl::removeFocusStackEntry(const QString&, bool) LINE -- "
                          "AudioFocus  removeFocusStackEntry(): removing entry for  \"%1\"")
        .arg(QLatin1String(id));
}

QString dumpLine(const char *id, const char *gain, const char *loss, int streamType)
{
    return QStringLiteral("[DBG] THREAD void FocusRequester::dump() LINE --  -- client:  \"%1\" \n -- gain:  \"%2\" \n -- loss:  \"%3\" \n -- stream:  %4")
        .arg(QLatin1String(id), QLatin1String(gain), QLatin1String(loss))
        .arg(streamType);
}

} // namespace

class AudioFocusControlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void metaObject();
    void emptyStack();
    void firstRequest();
    void duckAndRestore();
    void sameRequestAgain();
    void sameClientOtherHint();
    void sameClientOtherStreamType();
    void sameClientFromBelow();
    void lossesBottomFirst();
    void lossesNeverSoften_data();
    void lossesNeverSoften();
    void uncheckedHint();
    void voiceCommunicationRefuses();
    void voiceCommunicationRefusesItself();
    void voiceCommunicationBelow();
    void voiceCommunicationLeaves();
    void voiceCommunicationIsCaseSensitive();
    void belowVoiceCommunicationAbandons();
    void noGainForVoiceCommunication();
    void abandonUnknown();
    void abandonFromBelow();
    void abandonLast();
    void unregisterTop();
    void unregisterFromBelow();
    void unregisterUnknown();
    void duplicatesBelowTopStay();
    void duplicatesGoWithARequest();
    void duplicatesAllGoFromBelow();
    void discardOwner();
    void discardOwnerAgain();
    void discardEmpty();
    void notifyTop();
    void notifyEmpty();
    void propagate();
    void propagateInvalid();
    void currentFocus_data();
    void currentFocus();
    void entryKeepsItsDispatcher();
    void nullDispatcher();
    void dump();
    void corruptEntryInStack();

private:
    int request(const QString &id, int hint, int streamType = 3) { return control->requestAudioFocus(streamType, hint, &dispatcher, id); }
    QStringList stack() { return stackTexts(*control); }

    std::unique_ptr<AudioFocusControl> control;
    std::unique_ptr<LogRecorder> log;
    RecordingDispatcher dispatcher;
};

void AudioFocusControlTest::init()
{
    control = std::make_unique<AudioFocusControl>();
    dispatcher.take();
    log = std::make_unique<LogRecorder>();
}

void AudioFocusControlTest::cleanup()
{
    log.reset();
    control.reset();
}

void AudioFocusControlTest::metaObject()
{
    const QMetaObject &meta = AudioFocusControl::staticMetaObject;
    QCOMPARE(meta.className(), "AudioFocusControl");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount(), meta.methodOffset()); // none of its own
    QObject parent;
    const AudioFocusControl child(&parent);
    QCOMPARE(child.parent(), &parent);
}

void AudioFocusControlTest::emptyStack()
{
    QCOMPARE(control->getCurrentAudioFocus(), 0);
    QVERIFY(control->canReassignAudioFocus());
    control->dumpFocusStack();
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioFocusControlTest::firstRequest()
{
    QCOMPARE(request(QStringLiteral("A"), 1), 0);
    QCOMPARE(stack(), QStringList(QStringLiteral("A 3 1 0")));
    QCOMPARE(focusStackOf(*control).top().dispatcher, &dispatcher);
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioFocusControlTest::duckAndRestore()
{
    request(QStringLiteral("A"), 1);
    QCOMPARE(request(QStringLiteral("B"), 3), 0);
    QCOMPARE(dispatcher.take(), QStringList(QStringLiteral("-3 A")));
    QCOMPARE(stack(), (QStringList{QStringLiteral("A 3 1 -3"), QStringLiteral("B 3 3 0")}));
    QCOMPARE(control->abandonAudioFocus(QStringLiteral("B")), 0);
    QCOMPARE(dispatcher.take(), QStringList(QStringLiteral("1 A")));
    QCOMPARE(stack(), QStringList(QStringLiteral("A 3 1 0")));
    QCOMPARE(log->takeTexts(), (QStringList{lossLine("LOSS_TRANSIENT_CAN_DUCK", "A"), gainLine("A")}));
}

void AudioFocusControlTest::sameRequestAgain()
{
    request(QStringLiteral("A"), 1);
    request(QStringLiteral("B"), 2);
    dispatcher.take();
    log->take();
    // Not even the new stream type is taken over.
    QCOMPARE(request(QStringLiteral("B"), 2, 9), 0);
    QCOMPARE(stack(), (QStringList{QStringLiteral("A 3 1 -2"), QStringLiteral("B 3 2 0")}));
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioFocusControlTest::sameClientOtherHint()
{
    request(QStringLiteral("A"), 1);
    request(QStringLiteral("B"), 3);
    dispatcher.take();
    log->take();
    QCOMPARE(request(QStringLiteral("B"), 1, 9), 0);
    QCOMPARE(dispatcher.take(), QStringList(QStringLiteral("-1 A"))); // nothing for B
    QCOMPARE(stack(), (QStringList{QStringLiteral("A 3 1 -1"), QStringLiteral("B 9 1 0")}));
    QCOMPARE(log->takeTexts(), QStringList(lossLine("LOSS", "A")));
}

void AudioFocusControlTest::sameClientOtherStreamType()
{
    request(QStringLiteral("A"), 1);
    QCOMPARE(request(QStringLiteral("A"), 2, 9), 0);
    QCOMPARE(stack(), QStringList(QStringLiteral("A 9 2 0")));
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioFocusControlTest::sameClientFromBelow()
{
    request(QStringLiteral("A"), 1);
    request(QStringLiteral("B"), 2);
    request(QStringLiteral("C"), 2);
    dispatcher.take();
    log->take();
    QCOMPARE(request(QStringLiteral("A"), 1), 0);
    QCOMPARE(dispatcher.take(), (QStringList{QStringLiteral("-1 B"), QStringLiteral("-1 C")}));
    QCOMPARE(stack(), (QStringList{QStringLiteral("B 3 2 -1"), QStringLiteral("C 3 2 -1"), QStringLiteral("A 3 1 0")}));
    QCOMPARE(log->takeTexts(), (QStringList{removalLine("A"), lossLine("LOSS", "B"), lossLine("LOSS", "C")}));
}

void AudioFocusControlTest::lossesBottomFirst()
{
    request(QStringLiteral("A"), 1);
    request(QStringLiteral("B"), 1);
    request(QStringLiteral("C"), 3);
    request(QStringLiteral("D"), 2);
    QCOMPARE(dispatcher.take(),
             (QStringList{QStringLiteral("-1 A"), // B
                          QStringLiteral("-3 B"), // C; A keeps its loss
                          QStringLiteral("-2 B"),
                          QStringLiteral("-2 C")})); // D
    QCOMPARE(stack(), (QStringList{QStringLiteral("A 3 1 -1"), QStringLiteral("B 3 1 -2"), QStringLiteral("C 3 3 -2"), QStringLiteral("D 3 2 0")}));
}

void AudioFocusControlTest::lossesNeverSoften_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::addColumn<QStringList>("changes");
    const auto told = [](std::initializer_list<int> losses) {
        QStringList changes;
        for (const int loss : losses)
            changes.append(RecordingDispatcher::text(loss, QStringLiteral("A")));
        return changes;
    };
    QTest::newRow("GAIN, GAIN") << 1 << 1 << told({-1});
    QTest::newRow("GAIN, TRANSIENT") << 1 << 2 << told({-1});
    QTest::newRow("GAIN, MAY_DUCK") << 1 << 3 << told({-1});
    QTest::newRow("GAIN, EXCLUSIVE") << 1 << 4 << told({-1});
    QTest::newRow("TRANSIENT, GAIN") << 2 << 1 << told({-2, -1});
    QTest::newRow("TRANSIENT, TRANSIENT") << 2 << 2 << told({-2});
    QTest::newRow("TRANSIENT, MAY_DUCK") << 2 << 3 << told({-2});
    QTest::newRow("TRANSIENT, EXCLUSIVE") << 2 << 4 << told({-2});
    QTest::newRow("MAY_DUCK, GAIN") << 3 << 1 << told({-3, -1});
    QTest::newRow("MAY_DUCK, TRANSIENT") << 3 << 2 << told({-3, -2});
    QTest::newRow("MAY_DUCK, MAY_DUCK") << 3 << 3 << told({-3});
    QTest::newRow("MAY_DUCK, EXCLUSIVE") << 3 << 4 << told({-3, -2});
    QTest::newRow("EXCLUSIVE, GAIN") << 4 << 1 << told({-2, -1});
    QTest::newRow("EXCLUSIVE, TRANSIENT") << 4 << 2 << told({-2});
    QTest::newRow("EXCLUSIVE, MAY_DUCK") << 4 << 3 << told({-2});
    QTest::newRow("EXCLUSIVE, EXCLUSIVE") << 4 << 4 << told({-2});
}

void AudioFocusControlTest::lossesNeverSoften()
{
    QFETCH(int, first);
    QFETCH(int, second);
    RecordingDispatcher others;
    request(QStringLiteral("A"), 1);
    control->requestAudioFocus(3, first, &others, QStringLiteral("B"));
    control->requestAudioFocus(3, second, &others, QStringLiteral("C"));
    QTEST(dispatcher.take(), "changes");
}

void AudioFocusControlTest::uncheckedHint()
{
    // The callers check hints; a wrong one gets in, and nobody loses anything by it.
    request(QStringLiteral("A"), 1);
    QCOMPARE(request(QStringLiteral("B"), 9), 0);
    QCOMPARE(stack(), (QStringList{QStringLiteral("A 3 1 0"), QStringLiteral("B 3 9 0")}));
    QCOMPARE(control->getCurrentAudioFocus(), 9);
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList(QStringLiteral("[ERR] THREAD int FocusRequester::focusLossForGainRequest(int) LINE -- Invalid focus request  9")));
}

void AudioFocusControlTest::voiceCommunicationRefuses()
{
    request(QStringLiteral("A"), 1);
    request(voice(), 2);
    const QStringList before = stack();
    dispatcher.take();
    log->take();
    QVERIFY(!control->canReassignAudioFocus());
    for (int hint = 1; hint <= 4; ++hint) {
        QCOMPARE(request(QStringLiteral("A"), hint), 1);
        QCOMPARE(request(QStringLiteral("B"), hint), 1);
    }
    QCOMPARE(stack(), before);
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioFocusControlTest::voiceCommunicationRefusesItself()
{
    request(voice(), 2);
    QCOMPARE(request(voice(), 2), 1); // also the same request again
    QCOMPARE(request(voice(), 1), 1);
    QCOMPARE(stack(), QStringList(voice() + QStringLiteral(" 3 2 0")));
}

void AudioFocusControlTest::voiceCommunicationBelow()
{
    request(voice(), 2);
    control->abandonAudioFocus(voice());
    request(QStringLiteral("A"), 1);
    focusStackOf(*control).prepend(FocusRequester(3, 2, &dispatcher, voice()));
    QVERIFY(control->canReassignAudioFocus());
    QCOMPARE(request(QStringLiteral("B"), 2), 0); // only the top counts
}

void AudioFocusControlTest::voiceCommunicationLeaves()
{
    request(QStringLiteral("A"), 1);
    request(voice(), 2);
    dispatcher.take();
    QCOMPARE(control->abandonAudioFocus(voice()), 0);
    QCOMPARE(dispatcher.take(), QStringList(QStringLiteral("1 A")));
    QVERIFY(control->canReassignAudioFocus());
    QCOMPARE(request(QStringLiteral("B"), 2), 0);
}

void AudioFocusControlTest::voiceCommunicationIsCaseSensitive()
{
    request(QStringLiteral("in_voice_comm_focus_id"), 2);
    QVERIFY(control->canReassignAudioFocus());
    QCOMPARE(request(QStringLiteral("A"), 1), 0);
}

void AudioFocusControlTest::belowVoiceCommunicationAbandons()
{
    request(QStringLiteral("A"), 1);
    request(QStringLiteral("B"), 1);
    request(voice(), 2);
    dispatcher.take();
    log->take();
    QCOMPARE(control->abandonAudioFocus(QStringLiteral("A")), 0);
    QCOMPARE(stack(), (QStringList{QStringLiteral("B 3 1 -2"), voice() + QStringLiteral(" 3 2 0")}));
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList(removalLine("A")));
}

void AudioFocusControlTest::noGainForVoiceCommunication()
{
    request(QStringLiteral("A"), 1);
    focusStackOf(*control).prepend(FocusRequester(3, 2, &dispatcher, voice()));
    focusStackOf(*control).first().focusLossReceived = -1;
    QCOMPARE(control->abandonAudioFocus(QStringLiteral("A")), 0);
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(stack(), QStringList(voice() + QStringLiteral(" 3 2 -1")));
}

void AudioFocusControlTest::abandonUnknown()
{
    QCOMPARE(control->abandonAudioFocus(QStringLiteral("A")), 0);
    request(QStringLiteral("A"), 1);
    QCOMPARE(control->abandonAudioFocus(QStringLiteral("a")), 0);
    QCOMPARE(stack(), QStringList(QStringLiteral("A 3 1 0")));
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioFocusControlTest::abandonFromBelow()
{
    request(QStringLiteral("A"), 1);
    request(QStringLiteral("B"), 1);
    request(QStringLiteral("C"), 1);
    dispatcher.take();
    log->take();
    QCOMPARE(control->abandonAudioFocus(QStringLiteral("B")), 0);
    QCOMPARE(stack(), (QStringList{QStringLiteral("A 3 1 -1"), QStringLiteral("C 3 1 0")}));
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList(removalLine("B")));
}

void AudioFocusControlTest::abandonLast()
{
    request(QStringLiteral("A"), 1);
    QCOMPARE(control->abandonAudioFocus(QStringLiteral("A")), 0);
    QCOMPARE(stack(), QStringList());
    QCOMPARE(control->getCurrentAudioFocus(), 0);
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioFocusControlTest::unregisterTop()
{
    request(QStringLiteral("A"), 1);
    request(QStringLiteral("B"), 1);
    dispatcher.take();
    log->take();
    control->unregisterAudioFocusClient(QStringLiteral("B"));
    QCOMPARE(stack(), QStringList(QStringLiteral("A 3 1 -1"))); // on top, and still thinking that it lost focus
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioFocusControlTest::unregisterFromBelow()
{
    request(QStringLiteral("A"), 1);
    request(QStringLiteral("B"), 1);
    dispatcher.take();
    log->take();
    control->unregisterAudioFocusClient(QStringLiteral("A"));
    QCOMPARE(stack(), QStringList(QStringLiteral("B 3 1 0")));
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList(removalLine("A")));
}

void AudioFocusControlTest::unregisterUnknown()
{
    request(QStringLiteral("A"), 1);
    control->unregisterAudioFocusClient(QStringLiteral("B"));
    QCOMPARE(stack(), QStringList(QStringLiteral("A 3 1 0")));
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioFocusControlTest::duplicatesBelowTopStay()
{
    QStack<FocusRequester> &entries = focusStackOf(*control);
    entries.push(FocusRequester(1, 1, &dispatcher, QStringLiteral("A")));
    entries.push(FocusRequester(2, 1, &dispatcher, QStringLiteral("B")));
    entries.push(FocusRequester(3, 1, &dispatcher, QStringLiteral("A")));
    control->removeFocusStackEntry(QStringLiteral("A"), true);
    QCOMPARE(stack(), (QStringList{QStringLiteral("A 1 1 0"), QStringLiteral("B 2 1 0")}));
    QCOMPARE(dispatcher.take(), QStringList(QStringLiteral("1 B")));
    QCOMPARE(log->takeTexts(), QStringList(gainLine("B")));
}

void AudioFocusControlTest::duplicatesGoWithARequest()
{
    QStack<FocusRequester> &entries = focusStackOf(*control);
    entries.push(FocusRequester(1, 1, &dispatcher, QStringLiteral("A")));
    entries.push(FocusRequester(2, 1, &dispatcher, QStringLiteral("B")));
    entries.push(FocusRequester(3, 1, &dispatcher, QStringLiteral("A")));
    QCOMPARE(request(QStringLiteral("A"), 2, 4), 0);
    QCOMPARE(stack(), (QStringList{QStringLiteral("B 2 1 -2"), QStringLiteral("A 4 2 0")}));
    QCOMPARE(dispatcher.take(), QStringList(QStringLiteral("-2 B")));
}

void AudioFocusControlTest::duplicatesAllGoFromBelow()
{
    QStack<FocusRequester> &entries = focusStackOf(*control);
    for (const char *id : {"A", "A", "B", "A", "C"})
        entries.push(FocusRequester(1, 1, &dispatcher, QString::fromLatin1(id)));
    control->removeFocusStackEntry(QStringLiteral("A"), true);
    QCOMPARE(stack(), (QStringList{QStringLiteral("B 1 1 0"), QStringLiteral("C 1 1 0")}));
    QCOMPARE(dispatcher.take(), QStringList()); // the top did not change
    QCOMPARE(log->takeTexts(), (QStringList{removalLine("A"), removalLine("A"), removalLine("A")}));
}

void AudioFocusControlTest::discardOwner()
{
    request(QStringLiteral("A"), 1);
    request(QStringLiteral("B"), 2);
    dispatcher.take();
    log->take();
    control->discardAudioFocusOwner();
    QCOMPARE(dispatcher.take(), QStringList(QStringLiteral("-1 B"))); // no GAIN for A
    QCOMPARE(stack(), QStringList(QStringLiteral("A 3 1 -2")));
    QCOMPARE(log->takeTexts(), QStringList(lossLine("LOSS", "B")));
}

void AudioFocusControlTest::discardOwnerAgain()
{
    request(QStringLiteral("A"), 1);
    request(QStringLiteral("B"), 1);
    control->discardAudioFocusOwner();
    dispatcher.take();
    control->discardAudioFocusOwner();
    QCOMPARE(dispatcher.take(), QStringList()); // A was told of its LOSS before
    QCOMPARE(stack(), QStringList());
    request(voice(), 1);
    control->discardAudioFocusOwner(); // voice() communication, too
    QCOMPARE(dispatcher.take(), QStringList(QStringLiteral("-1 ") + voice()));
}

void AudioFocusControlTest::discardEmpty()
{
    control->discardAudioFocusOwner();
    QCOMPARE(stack(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioFocusControlTest::notifyTop()
{
    request(QStringLiteral("A"), 1);
    request(QStringLiteral("B"), 1);
    focusStackOf(*control).top().focusLossReceived = -3;
    dispatcher.take();
    log->take();
    control->notifyTopOfAudioFocusStack();
    QCOMPARE(dispatcher.take(), QStringList(QStringLiteral("1 B")));
    QCOMPARE(stack(), (QStringList{QStringLiteral("A 3 1 -1"), QStringLiteral("B 3 1 0")}));
    QCOMPARE(log->takeTexts(), QStringList(gainLine("B")));
}

void AudioFocusControlTest::notifyEmpty()
{
    control->notifyTopOfAudioFocusStack();
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioFocusControlTest::propagate()
{
    request(QStringLiteral("A"), 1);
    request(QStringLiteral("B"), 3);
    dispatcher.take();
    control->propagateFocusLossFromGain_syncAf(2);
    QCOMPARE(dispatcher.take(), (QStringList{QStringLiteral("-2 A"), QStringLiteral("-2 B")})); // the top, too
    control->propagateFocusLossFromGain_syncAf(3);
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(stack(), (QStringList{QStringLiteral("A 3 1 -2"), QStringLiteral("B 3 3 -2")}));
}

void AudioFocusControlTest::propagateInvalid()
{
    request(QStringLiteral("A"), 1);
    request(QStringLiteral("B"), 3);
    dispatcher.take();
    control->propagateFocusLossFromGain_syncAf(0);
    QCOMPARE(dispatcher.take(), QStringList(QStringLiteral("0 A"))); // the "loss" 0 after a real one
    QCOMPARE(stack(), (QStringList{QStringLiteral("A 3 1 0"), QStringLiteral("B 3 3 0")}));
}

void AudioFocusControlTest::currentFocus_data()
{
    QTest::addColumn<int>("hint");
    QTest::newRow("GAIN") << 1;
    QTest::newRow("GAIN_TRANSIENT") << 2;
    QTest::newRow("GAIN_TRANSIENT_MAY_DUCK") << 3;
    QTest::newRow("GAIN_TRANSIENT_EXCLUSIVE") << 4;
}

void AudioFocusControlTest::currentFocus()
{
    QFETCH(int, hint);
    request(QStringLiteral("below"), 1);
    request(QStringLiteral("A"), hint);
    QCOMPARE(control->getCurrentAudioFocus(), hint);
    control->abandonAudioFocus(QStringLiteral("A"));
    QCOMPARE(control->getCurrentAudioFocus(), 1);
}

void AudioFocusControlTest::entryKeepsItsDispatcher()
{
    RecordingDispatcher other;
    request(QStringLiteral("A"), 1);
    control->requestAudioFocus(3, 2, &other, QStringLiteral("B"));
    request(QStringLiteral("C"), 1);
    QCOMPARE(dispatcher.take(), (QStringList{QStringLiteral("-2 A"), QStringLiteral("-1 A")}));
    QCOMPARE(other.take(), QStringList(QStringLiteral("-1 B")));
}

void AudioFocusControlTest::nullDispatcher()
{
    QCOMPARE(control->requestAudioFocus(3, 1, nullptr, QStringLiteral("A")), 0);
    request(QStringLiteral("B"), 3);
    QCOMPARE(stack(), (QStringList{QStringLiteral("A 3 1 -3"), QStringLiteral("B 3 3 0")}));
    control->abandonAudioFocus(QStringLiteral("B"));
    QCOMPARE(stack(), QStringList(QStringLiteral("A 3 1 0")));
    QCOMPARE(dispatcher.take(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioFocusControlTest::dump()
{
    request(QStringLiteral("A"), 1, 3);
    request(QStringLiteral("B"), 3, 5);
    dispatcher.take();
    log->take();
    control->dumpFocusStack();
    QCOMPARE(log->takeTexts(), (QStringList{dumpLine("A", "GAIN", "LOSS_TRANSIENT_CAN_DUCK", 3), dumpLine("B", "GAIN_TRANSIENT_MAY_DUCK", "NONE", 5)}));
    QCOMPARE(dispatcher.take(), QStringList());
}

void AudioFocusControlTest::corruptEntryInStack()
{
    request(QStringLiteral("A"), 1);
    focusStackOf(*control).top().focusLossReceived = 77;
    QCOMPARE(request(QStringLiteral("B"), 2), 0);
    QCOMPARE(dispatcher.take(), QStringList(QStringLiteral("0 A"))); // healed by an invalid loss
    QCOMPARE(stack(), (QStringList{QStringLiteral("A 3 1 0"), QStringLiteral("B 3 2 0")}));
    QCOMPARE(
        log->takeTexts(),
        (QStringList{QStringLiteral("[ERR] THREAD int FocusRequester::focusLossForGainRequest(int) LINE -- Invalid focus request  2"), lossLine("NONE", "A")}));
}

QTEST_GUILESS_MAIN(AudioFocusControlTest)
#include "tst_audiofocuscontrol.moc"
