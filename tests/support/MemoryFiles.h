// Files that live in memory, for tests of whoever reads or writes through the seam.
#pragma once

#include "core/Platform/Files.h"

#include <map>

class CMemoryFiles : public IFileStore {
public:
    std::optional<std::string> Read(const std::wstring& strPath) override {
        ++m_nReads;
        const auto it = m_mapFiles.find(strPath);
        return it == m_mapFiles.end() ? std::nullopt : std::optional(it->second);
    }
    std::unique_ptr<IFileReader> Open(const std::wstring& strPath) override {
        const auto strBytes = Read(strPath);
        return strBytes ? std::make_unique<CReader>(*strBytes, m_nReadable) : nullptr;
    }
    bool ReplaceBy(const std::wstring& strPath,
                   const std::function<bool(const TWriteBytes&)>& fnFill) override {
        std::string strFile;
        const auto write = [&](std::string_view str) { return strFile += str, true; };
        if (m_bReadOnly || !fnFill(write)) return false;
        ++m_nWrites;
        m_mapFiles[strPath] = std::move(strFile);
        return true;
    }
    bool Update(const std::wstring& strPath, const std::function<bool(std::string&)>& edit) override {
        if (m_bReadOnly) return false;
        std::string strBytes = m_mapFiles[strPath];
        return edit(strBytes) && Replace(strPath, strBytes);
    }

    std::map<std::wstring, std::string> m_mapFiles;
    bool m_bReadOnly = false;
    int m_nReads = 0, m_nWrites = 0;
    size_t m_nReadable = SIZE_MAX; ///< what an opened file gives of its bytes

private:
    struct CReader : IFileReader {
        CReader(std::string strBytes, size_t n) : m_strBytes(std::move(strBytes)), m_nReadable(n) {}
        uint64_t GetSize() const override { return m_strBytes.size(); }
        bool Read(uint64_t uFrom, uint8_t* pTo, size_t nLength) override {
            return uFrom + nLength <= m_nReadable &&
                   m_strBytes.copy(reinterpret_cast<char*>(pTo), nLength, uFrom) == nLength;
        }
        std::string m_strBytes;
        size_t m_nReadable;
    };
};
