#pragma once

#include <utility>

#include <unistd.h>

namespace larkspan {

// Owns an open file. Closes without a word; who must know whether closing worked takes it out and closes it.
class FileDescriptor
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int fd) : m_fd(fd) {}
    FileDescriptor(FileDescriptor &&other) noexcept : m_fd(other.release()) {}
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    ~FileDescriptor()
    {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }

    explicit operator bool() const { return m_fd >= 0; }
    int get() const { return m_fd; }
    [[nodiscard]] int release() { return std::exchange(m_fd, -1); }

private:
    int m_fd = -1;
};

} // namespace larkspan
