#ifndef CALL_H
#define CALL_H

#include "audiochip.h"
#include "journalentry.h"

#include <functional>
#include <optional>
#include <type_traits>

namespace simulator
{

class BookedObject;

/// Values that an operation writes through a pointer of its client.
template<typename Value>
struct Outputs
{
    Value *values;
    int count = 1;
};

/**
 * One call of a client on a platform object, from its arguments to its line in the journal.
 *
 * It refuses a destroyed object, gives the fault that was ordered, refuses a null pointer, or asks the chip, in this order.
 * The chip gets a name as a QString, a record by reference, an enumerator as its number, and pointers to outputs as they are.
 */
class Call
{
public:
    Call(const BookedObject &object, const char *operation);

    /// @p request(chip, arguments...) gives the result code. Only if that is 0 it wrote its outputs.
    template<typename Request, typename... Arguments>
    int run(const Request &request, const Arguments &...arguments)
    {
        (addArgument(arguments), ...);
        const std::optional<int> fault = refuse();
        if (fault)
            return finish(*fault, *fault);
        const int code = (isNull(arguments) || ...) ? NullPointer : std::invoke(request, chip(), passed(arguments)...);
        if (code == Accepted)
            (addOutputs(arguments), ...);
        const int result = judge(code);
        return finish(result, result);
    }

    /// For an operation without a result code: @p request gives what it gives; a fault gives a null name, or its code as the number.
    template<typename Request, typename... Arguments>
    auto ask(const Request &request, const Arguments &...arguments)
    {
        (addArgument(arguments), ...);
        const std::optional<int> fault = refuse();
        std::invoke_result_t<Request, AudioChip &, const Arguments &...> value = {};
        if (!fault)
            value = std::invoke(request, chip(), arguments...);
        else if constexpr (std::is_same_v<decltype(value), int>)
            value = *fault;
        return finish(toVariant(value), value);
    }

    // How run() and ask() take what a client gives.

    static QString argument(const char *name) { return !name ? QString() : QString::fromLocal8Bit(name); }

    template<typename Value>
    static Outputs<Value> argument(Outputs<Value> outputs)
    {
        return outputs;
    }

    template<typename Value>
    static auto argument(Value *pointer)
    {
        if constexpr (std::is_class_v<Value>)
            return static_cast<const Value *>(pointer);
        else
            return Outputs<Value>{pointer};
    }

    template<typename Value>
    static auto argument(const Value &value)
    {
        if constexpr (std::is_class_v<Value>)
            return &value;
        else if constexpr (std::is_enum_v<Value>)
            return static_cast<int>(value);
        else
            return value;
    }

private:
    template<typename Value>
    static bool isNull(const Value & /*value*/)
    {
        return false;
    }

    template<typename Record>
    static bool isNull(const Record *record)
    {
        return record == nullptr;
    }

    template<typename Value>
    static bool isNull(const Outputs<Value> &outputs)
    {
        return outputs.values == nullptr;
    }

    template<typename Value>
    static const Value &passed(const Value &value)
    {
        return value;
    }

    template<typename Record>
    static const Record &passed(const Record *record)
    {
        return *record;
    }

    template<typename Value>
    static Value *passed(const Outputs<Value> &outputs)
    {
        return outputs.values;
    }

    template<typename Value>
    void addArgument(const Value &value)
    {
        if (m_isRecorded)
            add(toVariant(value), valueText(value));
    }

    template<typename Record>
    void addArgument(const Record *record)
    {
        if (!m_isRecorded)
            return;
        if (!record) {
            add(QVariant(), QStringLiteral("null"));
            return;
        }
        add(toVariant(*record), valueText(*record));
        m_entry.record = recordBytes(*record);
    }

    template<typename Value>
    void addArgument(const Outputs<Value> & /*outputs*/)
    {
    }

    template<typename Value>
    void addOutputs(const Value & /*value*/)
    {
    }

    template<typename Value>
    void addOutputs(const Outputs<Value> &outputs)
    {
        for (int index = 0; index < outputs.count; ++index)
            m_entry.outputs += toVariant(outputs.values[index]);
    }

    template<typename Value>
    Value finish(const QVariant &result, const Value &value)
    {
        m_entry.result = result;
        write();
        return value;
    }

    static AudioChip &chip();
    void add(const QVariant &argument, const QString &text);
    /// The code for a call that does not reach the chip.
    std::optional<int> refuse();
    /// The result of a call that did: the chip's code, or that of a fault after writing.
    int judge(int code);
    void write() const;

    const BookedObject &m_object;
    const bool m_isRecorded;
    std::optional<int> m_faultAfterWriting;
    JournalEntry m_entry;
};

} // namespace simulator

#endif
