#include "core/RasterStroke/RasterBrushStroke.h"

#include <algorithm>

namespace {

constexpr int POSITION_BITS = 3;
constexpr size_t DISC_CAPACITY = size_t{4} << 20; // sums

// The number of low bits of the subpixel position that a large stamp may ignore without a visible effect.
int LostBits(uint32_t uRadius) {
    return uRadius >= 0x80000 ? POSITION_BITS : uRadius >= 0x40000 ? 2 : uRadius >= 0x10000;
}

} // namespace

const CStampDisc& CRasterBrushStroke::DiscOf(const TStampShape& shape, int nLostBits) {
    const auto it = m_mapDiscs.find(shape.uOuter);
    if (it != m_mapDiscs.end()) return it->second;
    if (m_nDiscValues > DISC_CAPACITY) m_mapDiscs.clear(), m_nDiscValues = 0;
    const CStampDisc& disc = m_mapDiscs.try_emplace(shape.uOuter, shape, nLostBits).first->second;
    m_nDiscValues += disc.GetLength();
    return disc;
}

void CRasterBrushStroke::GetBrush(TBrushData& brush, int fx, int fy, uint32_t pressure, uint32_t, int nScale,
                                  int, int) {
    uint32_t uRadius = 0;
    EvaluatePressure(uRadius, brush.byAlpha, pressure, nScale);
    uRadius = std::max(uRadius, GetMinRadius() * static_cast<uint32_t>(nScale));
    const int nLost = LostBits(uRadius);
    fx = fx >> nLost << nLost;
    fy = fy >> nLost << nLost;
    const TStampShape shape = MakeStampShape(uRadius, GetParam().BlurLevel, nScale);
    brush.uStep = SpacingOf(shape, GetParam().BlurLevel, nScale);
    brush.uBufferSize = shape.GetHalfSize();
    const int64_t nKey = fx + fy * 8 + int64_t{shape.uOuter} * 64;
    brush.pBuffer = m_cache.Find(nKey, brush.uBufferSize);
    if (brush.pBuffer) return;
    const auto cut = [&](uint16_t* pStamp) {
        if (nLost == POSITION_BITS)
            CStampDisc(shape, nLost).Cut(pStamp, fx, fy);
        else
            DiscOf(shape, nLost).Cut(pStamp, fx, fy);
    };
    brush.pBuffer = m_cache.Make(nKey, brush.uBufferSize, StampLength(brush.uBufferSize), cut);
}
