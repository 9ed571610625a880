// Small planes and their content.
#pragma once

#include "core/RasterBuffer/AlphaBuffer.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"

#include <boost/make_shared.hpp>

template <class Plane>
boost::shared_ptr<Plane> MakePlane(CSize sz, CSize szBlock = DEFAULT_BLOCKSIZE) {
    auto spPlane = boost::make_shared<Plane>();
    spPlane->Create(sz, szBlock);
    return spPlane;
}

/// One pixel of a colour plane as 0xAABBGGRR, 0 where there is no tile.
inline uint32_t PixelAt(CRasterBuffer& plane, CPoint pt) {
    const auto spTile = plane.GetBlock(pt, false);
    if (!spTile) return 0;
    const CPoint ptIn = pt - spTile->GetPosition();
    return spTile->GetPixelColor(ptIn) | uint32_t{spTile->GetPixelAlpha(ptIn)} << 24;
}

/// Every value of a plane, by default a stroke's, row by row; absent tiles are zeros.
template <class T = uint16_t>
std::vector<T> ValuesOf(CAlphaBufferBase& base) {
    auto& plane = static_cast<CAlphaBufferImpl<T>&>(base);
    const CSize sz = plane.GetSize();
    std::vector<T> v(static_cast<size_t>(sz.cx) * static_cast<size_t>(sz.cy));
    plane.ForEachBlock([&](CPoint pt) {
        const auto* pTile = plane.FindBlock(pt);
        const CRect rc = CRect(pt, plane.GetBlockSize()).Intersect(CRect({0, 0}, sz));
        for (int y = rc.top; pTile && y < rc.bottom; ++y)
            std::copy_n(pTile->GetAlpha() + (y - pt.y) * plane.GetBlockSize().cx, rc.Width(),
                        v.data() + y * sz.cx + pt.x);
    });
    return v;
}
