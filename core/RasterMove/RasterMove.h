// Base of the raster tools that work with the canvas's selection.
#pragma once

#include "core/Tools/RasterToolBase.h"

/// Every derived tool inherits its functions beside its own.
class CRasterMove : public CRasterToolBase {
public:
    using CRasterToolBase::CRasterToolBase;
};
