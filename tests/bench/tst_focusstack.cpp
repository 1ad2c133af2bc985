#include "focusmodel.h"
#include "focusstack.h"
#include "logrecorder.h"

#include <qzaudio/audiolisteners.h>
#include <qzaudio/audiomanager.h>

#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>

#include <memory>
#include <vector>

/// The stack of audio focus as a list, and what it says that a request would bring: held against what the manager then does.
class FocusStackTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void predictionComesTrue_data();
    void predictionComesTrue();
    void nextOfGivenEntries_data();
    void nextOfGivenEntries();
    void releaseOfGivenEntries_data();
    void releaseOfGivenEntries();
    void rolesTopFirst();
    void predictionLeavesNoLine();
    void changesShowAfterATurn();
    void givenEntriesStay();
    void madeInCodeFollowsNobody();
};

namespace
{

constexpr const char *voice = "IN_VOICE_COMM_FOCUS_ID";

/// "music -2, radio -1" as a list.
QStringList listOf(const char *written)
{
    return QString::fromLatin1(written).split(QStringLiteral(", "));
}

QString text(const QString &clientId, int change)
{
    return QStringLiteral("%1 %2").arg(clientId).arg(change);
}

QStringList texts(const QVariantMap &prediction)
{
    QStringList list;
    const QVariantList told = prediction.value(QStringLiteral("told")).toList();
    for (const QVariant &one : told)
        list.append(text(one.toMap().value(QStringLiteral("clientId")).toString(), one.toMap().value(QStringLiteral("change")).toInt()));
    return list;
}

/// All that clients are told, in the order in which they are.
class Listener : public IAudioFocusChangeListener
{
public:
    Listener(const QString &id, QStringList &news)
        : m_id(id)
        , m_news(news)
    {
    }
    ~Listener() override { AudioManager::instance()->abandonAudioFocus(this); }
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

    void onAudioFocusChange(int focusChange) override { m_news.append(text(m_id, focusChange)); }
    QString clientId() override { return m_id; }

private:
    QString m_id;
    QStringList &m_news;
};

/// "music 3 1 0, radio 3 2 -1", the bottom first, as {clientId, streamType, hint, loss}.
QVariantList entriesOf(const QString &written)
{
    QVariantList entries;
    const QStringList parts = written.split(QStringLiteral(", "), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        const QStringList words = part.split(QLatin1Char(' '));
        entries.append(QVariantMap{{QStringLiteral("clientId"), words.at(0)},
                                   {QStringLiteral("streamType"), words.at(1).toInt()},
                                   {QStringLiteral("hint"), words.at(2).toInt()},
                                   {QStringLiteral("loss"), words.at(3).toInt()}});
    }
    return entries;
}

QVariantList entriesOf(const FocusModel &model)
{
    QVariantList entries;
    for (const FocusModel::Entry &entry : model.waiting) {
        entries.append(QVariantMap{{QStringLiteral("clientId"), QString::fromStdString(entry.client)},
                                   {QStringLiteral("streamType"), entry.stream},
                                   {QStringLiteral("hint"), entry.hint},
                                   {QStringLiteral("loss"), FocusModel::codeOfLoss(entry.hardness)}});
    }
    return entries;
}

} // namespace

void FocusStackTest::predictionComesTrue_data()
{
    QTest::addColumn<QStringList>("clients");
    QTest::addColumn<int>("lowestHint");
    QTest::addColumn<int>("highestHint");
    QTest::addColumn<int>("releasesInTen");
    const QStringList few = listOf("music, navigation, telephone");
    QStringList many;
    for (int i = 0; i < 40; ++i)
        many.append(QStringLiteral("client%1").arg(i));
    QTest::newRow("a few clients") << few << 1 << 4 << 4;
    QTest::newRow("many clients") << many << 1 << 4 << 2;
    QTest::newRow("hints that there are none of") << few << -1 << 6 << 3;
    QTest::newRow("voice communication") << few + listOf(voice) << 1 << 4 << 6;
    QTest::newRow("gains for good only") << few << 1 << 1 << 4;
    QTest::newRow("prompts only") << few << 3 << 3 << 4;
    QTest::newRow("hardly ever a release") << few << 1 << 4 << 1;
    QTest::newRow("ids that are alike") << listOf("music, Music, musi, music ") << 1 << 4 << 4;
}

void FocusStackTest::predictionComesTrue()
{
    QFETCH(QStringList, clients);
    QFETCH(int, lowestHint);
    QFETCH(int, highestHint);
    QFETCH(int, releasesInTen);
    QRandomGenerator random(1);
    QStringList news;
    std::vector<std::unique_ptr<Listener>> listeners;
    for (const QString &client : qAsConst(clients))
        listeners.push_back(std::make_unique<Listener>(client, news));
    FocusStack stack;
    stack.componentComplete();
    QCOMPARE(stack.count(), 0);
    FocusModel model;
    int told = 0;
    int denied = 0;
    for (int i = 0; i < 3000; ++i) {
        Listener &listener = *listeners.at(std::size_t(random.bounded(clients.size())));
        news.clear();
        if (random.bounded(10) < releasesInTen) {
            const QVariantMap prediction = stack.afterRelease(listener.clientId());
            AudioManager::instance()->abandonAudioFocus(&listener);
            QCOMPARE(texts(prediction), news);
            model.leave(listener.clientId().toStdString(), true);
        } else {
            const int hint = random.bounded(lowestHint, highestHint + 1);
            const QVariantMap prediction = stack.next(listener.clientId(), hint);
            const bool isGranted = AudioManager::instance()->requestAudioFocus(i, hint, &listener) == 0;
            QCOMPARE(prediction.value(QStringLiteral("granted")).toBool(), isGranted);
            QCOMPARE(texts(prediction), news);
            if (hint >= 1 && hint <= 4)
                model.request(listener.clientId().toStdString(), i, hint, 0);
            denied += isGranted ? 0 : 1;
        }
        told += news.size();
        QCoreApplication::processEvents();
        QCOMPARE(stack.entries(), entriesOf(model));
    }
    QVERIFY2(told > 500, qPrintable(QString::number(told)));
    QCOMPARE(denied > 100, lowestHint < 1 || clients.contains(QLatin1String(voice)));
}

void FocusStackTest::nextOfGivenEntries_data()
{
    QTest::addColumn<QString>("entries");
    QTest::addColumn<QString>("client");
    QTest::addColumn<int>("hint");
    QTest::addColumn<bool>("granted");
    QTest::addColumn<QStringList>("told");
    QTest::newRow("nobody there") << ""
                                  << "music" << 1 << true << QStringList();
    QTest::newRow("a prompt over music") << "music 3 1 0"
                                         << "navigation" << 3 << true << listOf("music -3");
    QTest::newRow("a call over music") << "music 3 1 0"
                                       << "telephone" << 2 << true << listOf("music -2");
    QTest::newRow("exclusive") << "music 3 1 0"
                               << "telephone" << 4 << true << listOf("music -2");
    QTest::newRow("for good") << "music 3 1 0"
                              << "radio" << 1 << true << listOf("music -1");
    QTest::newRow("a loss never softens") << "music 3 1 -1, radio 3 1 0"
                                          << "navigation" << 3 << true << listOf("radio -3");
    QTest::newRow("a loss hardens") << "music 3 1 -3, navigation 3 3 0"
                                    << "telephone" << 2 << true << listOf("music -2, navigation -2");
    QTest::newRow("the holder asks for the same") << "music 3 1 0"
                                                  << "music" << 1 << true << QStringList();
    QTest::newRow("the holder asks for another hint") << "music 3 1 -3, navigation 3 3 0"
                                                      << "navigation" << 2 << true << listOf("music -2");
    QTest::newRow("who waits comes to the top") << "music 3 1 -2, telephone 0 2 0"
                                                << "music" << 1 << true << listOf("telephone -1");
    QTest::newRow("no such hint") << "music 3 1 0"
                                  << "radio" << 5 << false << QStringList();
    QTest::newRow("voice communication on top") << "music 3 1 -2, IN_VOICE_COMM_FOCUS_ID 0 2 0"
                                                << "radio" << 1 << false << QStringList();
    QTest::newRow("a loss that there is none of") << "music 3 1 -9"
                                                  << "radio" << 1 << true << listOf("music -1");
    QTest::newRow("a client that stands twice") << "music 3 1 -1, music 3 2 0"
                                                << "music" << 3 << true << QStringList();
}

void FocusStackTest::nextOfGivenEntries()
{
    QFETCH(QString, entries);
    QFETCH(QString, client);
    QFETCH(int, hint);
    FocusStack stack;
    stack.setEntries(entriesOf(entries));
    const QVariantMap prediction = stack.next(client, hint);
    QTEST(prediction.value(QStringLiteral("granted")).toBool(), "granted");
    QTEST(texts(prediction), "told");
}

void FocusStackTest::releaseOfGivenEntries_data()
{
    QTest::addColumn<QString>("entries");
    QTest::addColumn<QString>("client");
    QTest::addColumn<QStringList>("told");
    QTest::newRow("nobody there") << ""
                                  << "music" << QStringList();
    QTest::newRow("alone") << "music 3 1 0"
                           << "music" << QStringList();
    QTest::newRow("the top") << "music 3 1 -3, navigation 3 3 0"
                             << "navigation" << listOf("music 1");
    QTest::newRow("only the next one") << "music 3 1 -1, radio 3 1 -3, navigation 3 3 0"
                                       << "navigation" << listOf("radio 1");
    QTest::newRow("from below") << "music 3 1 -1, radio 3 1 -3, navigation 3 3 0"
                                << "radio" << QStringList();
    QTest::newRow("one who is not there") << "music 3 1 -1, radio 3 1 0"
                                          << "navigation" << QStringList();
    QTest::newRow("voice communication is not told") << "IN_VOICE_COMM_FOCUS_ID 3 1 -3, navigation 3 3 0"
                                                     << "navigation" << QStringList();
    QTest::newRow("one without a loss") << "music 3 1 0, navigation 3 3 0"
                                        << "navigation" << listOf("music 1");
}

void FocusStackTest::releaseOfGivenEntries()
{
    QFETCH(QString, entries);
    QFETCH(QString, client);
    FocusStack stack;
    stack.setEntries(entriesOf(entries));
    QTEST(texts(stack.afterRelease(client)), "told");
}

void FocusStackTest::rolesTopFirst()
{
    FocusStack stack;
    stack.setEntries(entriesOf(QStringLiteral("music 3 1 -3, navigation 5 3 0")));
    const QHash<int, QByteArray> names = stack.roleNames();
    QStringList rows;
    for (int row = 0; row < stack.rowCount(); ++row) {
        QStringList values;
        for (const char *const name : {"clientId", "streamType", "hint", "hintName", "loss", "lossName"})
            values.append(stack.data(stack.index(row), names.key(name)).toString());
        rows.append(values.join(QLatin1Char(' ')));
    }
    QCOMPARE(rows, listOf("navigation 5 3 GainTransientMayDuck 0 None, music 3 1 Gain -3 LossTransientCanDuck"));
    QCOMPARE(stack.data(stack.index(2), FocusStack::ClientIdRole), QVariant());
}

void FocusStackTest::predictionLeavesNoLine()
{
    FocusStack stack;
    stack.setEntries(entriesOf(QStringLiteral("music 3 1 -9, radio 3 1 -3, navigation 3 3 0")));
    LogRecorder recorder;
    stack.next(QStringLiteral("telephone"), 2);
    stack.next(QStringLiteral("music"), 1);
    stack.next(QStringLiteral("music"), 7);
    stack.afterRelease(QStringLiteral("navigation"));
    stack.afterRelease(QStringLiteral("radio"));
    QCOMPARE(recorder.takeTexts(), QStringList());
}

void FocusStackTest::changesShowAfterATurn()
{
    QStringList news;
    Listener music(QStringLiteral("music"), news);
    Listener prompt(QStringLiteral("prompt"), news);
    FocusStack stack;
    stack.componentComplete();
    QSignalSpy changed(&stack, &FocusStack::entriesChanged);
    QSignalSpy reset(&stack, &FocusStack::modelReset);
    QSignalSpy dataChanged(&stack, &FocusStack::dataChanged);
    // Of these nobody is told.
    AudioManager::instance()->requestAudioFocus(3, 1, &music);
    QCoreApplication::processEvents();
    QCOMPARE(stack.count(), 1);
    AudioManager::instance()->requestAudioFocus(3, 2, &music);
    QCoreApplication::processEvents();
    QCOMPARE(news, QStringList());
    QCOMPARE(reset.count(), 1);
    QCOMPARE(dataChanged.count(), 1);
    QCOMPARE(stack.data(stack.index(0), FocusStack::HintRole).toInt(), 2);
    AudioManager::instance()->requestAudioFocus(3, 3, &prompt);
    QCOMPARE(stack.count(), 1);
    QTest::qWait(1);
    QCOMPARE(stack.count(), 2);
    AudioManager::instance()->abandonAudioFocus(&music);
    QCoreApplication::processEvents();
    QCOMPARE(stack.count(), 1);
    QCOMPARE(changed.count(), 4);
    QCoreApplication::processEvents();
    QCOMPARE(changed.count(), 4);
    // Within the turn, whoever asks is told of the stack as it is.
    AudioManager::instance()->requestAudioFocus(3, 1, &music);
    QCOMPARE(texts(stack.next(QStringLiteral("radio"), 2)), listOf("music -2"));
}

void FocusStackTest::givenEntriesStay()
{
    QStringList news;
    Listener music(QStringLiteral("music"), news);
    FocusStack stack;
    stack.setEntries({});
    stack.componentComplete();
    AudioManager::instance()->requestAudioFocus(3, 1, &music);
    QCoreApplication::processEvents();
    QCOMPARE(stack.count(), 0);
    const QVariantList given = entriesOf(QStringLiteral("radio 3 1 0"));
    stack.setEntries(given);
    QCOMPARE(stack.entries(), given);
    stack.resetEntries();
    QCOMPARE(stack.entries(), entriesOf(QStringLiteral("music 3 1 0")));
    AudioManager::instance()->requestAudioFocus(4, 2, &music);
    QCoreApplication::processEvents();
    QCOMPARE(stack.entries(), entriesOf(QStringLiteral("music 4 2 0")));
}

void FocusStackTest::madeInCodeFollowsNobody()
{
    QStringList news;
    Listener music(QStringLiteral("music"), news);
    AudioManager::instance()->requestAudioFocus(3, 1, &music);
    FocusStack stack;
    QCOMPARE(texts(stack.next(QStringLiteral("radio"), 1)), QStringList());
    QCoreApplication::processEvents();
    QCOMPARE(stack.count(), 0);
}

QTEST_GUILESS_MAIN(FocusStackTest)
#include "tst_focusstack.moc"
