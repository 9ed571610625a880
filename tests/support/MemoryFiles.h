// Files in memory, for tests of code that reads or writes through the platform interface.
#pragma once

#include "core/Base/Failure.h"
#include "core/Base/Text.h"
#include "core/Platform/Files.h"

#include <map>

class CMemoryFiles : public IFileStore {
public:
    TFileBytes Read(const std::wstring& strPath) override {
        ++m_nReads;
        const auto it = m_mapFiles.find(strPath);
        if (it == m_mapFiles.end()) return EFileFailure::Missing;
        return it->second;
    }
    TOpenedFile Open(const std::wstring& strPath) override {
        const auto strBytes = Read(strPath);
        if (!strBytes) return strBytes.failure;
        return std::make_unique<CReader>(*strBytes, m_nReadable);
    }
    CFileOutcome ReplaceBy(const std::wstring& strPath, const TFillBytes& fnFill) override {
        std::string strFile;
        const auto write = [&](std::string_view str) { return strFile += str, true; };
        if (m_bReadOnly) return m_failure;
        if (!fnFill(write)) return EFileFailure::Unknown;
        ++m_nWrites;
        m_mapFiles[strPath] = std::move(strFile);
        return {};
    }
    bool Update(const std::wstring& strPath, const std::function<bool(std::string&)>& edit) override {
        if (m_bReadOnly) return false;
        std::string strBytes = m_mapFiles[strPath];
        return edit(strBytes) && !!Replace(strPath, strBytes);
    }

    std::map<std::wstring, std::string> m_mapFiles;
    bool m_bReadOnly = false;
    EFileFailure m_failure = EFileFailure::ReadOnlyDisk; ///< the failure that writing reports
    int m_nReads = 0, m_nWrites = 0;
    size_t m_nReadable = SIZE_MAX; ///< number of bytes that can be read from an opened file

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
