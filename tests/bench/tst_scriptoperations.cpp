#include "audiocontroltables.h"
#include "audiopolicyinspector.h"
#include "logrecorder.h"
#include "memberaccess.h"
#include "operationcalls.h"
#include "qmlaudiocontrol.h"
#include "qmlaudiopolicy.h"
#include "qmlaudiosettings.h"
#include "qmlplatform.h"
#include "settingsfile.h"
#include "virtualclock.h"

#include <QtCore/QLoggingCategory>
#include <QtQml/QJSEngine>
#include <QtQml/QQmlEngine>
#include <QtTest/QtTest>

#include <algorithm>
#include <functional>
#include <memory>

using audio::AudioControl;
using audio::AudioDataBase;
using simulator::AudioChip;
using simulator::Platform;
using simulator::VirtualClock;

namespace
{

OPEN_MEMBER(ZelAudioManager, cpDucking, bool)

/// Gives nothing but this, whatever it is asked for.
constexpr const char *zeroForEver = "getAlterStepVolume";

/// What their arguments are is not asked for.
constexpr const char *unused[] = {"aaDuckAudio", "clDuckAudio"};

/// Volumes 11 to 17; every other value of the settings is another number.
constexpr const char *settings = "[EQ]\n"
                                 "Custom0=-8\nCustom1=-7\nCustom2=-6\nCustom3=-5\nCustom4=-4\nCustom5=-3\nCustom6=-2\nCustom7=-1\n"
                                 "Custom8=1\nCustom9=2\nCustom10=3\nCustom11=4\nCustom12=5\nCustom13=6\nCustom14=7\nCustom15=8\n"
                                 "Type=3\n"
                                 "\n"
                                 "[Volume]\n"
                                 "0=11\n1=12\n2=13\n3=14\n4=15\n5=17\n"
                                 "AutoMicGainArm=26\nAutoMicGainOrig=24\nLoudness=false\nMicDelayArm=43\nMicDelayOrig=41\nMicType=true\nVolumeMic=33\n";

/// A value as one text, whose form tells its type, too: 80, "80", [80, true], {step: 80}, undefined.
QString asText(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::UnknownType:
        return QStringLiteral("undefined");
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::QString:
        return QLatin1Char('"') + value.toString() + QLatin1Char('"');
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        QStringList items;
        const QVariantList list = value.toList();
        for (const QVariant &item : list)
            items.append(asText(item));
        return QLatin1Char('[') + items.join(QLatin1String(", ")) + QLatin1Char(']');
    }
    case QMetaType::QVariantMap: {
        QStringList items;
        const QVariantMap map = value.toMap();
        for (auto item = map.cbegin(); item != map.cend(); ++item)
            items.append(item.key() + QLatin1String(": ") + asText(item.value()));
        return QLatin1Char('{') + items.join(QLatin1String(", ")) + QLatin1Char('}');
    }
    case QMetaType::Float: // the fewest digits, as scripts get it
        return asText(QString::number(value.toDouble(), 'g', 6).toDouble());
    default:
        return QString::number(value.toDouble(), 'g', 17);
    }
}

/// The numbers, texts and truth values in a value, however deep.
QStringList leaves(const QVariant &value)
{
    if (value.userType() != QMetaType::QVariantList && value.userType() != QMetaType::QVariantMap)
        return {asText(value)};
    QStringList all;
    const QVariantList items = value.userType() == QMetaType::QVariantMap ? value.toMap().values() : value.toList();
    for (const QVariant &item : items)
        all += leaves(item);
    return all;
}

bool areDifferent(QStringList texts)
{
    return texts.removeDuplicates() == 0;
}

/// The first line that is another one; empty for none.
QString difference(const QStringList &seen, const QStringList &expected)
{
    for (int i = 0; i < qMax(seen.size(), expected.size()); ++i) {
        if (seen.value(i) != expected.value(i))
            return QStringLiteral("\"%1\" instead of \"%2\"").arg(seen.value(i), expected.value(i));
    }
    return {};
}

/**
 * What is only on or off is on in the first situation, and in the others by the bits of a number of its own, so that no two are always alike.
 */
class Situation
{
public:
    static constexpr int count = 4;

    explicit Situation(int which)
        : number(which)
    {
    }

    bool isOn(unsigned int bits) const { return number == 0 || ((bits >> unsigned(number - 1)) & 1U) != 0; }

private:
    int number;
};

/// Which steps the facade has for its sources is told by no getter, so every one gets one.
void giveSteps(AudioControl &control)
{
    QHash<QString, quint8> steps;
    quint8 step = 0;
    for (const auto &row : audio::tables::sourceNames)
        steps.insert(QString::fromLatin1(row.qtName), ++step);
    control.initTrackStepVolume(AudioControl::Main, steps);
    for (quint8 &value : steps)
        value = quint8(value + 3);
    control.initTrackStepVolume(AudioControl::Second, steps);
}

void setUp(AudioControl &control, const Situation &situation)
{
    // A state that holds is not set again, neither here nor on the platform.
    control.setMute(!situation.isOn(1));
    control.setMute(situation.isOn(1));
    control.setAlterMode(situation.isOn(2));
    // A step that holds is refused, so another one comes first.
    control.setStepRange(200);
    control.setMasterStepVolume(1);
    control.setMasterStepVolume(19);
    control.setStepRange(30);
    giveSteps(control);
}

void setUp(ZelAudioManager &manager, const Situation &situation)
{
    manager.setLoudNess(situation.isOn(1));
    manager.setMicLeftRightSwitch(situation.isOn(2));
    manager.updateAudioStatus(AudioStatusBtPhoneTelephony);
    manager.updateAudioChannel(AudioChannelDiscPlayer);
    manager.setCPConnected(situation.isOn(3));
    manager.setVolume(ZelAudioTypeSpeech, 18, false);
    const auto timers = AudioPolicyInspector(manager).timers();
    for (const AudioPolicyInspector::Timer &entry : timers)
        entry.timer->stop();
}

void setUpEqualizer(AudioChip &chip)
{
    audio::audio_eq_parameter_t shortCurve = {};
    shortCurve.channel = 7;
    for (int band = 0; band < 8; ++band) {
        shortCurve.frequency[band] = quint16(100 + band);
        shortCurve.gain[band] = float(band) + 0.25F;
        shortCurve.type[band] = quint16(200 + band);
    }
    chip.setEqParameter(shortCurve);
    audio::audio_ext_eq_parameter_t curve = {};
    curve.channel = 15;
    quint16 number = 0;
    for (audio::audio_ext_eq_band_t &band : curve.band) {
        ++number;
        band.type = 300U + number;
        band.frequency = quint16(400 + number);
        band.gain = float(number) + 0.5F;
        band.q = float(number) + 0.75F;
    }
    chip.setExtEqParameter(curve);
}

void setUp(AudioChip &chip, const Situation &situation)
{
    const auto text = [](const char *name) { return QString::fromLatin1(name); };
    chip.setMasterVolume(87);
    chip.setTrackVolume(text("main"), text("S+DiscPlayer"), 91);
    chip.setTrackVolume(text("second"), text("S+CarLife"), 92);
    chip.setAlterTrackVolume(93);
    chip.setMute(text("main"), false);
    chip.setMute(text("second"), true);
    chip.setDuckingMode(situation.isOn(1) ? 3 : 0);
    chip.setDuckingTargetGain(77);
    quint8 gain = 50;
    for (const quint32 channel : {1U, 2U, 4U, 8U})
        chip.setFadeBalance({channel, ++gain, {}});
    chip.setOutputSource(text("second"), text("S+CarLife"));
    chip.setActiveSource(text("second"), text("S+GPS"));
    chip.setOutputChannelMask(5);
    chip.setInputDestination(text("input1"), text("BT_MIC_Record"));
    chip.setInputSelectPin(2, 3);
    chip.setAlternativeCount(6);
    setUpEqualizer(chip);
    chip.setFilter({2, 21, 1, 22, 0, 23, 24});
    chip.setLoudness({quint16(situation.isOn(2) ? 1 : 0), 1, 801});
    float delay = 1.25F;
    for (const int channel : {1, 2, 4, 8, 16, 32})
        chip.setSpeakerDelay(channel, ++delay);
    chip.setDpsEnabled(situation.isOn(3));
    chip.setDpsUserGain(9.25F);
    chip.setStereoEnabled(situation.isOn(4));
    chip.setMicVolume(45);
    chip.setMicPgaGain(1.5F, 2.75F);
    chip.setMicOpGain(3.5F, 4.75F);
    chip.setMicAnalogGain(5.5F, 6.75F);
    chip.startMicGainCalibration();
    if (!situation.isOn(1))
        chip.setMicGainCalibration();
    chip.setCalibrationGains(61, 62);
    chip.setDownlinkDelay(63);
    chip.setHandsfreeDelay(64);
    chip.setMicLeftRightSwitch(situation.isOn(5));
    chip.setAecQuality(situation.isOn(2) ? 2 : 0);
    chip.setFrontRearMode(situation.isOn(4) ? 1 : 0);
    chip.setMicrophoneTest({71, 72, 73, 74, 75, 76, 77, 78});
}

/// What gives its code as the result gives a code of its own.
void setUp(simulator::Faults &faults)
{
    faults.fail(QStringLiteral("Volume.setMicAnalogGain"), 31);
    faults.fail(QStringLiteral("Volume.startMicGainCalibration"), 32);
    faults.fail(QStringLiteral("Volume.setMicGainCalibration"), 33);
    faults.fail(QStringLiteral("Source.setHandsfreeDelay"), 34);
}

QStringList stateOf(Platform &platform)
{
    QStringList lines;
    const auto entries = platform.journal()->entries();
    for (const simulator::JournalEntry &entry : entries)
        lines += QLatin1String("call: ") + entry.line() + QLatin1Char(' ') + entry.note;
    const auto table = platform.chip()->stateTable();
    for (const simulator::StateItem &item : table)
        lines += item.group + QLatin1String(": ") + item.name + QLatin1Char(' ') + asText(item.value);
    lines += QLatin1String("last routed track: ") + platform.chip()->lastRoutedTrack();
    lines += QLatin1String("faults: ") + asText(platform.faults()->pending());
    lines += QLatin1String("problems: ") + asText(platform.books()->problems());
    lines += QLatin1String("living: ") + asText(platform.books()->living());
    for (const simulator::ObjectKind kind : simulator::allObjectKinds)
        lines += QStringLiteral("made: %1").arg(platform.books()->made(kind));
    lines += QLatin1String("reverse gear: ") + asText(platform.reverseGear());
    lines += QStringLiteral("home screen: %1, call duration: %2").arg(platform.homeUiType()).arg(platform.callDuration());
    return lines;
}

QStringList stateOf(ZelAudioManager &manager)
{
    const AudioPolicyInspector inspector(manager);
    QStringList lines;
    lines += QStringLiteral("status: %1, channel: %2, equalizer: %3").arg(inspector.status()).arg(inspector.channel()).arg(inspector.equalizerType());
    const auto volumes = inspector.volumes();
    for (const int volume : volumes)
        lines += QStringLiteral("volume: %1").arg(volume);
    const auto customCurve = inspector.customCurve();
    for (const int gain : customCurve)
        lines += QStringLiteral("custom curve: %1").arg(gain);
    lines += QLatin1String("ducking: ") + asText(manager.*memberOf(cpDucking_Member()));
    lines += QLatin1String("CarPlay connected: ") + asText(manager.getCPConnected());
    const auto timers = inspector.timers();
    for (const AudioPolicyInspector::Timer &entry : timers)
        lines += entry.purpose + QStringLiteral(": %1 of %2 ms").arg(entry.timer->remainingTime()).arg(entry.timer->interval());
    return lines;
}

QStringList stateOf(AudioControl &control)
{
    QString name;
    quint8 step = 0;
    control.getCurMainTrackStepVolumeInfo(name, step);
    return {QStringLiteral("step range: %1, master step: %2, step of %3: %4").arg(control.getStepRang()).arg(control.getMasterStepVolume()).arg(name).arg(step),
            QLatin1String("alternative mode: ") + asText(control.getAlterMode()),
            QLatin1String("muted: ") + asText(control.isMute())};
}

} // namespace

/**
 * Each operation that scripts call arrives at the one that is meant, with its arguments in their places, and what it gives comes back under
 * the right names: the same as of a call in C++ that meets the same.
 */
class ScriptOperationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void calls_data();
    void calls();
    void argumentsAreNamed_data();
    void argumentsAreNamed();
    void argumentsInOtherPlacesShow_data();
    void argumentsInOtherPlacesShow();
    void alertsAreToldApart();
    void everyOperationIsCalled();

private:
    void prepare(const OperationCall &row, const Situation &situation);
    QStringList observe(const OperationCall &row, const std::function<QVariant()> &call, int situation = 0);
    QVariant evaluate(const QString &script);
    static const ScriptOperation *operationOf(const OperationCall &call);

    const QVector<OperationCall> table = operationCalls();
    QHash<QString, QString> meanings; ///< names of operations by what calls of them change and give
    QStringList called; ///< "AudioPolicy.setVolume"

    std::unique_ptr<LogRecorder> log;
    QStringList changes; ///< zelvolumeChanged(), as it came
    std::unique_ptr<ZelAudioManager> manager;
    std::unique_ptr<AudioDataBase> store;

    QmlAudioControl control;
    QmlAudioPolicy policy{[this] { return manager.get(); }};
    QmlAudioSettings settingsOfScripts;
    QmlPlatform platform;
    QJSEngine engine;
};

void ScriptOperationsTest::initTestCase()
{
    const LogRecorder quiet;
    // The first channel of a process does more than the others.
    ZelAudioManager().updateAudioChannel(AudioChannelFilePlayer);
    store = std::make_unique<AudioDataBase>();
    QObject *const objects[] = {&control, &policy, &settingsOfScripts, &platform};
    const ScriptType *const types[]
        = {&QmlAudioControl::scriptType(), &QmlAudioPolicy::scriptType(), &QmlAudioSettings::scriptType(), &QmlPlatform::scriptType()};
    for (std::size_t i = 0; i < std::size(objects); ++i) {
        QQmlEngine::setObjectOwnership(objects[i], QQmlEngine::CppOwnership);
        engine.globalObject().setProperty(types[i]->name(), engine.newQObject(objects[i]));
    }
}

void ScriptOperationsTest::cleanupTestCase()
{
    const LogRecorder quiet;
    manager.reset();
    store.reset();
    Platform::instance()->reset();
}

void ScriptOperationsTest::init()
{
    log = std::make_unique<LogRecorder>();
}

void ScriptOperationsTest::cleanup()
{
    log.reset();
}

/// Everything that a call meets, as it was the last time. Time stands still.
void ScriptOperationsTest::prepare(const OperationCall &row, const Situation &situation)
{
    Platform *const simulated = Platform::instance();
    // Nobody reads what the preparations say.
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
    simulated->reset();
    simulated->journal()->setEnabled(false);
    manager.reset();
    QFile file(SettingsFile::path());
    file.remove();
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(QByteArray(settings).replace("\nType=3", situation.isOn(1) ? "\nType=3" : "\nType=60")) > 0);
    file.close();
    manager = std::make_unique<ZelAudioManager>();
    connect(manager.get(), &ZelAudioManager::zelvolumeChanged, this, [this](bool mute, int volume, int type) {
        changes += QStringLiteral("changed: %1 %2 %3").arg(mute).arg(volume).arg(type);
    });
    setUp(*AudioControl::getInstance(), situation);
    setUp(*manager, situation);
    setUp(*simulated->chip(), situation);
    simulated->journal()->setEnabled(true);
    simulated->books()->reset();
    // Something for the journal and the books.
    AudioControl::getInstance()->setAuxinChannel(static_cast<AudioControl::AudioInChannel>(4));
    simulated->books()->addProblem(QStringLiteral("made up"));
    setUp(*simulated->faults());
    if (row.type == &QmlAudioSettings::scriptType()) {
        // Last, so that both have read the file as it is now.
        store = std::make_unique<AudioDataBase>();
        settingsOfScripts.store();
    }
    log->take();
    changes.clear();
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, true);
}

/// What a call gives, and everything that it changed.
QStringList ScriptOperationsTest::observe(const OperationCall &row, const std::function<QVariant()> &call, int situation)
{
    prepare(row, Situation(situation));
    QStringList lines = {QLatin1String("result: ") + asText(call())};
    const auto said = log->take();
    for (const LogRecorder::Line &line : said)
        lines += QString::fromLatin1(line.signature) + QLatin1String(" says: ") + line.text;
    lines += changes;
    lines += stateOf(*Platform::instance());
    lines += stateOf(*manager);
    QFile file(SettingsFile::path());
    lines += file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()).split(QLatin1Char('\n')) : QStringList(QStringLiteral("no file"));
    Platform::instance()->setCallDuration(0);
    lines += stateOf(*AudioControl::getInstance());
    return lines;
}

QVariant ScriptOperationsTest::evaluate(const QString &script)
{
    const QJSValue value = engine.evaluate(script);
    return value.isError() ? QVariant(value.toString()) : value.toVariant();
}

const ScriptOperation *ScriptOperationsTest::operationOf(const OperationCall &call)
{
    const QVector<ScriptOperation> &operations = call.type->operations();
    const auto found = std::find_if(
        operations.cbegin(), operations.cend(), [&call](const ScriptOperation &operation) { return QLatin1String(operation.name) == call.name(); });
    return found == operations.cend() ? nullptr : &*found;
}

void ScriptOperationsTest::calls_data()
{
    QTest::addColumn<int>("number");
    for (int i = 0; i < table.size(); ++i)
        QTest::newRow(qPrintable(table.at(i).script())) << i;
}

void ScriptOperationsTest::calls()
{
    QFETCH(int, number);
    const OperationCall &row = table.at(number);
    const ScriptOperation *const operation = operationOf(row);
    QVERIFY2(operation, "there is no such operation");
    QCOMPARE(operation->signature(), row.signature);
    QVERIFY2(operation->kind == row.kind, "it is of the other kind");
    const QVariant arguments = evaluate(QLatin1Char('[') + row.arguments + QLatin1Char(']'));
    QCOMPARE(arguments.toList().size(), operation->inputs.size());
    QVERIFY2(areDifferent(leaves(arguments)), "all arguments have to be different");

    const auto inCpp = [&row, this] {
        Unit unit(AudioControl::getInstance(), manager.get(), store.get(), Platform::instance());
        return row.call(unit);
    };
    QVariant given;
    const QStringList expected = observe(row, [&given, &inCpp] { return given = inCpp(); });
    bool isCalled = false;
    const auto inScript = [&row, &isCalled, this] {
        const QJSValue value = engine.evaluate(row.script());
        isCalled = !value.isError();
        return isCalled ? value.toVariant() : QVariant(value.toString());
    };
    const QStringList seen = observe(row, inScript);
    QCOMPARE(difference(observe(row, inCpp), expected), QString()); // otherwise they did not meet the same
    QCOMPARE(difference(seen, expected), QString());
    if (isCalled)
        called += row.type->name() + QLatin1Char('.') + row.name();

    QStringList meaning = expected;
    if (operation->inputs.isEmpty() && (qstrcmp(operation->call.resultType, "bool") == 0 || qstrcmp(operation->call.resultType, "int") == 0)) {
        for (int situation = 1; situation < Situation::count; ++situation) {
            const QStringList elsewhere = observe(row, inCpp, situation);
            QCOMPARE(difference(observe(row, inScript, situation), elsewhere), QString());
            meaning += elsewhere;
        }
    }
    // Of two operations that look alike one could stand for the other.
    QString &alike = meanings[row.type->name() + row.arguments + meaning.join(QLatin1Char('\n'))];
    QVERIFY2(alike.isEmpty() || row.name() == QLatin1String("onCarplayAlertStop"), qPrintable(QLatin1String("it looks like ") + alike));
    alike = row.name();

    const bool givesNothing = qstrcmp(operation->call.resultType, "void") == 0;
    QCOMPARE(given.isValid(), !givesNothing);
    if (operation->resultFields().isEmpty()) {
        QCOMPARE(operation->resultName, QByteArray("result"));
    } else {
        QVERIFY2(areDifferent(leaves(given)), "all that it gives has to be different");
        QStringList names = operation->resultFields().mid(1, operation->resultFields().size() - 2).split(QLatin1String(", "));
        names.sort();
        QCOMPARE(names, given.toMap().keys());
    }
    const QStringList nothing = {QStringLiteral("0"), QStringLiteral("false"), QStringLiteral("\"\""), QStringLiteral("[]"), QStringLiteral("{}")};
    QCOMPARE(nothing.contains(asText(given)), row.name() == QLatin1String(zeroForEver));
}

void ScriptOperationsTest::argumentsAreNamed_data()
{
    calls_data();
}

/// An error names the argument that is in that place.
void ScriptOperationsTest::argumentsAreNamed()
{
    QFETCH(int, number);
    const OperationCall &row = table.at(number);
    const QString names = row.signature.mid(row.name().size() + 1).chopped(1);
    const QStringList inputs = names.isEmpty() ? QStringList() : names.split(QLatin1String(", "));
    for (int i = 0; i < inputs.size(); ++i) {
        if (inputs.at(i) == QLatin1String("defaultValue")) // may be anything
            continue;
        const bool mayBeTag = inputs.at(i) == QLatin1String("trackOrTag");
        const bool isTag = mayBeTag && !row.arguments.startsWith(QLatin1Char('\''));
        const QString name = isTag ? QStringLiteral("tag") : mayBeTag ? QStringLiteral("track") : inputs.at(i);
        const QString wrong = isTag ? QStringLiteral("0.5") : QStringLiteral("undefined");
        const QString script
            = QStringLiteral("const given = [%1]; given[%2] = %3; %4.%5(...given)").arg(row.arguments).arg(i).arg(wrong, row.type->name(), row.name());
        const QString error = evaluate(QStringLiteral("(function() { %1 })()").arg(script)).toString();
        QVERIFY2(error.contains(QStringLiteral("Error: %1 must be ").arg(name)), qPrintable(error));
    }
}

void ScriptOperationsTest::argumentsInOtherPlacesShow_data()
{
    QTest::addColumn<int>("number");
    for (int i = 0; i < table.size(); ++i) {
        if (evaluate(QLatin1Char('[') + table.at(i).arguments + QLatin1Char(']')).toList().size() > 1)
            QTest::newRow(qPrintable(table.at(i).script())) << i;
    }
}

/// What calls() compares tells each argument's place.
void ScriptOperationsTest::argumentsInOtherPlacesShow()
{
    QFETCH(int, number);
    const OperationCall &row = table.at(number);
    const auto inScript = [&row, this](int first, int second) {
        const QString script = QStringLiteral("(function() { const given = [%1]; [given[%2], given[%3]] = [given[%3], given[%2]]; return %4.%5(...given) })()");
        return [=, &row] { return evaluate(script.arg(row.arguments).arg(first).arg(second).arg(row.type->name(), row.name())); };
    };
    const QStringList expected = observe(row, inScript(0, 0));
    const int count = operationOf(row)->inputs.size();
    for (int second = 1; second < count; ++second) {
        for (int first = 0; first < second; ++first) {
            const bool isSame = difference(observe(row, inScript(first, second)), expected).isEmpty();
            const bool isUnused = std::any_of(std::cbegin(unused), std::cend(unused), [&row](const char *name) { return row.name() == QLatin1String(name); });
            QCOMPARE(isSame, isUnused);
        }
    }
}

/// They do nothing, so that no call tells which of the two it was.
void ScriptOperationsTest::alertsAreToldApart()
{
    const QVector<ScriptOperation> &operations = QmlAudioPolicy::scriptType().operations();
    const auto begins = scriptCall<&ZelAudioManager::onCarplayAlertStart>;
    const auto ends = scriptCall<&ZelAudioManager::onCarplayAlertStop>;
    int found = 0;
    for (const ScriptOperation &operation : operations) {
        QCOMPARE(operation.call.run == begins.run, operation.name == "onCarplayAlertStart");
        QCOMPARE(operation.call.run == ends.run, operation.name == "onCarplayAlertStop");
        found += operation.call.run == begins.run || operation.call.run == ends.run ? 1 : 0;
    }
    QCOMPARE(found, 2);
}

void ScriptOperationsTest::everyOperationIsCalled()
{
    if (called.isEmpty())
        QSKIP("calls() did not run");
    QStringList all;
    for (const ScriptType *type :
         {&QmlAudioControl::scriptType(), &QmlAudioPolicy::scriptType(), &QmlAudioSettings::scriptType(), &QmlPlatform::scriptType()}) {
        for (const ScriptOperation &operation : type->operations())
            all += type->name() + QLatin1Char('.') + QLatin1String(operation.name);
    }
    QStringList missing;
    for (const QString &operation : qAsConst(all)) {
        if (!called.contains(operation))
            missing += operation;
    }
    log.reset();
    qInfo("%d of %d operations called", all.size() - missing.size(), all.size());
    QCOMPARE(missing.join(QLatin1String(", ")), QString());
}

int main(int argc, char **argv)
{
    VirtualClock::install();
    QCoreApplication application(argc, argv);
    ScriptOperationsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_scriptoperations.moc"
