#include "core/ImageOperation/RescaleCanvas.h"

#include "core/CanvasBuffer/CanvasHistory.h"
#include "core/ImageOperation/RescalePlane.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace {

/// Source pixels that are held together beside the source's tiles.
constexpr int64_t MOST_SOURCE = 1'000'000;

// n * nTo / nFrom to the nearest, halves away from zero.
int32_t ScaledPoint(int32_t n, int32_t nTo, int32_t nFrom) {
    const int64_t nTwice = 2 * int64_t{n} * nTo;
    const int64_t nScaled = (nTwice + (n < 0 ? -nFrom : nFrom)) / (2 * int64_t{nFrom});
    using TLimits = std::numeric_limits<int32_t>;
    return static_cast<int32_t>(std::clamp<int64_t>(nScaled, TLimits::min(), TLimits::max()));
}

bool IsEmpty(const CRasterBlockBuffer& tile) {
    const size_t nBytes = tile.GetPlaneBytes();
    const uint8_t* pAlpha = tile.GetPixelPtr({0, 0}) + tile.GetBytes() - nBytes;
    return *pAlpha == 0 && std::memcmp(pAlpha, pAlpha + 1, nBytes - 1) == 0;
}

void RescaleBlock(CRasterBuffer& from, CRasterBuffer& to, CPoint pt, const CRescaleMap& map) {
    const CRect rcTo = CRect(pt, to.GetBlockSize()).Intersect(to.GetRect());
    const CSize szSource = map.GetSource(rcTo).Size();
    const int64_t nRows = rcTo.Height() * MOST_SOURCE / (int64_t{szSource.cx} * szSource.cy);
    const auto nStrip = static_cast<int32_t>(std::clamp<int64_t>(nRows, 1, rcTo.Height()));
    const auto spTile = to.CreateBlock(pt);
    const size_t nPlane = spTile->GetPlaneBytes();
    std::vector<uint8_t*> apTo(spTile->GetBytes() / nPlane);
    bool bAny = false;
    for (int32_t y = rcTo.top; y < rcTo.bottom; y += nStrip) {
        for (size_t n = 0; n < apTo.size(); ++n) apTo[n] = spTile->GetPixelPtr({0, y - pt.y}) + n * nPlane;
        const CRect rcStrip{rcTo.left, y, rcTo.right, std::min(y + nStrip, rcTo.bottom)};
        bAny = RescaleRect(from, map, rcStrip, apTo.data(), to.GetBlockSize().cx) || bAny;
    }
    if (bAny && !IsEmpty(*spTile)) StoreNew(to, spTile);
}

} // namespace

TLayerChange RescaleChange(CSize szFrom, CSize szTo, ERescaleMode mode) {
    const auto spMap = boost::make_shared<const CRescaleMap>(szFrom, szTo, mode);
    return {
        .fnBlock = [spMap](CRasterBuffer& from, CRasterBuffer& to,
                           CPoint pt) { RescaleBlock(from, to, pt, *spMap); },
        .fnPoint =
            [szFrom, szTo](CPoint pt) {
                return CPoint{ScaledPoint(pt.x, szTo.cx, szFrom.cx), ScaledPoint(pt.y, szTo.cy, szFrom.cy)};
            },
        .dWidth = std::sqrt(double(szTo.cx) / szFrom.cx * (double(szTo.cy) / szFrom.cy))};
}

bool RescaleCanvas(const boost::shared_ptr<CCanvasBuffer>& spCanvas, CSize sz, ERescaleMode mode,
                   IProgress& progress) {
    if (sz == spCanvas->GetSize()) return false;
    ResizeCanvas(spCanvas, sz, RescaleChange(spCanvas->GetSize(), sz, mode), L"解像度変更", progress);
    return true;
}
