#include "inputbytes.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace
{

constexpr int firstEdge = 0xf0; // of the bytes that number() begins with
constexpr int firstWhole = 0xf8;
constexpr int lowestShort = -80;

constexpr int edges[] = {
    std::numeric_limits<int>::min(),
    std::numeric_limits<int>::max(),
    255,
    256,
    32767,
    65535,
    65536,
    -32768,
};
static_assert(std::size(edges) == firstWhole - firstEdge, "a byte for each");

constexpr float oddDecimals[] = {
    std::numeric_limits<float>::quiet_NaN(),
    std::numeric_limits<float>::infinity(),
    -std::numeric_limits<float>::infinity(),
    std::numeric_limits<float>::max(),
    std::numeric_limits<float>::lowest(),
    std::numeric_limits<float>::denorm_min(),
};

} // namespace

int InputBytes::byte()
{
    if (m_bytes.empty())
        return 0;
    const auto first = static_cast<unsigned char>(m_bytes.front());
    m_bytes.remove_prefix(1);
    return first;
}

int InputBytes::number()
{
    const int first = byte();
    if (first < firstEdge)
        return first + lowestShort;
    if (first < firstWhole)
        return edges[first - firstEdge];
    unsigned int whole = 0;
    for (int count = 0; count < 4; ++count)
        whole = whole << 8U | static_cast<unsigned int>(byte());
    return static_cast<int>(whole);
}

float InputBytes::decimal()
{
    constexpr int odd = 7; // one in so many
    constexpr double quarter = 0.25;
    const int first = byte();
    if (first % odd == 0)
        return oddDecimals[static_cast<std::size_t>(first / odd) % std::size(oddDecimals)];
    return static_cast<float>(number() * quarter);
}

QByteArray InputBytes::bytes(int count)
{
    const std::size_t taken = std::min(static_cast<std::size_t>(count), m_bytes.size());
    QByteArray part(m_bytes.data(), static_cast<int>(taken));
    m_bytes.remove_prefix(taken);
    return part;
}

QByteArray InputBytes::textOf(const QStringList &known)
{
    constexpr int longest = 64;
    const int choice = index(known.size() + 3);
    if (choice < known.size())
        return known.at(choice).toUtf8();
    if (choice == known.size())
        return {};
    return choice == known.size() + 1 ? QByteArray("") : bytes(index(longest));
}
