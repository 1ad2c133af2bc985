#ifndef CALL_H
#define CALL_H

#include "journalentry.h"
#include "operations.h"
#include "bookedobject.h"
#include "valuetext.h"

#include <QtCore/QString>

#include <functional>

namespace simulator
{

class AudioChip;

/// A name that came as a plain 8-bit string; null stays null.
inline QString nameFromPlatform(const char *name)
{
    return !name ? QString() : QString::fromLocal8Bit(name);
}

/**
 * One call of a client on a platform object, from its arguments to its line in the journal.
 *
 *     return Call(*this, Operation::SetFrontRearMode).with(mode).run([mode](AudioChip &chip) { return chip.setFrontRearMode(mode); });
 *
 * run() refuses a destroyed object, gives the fault that was ordered, or asks the chip, in this order.
 */
class Call
{
public:
    Call(const BookedObject &object, Operation operation);

    Call &with(const QString &name);
    Call &with(bool value);
    Call &with(int value);
    Call &with(unsigned int value);
    Call &with(unsigned char value);
    Call &with(float value);

    template<typename Record>
    Call &withRecord(const Record *record)
    {
        if (!record)
            return argument(QVariant(), QStringLiteral("null"), QByteArray());
        return m_isRecorded ? argument(recordFields(*record), recordText(*record), recordBytes(*record)) : *this;
    }

    /// @p request gives the result; what it writes through the client's pointers it also hands to output().
    int run(const std::function<int(AudioChip &)> &request);

    /// For the two operations that give no result code. @p request gives what the journal shows; a fault gives its code.
    struct Answer
    {
        bool isDone = false; ///< false: destroyed, or a fault was ordered
        int fault = 0;
    };
    Answer query(const std::function<QVariant(AudioChip &)> &request);

    void output(const QVariant &value);

private:
    Call &argument(const QVariant &value, const QString &text, const QByteArray &record = {});
    Answer admit();
    void finish(const QVariant &result);

    const BookedObject &m_object;
    const Operation m_operation;
    const bool m_isRecorded;
    JournalEntry m_entry;
};

} // namespace simulator

#endif
