// What all tools of raster layers have in common.
#pragma once

#include "core/LayerBuffer/RasterLayerBuffer.h"
#include "core/Tools/Tools.h"

class CRasterToolBase : public CTools {
public:
    using CTools::CTools;

    /// Control+A, Control+D and Delete give the main frame the selection's commands.
    bool OnKeyDown(int nKey) override;
    bool OnKeyUp(int) override { return false; }
    /// True with a visible raster layer active.
    bool IsEnabled() const override { return !GetRefusal(); }
    const wchar_t* GetRefusal() const override;

protected:
    /// The raster layer of the running operation; null when the layer is none.
    boost::shared_ptr<CRasterLayerBuffer> GetRasterLayer() const {
        return boost::dynamic_pointer_cast<CRasterLayerBuffer>(GetLayer());
    }
};
