// Fuzzes the reader of small pictures: it takes no file that the project file reader refuses, and the picture
// of one that it takes is the whole picture reduced.
#include "core/Base/Failure.h"
#include "core/ImageFile/ImageFile.h"
#include "core/ImageFile/ProjectThumbnail.h"
#include "core/RasterKernel/AreaSums.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr int32_t SIDE = 40;
/// Documents up to here are composed as a whole too.
constexpr int64_t MOST_PIXELS = 1'000'000;

// May be read by several threads.
class CBytes : public IFileReader {
public:
    CBytes(const uint8_t* pData, size_t nSize) : m_pData(pData), m_nSize(nSize) {}
    uint64_t GetSize() const override { return m_nSize; }
    bool Read(uint64_t uFrom, uint8_t* pTo, size_t nLength) override {
        if (uFrom > m_nSize || nLength > m_nSize - uFrom) std::abort(); // beyond the file
        std::memcpy(pTo, m_pData + uFrom, nLength);
        return true;
    }

private:
    const uint8_t* const m_pData;
    const size_t m_nSize;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize) {
    boost::shared_ptr<const TPicture> spPicture;
    try {
        spPicture = ReadThumbnail(std::make_unique<CBytes>(pData, nSize), L"page.vlm", SIDE);
    } catch (const deserialize_error&) {
        return 0;
    }
    // Outside the guard.
    const auto spCanvas = ReadProject(std::make_unique<CBytes>(pData, nSize), L"page.vlm");
    const CSize sz = spCanvas->GetSize();
    if (int64_t{sz.cx} * sz.cy > MOST_PIXELS) return 0;
    spCanvas->ComposeAll();
    CAreaSums sums(sz, spPicture->sz);
    CRasterBuffer& composite = spCanvas->GetComposite();
    composite.ForEachBlock([&](CPoint pt) {
        const auto spTile = composite.GetBlock(pt, false);
        if (!spTile) return;
        const uint8_t* p = spTile->GetPixelPtr({0, 0});
        const size_t nPlane = spTile->GetPlaneBytes();
        const size_t nStep = spCanvas->IsColor() ? nPlane : 0;
        sums.Add(CRect(pt, spTile->GetSize()), {p, p + nStep, p + 2 * nStep},
                 p + spTile->GetBytes() - nPlane);
    });
    if (sums.GetPixels() != spPicture->vPixels) std::abort();
    return 0;
}
