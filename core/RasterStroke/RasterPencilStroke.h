// The pencil's stroke: stamps of graphite grains thrown at random into a disc, which the paper may refuse.
#pragma once

#include "core/RasterStamp/PencilGrain.h"
#include "core/RasterStamp/PencilTexture.h"
#include "core/RasterStroke/RasterStroke.h"
#include "core/RasterStamp/StampCache.h"

#include <boost/random/piecewise_linear_distribution.hpp>

/// How many times wider than an upright pencil a tilted one spreads; `nParam` 0 (not at all) to 5, altitude
/// in degrees.
double PencilSpread(int nParam, uint32_t uAltitude);

class CRasterPencilStroke final : public CRasterStroke {
public:
    /// Raises constraint_violation_as<invalid_argument> for pencil parameters out of their ranges.
    explicit CRasterPencilStroke(const TStrokeSetup& setup);

private:
    // One stamp's place and measures.
    struct TThrow {
        int fx, fy;
        int ix, iy;
        uint32_t uRadius;
        double dSpread;
        uint32_t uGrains;
        uint32_t uHalfSize;
    };

    void GetBrush(TBrushData& brush, int fx, int fy, uint32_t pressure, uint32_t altitude, int nScale, int ix,
                  int iy) override;
    void LoadTexture();
    uint32_t CountGrains(uint32_t uRadius, uint8_t byAlpha);
    void ThrowGrains(uint16_t* pStamp, const TThrow& params);
    CPoint ChoosePlace(const TThrow& params);
    void AddGrain(uint16_t* pStamp, const TThrow& params, CPoint ptCell);

    IImageCodecs* m_pCodecs;
    std::unique_ptr<CPencilTexture> m_spTexture;
    CPencilGrain m_grain;
    boost::random::piecewise_linear_distribution<double> m_distance; ///< of a grain, in radii
    CStampCache m_cache;                                             ///< without a texture
    CStampCache m_cachePredict;     ///< of stamps that the line itself must not come to use
    std::vector<uint16_t> m_vStamp; ///< with one
};
