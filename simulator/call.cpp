#include "call.h"

#include "bookedobject.h"
#include "platform.h"

namespace simulator
{

Call::Call(const BookedObject &object, const char *operation)
    : m_object(object)
    , m_isRecorded(Platform::instance()->journal()->isEnabled())
{
    m_entry.time = Platform::instance()->now();
    m_entry.kind = object.kind;
    m_entry.number = object.number;
    m_entry.operation = QLatin1String(operation);
}

AudioChip &Call::chip()
{
    return *Platform::instance()->chip();
}

void Call::add(const QVariant &argument, const QString &text)
{
    m_entry.arguments += argument;
    m_entry.argumentTexts += text;
}

std::optional<int> Call::refuse()
{
    Platform *const platform = Platform::instance();
    platform->passCallDuration();
    if (!m_object.isAlive) {
        platform->books()->addProblem(m_object.name() + QLatin1Char('.') + m_entry.operation + QLatin1String(" is called after its destroy"));
        m_entry.note = refusalText(ObjectDestroyed);
        return ObjectDestroyed;
    }
    const std::optional<Faults::Order> order = platform->faults()->takeFault(m_object.kind, m_entry.operation);
    if (!order)
        return std::nullopt;
    m_entry.note = QStringLiteral("injected fault");
    if (!order->isAfterWriting)
        return order->code;
    m_faultAfterWriting = order->code;
    return std::nullopt;
}

int Call::judge(int code)
{
    if (m_faultAfterWriting)
        return *m_faultAfterWriting;
    m_entry.note = refusalText(code);
    return code;
}

void Call::write() const
{
    Platform::instance()->journal()->append(m_entry);
}

} // namespace simulator
