#include "core/IniConfig/RecentDocumentList.h"

#include "core/Base/Text.h"
#include "core/IniConfig/IniConfig.h"
#include "core/IniConfig/IniText.h"
#include "core/Platform/Files.h"
#include "core/Platform/Platform.h"
#include "core/Platform/RecentFiles.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr char SECTION[] = "Software\\Vellumcraft\\Recent Document List";
constexpr char COUNT_KEY[] = "DocumentCount";
constexpr int MAX_DOCUMENTS = 4;

std::string DocumentKey(int nNumber) { return "Document" + std::to_string(nNumber); }

std::vector<std::wstring> ParseList(std::string_view strFile) {
    std::vector<std::wstring> vPaths;
    const std::string strCount = FindIniValue(strFile, SECTION, COUNT_KEY).value_or(std::string());
    int nCount = 0;
    std::from_chars(strCount.data(), strCount.data() + strCount.size(), nCount);
    for (int i = 1; i <= std::min(nCount, MAX_DOCUMENTS); ++i) {
        const auto strPath = FindIniValue(strFile, SECTION, DocumentKey(i));
        if (strPath && !strPath->empty()) vPaths.push_back(FromUtf8(*strPath));
    }
    return vPaths;
}

// True when the file changed.
bool WriteList(std::string& strFile, const std::vector<std::wstring>& vPaths) {
    const int nCount = static_cast<int>(vPaths.size());
    bool bChanged = SetIniValue(strFile, SECTION, COUNT_KEY, std::to_string(nCount));
    for (int i = 1; i <= MAX_DOCUMENTS; ++i)
        // A removed path must not remain in the file.
        bChanged |= i <= nCount ? SetIniValue(strFile, SECTION, DocumentKey(i),
                                              ToUtf8(vPaths[static_cast<size_t>(i) - 1]))
                                : RemoveIniKey(strFile, SECTION, DocumentKey(i));
    return bChanged;
}

} // namespace

CRecentDocumentList::CRecentDocumentList(IFileStore& files, std::wstring strPath)
    : m_files(files), m_strPath(std::move(strPath)) {}

void CRecentDocumentList::Add(const std::wstring& strPath) {
    if (strPath.empty()) return;
    Change([&] {
        std::erase(m_vPaths, strPath);
        m_vPaths.insert(m_vPaths.begin(), strPath);
        if (m_vPaths.size() > MAX_DOCUMENTS) m_vPaths.resize(MAX_DOCUMENTS);
    });
}

void CRecentDocumentList::Remove(const std::wstring& strPath) {
    Change([&] { std::erase(m_vPaths, strPath); });
}

const std::vector<std::wstring>& CRecentDocumentList::GetPaths() {
    if (!m_bRead) m_vPaths = ParseList(m_files.Read(m_strPath).value_or(std::string()));
    m_bRead = true;
    return m_vPaths;
}

IFileStore& CRecentDocumentList::FindStore(const TPlatform& platform) {
    IFileStore* pOwn = platform.recent.GetOwnStore();
    return pOwn ? *pOwn : platform.files;
}

std::wstring CRecentDocumentList::FindPath(ILocations& locations) {
    return FindProfilePath(locations, L"RecentDocuments.ini");
}

void CRecentDocumentList::Change(const std::function<void()>& edit) {
    GetPaths();
    bool bEdited = false;
    m_files.Update(m_strPath, [&](std::string& strFile) {
        m_vPaths = ParseList(strFile);
        edit();
        bEdited = true;
        return WriteList(strFile, m_vPaths);
    });
    if (!bEdited) edit();
}
