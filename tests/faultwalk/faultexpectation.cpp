#include "faultexpectation.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QVariantMap>

#include <algorithm>
#include <iterator>

using faultrules::Change;
using faultrules::Gives;
using simulator::JournalEntry;

namespace
{

struct Loudspeaker
{
    quint32 channel;
    const char *name;
};

constexpr Loudspeaker loudspeakers[] = {{1, "LF"}, {2, "RF"}, {4, "LS"}, {8, "RS"}};

constexpr const char *resultField = "result";

/// An empty text in a rule fits everything.
bool fits(const char *rule, const QString &text)
{
    return *rule == '\0' || text == QLatin1String(rule);
}

QRegularExpression facadeLine(const char *from)
{
    return QRegularExpression(QStringLiteral("^\\[QT\\] (?:\\[Error\\] )?(?:\\[Audiocontrol\\] )?(?:line: LINE )?(?:%1)$").arg(QLatin1String(from)));
}

QRegularExpression traceLine(const char *from)
{
    return QRegularExpression(QStringLiteral("^(\\[DBG\\] THREAD .* LINE -- )(?:%1)$").arg(QLatin1String(from)));
}

QString errorLine(const QString &text)
{
    return QLatin1String("[QT] [Error] [Audiocontrol] line: LINE ") + text;
}

/// 0, "" or an empty list.
QVariant neutral(const QVariant &value)
{
    return {value.userType(), nullptr};
}

} // namespace

FaultExpectation::FaultExpectation(const QString &operation, const PlatformRun &smooth, const WalkedFault &fault)
    : m_operation(operation)
    , m_smooth(smooth)
    , m_fault(fault)
    , m_expected(smooth)
    , m_lines(smooth.lines.size())
    , m_inserted(smooth.lines.size() + 1)
{
    m_expected.entries.clear();
    for (int i = 0; i < smooth.lines.size(); ++i)
        m_lines[i] = QStringList(smooth.lines.at(i));
    for (const JournalEntry &entry : smooth.entries)
        m_neverDestroyed.insert(entry.object());
    for (const JournalEntry &entry : smooth.entries) {
        if (entry.isDestroy())
            m_neverDestroyed.remove(entry.object());
    }

    m_expected.promptEntries = 0;
    QHash<QString, int> counts;
    for (int i = 0; i < smooth.entries.size(); ++i) {
        const JournalEntry &entry = smooth.entries.at(i);
        const QString name = nameOf(entry);
        if (m_gone.contains(i))
            continue;
        const bool isWithoutObject
            = isKept(i) && (m_missing.contains(entry.object()) || (fault.way == WalkedFault::KeptNull && objectKindName(entry.kind) == fault.call));
        if (isWithoutObject && !entry.isCreate()) {
            withhold(i);
            continue;
        }
        const int n = ++counts[name];
        if (fault.hits(name, n))
            refuse(i, n);
        else
            m_expected.entries.append(entry);
        if (i < smooth.promptEntries)
            m_expected.promptEntries = m_expected.entries.size();
    }
    if (fault.way == WalkedFault::KeptNull)
        m_expected.living.removeOne(fault.call);
    collectLines();
}

/// A call that is made and fails.
void FaultExpectation::refuse(int index, int n)
{
    JournalEntry entry = m_smooth.entries.at(index);
    const QString name = nameOf(entry);
    const QString step = stepOf(index);
    int code = m_fault.code(n);
    Answer answer = Answer::Refusal;
    if (entry.isCreate()) {
        code = -1;
        answer = Answer::NoObject;
        for (int later = index + 1; later < m_smooth.entries.size(); ++later) {
            if (!isKept(index) && m_smooth.entries.at(later).object() == entry.object())
                m_gone.insert(later);
        }
        if (isKept(index)) {
            m_missing.insert(entry.object());
            m_expected.living.removeOne(objectKindName(entry.kind));
        }
        entry.number = 0;
    } else {
        entry.result = name == QLatin1String("Source.getActiveSource") ? QVariant() : QVariant(code);
        if (m_fault.way != WalkedFault::RefusedAfterWriting)
            entry.outputs.clear();
    }
    m_expected.entries.append(entry);
    changeLog(index, step, name, code);
    dropCalls(index, step, name);
    changeResult(index, step, answer, code);
    changeState(index, step);
}

/// A call that is not made, for want of an object that is otherwise kept.
void FaultExpectation::withhold(int index)
{
    if (m_smooth.entries.at(index).isDestroy())
        return;
    const QString step = stepOf(index);
    changeLog(index, step, nameOf(m_smooth.entries.at(index)), -1);
    changeResult(index, step, Answer::NoObject, -1);
    changeState(index, step);
}

void FaultExpectation::changeLog(int index, const QString &step, const QString &call, int code)
{
    for (const faultrules::LogChange &change : faultrules::logChanges) {
        if (fits(change.step, step) && fits(change.call, call))
            changeLine(change, index, code);
    }
}

void FaultExpectation::changeLine(const faultrules::LogChange &change, int index, int code)
{
    const int behindTheCall = m_smooth.linesBefore.at(index);
    switch (change.change) {
    case Change::Adds:
        m_inserted[behindTheCall] += errorLine(text(change.to, index, code));
        break;
    case Change::AddsOnce:
        m_combined |= code;
        if (m_combinedAt >= 0)
            m_inserted[m_combinedAt].removeLast();
        m_combinedAt = behindTheCall;
        m_inserted[m_combinedAt] += errorLine(text(change.to, index, m_combined));
        break;
    case Change::TraceAdds:
        if (m_lastChanged >= 0)
            m_lines[m_lastChanged] += QLatin1String("[DBG] THREAD ") + QLatin1String(change.to);
        break;
    case Change::TraceIsNeutral:
        if (m_fault.way != WalkedFault::RefusedAfterWriting)
            changeFound(change, index, code);
        break;
    case Change::Drops:
    case Change::TraceDrops:
        while (changeFound(change, index, code)) { }
        break;
    case Change::Becomes:
    case Change::AddsAfter:
    case Change::TraceBecomes:
        if (!changeFound(change, index, code))
            m_gaps += QStringLiteral("there is no line \"%1\" for %2").arg(QLatin1String(change.from), m_smooth.entries.at(index).call());
        break;
    }
}

/// Changes the first line of the step that a change means. False where there is none.
bool FaultExpectation::changeFound(const faultrules::LogChange &change, int index, int code)
{
    const bool isTrace = change.change == Change::TraceBecomes || change.change == Change::TraceIsNeutral || change.change == Change::TraceDrops;
    const QRegularExpression form = isTrace ? traceLine(change.from) : facadeLine(change.from);
    const int end = segmentEnd(index);
    for (int line = m_smooth.linesBefore.at(index); line < end; ++line) {
        const QRegularExpressionMatch match = form.match(m_smooth.lines.at(line));
        if (!match.hasMatch() || m_changedLines.contains(line))
            continue;
        m_changedLines.insert(line);
        m_lastChanged = line;
        if (change.change == Change::Drops || change.change == Change::TraceDrops)
            m_lines[line].clear();
        else if (change.change == Change::AddsAfter)
            m_lines[line] += errorLine(text(change.to, index, code));
        else if (isTrace)
            m_lines[line] = QStringList(match.captured(1) + text(change.to, index, code));
        else
            m_lines[line] = QStringList(errorLine(text(change.to, index, code, match.captured(1))));
        return true;
    }
    return false;
}

void FaultExpectation::dropCalls(int index, const QString &step, const QString &call)
{
    for (const faultrules::Consequence &consequence : faultrules::consequences) {
        if (!fits(consequence.step, step) || !fits(consequence.call, call))
            continue;
        // Such steps are operations of their own, so that all that follows is theirs.
        const JournalEntry &failed = m_smooth.entries.at(index);
        for (int later = index + 1; later < m_smooth.entries.size(); ++later) {
            const JournalEntry &entry = m_smooth.entries.at(later);
            if (nameOf(entry).startsWith(QLatin1String(consequence.gone)) && !(entry.isDestroy() && entry.object() == failed.object()))
                m_gone.insert(later);
        }
    }
}

void FaultExpectation::changeState(int index, const QString &step)
{
    const int first = firstCallOn(index);
    const QString call = first < 0 ? QString() : nameOf(m_smooth.entries.at(first));
    const auto isMeant = [&](const faultrules::Repetition &row) { return fits(row.operation, m_operation) && fits(row.step, step) && fits(row.call, call); };
    if (std::any_of(std::begin(faultrules::repetitions), std::end(faultrules::repetitions), isMeant))
        m_keepsState = true;
}

void FaultExpectation::changeResult(int index, const QString &step, Answer answer, int code)
{
    if (!m_smooth.result.isValid() || index >= m_smooth.promptEntries || m_resultIsDecided)
        return;
    const int first = firstCallOn(index);
    const QString call = first < 0 ? QString() : nameOf(m_smooth.entries.at(first));
    const auto rule = std::find_if(std::begin(faultrules::results), std::end(faultrules::results), [&](const faultrules::Result &row) {
        return fits(row.operation, m_operation) && fits(row.step, step) && fits(row.call, call);
    });
    if (rule == std::end(faultrules::results)) {
        m_gaps += QStringLiteral("no rule says what %1 gives when %2 fails").arg(m_operation, m_smooth.entries.at(index).call());
        return;
    }
    m_resultIsDecided = rule->gives != Gives::Same;
    const bool isWritten = answer == Answer::Refusal && m_fault.way == WalkedFault::RefusedAfterWriting;
    switch (rule->gives) {
    case Gives::Same:
        break;
    case Gives::Code:
        setOutputs(isWritten, code);
        break;
    case Gives::MinusOne:
        setOutputs(false, -1);
        break;
    case Gives::Neutral:
        setOutputs(false, neutral(m_smooth.result));
        break;
    case Gives::Outputs:
        setOutputs(isWritten, isWritten ? m_smooth.result : neutral(m_smooth.result));
        break;
    case Gives::StepBefore: {
        QVariantMap fields = m_smooth.result.toMap();
        fields.insert(QLatin1String(resultField), code);
        fields.insert(QStringLiteral("step"), fields.value(QStringLiteral("step")).toInt() - 1);
        m_expected.result = fields;
        break;
    }
    }
}

/// The code, and in a result of several fields the others as they are or neutral.
void FaultExpectation::setOutputs(bool areWritten, const QVariant &code)
{
    if (m_smooth.result.userType() != QMetaType::QVariantMap) {
        m_expected.result = code;
        return;
    }
    QVariantMap fields = m_smooth.result.toMap();
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        if (field.key() == QLatin1String(resultField))
            *field = code;
        else if (!areWritten)
            *field = neutral(*field);
    }
    m_expected.result = fields;
}

void FaultExpectation::collectLines()
{
    m_expected.lines.clear();
    for (int i = 0; i <= m_lines.size(); ++i) {
        m_expected.lines += m_inserted.at(i);
        if (i < m_lines.size())
            m_expected.lines += m_lines.at(i);
    }
}

// Where a call stands -----------------------------------------------------------------------------------------------------------

QString FaultExpectation::stepOf(int index) const
{
    const int first = firstCallOn(index);
    if (first < 0)
        return {};
    const JournalEntry &entry = m_smooth.entries.at(first);
    const QString name = nameOf(entry);
    QString step = entry.operation;
    for (const faultrules::Step &row : faultrules::steps) {
        if (fits(row.call, name) && fits(row.operation, m_operation) && fits(row.argument, entry.argumentTexts.value(0))
            && (*row.beside == '\0' || isInSegment(first, row.beside))) {
            step = QLatin1String(row.name);
            break;
        }
    }
    const JournalEntry &before = m_smooth.entries.at(qMax(0, first - 1));
    const bool isOfTheGroup = nameOf(before) == name && before.object() == entry.object();
    return isOfTheGroup && step == QLatin1String("changeMainTrackStepVolume") ? step + QLatin1String(", the group") : step;
}

/// For a call the call itself; for the making of an object the first call on it, or else the first one behind it; -1 for none.
int FaultExpectation::firstCallOn(int index) const
{
    const JournalEntry &entry = m_smooth.entries.at(index);
    if (!entry.isCreate())
        return index;
    int nearest = -1;
    for (int later = index + 1; later < m_smooth.entries.size(); ++later) {
        const JournalEntry &candidate = m_smooth.entries.at(later);
        if (candidate.isCreate() || candidate.isDestroy())
            continue;
        if (candidate.object() == entry.object())
            return later;
        if (nearest < 0)
            nearest = later;
    }
    return isKept(index) ? -1 : nearest;
}

bool FaultExpectation::isKept(int index) const
{
    return m_neverDestroyed.contains(m_smooth.entries.at(index).object());
}

/// The line that begins what comes after a step: where no object is left that was made for it.
int FaultExpectation::segmentEnd(int index) const
{
    int open = 0;
    for (int i = 0; i < m_smooth.entries.size(); ++i) {
        const JournalEntry &entry = m_smooth.entries.at(i);
        if (i > index && open == 0)
            return m_smooth.linesBefore.at(i);
        if (entry.isCreate() && !isKept(i))
            ++open;
        else if (entry.isDestroy())
            --open;
    }
    return m_smooth.lines.size();
}

/// Whether another call of this name stands in the same step.
bool FaultExpectation::isInSegment(int index, const char *call) const
{
    int open = 0;
    bool isFound = false;
    bool isReached = false;
    for (int i = 0; i < m_smooth.entries.size(); ++i) {
        const JournalEntry &entry = m_smooth.entries.at(i);
        isReached = isReached || i == index;
        isFound = isFound || (i != index && nameOf(entry) == QLatin1String(call));
        if (entry.isCreate() && !isKept(i))
            ++open;
        else if (entry.isDestroy())
            --open;
        if (open == 0) {
            if (isReached)
                return isFound;
            isFound = false;
        }
    }
    return isFound;
}

QString FaultExpectation::text(const char *form, int index, int code, const QString &captured) const
{
    QString filled = QLatin1String(form);
    if (filled.contains(QLatin1String("%s"))) {
        const quint32 channel = m_smooth.entries.at(index).arguments.value(0).toMap().value(QStringLiteral("channel")).toUInt();
        const auto loudspeaker
            = std::find_if(std::begin(loudspeakers), std::end(loudspeakers), [channel](const Loudspeaker &row) { return row.channel == channel; });
        filled.replace(QLatin1String("%s"), loudspeaker == std::end(loudspeakers) ? QString() : QLatin1String(loudspeaker->name));
    }
    filled.replace(QLatin1String("%c"), QString::number(code));
    return filled.replace(QLatin1String("%1"), captured);
}
