#include "core/ImageFile/RecentPictures.h"

#include "core/Base/Text.h"
#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/Platform/Files.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/lexical_cast/try_lexical_convert.hpp>
#include <boost/make_shared.hpp>

#include <algorithm>
#include <vector>

namespace {

constexpr size_t MAX_PICTURES = 8;
constexpr int32_t MAX_SIDE = 1024; ///< of a picture in the file
constexpr int64_t MAX_COMPOSED = 40'000'000;
constexpr size_t PIXEL_BYTES = 4;

bool ParseSide(const std::string& str, int32_t& nSide) {
    return boost::conversion::try_lexical_convert(str, nSide) && nSide > 0 && nSide <= MAX_SIDE;
}

} // namespace

std::string FormatRecentPictures(const std::deque<TRecentPicture>& deqPictures) {
    std::string strBytes;
    for (const TRecentPicture& recent : deqPictures) {
        const TPicture& picture = *recent.spPicture;
        strBytes += ToUtf8(recent.strPath) + '\t' + std::to_string(picture.sz.cx) + '\t' +
                    std::to_string(picture.sz.cy) + '\n';
        strBytes.append(picture.vPixels.begin(), picture.vPixels.end());
    }
    return strBytes;
}

std::deque<TRecentPicture> ParseRecentPictures(std::string_view strBytes) {
    std::deque<TRecentPicture> deqPictures;
    while (deqPictures.size() < MAX_PICTURES) {
        const size_t nLine = strBytes.find('\n');
        if (nLine == std::string_view::npos) break;
        std::vector<std::string> vFields;
        boost::split(vFields, strBytes.substr(0, nLine), boost::is_any_of("\t"));
        strBytes.remove_prefix(nLine + 1);
        const auto spPicture = boost::make_shared<TPicture>();
        if (vFields.size() != 3 || !ParseSide(vFields[1], spPicture->sz.cx) ||
            !ParseSide(vFields[2], spPicture->sz.cy))
            break;
        const size_t nBytes =
            static_cast<size_t>(spPicture->sz.cx) * static_cast<size_t>(spPicture->sz.cy) * PIXEL_BYTES;
        if (nBytes > strBytes.size()) break;
        spPicture->vPixels.assign(strBytes.begin(), strBytes.begin() + static_cast<ptrdiff_t>(nBytes));
        strBytes.remove_prefix(nBytes);
        deqPictures.push_back({FromUtf8(vFields[0]), spPicture});
    }
    return deqPictures;
}

void CRecentPictures::Read() {
    if (!m_bRead) m_deqPictures = ParseRecentPictures(m_files.Read(m_strPath).value_or(std::string()));
    m_bRead = true;
}

void CRecentPictures::Keep(CCanvasBuffer& canvas) {
    const std::wstring strPath = canvas.GetPath();
    if (strPath.empty() || m_strPath.empty()) return;
    CLayerPicture& root = canvas.GetRoot().GetPicture();
    const CSize sz = canvas.GetSize();
    canvas.FlushCanvasUpdates();
    if (static_cast<int64_t>(sz.cx) * sz.cy <= MAX_COMPOSED)
        root.GetDrawBuffer()->ForEachBlock([&](CPoint pt) { ComposeBlock(canvas, pt.x, pt.y); });
    Read();
    std::erase_if(m_deqPictures, [&](const TRecentPicture& recent) { return recent.strPath == strPath; });
    m_deqPictures.push_front({strPath, root.CopyThumbnail()});
    if (m_deqPictures.size() > MAX_PICTURES) m_deqPictures.pop_back();
    m_files.Replace(m_strPath, FormatRecentPictures(m_deqPictures));
}

boost::shared_ptr<const TPicture> CRecentPictures::Find(const std::wstring& strPath) {
    Read();
    const auto it = std::ranges::find(m_deqPictures, strPath, &TRecentPicture::strPath);
    return it == m_deqPictures.end() ? boost::shared_ptr<const TPicture>() : it->spPicture;
}
