#include <explain/logline.h>
#include <explain/loglines.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

#include <algorithm>

using LogLines::Form;
using LogLines::Id;
using LogLines::Row;

namespace
{

/// A log line as it stands in the sources.
struct Statement
{
    QString place; ///< "audiocontrol.cpp:181"
    Form form;
    QString function; ///< that it stands in; empty where the line is written for a caller
    QStringList items; ///< literals in quotes, and expressions
};

/// Expressions that stand for words, and what these can be.
const QMap<QString, QStringList> &wordsOfExpressions()
{
    static const QMap<QString, QStringList> words{
        {QStringLiteral("notMade"), {QStringLiteral("Create audio source failed.")}},
        {QStringLiteral("heading"), {QStringLiteral("Fc:"), QStringLiteral("EqFrequency:")}},
        {QStringLiteral("role"), {QStringLiteral("src"), QStringLiteral("dest")}},
        {QStringLiteral("(frontOnly ? \"set front channels\" : \"set front and rear channels\")"),
         {QStringLiteral("set front channels"), QStringLiteral("set front and rear channels")}},
        {QStringLiteral("tables::loudspeakers[i].failure"),
         {QStringLiteral("set LFChannel gain err"),
          QStringLiteral("set RFChannel gain err"),
          QStringLiteral("set LSChannel gain err"),
          QStringLiteral("set RSChannel gain err")}},
        {QStringLiteral("tables::loudspeakers[i].logName"),
         {QStringLiteral("LFChannel"), QStringLiteral("RFChannel"), QStringLiteral("LSChannel"), QStringLiteral("RSChannel")}},
    };
    return words;
}

/// The end of what a parenthesis encloses, from behind it.
int closing(const QString &text, int from)
{
    int depth = 1;
    bool isQuoted = false;
    for (int at = from; at < text.size(); ++at) {
        const QChar character = text.at(at);
        if (isQuoted) {
            if (character == QLatin1Char('\\'))
                ++at;
            else if (character == QLatin1Char('"'))
                isQuoted = false;
        } else if (character == QLatin1Char('"')) {
            isQuoted = true;
        } else if (character == QLatin1Char('(')) {
            ++depth;
        } else if (character == QLatin1Char(')') && --depth == 0) {
            return at;
        }
    }
    return text.size();
}

/// Splits at a separator that stands neither in quotes nor in parentheses.
QStringList split(const QString &text, const QString &separator)
{
    QStringList parts;
    int begin = 0;
    int at = 0;
    bool isQuoted = false;
    while (at < text.size()) {
        const QChar character = text.at(at);
        if (isQuoted) {
            if (character == QLatin1Char('\\'))
                ++at;
            else if (character == QLatin1Char('"'))
                isQuoted = false;
        } else if (character == QLatin1Char('"')) {
            isQuoted = true;
        } else if (character == QLatin1Char('(')) {
            at = closing(text, at + 1);
        } else if (text.midRef(at, separator.size()) == separator) {
            parts.append(text.mid(begin, at - begin).trimmed());
            begin = at + separator.size();
            at = begin - 1;
        }
        ++at;
    }
    parts.append(text.mid(begin).trimmed());
    parts.removeAll(QString());
    return parts;
}

/// Everything up to the semicolon that ends a statement.
QString statementFrom(const QString &text, int from)
{
    return text.at(from) == QLatin1Char(';') ? QString() : split(text.mid(from, 1000), QStringLiteral(";")).value(0);
}

class Source
{
public:
    explicit Source(const QString &file)
        : m_name(QFileInfo(file).fileName())
    {
        QFile source(file);
        if (!source.open(QIODevice::ReadOnly))
            qFatal("%s cannot be read", qPrintable(file));
        m_text = QString::fromUtf8(source.readAll());
        m_text.remove(QRegularExpression(QStringLiteral("//[^\n\"]*(?=\n)")));
        readStreams();
        readOutcomes();
        readHelpers();
    }

    const QVector<Statement> &statements() const { return m_statements; }

private:
    void readStreams()
    {
        const QMap<QString, Form> forms{
            {QStringLiteral("traceDebug"), Form::Trace},
            {QStringLiteral("traceCritical"), Form::Critical},
            {QStringLiteral("facadeInfo"), Form::Facade},
            {QStringLiteral("facadeError"), Form::FacadeError},
            {QStringLiteral("facadeNote"), Form::FacadeNote},
        };
        static const QRegularExpression begin(QStringLiteral("\\b(traceDebug|traceCritical|facadeInfo|facadeError|facadeNote)\\(\\)"));
        for (auto found = begin.globalMatch(m_text); found.hasNext();) {
            const QRegularExpressionMatch match = found.next();
            add(match.capturedStart(), forms.value(match.captured(1)), split(statementFrom(m_text, match.capturedEnd()), QStringLiteral("<<")));
        }
    }

    void readOutcomes()
    {
        static const QRegularExpression begin(QStringLiteral("\\blogOutcome\\("));
        for (auto found = begin.globalMatch(m_text); found.hasNext();) {
            const QRegularExpressionMatch match = found.next();
            const QStringList arguments
                = split(m_text.mid(match.capturedEnd(), closing(m_text, match.capturedEnd()) - match.capturedEnd()), QStringLiteral(","));
            QCOMPARE(arguments.size(), 4);
            addMessage(match.capturedStart(), Form::Facade, arguments.at(2));
            addMessage(match.capturedStart(), Form::FacadeError, arguments.at(3));
        }
    }

    void addMessage(int at, Form form, const QString &call)
    {
        QVERIFY2(call.startsWith(QLatin1String("message(")), qPrintable(call));
        add(at, form, split(call.mid(8).chopped(1), QStringLiteral(",")));
    }

    /// Functions that write a line at a place that they are given.
    void readHelpers()
    {
        const QMap<QString, Form> forms{
            {QStringLiteral("logging::logInfo"), Form::Facade},
            {QStringLiteral("logging::logError"), Form::FacadeError},
            {QStringLiteral("logging::logTrace"), Form::Trace},
            {QStringLiteral("logging::logCritical"), Form::Critical},
        };
        static const QRegularExpression begin(
            QStringLiteral("\\b(logging::log(?:Info|Error|Trace|Critical)|PlatformObject<\\w+>(?: \\w+)?)\\((?:at|QZAUDIO_HERE), "));
        for (auto found = begin.globalMatch(m_text); found.hasNext();) {
            const QRegularExpressionMatch match = found.next();
            const QStringList items = split(m_text.mid(match.capturedEnd(), closing(m_text, match.capturedEnd()) - match.capturedEnd()), QStringLiteral(","));
            const bool isTrace = match.captured(1) == QLatin1String("logging::logTrace") || match.captured(1) == QLatin1String("logging::logCritical");
            add(match.capturedStart(), forms.value(match.captured(1), Form::FacadeError), items);
            if (isTrace)
                m_statements.last().function.clear();
        }
    }

    void add(int at, Form form, const QStringList &items)
    {
        const QString before = m_text.left(at);
        static const QRegularExpression definition(QStringLiteral("^(?:[\\w:<>*& ,]+[ *&])?((?:\\w+::)*~?\\w+)\\([^;{}]*\\)(?: const)?\\s*(?::[^{]*)?\\{"),
                                                   QRegularExpression::MultilineOption);
        QString function;
        for (auto found = definition.globalMatch(before); found.hasNext();)
            function = found.next().captured(1);
        m_statements.append({QStringLiteral("%1:%2").arg(m_name).arg(before.count(QLatin1Char('\n')) + 1), form, function, items});
    }

    QString m_name;
    QString m_text;
    QVector<Statement> m_statements;
};

/// What a line of a statement consists of: words, and "*" for a value; in all variants that the statement can have.
QVector<QStringList> shapes(const Statement &statement)
{
    QVector<QStringList> shapes{{}};
    for (const QString &item : statement.items) {
        QStringList variants;
        if (item.startsWith(QLatin1Char('"'))) {
            QString literal = item;
            literal.remove(QRegularExpression(QStringLiteral("\"\\s*\""))); // literals beside each other
            literal = literal.mid(1).chopped(1);
            literal.replace(QLatin1String("\\n"), QLatin1String(" "));
            variants.append(literal);
        } else {
            variants = wordsOfExpressions().value(item, {QStringLiteral("*")});
        }
        QVector<QStringList> longer;
        for (const QStringList &shape : qAsConst(shapes)) {
            for (const QString &variant : qAsConst(variants))
                longer.append(shape + variant.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts));
        }
        shapes = longer;
    }
    return shapes;
}

bool fits(const Row &row, const QStringList &shape)
{
    const QStringList words = QString::fromLatin1(row.words).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return words.size() == shape.size() && std::equal(words.cbegin(), words.cend(), shape.cbegin(), [](const QString &word, const QString &given) {
               return word.startsWith(QLatin1Char('%')) ? given == QLatin1String("*") : word == given;
           });
}

bool fits(const Row &row, const Statement &statement)
{
    const QString function = QString::fromLatin1(row.function);
    const bool isTrace = row.form == Form::Trace || row.form == Form::Critical;
    return row.form == statement.form
        && (!isTrace || statement.function.isEmpty() || function == statement.function || function.endsWith(QLatin1String("::") + statement.function));
}

} // namespace

class LogLinesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyLineOfTheSourcesHasItsRow();
    void everyRowIsALineOfTheSources();
    void linesAreUnderstood_data();
    void linesAreUnderstood();
    void otherTextIsNot_data();
    void otherTextIsNot();

private:
    QVector<Statement> statements;
};

void LogLinesTest::initTestCase()
{
    const QDir folder(QStringLiteral(SOURCE_FOLDER));
    const QStringList files = folder.entryList({QStringLiteral("*.cpp")});
    for (const QString &file : files)
        statements += Source(folder.filePath(file)).statements();
    QVERIFY2(statements.size() > 200, qPrintable(QString::number(statements.size())));
}

void LogLinesTest::everyLineOfTheSourcesHasItsRow()
{
    QStringList missing;
    for (const Statement &statement : qAsConst(statements)) {
        const auto all = shapes(statement);
        for (const QStringList &shape : all) {
            const bool isKnown
                = std::any_of(std::begin(LogLines::rows), std::end(LogLines::rows), [&](const Row &row) { return fits(row, statement) && fits(row, shape); });
            if (!isKnown)
                missing.append(QStringLiteral("%1: %2: %3").arg(statement.place, statement.function, shape.join(QLatin1Char(' '))));
        }
    }
    QVERIFY2(missing.isEmpty(), qPrintable(QStringLiteral("bench/explain/loglines.h has no row for\n") + missing.join(QLatin1Char('\n'))));
}

void LogLinesTest::everyRowIsALineOfTheSources()
{
    QStringList stale;
    for (const Row &row : LogLines::rows) {
        const auto isWritten = [&row](const Statement &statement) {
            const auto all = shapes(statement);
            return fits(row, statement) && std::any_of(all.cbegin(), all.cend(), [&row](const QStringList &shape) { return fits(row, shape); });
        };
        // The beginning of a line that breaks is a row of its own; the daemon's lines are none of the library.
        if (row.form == Form::Service || row.id == Id::FocusDumpBegins)
            continue;
        if (std::none_of(statements.cbegin(), statements.cend(), isWritten))
            stale.append(QString::fromLatin1(row.function) + QLatin1Char(' ') + QLatin1String(row.words));
    }
    QVERIFY2(stale.isEmpty(), qPrintable(QStringLiteral("no source writes\n") + stale.join(QLatin1Char('\n'))));
}

void LogLinesTest::linesAreUnderstood_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("thread");
    QTest::addColumn<QVariantList>("values");

    const auto row = [](const char *name, const char *text, Id id, int thread, const QVariantList &values) {
        QTest::newRow(name) << QByteArray(text) << int(id) << thread << values;
    };
    row("no values", "[DBG] 84 ZelAudioManager::ZelAudioManager(QObject*) 84 --", Id::ManagerStarts, 84, {});
    row("numbers and a truth",
        "[DBG] 2353 void ZelAudioManager::setVolume(ZelAudioType, int, bool) 205 -- 0 -16 true 0",
        Id::SetVolume,
        2353,
        {0, -16, true, 0});
    row("another line number", "[DBG] 2353 void ZelAudioManager::setVolume(ZelAudioType, int, bool) 7 -- 0 16 true 0", Id::SetVolume, 2353, {0, 16, true, 0});
    row("words before a value", "[DBG] 1 void ZelAudioManager::updateAudioChannel(AudioChannel) 179 -- Update Audio Channel 5", Id::UpdateAudioChannel, 1, {5});
    row("a name and one in quotes",
        "[DBG] 1 void audio::AudioControl::setStreamVolume(AudioTag, const char*, quint8) 185 -- S+AuxIn_APP \"S+AuxIn\" src",
        Id::StreamName,
        1,
        {QStringLiteral("S+AuxIn_APP"), QStringLiteral("S+AuxIn")});
    row("an empty name",
        "[DBG] 1 void audio::AudioControl::setStreamVolume(AudioTag, const char*, quint8) 185 --  \"\" src",
        Id::StreamName,
        1,
        {QString(), QString()});
    row("a name with blanks", "[QT] [Audiocontrol] set stream one two 80", Id::StreamSet, -1, {QStringLiteral("one two"), 80});
    row("a step volume",
        "[QT] [Audiocontrol] set stream main \"S+AuxIn\" 20 120",
        Id::StepStreamSet,
        -1,
        {QStringLiteral("main"), QStringLiteral("S+AuxIn"), 20, 120});
    row("a refused stream", "[QT] [Error] [Audiocontrol] line: 193 set stream S+AuxIn_APP err 7", Id::StreamRefused, -1, {QStringLiteral("S+AuxIn_APP"), 7});
    row("a line number that stands twice",
        "[QT] [Error] [Audiocontrol] line: 191 191 set stream main \"S+AuxIn\" 20 120 7",
        Id::StepStreamRefused,
        -1,
        {191, QStringLiteral("main"), QStringLiteral("S+AuxIn"), 20, 120, 7});
    row("a list", "[DBG] 1 void ZelAudioManager::setEqType(int) 493 -- (2, -3.5, 0)", Id::SetEqTypeGains, 1, {QVariant(QVariantList{2, -3.5, 0})});
    row("an empty list", "[QT] [Audiocontrol] 7 eq val is: ()", Id::ModeGains, -1, {7, QVariant(QVariantList())});
    row("two numbers", "[QT] [Audiocontrol] 9.75 0", Id::AnalogGain, -1, {9.75, 0});
    row("one number", "[QT] [Audiocontrol] 10", Id::Frequency, -1, {10});
    row("no number", "[QT] [Error] [Audiocontrol] line: 365 input gain val err nan", Id::GainWrong, -1, {qQNaN()});
    row("without the facade's name", "[QT] Will change the group volume of  \"S+FilePlayer_APP\"", Id::GroupChanges, -1, {QStringLiteral("S+FilePlayer_APP")});
    row("escapes",
        "[DBG] 1 void FocusRequester::handleFocusLoss(int) 75 -- dispatching  \"LOSS\"  to  \"a\\\"b\\\\c\\nd\\u00E9\\x1\"\"f\"",
        Id::FocusLost,
        1,
        {QStringLiteral("LOSS"), QStringLiteral("a\"b\\c\nd\u00e9\u0001f")});
    row("a virtual function",
        "[DBG] 1 virtual void AudioService::dispatchAudioFocusChange(int, const QString&) 35 -- dispathing \"GAIN\" to \"music\"",
        Id::FocusServiceTells,
        1,
        {QStringLiteral("GAIN"), QStringLiteral("music")});
    row("several lines in one",
        "[DBG] 1 void FocusRequester::dump() 88 --  -- client:  \"music\" \n -- gain:  \"GAIN\" \n -- loss:  \"NONE\" \n -- stream:  3",
        Id::FocusDumped,
        1,
        {QStringLiteral("music"), QStringLiteral("GAIN"), QStringLiteral("NONE"), 3});
    row("the first of several lines", "[DBG] 1 void FocusRequester::dump() 88 --  -- client:  \"music\" ", Id::FocusDumpBegins, 1, {QStringLiteral("music")});
    row("a critical line",
        "[ERR] 1 void audio::AudioDataBase::save(QString, QString, QVariant) 121 -- /media/flash/nvm/a.ini cannot be written: No space left on device",
        Id::StoreSaveComplaint,
        1,
        {QStringLiteral("/media/flash/nvm/a.ini"), QStringLiteral("cannot be written: No space left on device")});
    row("of the daemon", "qzaudio-focusd: a call has focus, from :1.5", Id::ServiceCallBegins, -1, {QStringLiteral(":1.5")});
}

void LogLinesTest::linesAreUnderstood()
{
    QFETCH(const QByteArray, text);
    const auto line = LogLine::read({text.constData(), std::size_t(text.size())});
    QVERIFY(line.has_value());
    QTEST(int(line->id()), "id");
    QTEST(int(line->thread), "thread");
    QFETCH(const QVariantList, values);
    QCOMPARE(line->values.size(), values.size());
    for (int i = 0; i < values.size(); ++i) {
        if (values.at(i).userType() == QMetaType::Double && qIsNaN(values.at(i).toDouble()))
            QVERIFY(qIsNaN(line->real(i)));
        else if (values.at(i).userType() == QMetaType::Int)
            QCOMPARE(line->real(i), values.at(i).toDouble());
        else
            QCOMPARE(line->values.at(i), values.at(i));
    }
}

void LogLinesTest::otherTextIsNot_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a mark only") << QByteArray("[DBG] ");
    QTest::newRow("cut in the signature") << QByteArray("[DBG] 2353 void ZelAudioManager::setVo");
    QTest::newRow("cut before the values") << QByteArray("[DBG] 2353 void ZelAudioManager::setVolume(ZelAudioType, int, bool) 205 --");
    QTest::newRow("cut in the values") << QByteArray("[DBG] 2353 void ZelAudioManager::setVolume(ZelAudioType, int, bool) 205 -- 0 16 tr");
    QTest::newRow("more values") << QByteArray("[DBG] 2353 void ZelAudioManager::setMute(bool) 425 -- true true");
    QTest::newRow("another function") << QByteArray("[DBG] 2353 void Player::play(int) 205 -- 0 16");
    QTest::newRow("no thread") << QByteArray("[DBG] void ZelAudioManager::setMute(bool) 425 -- true");
    QTest::newRow("a list without its end") << QByteArray("[DBG] 1 void ZelAudioManager::setEqType(int) 493 -- (2, 3");
    QTest::newRow("a quotation without its end") << QByteArray("[QT] Will change the group volume of  \"S+");
    QTest::newRow("words of nobody") << QByteArray("[QT] [Audiocontrol] hello");
    QTest::newRow("an error without its line") << QByteArray("[QT] [Error] [Audiocontrol] line: set Loudness error 7");
}

void LogLinesTest::otherTextIsNot()
{
    QFETCH(const QByteArray, text);
    QVERIFY(!LogLine::read({text.constData(), std::size_t(text.size())}).has_value());
}

QTEST_GUILESS_MAIN(LogLinesTest)
#include "tst_loglines.moc"
