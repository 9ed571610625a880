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
    bool Replace(const std::wstring& strPath, const std::string& strBytes) override {
        if (m_bReadOnly) return false;
        ++m_nWrites;
        m_mapFiles[strPath] = strBytes;
        return true;
    }
    bool Update(const std::wstring& strPath, const std::function<bool(std::string&)>& edit) override {
        if (m_bReadOnly) return false;
        std::string strBytes = m_mapFiles[strPath];
        return edit(strBytes) && Replace(strPath, strBytes);
    }

    std::map<std::wstring, std::string> m_mapFiles;
    bool m_bReadOnly = false;
    int m_nReads = 0;
    int m_nWrites = 0;
};
