// A key of the registry as a profile file.
#pragma once

#include "core/Platform/Files.h"

/// The profile file has one section, of the key's name below the current user. Values are texts and, where
/// they consist of digits, 32-bit numbers. Every path means this file. Writing replaces all values of the
/// key.
class CRegistryStore : public IFileStore {
public:
    explicit CRegistryStore(std::wstring strKey) : m_strKey(std::move(strKey)) {}

    TFileBytes Read(const std::wstring& strPath) override;
    /// There is no piece by piece.
    TOpenedFile Open(const std::wstring&) override { return EFileFailure::NotPlain; }
    CFileOutcome ReplaceBy(const std::wstring&, const TFillBytes&) override { return EFileFailure::NotPlain; }
    /// Programs take turns by a mutex of the user's session.
    bool Update(const std::wstring& strPath, const std::function<bool(std::string&)>& edit) override;

private:
    const std::wstring m_strKey;
};
