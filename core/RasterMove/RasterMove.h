// The layer of the raster tools that knows the canvas's selection.
#pragma once

#include "core/Tools/RasterToolBase.h"

/// Every tool below it can do what it does beside its own work.
class CRasterMove : public CRasterToolBase {
public:
    using CRasterToolBase::CRasterToolBase;
};
