// An open file that closes itself.
#pragma once

#include <boost/noncopyable.hpp>

#include <utility>

#include <unistd.h>

/// Negative when nothing is open.
class CDescriptor : boost::noncopyable {
public:
    explicit CDescriptor(int fd = -1) : m_fd(fd) {}
    ~CDescriptor() {
        if (m_fd >= 0) close(m_fd);
    }
    CDescriptor(CDescriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    operator int() const { return m_fd; }

private:
    int m_fd;
};
