#include "core/RasterStroke/RasterBrushStroke.h"

#include <algorithm>

namespace {

// How many bits of the position within a pixel a large stamp may lose unseen.
int LostBits(uint32_t uRadius) {
    return uRadius >= 0x80000 ? 3 : uRadius >= 0x40000 ? 2 : uRadius >= 0x10000;
}

} // namespace

void CRasterBrushStroke::GetBrush(TBrushData& brush, int fx, int fy, uint32_t pressure, uint32_t, int nScale,
                                  int, int) {
    uint32_t uRadius = 0;
    EvaluatePressure(uRadius, brush.byAlpha, pressure, nScale);
    // No wobble widens a line beyond the largest brush.
    const uint32_t uWidest = MAX_BRUSH_RADIUS << 12;
    uRadius = std::max(uRadius, std::min(GetMinRadius(), uWidest) * static_cast<uint32_t>(nScale));
    const int nLost = LostBits(uRadius);
    fx = fx >> nLost << nLost;
    fy = fy >> nLost << nLost;
    const TStampShape shape = MakeStampShape(uRadius, GetParam().BlurLevel, nScale);
    brush.uStep = SpacingOf(shape, GetParam().BlurLevel, nScale);
    brush.uBufferSize = shape.GetHalfSize();
    const int64_t nKey = fx + fy * 8 + int64_t{shape.uOuter} * 64;
    brush.pBuffer = m_cache.Find(nKey);
    if (brush.pBuffer) return;
    uint16_t* pStamp = m_cache.Insert(nKey, StampLength(brush.uBufferSize));
    m_maker.Make(pStamp, shape, fx, fy);
    brush.pBuffer = pStamp;
}
