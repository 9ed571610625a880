// The pencil's stroke: stamps of graphite grains placed at random in a disc; the paper texture may reject
// grains.
#pragma once

#include "core/RasterStamp/PencilGrain.h"
#include "core/RasterStamp/PencilTexture.h"
#include "core/RasterStamp/StampCache.h"
#include "core/RasterStroke/RasterStroke.h"

#include <boost/random/piecewise_linear_distribution.hpp>

/// Spread of a tilted pencil relative to an upright one; `nParam` 0 (none) to 5, altitude in degrees.
double PencilSpread(int nParam, uint32_t uAltitude);

class CRasterPencilStroke final : public CRasterStroke {
public:
    /// Raises constraint_violation_as<invalid_argument> for pencil parameters out of their ranges.
    explicit CRasterPencilStroke(const TStrokeSetup& setup);

private:
    // The position and size of one stamp.
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
    boost::random::piecewise_linear_distribution<double> m_distance; ///< of a grain from the centre, in
                                                                     ///< radii
    CStampCache m_cache;                                             ///< stamps without a texture
    CStampCache m_cachePredict;     ///< stamps of the prediction, which the line itself must not use
    std::vector<uint16_t> m_vStamp; ///< the stamp with a texture
};
