#include "busmessage.h"

#include <QtCore/QtEndian>

namespace
{

constexpr int wordSize = 4;
constexpr int structureAlignment = 8;
constexpr int fixedHeaderSize = 16; // up to the header's fields, the length of their array included

enum Field : char {
    Path = 1,
    Interface = 2,
    Member = 3,
    ReplySerial = 5,
    Destination = 6,
    Signature = 8,
};

void align(QByteArray &bytes, int alignment)
{
    while (bytes.size() % alignment != 0)
        bytes.append('\0');
}

void addWord(QByteArray &bytes, quint32 word)
{
    align(bytes, wordSize);
    char raw[wordSize];
    qToLittleEndian(word, raw);
    bytes.append(raw, wordSize);
}

quint32 wordAt(const QByteArray &bytes, int position)
{
    return position + wordSize <= bytes.size() ? qFromLittleEndian<quint32>(bytes.constData() + position) : 0;
}

void addText(QByteArray &bytes, const QByteArray &text)
{
    addWord(bytes, static_cast<quint32>(text.size()));
    bytes += text;
    bytes.append('\0');
}

void addSignature(QByteArray &bytes, const QByteArray &signature)
{
    bytes.append(static_cast<char>(signature.size()));
    bytes += signature;
    bytes.append('\0');
}

void addField(QByteArray &fields, Field code, char type, const QByteArray &text)
{
    if (text.isNull())
        return;
    align(fields, structureAlignment);
    fields.append(code);
    addSignature(fields, QByteArray(1, type));
    if (type == 'g')
        addSignature(fields, text);
    else
        addText(fields, text);
}

/// Of a header whose fields lie from the 16th byte on; 0 where there is no such field.
quint32 replySerialOf(const QByteArray &header, int end)
{
    int position = fixedHeaderSize;
    while (position + wordSize < end) {
        const char code = header.at(position);
        const char type = header.at(position + 2);
        position += wordSize; // code, and a signature of one letter with its length and its end
        if (code == ReplySerial)
            return wordAt(header, position);
        if (type == 'g')
            position += 2 + header.at(position);
        else if (type == 'u')
            position += wordSize;
        else
            position += wordSize + static_cast<int>(wordAt(header, position)) + 1;
        position = (position + structureAlignment - 1) / structureAlignment * structureAlignment;
    }
    return 0;
}

} // namespace

QByteArray BusMessage::toBytes(quint32 serial) const
{
    QByteArray fields;
    addField(fields, Path, 'o', path);
    addField(fields, Interface, 's', interface);
    addField(fields, Member, 's', member);
    addField(fields, Destination, 's', destination);
    addField(fields, Signature, 'g', signature.isEmpty() ? QByteArray() : signature);
    if (type == Reply || type == Error) {
        align(fields, structureAlignment);
        fields.append(ReplySerial);
        addSignature(fields, QByteArrayLiteral("u"));
        addWord(fields, serial);
    }
    QByteArray bytes;
    bytes.append('l');
    bytes.append(type);
    bytes.append('\0');
    bytes.append('\1');
    addWord(bytes, static_cast<quint32>(body.size()));
    addWord(bytes, serial);
    addWord(bytes, static_cast<quint32>(fields.size()));
    bytes += fields;
    align(bytes, structureAlignment);
    return bytes + body;
}

void BusArguments::addNumber(quint32 number, char type)
{
    m_signature.append(type);
    addWord(m_body, number);
}

void BusArguments::addText(const QByteArray &text, char type)
{
    m_signature.append(type);
    ::addText(m_body, text);
}

void BusArguments::addBytes(const QByteArray &bytes)
{
    m_signature += "ay";
    addWord(m_body, static_cast<quint32>(bytes.size()));
    m_body += bytes;
}

void BusArguments::addTexts(const QByteArray &text, int count)
{
    m_signature += "as";
    QByteArray elements;
    align(m_body, wordSize);
    for (int left = count; left > 0; --left)
        ::addText(elements, text);
    addWord(m_body, static_cast<quint32>(elements.size()));
    m_body += elements;
}

void BusArguments::addVariant(quint32 number)
{
    m_signature.append('v');
    addSignature(m_body, QByteArrayLiteral("i"));
    addWord(m_body, number);
}

void BusArguments::addWide(quint64 number, char type)
{
    m_signature.append(type);
    align(m_body, structureAlignment);
    char raw[sizeof number];
    qToLittleEndian(number, raw);
    m_body.append(raw, sizeof raw);
}

void BusArguments::giveTo(BusMessage &message) const
{
    message.signature = m_signature;
    message.body = m_body;
}

int BusAnswer::number() const
{
    return body.size() >= wordSize ? static_cast<int>(wordAt(body, 0)) : -1;
}

QByteArray BusAnswer::text() const
{
    return body.mid(wordSize, static_cast<int>(wordAt(body, 0)));
}

std::optional<BusAnswer> BusAnswer::takeFrom(QByteArray &bytes)
{
    if (bytes.size() < fixedHeaderSize)
        return std::nullopt;
    const int fieldsEnd = fixedHeaderSize + static_cast<int>(wordAt(bytes, 12));
    const int headerSize = (fieldsEnd + structureAlignment - 1) / structureAlignment * structureAlignment;
    const int size = headerSize + static_cast<int>(wordAt(bytes, 4));
    if (bytes.size() < size)
        return std::nullopt;
    BusAnswer answer;
    answer.type = static_cast<BusMessage::Type>(bytes.at(1));
    answer.replySerial = replySerialOf(bytes, fieldsEnd);
    answer.body = bytes.mid(headerSize, size - headerSize);
    bytes.remove(0, size);
    return answer;
}
