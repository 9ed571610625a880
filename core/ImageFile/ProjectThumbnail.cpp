#include "core/ImageFile/ProjectThumbnail.h"

#include "core/Base/Failure.h"
#include "core/Base/Parallel.h"
#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/ImageFile/FileImage.h"
#include "core/LayerBuffer/LayerBuffer.h"
#include "core/RasterKernel/AreaSums.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>
#include <mutex>
#include <vector>

namespace {

/// The claims that a file may make: a hundred layers on the largest canvas.
constexpr uint64_t CLAIMABLE = uint64_t{64} << 20;
/// The side of a square of blocks that are composed at once: as many as paths are rasterized into together.
constexpr int32_t SQUARE = 8;

// A file whose tiles are left in it.
class CSparingImage : public CFileImage {
public:
    using CFileImage::CFileImage;
    bool LeavesTiles() const override { return true; }
};

CSize FitInto(CSize sz, int32_t nSide) {
    const int32_t nLong = std::max({sz.cx, sz.cy, nSide});
    const auto fit = [&](int32_t n) {
        return static_cast<int32_t>(std::max<int64_t>(1, (int64_t{n} * nSide * 2 + nLong) / (2 * nLong)));
    };
    return {fit(sz.cx), fit(sz.cy)};
}

// The blocks of a plane in squares, row by row of squares.
template <class Function>
void ForEachSquare(const CRasterBuffer& plane, const Function& fn) {
    const CSize szBlock = plane.GetBlockSize();
    const CSize szSquare{SQUARE * szBlock.cx, SQUARE * szBlock.cy};
    std::vector<CPoint> vBlocks;
    for (int32_t y = 0; y < plane.GetSize().cy; y += szSquare.cy)
        for (int32_t x = 0; x < plane.GetSize().cx; x += szSquare.cx) {
            vBlocks.clear();
            plane.ForEachBlockIn(CRect({x, y}, szSquare), [&](CPoint pt) { vBlocks.push_back(pt); });
            fn(vBlocks);
        }
}

// Adds the pixels of a tile of the composite that lie on the canvas.
void AddTile(CAreaSums& sums, const CRasterBlockBuffer& tile) {
    const size_t nPlane = tile.GetPlaneBytes();
    const uint8_t* p = tile.GetPixelPtr({0, 0});
    const bool bColor = tile.GetBytes() > 2 * nPlane;
    const std::array<const uint8_t*, 3> apChannels{p, p + (bColor ? nPlane : 0),
                                                   p + (bColor ? 2 * nPlane : 0)};
    sums.Add(tile.GetRect(), apChannels, p + tile.GetBytes() - nPlane);
}

} // namespace

boost::shared_ptr<const TPicture> ReadThumbnail(TOpenedFile upReader, const std::wstring& strName,
                                                int32_t nSide, IProgress& progress) {
    SELF_CHECK(invalid_argument, nSide > 0 && nSide <= MAX_THUMBNAIL_SIDE);
    if (!upReader) throw fileopen_error(strName, upReader.failure);
    IFileReader& reader = *upReader;
    const auto spCanvas = ReadCanvas(boost::make_shared<CSparingImage>(strName, reader, CLAIMABLE, progress));
    CLayerBuffer& root = spCanvas->GetRoot();
    CRasterBuffer& composite = spCanvas->GetComposite();
    root.DropCaches(); // blocks whose tiles were left do not count as stale
    CAreaSums sums(spCanvas->GetSize(), FitInto(spCanvas->GetSize(), nSide));
    std::mutex mutex;
    progress.Begin(L"画像を準備しています", composite.GetBlockCount());
    ForEachSquare(composite, [&](const std::vector<CPoint>& vBlocks) {
        root.GetPicture().PrepareBlocks(vBlocks);
        ForEachIndex(vBlocks.size(), AvailableThreads(), [&](size_t i) {
            const CPoint pt = vBlocks[i];
            const auto spImage = boost::make_shared<CFileImage>(strName, reader, 0);
            root.LoadBlock(pt, spImage);
            root.GetPicture().UpdateBlock(pt);
            if (const auto spTile = composite.GetBlock(pt, false)) {
                const std::lock_guard lock(mutex);
                AddTile(sums, *spTile);
            }
            root.DropBlock(pt);
        });
        progress.Advance(vBlocks.size());
    });
    const auto spPicture = boost::make_shared<TPicture>();
    spPicture->sz = sums.GetSize();
    spPicture->vPixels = sums.GetPixels();
    return spPicture;
}
