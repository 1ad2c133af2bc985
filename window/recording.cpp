#include "recording.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

namespace
{

constexpr const char *firstLine = "// A drive recorded with qzaudio-desk.";

} // namespace

Recording::Recording(QObject *parent)
    : QAbstractListModel(parent)
{
}

void Recording::add(const QVector<Step> &steps)
{
    if (m_doneCount < m_steps.size()) {
        beginRemoveRows({}, m_doneCount, m_steps.size() - 1);
        m_steps.resize(m_doneCount);
        endRemoveRows();
    }
    beginInsertRows({}, m_doneCount, m_doneCount + steps.size() - 1);
    m_steps += steps;
    m_doneCount = m_steps.size();
    endInsertRows();
    Q_EMIT countChanged();
    Q_EMIT doneCountChanged();
    setUnsaved(true);
}

void Recording::done(const Step &step)
{
    if (m_doneCount == m_steps.size())
        return;
    m_steps[m_doneCount] = step;
    ++m_doneCount;
    Q_EMIT dataChanged(index(m_doneCount - 1), index(m_doneCount - 1));
    Q_EMIT doneCountChanged();
}

void Recording::setDoneCount(int count)
{
    if (count == m_doneCount)
        return;
    const int first = qMin(count, m_doneCount);
    const int last = qMax(count, m_doneCount) - 1;
    m_doneCount = count;
    Q_EMIT dataChanged(index(first), index(last), {DoneRole});
    Q_EMIT doneCountChanged();
}

void Recording::replace(const QVector<Step> &steps, int doneCount)
{
    beginResetModel();
    m_steps = steps;
    m_doneCount = doneCount;
    endResetModel();
    Q_EMIT countChanged();
    Q_EMIT doneCountChanged();
}

void Recording::setUnsaved(bool unsaved)
{
    if (m_unsaved == unsaved)
        return;
    m_unsaved = unsaved;
    Q_EMIT unsavedChanged();
}

QString Recording::toScenario(qint64 end) const
{
    QString text = QLatin1String(firstLine) + QStringLiteral(" \"qzaudio-bench play FILE\" plays it, the window opens it again.\n\n");
    qint64 time = 0;
    const auto waitUntil = [&text, &time](qint64 then) {
        if (then > time)
            text += QStringLiteral("wait(%1);\n").arg(then - time);
        time = qMax(time, then);
    };
    for (const Step &step : m_steps) {
        waitUntil(step.time);
        text += step.line + QLatin1Char('\n');
    }
    waitUntil(end);
    return text;
}

std::optional<QVector<Recording::Step>> Recording::fromScenario(const QString &text, qint64 &end)
{
    if (!text.startsWith(QLatin1String(firstLine)))
        return {};
    static const QRegularExpression waiting(QStringLiteral(R"(^wait\((\d{1,9})\);$)"));
    QVector<Step> steps;
    end = 0;
    const QStringList lines = text.split(QLatin1Char('\n')).mid(1);
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = waiting.match(line);
        if (match.hasMatch())
            end += match.captured(1).toLongLong();
        else if (!line.trimmed().isEmpty())
            steps.append({end, line, {}, false});
    }
    return steps;
}

int Recording::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_steps.size();
}

QVariant Recording::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Step &step = m_steps.at(index.row());
    switch (role) {
    case TimeRole:
        return step.time;
    case Qt::DisplayRole:
    case LineRole:
        return step.line;
    case DoneRole:
        return index.row() < m_doneCount;
    case OutcomeRole:
        return step.outcome;
    case FailedRole:
        return step.isFailed;
    default:
        return {};
    }
}

QHash<int, QByteArray> Recording::roleNames() const
{
    return {{TimeRole, "time"}, {LineRole, "line"}, {DoneRole, "done"}, {OutcomeRole, "outcome"}, {FailedRole, "failed"}};
}
