// The stroke of brush and eraser: round stamps with a soft edge.
#pragma once

#include "core/RasterStroke/RasterStroke.h"
#include "core/RasterStroke/StampCache.h"
#include "core/RasterStroke/StampMaker.h"

class CRasterBrushStroke final : public CRasterStroke {
public:
    explicit CRasterBrushStroke(const TStrokeSetup& setup) : CRasterStroke(setup) {}

private:
    void GetBrush(TBrushData& brush, int fx, int fy, uint32_t pressure, uint32_t altitude, int nScale, int ix,
                  int iy) override;

    CStampCache m_cache; ///< by outer radius and position within a pixel
    CStampMaker m_maker;
};
