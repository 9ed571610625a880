// An open plain file that closes itself.
#pragma once

#include <boost/noncopyable.hpp>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>

/// Every operation that fails leaves its reason in LastFileError(). Other programs may read, rename and
/// delete the file meanwhile; programs that this one starts do not inherit it.
class COpenFile : boost::noncopyable {
public:
    enum class EAccess {
        Read,    ///< an existing plain file; never waits for a pipe
        Create,  ///< a new file, written from its beginning; fails where the name is taken
        Append,  ///< an empty file, old or new; each write goes to its end
        InPlace, ///< an existing file that is no link, written at positions
    };

    COpenFile() = default;
    /// `bPrivate`: a created file is for this user alone, else as the process's mask and the folder have it.
    COpenFile(const std::filesystem::path& path, EAccess access, bool bPrivate = false);
    ~COpenFile() { Close(); }
    COpenFile(COpenFile&& other) noexcept : m_nHandle(std::exchange(other.m_nHandle, NONE)) {}

    bool IsOpen() const { return m_nHandle != NONE; }
    /// The system's descriptor or handle.
    intptr_t GetHandle() const { return m_nHandle; }
    void Close();

    /// The size in bytes.
    std::optional<uint64_t> GetSize() const;
    /// Reads up to `nLength` bytes from `uFrom` on; 0 at the end of the file, nullopt after a failure.
    std::optional<size_t> ReadAt(uint64_t uFrom, void* pTo, size_t nLength) const;
    /// Writes all bytes at the file's position, which they move.
    bool Write(std::string_view strBytes);
    bool WriteAt(uint64_t uAt, std::string_view strBytes);
    bool SetSize(uint64_t uSize);
    /// Returns when the disk has the bytes.
    bool Flush();

private:
    static constexpr intptr_t NONE = -1;

    intptr_t m_nHandle = NONE;
};
