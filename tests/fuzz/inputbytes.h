#ifndef INPUTBYTES_H
#define INPUTBYTES_H

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

#include <string_view>

/**
 * Makes values of the bytes that a fuzzer thinks up, from their beginning.
 *
 * Any bytes give some values: behind the last one all further values are zeros, and those that are long are short. A change of a
 * byte changes one value, so that a fuzzer can learn what its changes do.
 */
class InputBytes
{
public:
    explicit InputBytes(std::string_view bytes)
        : m_bytes(bytes)
    {
    }

    bool atEnd() const { return m_bytes.empty(); }

    /// 0 to 255.
    int byte();
    /// 0 to count - 1.
    int index(int count) { return byte() % count; }
    bool flag() { return (byte() & 1) != 0; }
    /// Any: most often between -80 and 159, where ranges end; else one where numbers end, or four bytes as they are.
    int number();
    template<typename Enumeration>
    Enumeration enumerator()
    {
        return static_cast<Enumeration>(number());
    }
    /// Any: most often a quarter of number(); else infinite, not a number, or too small to count.
    float decimal();
    /// So many of the bytes, or those that are left.
    QByteArray bytes(int count);
    /// One of those, null, empty, or bytes that no other is.
    QByteArray textOf(const QStringList &known);

private:
    std::string_view m_bytes;
};

#endif
