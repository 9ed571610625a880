// Files in a temporary folder, through the store.
#pragma once

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

class FileStore : public testing::Test {
protected:
    std::wstring Path(const char* pszName) const { return TextOf(m_folder.File(pszName)); }
    std::string Content(const char* pszName) { return m_files.Read(Path(pszName)).value_or("(none)"); }
    ptrdiff_t CountFiles() const {
        return std::ranges::distance(std::filesystem::directory_iterator(m_folder.GetPath()));
    }

    CTempFolder m_folder;
    CFileStore m_files;
};
