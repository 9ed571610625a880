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

void ConvertBlock(CRasterBuffer& dest, CRasterBuffer& src, CPoint pt) {
    const auto spSource = src.GetBlock(pt, false);
    if (!spSource) return;
    const auto spDest = dest.GetBlock(pt, true);
    if (auto* pColor = dynamic_cast<CColorRasterBlockBuffer*>(spDest.get()))
        ConvertTile(*pColor, static_cast<const CMonoRasterBlockBuffer&>(*spSource));
    else
        ConvertTile(static_cast<CMonoRasterBlockBuffer&>(*spDest),
                    static_cast<const CColorRasterBlockBuffer&>(*spSource));
}

boost::shared_ptr<CRasterBuffer> ConvertPlane(const boost::shared_ptr<CRasterBuffer>& spPlane, bool bColor) {
    const bool bIsColor = dynamic_cast<const CColorRasterBuffer*>(spPlane.get()) != nullptr;
    if (bIsColor == bColor) return spPlane;
    const auto spResult = CreatePlane(bColor, spPlane->GetSize(), spPlane->GetBlockSize());
    spPlane->ForEachBlock([&](CPoint pt) { ConvertBlock(*spResult, *spPlane, pt); });
    return spResult;
}
