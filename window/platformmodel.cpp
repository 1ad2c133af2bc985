#include "platformmodel.h"

#include "scripttext.h"

#include "faults.h"

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <utility>

namespace
{

/// A fault as Faults::pending() tells it: "Volume.getTrackVolume 7 after writing always"
struct Fault
{
    QString operation;
    QString code; // "null", of a factory
    bool isAfterWriting = false;
    QString callsLeft; // empty for always

    static Fault parse(const QString &text)
    {
        static const QRegularExpression form(QStringLiteral(R"(^(\S+) (-?\d+|null)( after writing)? (?:always|in (\d+) calls)$)"));
        const QRegularExpressionMatch match = form.match(text);
        return {match.captured(1), match.captured(2), !match.captured(3).isEmpty(), match.captured(4)};
    }

    bool isFactory() const { return code == QLatin1String("null"); }
    QString kind() const { return operation.section(QLatin1Char('.'), 0, 0); }

    /// The line of a scenario that orders it.
    QString order() const
    {
        if (isFactory())
            return QStringLiteral("Platform.failFactory(%1);").arg(scriptText(kind()));
        const QString given = scriptText(operation) + QStringLiteral(", ") + code;
        if (isAfterWriting)
            return QStringLiteral("Platform.failAfterWriting(%1);").arg(given);
        return callsLeft.isEmpty() ? QStringLiteral("Platform.fail(%1);").arg(given) : QStringLiteral("Platform.failOnce(%1, %2);").arg(given, callsLeft);
    }

    QString toText() const
    {
        const QString when = isAfterWriting ? PlatformModel::tr("after writing")
            : callsLeft.isEmpty()           ? PlatformModel::tr("always")
                                            : PlatformModel::tr("in %1 calls").arg(callsLeft);
        return callsLeft == QLatin1String("1") ? PlatformModel::tr("%1, the next call").arg(code) : code + QStringLiteral(", ") + when;
    }
};

} // namespace

PlatformModel::PlatformModel(QObject *parent)
    : RoomModel(parent)
    , m_operations({"operation", "calls", "refused", "writes", "fault"})
    , m_state({"group", "name", "value", "expectation"})
{
    updateOperations({});
    connect(this, &RoomModel::deskChanged, this, &PlatformModel::follow);
    connect(this, &RoomModel::activeChanged, this, &PlatformModel::showMissed);
}

QStringList PlatformModel::operationNames()
{
    QStringList names = simulator::Faults::operations();
    for (const simulator::ObjectKind kind : simulator::allObjectKinds) {
        for (const char *const lifetime : {"create", "destroy"})
            names.append(simulator::objectKindName(kind) + QLatin1Char('.') + QLatin1String(lifetime));
    }
    names.prepend(tr("All operations"));
    return names;
}

QStringList PlatformModel::failingFactories() const
{
    QStringList kinds;
    for (const QString &text : m_faults) {
        const Fault fault = Fault::parse(text);
        if (fault.isFactory())
            kinds.append(fault.kind());
    }
    return kinds;
}

void PlatformModel::fail(const QString &operation, int code, Occasion occasion)
{
    const Fault fault{operation, QString::number(code), occasion == AfterWriting, occasion == NextCall ? QStringLiteral("1") : QString()};
    perform(fault.order());
}

void PlatformModel::failFactory(const QString &kind)
{
    perform(QStringLiteral("Platform.failFactory(%1);").arg(scriptText(kind)));
}

void PlatformModel::takeBack(int fault)
{
    if (fault < 0 || fault >= m_faults.size())
        return;
    QStringList left = m_faults;
    left.removeAt(fault);
    replaceFaults(left);
}

void PlatformModel::takeBackAllOf(const QString &operation)
{
    QStringList left;
    std::copy_if(
        m_faults.cbegin(), m_faults.cend(), std::back_inserter(left), [&operation](const QString &text) { return Fault::parse(text).operation != operation; });
    if (left.size() != m_faults.size())
        replaceFaults(left);
}

void PlatformModel::clearFaults()
{
    replaceFaults({});
}

/// The platform forgets all faults or none: those that stay are ordered again.
void PlatformModel::replaceFaults(const QStringList &faults)
{
    QStringList lines = {QStringLiteral("Platform.clearFaults();")};
    for (const QString &text : faults)
        lines.append(Fault::parse(text).order());
    perform(lines.join(QLatin1Char(' ')));
}

void PlatformModel::setCallDuration(int milliseconds)
{
    if (milliseconds != m_callDuration)
        perform(QStringLiteral("Platform.setCallDuration(%1);").arg(milliseconds));
}

QString PlatformModel::expectationOfState(const QString &group, const QString &name, const QString &value)
{
    // Of lists and records the table has the text only.
    if (value.isEmpty() || value.contains(QLatin1Char(',')) || value.contains(QLatin1Char(' ')))
        return {};
    bool isNumber = false;
    value.toDouble(&isNumber);
    const bool isBare = isNumber || value == QLatin1String("true") || value == QLatin1String("false");
    return QStringLiteral("expect(Platform.state().find(item => item.group === %1 && item.name === %2).value).toBe(%3);")
        .arg(scriptText(group), scriptText(name), isBare ? value : scriptText(value));
}

QString PlatformModel::expectationOfCall(const QString &operation, const QString &call, const QString &note)
{
    // The journal that a scenario reads has no lifetimes, and whole records, of which this one shows the gains only.
    if (!note.isEmpty() || operation.endsWith(QLatin1String(".create")) || operation.endsWith(QLatin1String(".destroy"))
        || call.contains(QLatin1String("(gains ")))
        return {};
    return QStringLiteral("expect(Platform.journal()).toContain(%1);").arg(scriptText(call));
}

void PlatformModel::follow()
{
    if (!desk())
        return;
    connect(desk(), &Desk::journalGrew, this, [this](const QVariantList &rows) {
        m_missed += rows;
        showMissed();
    });
    connect(desk(), &Desk::restarted, this, [this] {
        m_missed.clear();
        m_journal.clear();
    });
    constexpr int mostCalls = 10000; // an hour's hundred thousand would take more memory than all else of the window
    m_journal.setLimit(mostCalls);
    m_missed = desk()->journal();
    showMissed();
}

void PlatformModel::showMissed()
{
    if (isActive()) {
        m_journal.append(std::exchange(m_missed, {}));
        return;
    }
    // In large portions, so that it is done seldom.
    if (m_missed.size() > 2 * m_journal.limit())
        m_missed.erase(m_missed.begin(), m_missed.end() - m_journal.limit());
}

void PlatformModel::perform(const QString &line)
{
    if (desk())
        desk()->perform(line);
}

void PlatformModel::update(const QVariantMap &snapshot)
{
    const QVariantMap given = snapshot.value(QStringLiteral("platform")).toMap();
    if (given == m_given)
        return;
    m_given = given;
    const QStringList faults = given.value(QStringLiteral("faults")).toStringList();
    if (std::exchange(m_faults, faults) != faults)
        Q_EMIT faultsChanged();
    updateOperations(given.value(QStringLiteral("counts")).toMap());
    const int duration = given.value(QStringLiteral("callDuration")).toInt();
    if (std::exchange(m_callDuration, duration) != duration)
        Q_EMIT callDurationChanged();
    const QVariantList books = given.value(QStringLiteral("books")).toList();
    const QStringList living = given.value(QStringLiteral("living")).toStringList();
    const QStringList problems = given.value(QStringLiteral("problems")).toStringList();
    if (books != m_books || living != m_living || problems != m_problems) {
        m_books = books;
        m_living = living;
        m_problems = problems;
        Q_EMIT booksChanged();
    }
    QVector<QVariantMap> state;
    const QVariantList items = given.value(QStringLiteral("state")).toList();
    for (const QVariant &item : items) {
        QVariantMap row = item.toMap();
        const auto text = [&row](const char *name) { return row.value(QLatin1String(name)).toString(); };
        row.insert(QStringLiteral("expectation"), expectationOfState(text("group"), text("name"), text("value")));
        state.append(row);
    }
    m_state.setRows(state);
}

void PlatformModel::updateOperations(const QVariantMap &counts)
{
    static const QStringList operations = simulator::Faults::operations();
    static const QStringList writing = [] {
        QStringList names;
        simulator::Faults probe; // orders for no platform
        std::copy_if(
            operations.cbegin(), operations.cend(), std::back_inserter(names), [&probe](const QString &name) { return probe.failAfterWriting(name, 1); });
        return names;
    }();
    QMap<QString, QStringList> faults;
    for (const QString &text : qAsConst(m_faults)) {
        const Fault fault = Fault::parse(text);
        faults[fault.operation].append(fault.toText());
    }
    QVector<QVariantMap> rows;
    for (const QString &operation : operations) {
        const QVariantMap count = counts.value(operation).toMap();
        rows.append({{QStringLiteral("operation"), operation},
                     {QStringLiteral("calls"), count.value(QStringLiteral("calls")).toInt()},
                     {QStringLiteral("refused"), count.value(QStringLiteral("refused")).toInt()},
                     {QStringLiteral("writes"), writing.contains(operation)},
                     {QStringLiteral("fault"), faults.value(operation).join(QStringLiteral("; "))}});
    }
    m_operations.setRows(rows);
}
