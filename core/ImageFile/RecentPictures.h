// Small pictures of the documents that were last saved or closed, in a file beside the settings.
#pragma once

#include "core/Platform/Tree.h"

#include <boost/noncopyable.hpp>

#include <deque>
#include <string>
#include <string_view>

class CCanvasBuffer;
class IFileStore;

/// A document's path and its picture.
struct TRecentPicture {
    std::wstring strPath;
    boost::shared_ptr<const TPicture> spPicture;
};

/// Formats pictures: for each the line "path, tab, width, tab, height", then width * height * 4 bytes.
std::string FormatRecentPictures(const std::deque<TRecentPicture>& deqPictures);
/// Parses that form up to the first damage.
std::deque<TRecentPicture> ParseRecentPictures(std::string_view strBytes);

/// At most eight pictures, newest first. A file that cannot be read or written only costs the pictures.
class CRecentPictures : boost::noncopyable {
public:
    /// `files` must outlive the object.
    CRecentPictures(IFileStore& files, std::wstring strPath)
        : m_files(files), m_strPath(std::move(strPath)) {}

    /// Keeps the document's picture under its path; nothing for a document without one. A document of up to
    /// 40 megapixels is composed whole, of a larger one what was shown counts.
    void Keep(CCanvasBuffer& canvas);
    /// The picture of a path, null without one.
    boost::shared_ptr<const TPicture> Find(const std::wstring& strPath);

private:
    void Read();

    IFileStore& m_files;
    const std::wstring m_strPath;
    std::deque<TRecentPicture> m_deqPictures;
    bool m_bRead = false;
};
