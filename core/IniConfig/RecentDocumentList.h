// The recently opened documents, in a store of their own beside the settings.
#pragma once

#include <boost/noncopyable.hpp>

#include <functional>
#include <string>
#include <vector>

class IFileStore;
class ILocations;
struct TPlatform;

/// At most four paths, newest first. The file is read when the list is first used; a change includes what
/// another program has written meanwhile and is saved in one update of the file. When the file cannot be
/// written, the change stays in memory.
class CRecentDocumentList : boost::noncopyable {
public:
    /// `files` must outlive the list.
    CRecentDocumentList(IFileStore& files, std::wstring strPath);

    /// Moves or adds a path to the top; an empty one is ignored.
    void Add(const std::wstring& strPath);
    /// Removes a path from the list.
    void Remove(const std::wstring& strPath);
    /// Newest first.
    const std::vector<std::wstring>& GetPaths();

    /// The platform's store of the list.
    static IFileStore& FindStore(const TPlatform& platform);
    /// Its path there, in the folder of the settings.
    static std::wstring FindPath(ILocations& locations);

private:
    void Change(const std::function<void()>& edit);

    IFileStore& m_files;
    std::wstring m_strPath;
    std::vector<std::wstring> m_vPaths;
    bool m_bRead = false;
};
