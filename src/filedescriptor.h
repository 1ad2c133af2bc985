#ifndef FILEDESCRIPTOR_H
#define FILEDESCRIPTOR_H

#include <QtCore/qglobal.h>

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace audio
{

/// Owns a descriptor, -1 for none.
class FileDescriptor
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor)
        : m_number(descriptor)
    {
    }
    FileDescriptor(FileDescriptor &&other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {
    }
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~FileDescriptor() { close(); }

    int number() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }
    /// False with errno where the file system had kept an error for this moment. The descriptor is gone in any case.
    bool close() { return m_number < 0 || ::close(std::exchange(m_number, -1)) == 0; }

private:
    Q_DISABLE_COPY(FileDescriptor)

    int m_number = -1;
};

/// Calls once more when only a signal came between, but not for ever.
template<typename Call>
auto untilNotInterrupted(Call call)
{
    constexpr int mostInterruptions = 100;
    auto result = call();
    for (int interruptions = 1; result < 0 && errno == EINTR && interruptions < mostInterruptions; ++interruptions)
        result = call();
    return result;
}

} // namespace audio

#endif
