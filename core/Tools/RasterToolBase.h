// The base of all tools of raster layers.
#pragma once

#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/Tools/Tools.h"

class CRasterToolBase : public CTools {
public:
    using CTools::CTools;

    /// Control+A, Control+D and Delete run the main frame's selection commands.
    bool OnKeyDown(int nKey) override;
    bool OnKeyUp(int) override { return false; }
    /// True while a visible raster layer is active.
    bool IsEnabled() const override { return !GetRefusal(); }
    const wchar_t* GetRefusal() const override;

protected:
    /// The raster layer of the running operation; null for another kind of layer.
    boost::shared_ptr<CRasterLayerBuffer> GetRasterLayer() const {
        return boost::dynamic_pointer_cast<CRasterLayerBuffer>(GetLayer());
    }
};
