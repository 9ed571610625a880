// The handle of an open file, and paths as the system's calls take them.
#pragma once

#include "system/files/OpenFile.h"

#include <windows.h>

inline HANDLE HandleOf(const COpenFile& file) { return reinterpret_cast<HANDLE>(file.GetHandle()); }

/// The path in a form that may have more than 260 characters. A short one stays as it is.
std::filesystem::path LongPathOf(const std::filesystem::path& path);

/// True for a name that no file system takes; the calls then give different errors.
bool HasLongName(const std::filesystem::path& path);

/// A handle that closes itself.
class COpenHandle : boost::noncopyable {
public:
    explicit COpenHandle(HANDLE handle) : m_handle(handle) {}
    COpenHandle(COpenHandle&& other) noexcept
        : m_handle(std::exchange(other.m_handle, INVALID_HANDLE_VALUE)) {}
    ~COpenHandle() {
        if (IsOpen()) CloseHandle(m_handle);
    }
    bool IsOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return m_handle; }

private:
    HANDLE m_handle;
};
