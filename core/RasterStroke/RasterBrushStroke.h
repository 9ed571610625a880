// The stroke of brush and eraser: round stamps with a soft edge.
#pragma once

#include "core/RasterStamp/StampCache.h"
#include "core/RasterStamp/StampDisc.h"
#include "core/RasterStroke/RasterStroke.h"

class CRasterBrushStroke final : public CRasterStroke {
public:
    explicit CRasterBrushStroke(const TStrokeSetup& setup) : CRasterStroke(setup) {}

private:
    void GetBrush(TBrushData& brush, int fx, int fy, uint32_t pressure, uint32_t altitude, int nScale, int ix,
                  int iy) override;

    const CStampDisc& DiscOf(const TStampShape& shape, int nLostBits);

    CStampCache m_cache; ///< by outer radius and subpixel position
    // The discs of small stamps, by outer radius: each is cut at up to 64 subpixel positions.
    std::unordered_map<uint32_t, CStampDisc> m_mapDiscs;
    size_t m_nDiscValues = 0;
};
