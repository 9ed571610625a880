#include "core/RasterBuffer/PlaneKind.h"

#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterBuffer/MonoRasterBuffer.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace {

void ConvertTile(CMonoRasterBlockBuffer& dest, const CColorRasterBlockBuffer& src) {
    const TConstColorPixels px = src.Pixels();
    for (size_t i = 0; i < src.GetPlaneBytes(); ++i)
        dest.GetPlane(0)[i] = GreyOf(px.pR[i], px.pG[i], px.pB[i]);
    std::copy_n(px.pA, src.GetPlaneBytes(), dest.GetAlpha());
}

void ConvertTile(CColorRasterBlockBuffer& dest, const CMonoRasterBlockBuffer& src) {
    for (size_t n = 0; n < 3; ++n) std::copy_n(src.GetPlane(0), src.GetPlaneBytes(), dest.GetPlane(n));
    std::copy_n(src.GetAlpha(), src.GetPlaneBytes(), dest.GetAlpha());
}

// Fills `dest` from `src` where that has tiles; both of the same geometry.
template <class Dest, class Source>
void ConvertTiles(CRasterBuffer& dest, CRasterBuffer& src) {
    src.ForEachBlock([&](CPoint pt) {
        const auto spSource = src.GetBlock(pt, false);
        if (!spSource) return;
        ConvertTile(static_cast<Dest&>(*dest.GetBlock(pt, true)), static_cast<const Source&>(*spSource));
    });
}

} // namespace

boost::shared_ptr<CRasterBuffer> CreatePlane(bool bColor, CSize sz, CSize szBlock) {
    boost::shared_ptr<CRasterBuffer> spPlane;
    if (bColor)
        spPlane = boost::make_shared<CColorRasterBuffer>();
    else
        spPlane = boost::make_shared<CMonoRasterBuffer>();
    spPlane->Create(sz, szBlock);
    return spPlane;
}

boost::shared_ptr<CRasterBuffer> ConvertPlane(const boost::shared_ptr<CRasterBuffer>& spPlane, bool bColor) {
    const bool bIsColor = dynamic_cast<const CColorRasterBuffer*>(spPlane.get()) != nullptr;
    if (bIsColor == bColor) return spPlane;
    const auto spResult = CreatePlane(bColor, spPlane->GetSize(), spPlane->GetBlockSize());
    if (bColor)
        ConvertTiles<CColorRasterBlockBuffer, CMonoRasterBlockBuffer>(*spResult, *spPlane);
    else
        ConvertTiles<CMonoRasterBlockBuffer, CColorRasterBlockBuffer>(*spResult, *spPlane);
    return spResult;
}
