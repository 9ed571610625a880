#include "system/environment/posix/DesktopRecent.h"

#include "core/Base/Text.h"
#include "core/Platform/Files.h"
#include "system/environment/Locations.h"
#include "system/environment/RecentFiles.h"
#include "system/environment/posix/UserFolder.h"

#include <QDateTime>
#include <QDomDocument>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace {

constexpr char NAME[] = "Vellumcraft";
constexpr char EXEC[] = "'vellumcraft %f'";
/// The types of files that can be opened, by their endings; the desktop may not know that of project files.
constexpr std::pair<const char*, const char*> TYPES[] = {{"vlm", "application/x-vellumcraft"},
                                                         {"png", "image/png"},
                                                         {"jpg", "image/jpeg"},
                                                         {"jpeg", "image/jpeg"},
                                                         {"bmp", "image/bmp"},
                                                         {"gif", "image/gif"},
                                                         {"tif", "image/tiff"},
                                                         {"tiff", "image/tiff"}};
constexpr char UNKNOWN_TYPE[] = "application/octet-stream";
constexpr char OWNER[] = "http://freedesktop.org";
constexpr size_t MOST_ENTRIES = 50;
constexpr char EMPTY_LIST[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<xbel version="1.0"/>
)";
constexpr std::pair<const char*, const char*> NAMESPACES[] = {
    {"xmlns:bookmark", "http://www.freedesktop.org/standards/desktop-bookmarks"},
    {"xmlns:mime", "http://www.freedesktop.org/standards/shared-mime-info"}};

// The first child of that name whose attribute has the value, null if there is none.
QDomElement FindChild(const QDomElement& parent, const char* pszName, const char* pszAttribute = nullptr,
                      const QString& strValue = {}) {
    for (QDomElement child = parent.firstChildElement(pszName); !child.isNull();
         child = child.nextSiblingElement(pszName))
        if (!pszAttribute || child.attribute(pszAttribute) == strValue) return child;
    return {};
}

// The same; it is made if there is none.
QDomElement GetChild(QDomElement& parent, const char* pszName, const char* pszAttribute = nullptr,
                     const QString& strValue = {}) {
    QDomElement child = FindChild(parent, pszName, pszAttribute, strValue);
    if (!child.isNull()) return child;
    child = parent.ownerDocument().createElement(pszName);
    if (pszAttribute) child.setAttribute(pszAttribute, strValue);
    parent.appendChild(child);
    return child;
}

QDomElement ApplicationsOf(const QDomElement& bookmark) {
    return FindChild(FindChild(bookmark, "info"), "metadata", "owner", OWNER)
        .firstChildElement("bookmark:applications");
}

QString TypeOf(const QFileInfo& file) {
    const std::string strEnding = file.suffix().toLower().toStdString();
    const auto* pType = std::ranges::find(TYPES, strEnding, &std::pair<const char*, const char*>::first);
    return pType == std::end(TYPES) ? UNKNOWN_TYPE : pType->second;
}

void Enter(QDomElement& root, const QFileInfo& file, const QString& strTime) {
    const QString strUrl = QUrl::fromLocalFile(file.absoluteFilePath()).toEncoded();
    const bool bNew = FindChild(root, "bookmark", "href", strUrl).isNull();
    QDomElement bookmark = GetChild(root, "bookmark", "href", strUrl);
    if (bNew) bookmark.setAttribute("added", strTime);
    bookmark.setAttribute("modified", strTime);
    bookmark.setAttribute("visited", strTime);
    QDomElement info = GetChild(bookmark, "info");
    QDomElement metadata = GetChild(info, "metadata", "owner", OWNER);
    GetChild(metadata, "mime:mime-type").setAttribute("type", TypeOf(file));
    QDomElement applications = GetChild(metadata, "bookmark:applications");
    QDomElement own = GetChild(applications, "bookmark:application", "name", NAME);
    own.setAttribute("exec", EXEC);
    own.setAttribute("modified", strTime);
    own.setAttribute("count", own.attribute("count").toInt() + 1);
}

void Limit(QDomElement& root) {
    std::vector<QDomElement> vOwn;
    for (QDomElement bookmark = root.firstChildElement("bookmark"); !bookmark.isNull();
         bookmark = bookmark.nextSiblingElement("bookmark")) {
        const QDomElement applications = ApplicationsOf(bookmark);
        if (applications.childNodes().count() == 1 &&
            !FindChild(applications, "bookmark:application", "name", NAME).isNull())
            vOwn.push_back(bookmark);
    }
    if (vOwn.size() <= MOST_ENTRIES) return;
    // Times of one form in one zone are in the order of their texts.
    std::ranges::stable_sort(vOwn, {}, [](const QDomElement& e) { return e.attribute("modified"); });
    vOwn.resize(vOwn.size() - MOST_ENTRIES);
    for (const QDomElement& bookmark : vOwn) root.removeChild(bookmark);
}

} // namespace

void CDesktopRecent::Add(const std::wstring& strPath) {
    if (m_strFile.empty() || strPath.empty()) return;
    const TFileBytes strOld = m_files.Read(m_strFile);
    if (!strOld && strOld.failure != EFileFailure::Missing) return;
    QDomDocument document;
    if (!document.setContent(QByteArray::fromStdString(strOld.value_or(EMPTY_LIST)))) return;
    QDomElement root = document.documentElement();
    if (root.tagName() != "xbel") return;
    for (const auto& [pszName, pszSpace] : NAMESPACES) root.setAttribute(pszName, pszSpace);
    Enter(root, QFileInfo(QString::fromStdWString(strPath)),
          QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    Limit(root);
    CLocations().MakeFolder(m_strFile.substr(0, m_strFile.rfind(L'/')));
    m_files.Replace(m_strFile, document.toByteArray(2).toStdString());
}

std::wstring CDesktopRecent::FindFile() {
    const std::wstring strFolder = FindUserFolder("XDG_DATA_HOME", "/.local/share");
    return strFolder.empty() ? strFolder : strFolder + L"/recently-used.xbel";
}

std::unique_ptr<IRecentFiles> MakeRecentFiles(IFileStore& files) {
    return std::make_unique<CDesktopRecent>(files, CDesktopRecent::FindFile());
}
