#ifndef FIXEDNAME_H
#define FIXEDNAME_H

#include <cstddef>
#include <string_view>

namespace audio
{

/**
 * A name in a fixed table. Its letters stand in the table itself: a pointer to them would be one more place that the dynamic loader
 * has to write to in each process.
 */
template<std::size_t capacity>
class FixedName
{
public:
    template<std::size_t size>
    constexpr FixedName(const char (&text)[size]) // NOLINT(google-explicit-constructor): so that a table reads like a table
        : m_size(size - 1)
    {
        static_assert(size <= capacity, "the table's names need more room");
        for (std::size_t i = 0; i < size; ++i)
            m_text[i] = text[i];
    }

    constexpr operator const char *() const { return m_text; } // NOLINT(google-explicit-constructor)
    constexpr const char *text() const { return m_text; }
    constexpr std::string_view view() const { return {m_text, m_size}; }

private:
    unsigned char m_size;
    char m_text[capacity] = {};
};

} // namespace audio

#endif
