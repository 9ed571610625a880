// Files of which one operation fails.
#pragma once

#include "tests/faults/FailingMemory.h"
#include "tests/support/MemoryFiles.h"

/// Files in memory. Operation number `m_uFail` fails, counted from 1, 0 for none: an opening, a reading, a
/// writing, a renaming of what was written.
class CFailingFiles : public IFileStore {
public:
    explicit CFailingFiles(CMemoryFiles& files) : m_files(files) {}

    std::optional<std::string> Read(const std::wstring& strPath) override {
        const CUnfailingMemory unfailing;
        return Fails() ? std::nullopt : m_files.Read(strPath);
    }
    std::unique_ptr<IFileReader> Open(const std::wstring& strPath) override {
        const CUnfailingMemory unfailing;
        auto upReader = Fails() ? nullptr : m_files.Open(strPath);
        return upReader ? std::make_unique<CReader>(*this, std::move(upReader)) : nullptr;
    }
    bool ReplaceBy(const std::wstring& strPath,
                   const std::function<bool(const TWriteBytes&)>& fnFill) override {
        std::string strFile;
        const auto write = [&](std::string_view str) {
            const CUnfailingMemory unfailing;
            strFile += str;
            return !Fails();
        };
        if (Fails() || !fnFill(write) || Fails()) return false;
        const CUnfailingMemory unfailing;
        return m_files.Replace(strPath, strFile);
    }
    bool Update(const std::wstring& strPath, const std::function<bool(std::string&)>& edit) override {
        return !Fails() && m_files.Update(strPath, edit);
    }
    uint64_t GetCount() const { return m_uCount; }

    uint64_t m_uFail = 0;

private:
    struct CReader : IFileReader {
        CReader(CFailingFiles& files, std::unique_ptr<IFileReader> up)
            : m_files(files), m_upReader(std::move(up)) {}
        uint64_t GetSize() const override { return m_upReader->GetSize(); }
        bool Read(uint64_t uFrom, uint8_t* pTo, size_t nLength) override {
            return !m_files.Fails() && m_upReader->Read(uFrom, pTo, nLength);
        }
        CFailingFiles& m_files;
        std::unique_ptr<IFileReader> m_upReader;
    };
    bool Fails() { return ++m_uCount == m_uFail; }

    CMemoryFiles& m_files;
    uint64_t m_uCount = 0;
};
