#include "operations.h"

#include <QtCore/QStringList>

#include <ostream>

namespace lives
{

const std::vector<OperationRow> &operationTable()
{
    static const std::vector<OperationRow> table = [] {
        std::vector<OperationRow> rows;
        // The first is what shrinking makes of others.
        addUnitOperations(rows);
        addManagerOperations(rows);
        addFacadeOperations(rows);
        return rows;
    }();
    return table;
}

QString Operation::toText() const
{
    QString text = what().script;
    for (std::size_t place = 0; place < mostArguments; ++place)
        text.replace(QLatin1Char('%') + QString::number(place + 1), what().arguments[place]->text(arguments[place]));
    const QByteArray settings = settingsText(arguments[0], arguments[1], arguments[2]);
    return text.replace(QLatin1String("%settings"), simulator::quotedText(QString::fromLatin1(settings)));
}

std::ostream &operator<<(std::ostream &stream, const Operation &operation)
{
    return stream << operation.toText().toStdString();
}

namespace
{

// One of so many operations starts another process, which takes as long as a hundred others.
constexpr quint64 operationsBetweenProcesses = 2000;

/// The number of a row for each unit of weight.
std::vector<int> rowsByWeight(bool areRare)
{
    std::vector<int> all;
    const auto &table = operationTable();
    for (std::size_t row = 0; row < table.size(); ++row) {
        const bool isRare = table[row].weight == rare;
        if (isRare == areRare)
            all.insert(all.end(), static_cast<std::size_t>(isRare ? 1 : table[row].weight), static_cast<int>(row));
    }
    return all;
}

int anyArgument(const ArgumentKind &kind, quint64 number)
{
    const quint64 choice = number / 2;
    if (number % 2 == 0)
        return kind.edges[static_cast<std::size_t>(choice % kind.edges.size())];
    return kind.least + static_cast<int>(choice % static_cast<quint64>(kind.most - kind.least + 1));
}

} // namespace

Operation anyOperation(const std::function<quint64()> &random)
{
    static const std::vector<int> usualRows = rowsByWeight(false);
    static const std::vector<int> rareRows = rowsByWeight(true);
    const auto &rows = !rareRows.empty() && random() % operationsBetweenProcesses == 0 ? rareRows : usualRows;
    Operation operation;
    operation.row = rows[static_cast<std::size_t>(random() % rows.size())];
    for (std::size_t place = 0; place < mostArguments; ++place) {
        const ArgumentKind &kind = *operation.what().arguments[place];
        if (&kind != &kind::none)
            operation.arguments[place] = anyArgument(kind, random());
    }
    return operation;
}

std::vector<Operation> smaller(const Operation &operation)
{
    std::vector<Operation> candidates;
    for (std::size_t place = 0; place < mostArguments; ++place) {
        const int value = operation.arguments[place];
        const int simplest = qMax(0, operation.what().arguments[place]->least);
        for (const int candidate : {simplest, operation.what().arguments[place]->edges[0], value / 2, value - 1}) {
            Operation other = operation;
            other.arguments[place] = candidate;
            const bool isSmaller = qAbs(candidate) < qAbs(value) && candidate >= simplest;
            if (isSmaller && (candidates.empty() || !(candidates.back() == other)))
                candidates.push_back(other);
        }
    }
    return candidates;
}

} // namespace lives
