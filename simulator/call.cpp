#include "call.h"

#include "platform.h"

namespace simulator
{

Call::Call(const BookedObject &object, Operation operation)
    : m_object(object)
    , m_operation(operation)
    , m_isRecorded(Platform::instance()->journal()->isEnabled())
{
    m_entry.time = Platform::instance()->now();
    m_entry.kind = object.kind;
    m_entry.number = object.number;
    m_entry.operation = QLatin1String(operationInfo(operation).name);
}

Call &Call::argument(const QVariant &value, const QString &text, const QByteArray &record)
{
    m_entry.arguments += value;
    m_entry.argumentTexts += text;
    if (!record.isEmpty())
        m_entry.record = record;
    return *this;
}

Call &Call::with(const QString &name)
{
    return m_isRecorded ? argument(name.isNull() ? QVariant() : QVariant(name), quotedText(name)) : *this;
}

Call &Call::with(bool value)
{
    return m_isRecorded ? argument(value, value ? QStringLiteral("true") : QStringLiteral("false")) : *this;
}

Call &Call::with(int value)
{
    return m_isRecorded ? argument(value, QString::number(value)) : *this;
}

Call &Call::with(unsigned int value)
{
    return m_isRecorded ? argument(value, QString::number(value)) : *this;
}

Call &Call::with(unsigned char value)
{
    return with(int(value));
}

Call &Call::with(float value)
{
    return m_isRecorded ? argument(value, floatText(value)) : *this;
}

void Call::output(const QVariant &value)
{
    m_entry.outputs += value;
}

Call::Answer Call::admit()
{
    Platform *const platform = Platform::instance();
    platform->passCallDuration();
    if (!m_object.isAlive) {
        platform->books()->addProblem(m_object.name() + QLatin1Char('.') + m_entry.operation + QLatin1String(" is called after its destroy"));
        m_entry.note = refusalText(ObjectDestroyed);
        return {false, ObjectDestroyed};
    }
    if (const std::optional<int> fault = platform->faults()->takeFault(m_operation)) {
        m_entry.note = QStringLiteral("injected fault");
        return {false, *fault};
    }
    return {true, 0};
}

void Call::finish(const QVariant &result)
{
    m_entry.result = result;
    Platform::instance()->journal()->append(m_entry);
}

int Call::run(const std::function<int(AudioChip &)> &request)
{
    const Answer answer = admit();
    int code = answer.fault;
    if (answer.isDone) {
        code = request(*Platform::instance()->chip());
        m_entry.note = refusalText(code);
    }
    finish(code);
    return code;
}

Call::Answer Call::query(const std::function<QVariant(AudioChip &)> &request)
{
    const Answer answer = admit();
    QVariant result;
    if (answer.isDone)
        result = request(*Platform::instance()->chip());
    else if (m_operation == Operation::QueryAlterNumber)
        result = answer.fault;
    finish(result);
    return answer;
}

} // namespace simulator
