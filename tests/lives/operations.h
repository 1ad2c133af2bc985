#ifndef OPERATIONS_H
#define OPERATIONS_H

#include "livedunit.h"

#include <QtCore/QString>
#include <QtCore/QVariantList>

#include <functional>
#include <iosfwd>
#include <vector>

namespace lives
{

/// What an operation does that an invariant has to know.
enum class Role {
    Ordinary,
    UserVolume, ///< the user sets a volume
    DirectVolume, ///< an application sets one past the policy
    DirectDucking, ///< an application ducks or unducks past the policy
    Reset, ///< the platform forgets all
    Settings, ///< the settings file is another one
    PowerCut, ///< a process is killed while it saves
};

constexpr int rare = 0;

/// One of all operations that a life may have, as a row of the table.
struct OperationRow
{
    QString script; ///< as a scenario writes it, with %1 for the first argument
    std::array<const ArgumentKind *, mostArguments> arguments;
    int weight; ///< how often it comes, against the others; or rare
    Role role;
    std::function<QVariantList(LivedUnit &, const Arguments &)> call; ///< gives what the operation gives
    std::function<QVariantList(UnitModel &, const Arguments &)> tell; ///< what it has to give, and all that goes with it
};

/// Every operation: of the manager, the facade, the settings store, audio focus, the platform and the unit.
const std::vector<OperationRow> &operationTable();

// Its parts.
void addManagerOperations(std::vector<OperationRow> &table);
void addFacadeOperations(std::vector<OperationRow> &table);
void addUnitOperations(std::vector<OperationRow> &table);

/// One operation of a life. A plain value, so that a life that fails can be made smaller.
struct Operation
{
    int row = 0;
    std::array<int, mostArguments> arguments = {};

    const OperationRow &what() const { return operationTable()[static_cast<std::size_t>(row)]; }
    /// "AudioPolicy.setVolume(2, 17, true)"
    QString toText() const;
    friend bool operator==(const Operation &a, const Operation &b) { return a.row == b.row && a.arguments == b.arguments; }
};
std::ostream &operator<<(std::ostream &stream, const Operation &operation);

/// Any operation, by numbers that @p random gives.
Operation anyOperation(const std::function<quint64()> &random);
/// The same with one argument smaller.
std::vector<Operation> smaller(const Operation &operation);

// How an answer is told: what is written by name follows the result.

template<typename... Values>
QVariantList answer(const Values &...values)
{
    return {simulator::toVariant(values)...};
}
template<typename Value>
QVariantList listAnswer(const QList<Value> &values)
{
    QVariantList list;
    for (const Value &value : values)
        list.append(simulator::toVariant(value));
    return list;
}

template<typename Act, typename Target>
QVariantList answerOf(const Act &act, Target &target, const Arguments &arguments)
{
    using Result = std::invoke_result_t<const Act &, Target &, const Arguments &>;
    if constexpr (std::is_void_v<Result>) {
        act(target, arguments);
        return {};
    } else if constexpr (std::is_same_v<Result, QVariantList>) {
        return act(target, arguments);
    } else {
        return answer(act(target, arguments));
    }
}

} // namespace lives

#endif
