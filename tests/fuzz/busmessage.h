#ifndef BUSMESSAGE_H
#define BUSMESSAGE_H

#include <QtCore/QByteArray>

#include <optional>

/**
 * A message of the bus as it goes over the socket, put together by hand: libraries refuse to send what is not in order.
 *
 * Numbers are little-endian. Texts are taken as they are.
 */
struct BusMessage
{
    enum Type : char {
        Call = 1,
        Reply = 2,
        Error = 3,
        Signal = 4,
    };

    Type type = Call;
    QByteArray path = QByteArrayLiteral("/tavi/AudioService"); ///< of this and the next ones: left out where it is null
    QByteArray interface = QByteArrayLiteral("tavi.AudioService");
    QByteArray member;
    QByteArray destination = QByteArrayLiteral("tavi.AudioService");
    QByteArray signature;
    QByteArray body;

    QByteArray toBytes(quint32 serial) const;
};

/// The arguments of a message, one behind the other.
class BusArguments
{
public:
    /// "i" and all others of four bytes.
    void addNumber(quint32 number, char type = 'i');
    /// "s" and "o".
    void addText(const QByteArray &text, char type = 's');
    /// An array of bytes.
    void addBytes(const QByteArray &bytes);
    /// A list of texts.
    void addTexts(const QByteArray &text, int count);
    /// A variant with a number.
    void addVariant(quint32 number);
    /// Eight bytes of any type that has so many.
    void addWide(quint64 number, char type);

    void giveTo(BusMessage &message) const;

private:
    QByteArray m_signature;
    QByteArray m_body;
};

/// What came over the socket, as far as a client looks at it.
struct BusAnswer
{
    BusMessage::Type type = BusMessage::Call;
    quint32 replySerial = 0; ///< 0 in what is no answer
    QByteArray body;

    /// The first number of the body; -1 where there is none.
    int number() const;
    /// The first text of the body.
    QByteArray text() const;

    /// Takes the first message off the bytes; nothing while they are not all there.
    static std::optional<BusAnswer> takeFrom(QByteArray &bytes);
};

#endif
