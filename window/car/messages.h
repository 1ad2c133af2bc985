#ifndef MESSAGES_H
#define MESSAGES_H

#include <QtCore/QDataStream>
#include <QtCore/QVariantMap>

#include <optional>

/**
 * The language between window and car: maps, one behind the other, each way on a pipe. Both ends are built together.
 *
 * To the car, by "do":
 * - start: steps (list of {time, line}), of which done are done at once, then time passes at once until time (ms); the others come when
 *   their time does. Standing still or at speed from then on.
 * - play: text of a scenario, called file in messages, until time at once, then at speed
 * - perform: line; what was to come is forgotten
 * - speed: value; step: on to the next timer; redo: the step that comes next, at once; takeOver: the scenario ends
 *
 * From it, by "tell":
 * - state: the sections of CarSnapshot that changed, and "arrived", when a start or play has come to its time
 * - step: time, line, outcome, failed, expected (whether it was one to come)
 * - performed: line, result, error
 * - journal: rows; happened: entries
 * - scenario: file, ended, error, line, passed, failed
 */
namespace Messages
{

inline void write(QIODevice &device, const QVariantMap &message)
{
    QDataStream stream(&device);
    stream.setVersion(QDataStream::Qt_5_15);
    stream << message;
}

/// The next whole message; empty until all of it is there.
inline std::optional<QVariantMap> read(QIODevice &device)
{
    QDataStream stream(&device);
    stream.setVersion(QDataStream::Qt_5_15);
    stream.startTransaction();
    QVariantMap message;
    stream >> message;
    if (!stream.commitTransaction())
        return {};
    return message;
}

} // namespace Messages

#endif
