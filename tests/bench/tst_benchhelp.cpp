#include <completion.h>
#include <exitstatus.h>
#include <helptext.h>
#include <helptopics.h>
#include <qmlaudiocontrol.h>
#include <qmlaudiopolicy.h>
#include <qmlaudiosettings.h>
#include <qmlplatform.h>

#include <QtTest/QtTest>

namespace
{

class FruitTopics : public HelpTopics
{
public:
    QStringList names() const override { return {QStringLiteral("Fruit.peel"), QStringLiteral("Fruit.press"), QStringLiteral("mix")}; }
    QString text(const QString &name) const override { return QStringLiteral("%1 is told\nin one line.\n").arg(name); }
};

/// Takes one of each kind of what a command can take.
class MixCommand : public Command
{
public:
    QString name() const override { return QStringLiteral("mix"); }
    QString summary() const override { return QStringLiteral("mixes"); }
    QString arguments() const override { return QStringLiteral("[FRUIT]"); }
    QVector<Option> options() const override
    {
        return {
            {QStringLiteral("speed"),
             QStringLiteral("SPEED"),
             QStringLiteral("slow or fast"),
             QLatin1Char('s'),
             {QStringLiteral("slow"), QStringLiteral("fast")}},
            {QStringLiteral("to"), QStringLiteral("FILE"), QStringLiteral("where to")},
            {QStringLiteral("in"), QStringLiteral("DIR"), QStringLiteral("where")},
            {QStringLiteral("note"), QStringLiteral("TEXT"), QStringLiteral("any")},
            {QStringLiteral("cold"), {}, QStringLiteral("with ice")},
            {QStringLiteral("secret"), {}, {}},
        };
    }
    QString details() const override { return QStringLiteral("Mixes.\n"); }
    QVector<Ending> endings() const override { return {{ServiceUnreachable, QStringLiteral("no fruit")}, {UsageError, QStringLiteral("too much fruit")}}; }
    Completions completions(const QStringList &before) const override
    {
        return {before.isEmpty() ? QStringList{QStringLiteral("apple"), QStringLiteral("pear")} : before, QStringLiteral("FILE")};
    }
    const HelpTopics *helpTopics() const override { return &topics; }
    int run(const QCommandLineParser & /*parsed*/) override { return Success; }

private:
    FruitTopics topics;
};

/// Takes nothing.
class PlainCommand : public Command
{
public:
    QString name() const override { return QStringLiteral("plain"); }
    QString summary() const override { return QStringLiteral("does nothing"); }
    QString arguments() const override { return {}; }
    QVector<Option> options() const override { return {}; }
    QString details() const override { return QStringLiteral("Does nothing.\n"); }
    int run(const QCommandLineParser & /*parsed*/) override { return Success; }
};

} // namespace

/// What help and completion make of what commands say of themselves.
class BenchHelpTest : public QObject
{
    Q_OBJECT

public:
    BenchHelpTest();

private Q_SLOTS:
    void overview();
    void exitStatuses();
    void topics_data();
    void topics();
    void advice_data();
    void advice();
    void completions_data();
    void completions();
    void everyCommand();
    void scriptOperations_data();
    void scriptOperations();
    void everyScriptOperation();

private:
    CommandList commands;
};

BenchHelpTest::BenchHelpTest()
{
    commands.push_back(std::make_unique<PlainCommand>());
    commands.push_back(std::make_unique<MixCommand>());
}

void BenchHelpTest::overview()
{
    const QString text = HelpText::overview(commands);
    QVERIFY2(text.contains(QLatin1String("\nCommands:\n  plain       does nothing\n  mix         mixes\n\n")), qPrintable(text));
    QVERIFY2(text.simplified().endsWith(QLatin1String("Exit status: 0 success; 2 a mistake on the command line, too much fruit, or output that cannot "
                                                      "be written; 3 no fruit; 130 interrupted.")),
             qPrintable(text));
    CommandList alike;
    for (int count = 0; count < 2; ++count)
        alike.push_back(std::make_unique<MixCommand>());
    QCOMPARE(HelpText::overview(alike).count(QLatin1String("no fruit")), 1);
}

void BenchHelpTest::exitStatuses()
{
    const QString text = HelpText::ofCommand(*commands.front());
    QVERIFY2(text.simplified().endsWith(
                 QLatin1String("Exit status: 0 success; 2 a mistake on the command line, or output that cannot be written; 130 interrupted.")),
             qPrintable(text));
}

void BenchHelpTest::topics_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("begin"); // empty where nothing is known

    QTest::newRow("command") << "plain"
                             << "Usage: qzaudio-bench plain ";
    QTest::newRow("topic") << "Fruit.press"
                           << "Fruit.press is told in one line.\n";
    QTest::newRow("a command comes before a topic") << "mix"
                                                    << "Usage: qzaudio-bench mix ";
    QTest::newRow("neither") << "Fruit.pres"
                             << "";
    QTest::newRow("no name") << ""
                             << "";
}

void BenchHelpTest::topics()
{
    QFETCH(QString, name);
    QFETCH(QString, begin);

    const std::optional<QString> text = HelpText::on(name, commands);
    QCOMPARE(text.has_value(), !begin.isEmpty());
    QVERIFY2(!text || text->startsWith(begin), qPrintable(text.value_or(QString())));
}

void BenchHelpTest::advice_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("complaint");

    QTest::newRow("command") << "plein"
                             << "unknown command plein; the nearest is plain";
    QTest::newRow("topic") << "fruit.pel"
                           << "unknown command fruit.pel; the nearest is Fruit.peel";
    QTest::newRow("nothing near") << "x"
                                  << "unknown command x";
}

void BenchHelpTest::advice()
{
    QFETCH(QString, name);
    QFETCH(QString, complaint);

    const QStringList names = HelpText::names(commands);
    QCOMPARE(names.join(QLatin1Char(' ')), QStringLiteral("plain mix Fruit.peel Fruit.press"));
    QCOMPARE(HelpText::unknown(name, names), complaint);
}

void BenchHelpTest::completions_data()
{
    QTest::addColumn<QString>("line"); // its words; one that ends with a blank is followed by an empty one
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("paths");

    const auto row = [](const char *line, const char *words, const char *paths = "") {
        QTest::newRow(line) << QString::fromLatin1(line) << QString::fromLatin1(words) << QString::fromLatin1(paths);
    };
    row("", "plain mix");
    row("m", "mix");
    row("x", "");
    row("-", "--help --version");
    row("--v", "--version");
    row("x ", "");
    row("--help ", "");
    row("plain ", "");
    row("plain -", "--help");
    row("mix -", "--speed --to --in --note --cold --help");
    row("mix --s", "--speed");
    row("mix --cold --c", "--cold");
    row("mix --speed ", "slow fast");
    row("mix --speed f", "fast");
    row("mix --speed --", "");
    row("mix --speed=", "slow fast");
    row("mix --speed=s", "slow");
    row("mix --speed slow ", "apple pear", "FILE");
    row("mix --speed=slow p", "pear", "FILE");
    row("mix --to ", "", "FILE");
    row("mix --to=x", "", "FILE");
    row("mix --in ", "", "DIR");
    row("mix --note ", "");
    row("mix --cold=", "");
    row("mix --unknown=", "");
    row("mix --unknown ", "apple pear", "FILE");
    row("mix - ", "-", "FILE");
    row("mix -- ", "apple pear", "FILE");
    row("mix -- --", "", "FILE");
    row("mix -- --to ", "--to", "FILE");
    row("mix pear ", "pear", "FILE");
    row("mix -s ", "slow fast");
    row("mix pear --to x --in y -s slow plum ", "pear plum", "FILE");
}

void BenchHelpTest::completions()
{
    QFETCH(QString, line);
    QFETCH(QString, words);
    QFETCH(QString, paths);

    const Command::Completions completions = Completion::of(line.split(QLatin1Char(' ')), commands);
    QCOMPARE(completions.words.join(QLatin1Char(' ')), words);
    QCOMPARE(completions.paths, paths);
}

/// The bench's own: each is found by its name, and tells what all need.
void BenchHelpTest::everyCommand()
{
    const CommandList own = knownCommands();
    QVERIFY(own.size() > 1);
    QStringList names;
    for (const auto &command : own) {
        QVERIFY2(!names.contains(command->name()), qPrintable(command->name()));
        names.append(command->name());
        QCOMPARE(findCommand(own, command->name()), command.get());
        QVERIFY2(!command->summary().isEmpty() && !command->details().isEmpty(), qPrintable(command->name()));
        QVERIFY2(command->details().endsWith(QLatin1Char('\n')), qPrintable(command->name()));
        // Lists are broken to the width: what goes on in a line of its own would stand below the names.
        QVERIFY2(!command->details().contains(QLatin1String("\n         ")), qPrintable(command->name()));
    }
}

void BenchHelpTest::scriptOperations_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("parts");

    const auto row = [](const char *name, const QStringList &parts) { QTest::newRow(name) << QString::fromLatin1(name) << parts; };
    row("AudioPolicy.setVolume",
        {QStringLiteral("AudioPolicy.setVolume(type, volume, save)\n"),
         QStringLiteral("\n  type          a whole number from -2147483648 to 2147483647: AudioPolicy.Media"),
         QStringLiteral("\n  save          true or false\n"),
         QStringLiteral("\n  gives         nothing\n")});
    row("AudioControl.changeAlterStepVolume",
        {QStringLiteral("changeAlterStepVolume(up, current)\n"), QStringLiteral("from 0 to 255"), QStringLiteral("gives         {result, step}\n")});
    row("AudioPolicy.getMicCalibrationGain", {QStringLiteral("gives         {first, second}\n")});
    row("AudioPolicy.updateAudioStatus", {QStringLiteral("AudioPolicy.StatusBtTelephony")});
    row("AudioSettings.data", {QStringLiteral("defaultValue  anything\n")});
    row("Platform.isMuted", {QStringLiteral("Platform.isMuted(track)\n"), QStringLiteral("gives         true or false\n")});
    row("Platform", {QStringLiteral("Platform, the car:\n"), QStringLiteral("\n  isMuted(track)")});
}

void BenchHelpTest::scriptOperations()
{
    QFETCH(QString, name);
    QFETCH(QStringList, parts);

    const CommandList own = knownCommands();
    const QString text = HelpText::on(name, own).value_or(QString());
    for (const QString &part : qAsConst(parts))
        QVERIFY2(text.contains(part), qPrintable(text));
    const QString misspelled = HelpText::unknown(name + QLatin1Char('x'), HelpText::names(own));
    QVERIFY2(misspelled.endsWith(QLatin1String("; the nearest is ") + name), qPrintable(misspelled));
}

void BenchHelpTest::everyScriptOperation()
{
    const CommandList own = knownCommands();
    for (const ScriptType *const type :
         {&QmlAudioControl::scriptType(), &QmlAudioPolicy::scriptType(), &QmlAudioSettings::scriptType(), &QmlPlatform::scriptType()}) {
        QVERIFY(!type->operations().isEmpty());
        for (const ScriptOperation &operation : type->operations()) {
            const QString name = type->name() + QLatin1Char('.') + QLatin1String(operation.name);
            const QString text = HelpText::on(name, own).value_or(QString());
            QVERIFY2(!operation.help.isEmpty() && text.contains(operation.signature()), qPrintable(name));
        }
    }
}

QTEST_GUILESS_MAIN(BenchHelpTest)

#include "tst_benchhelp.moc"
