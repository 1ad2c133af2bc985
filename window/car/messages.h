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
 * - steps: list of {time, line, outcome, failed, expected (whether it was one to come)}
 * - performed: line, result, error
 * - journal: rows; happened: entries
 * - scenario: file, ended, error, line, passed, failed
 */
namespace Messages
{

/// So many rows go with one message at most: a window takes a message as a whole, between two frames.
constexpr int mostRows = 100;

/// Each message has its length in front, so that nothing is read twice of one that is still on its way.
inline void write(QIODevice &device, const QVariantMap &message)
{
    QByteArray bytes;
    QDataStream content(&bytes, QIODevice::WriteOnly);
    content.setVersion(QDataStream::Qt_5_15);
    content << message;
    QDataStream stream(&device);
    stream << bytes;
}

inline QVariantMap parse(const QByteArray &bytes)
{
    QDataStream content(bytes);
    content.setVersion(QDataStream::Qt_5_15);
    QVariantMap message;
    content >> message;
    return message;
}

/// The next whole message; empty until all of it is there.
inline std::optional<QVariantMap> read(QIODevice &device)
{
    quint32 size = 0;
    const QByteArray front = device.peek(sizeof size);
    QDataStream(front) >> size;
    if (front.size() < int(sizeof size) || device.bytesAvailable() < qint64(sizeof size) + size)
        return {};
    device.skip(sizeof size);
    return parse(device.read(size));
}

} // namespace Messages

#endif
