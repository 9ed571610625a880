// The desktop's list of recent documents: a file of bookmarks in the form of freedesktop.org.
#pragma once

#include "core/Platform/RecentFiles.h"

#include <boost/noncopyable.hpp>

#include <string>

class IFileStore;

class CDesktopRecent : public IRecentFiles, boost::noncopyable {
public:
    /// `strFile` is the list's file; `files` outlives the object.
    CDesktopRecent(IFileStore& files, std::wstring strFile) : m_files(files), m_strFile(std::move(strFile)) {}

    /// Enters the file with its type and this application. What other programs have written stays, and a list
    /// that cannot be read is left alone. Of the entries that no other program uses only the newest 50 stay.
    void Add(const std::wstring& strPath) override;

    /// recently-used.xbel in the user's folder for data; empty without one.
    static std::wstring FindFile();

private:
    IFileStore& m_files;
    std::wstring m_strFile;
};
