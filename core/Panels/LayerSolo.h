// One layer shown alone, and the way back.
#pragma once

#include "core/CanvasBuffer/CanvasBuffer.h"

#include <utility>
#include <vector>

class CLayerSolo {
public:
    /// Shows the layer and what it lies in, and hides all others. For the layer that is shown alone already
    /// it restores what was shown before, for another one too before that one is shown alone.
    void Toggle(CCanvasBuffer& canvas, const TLayerPtr& spLayer);

private:
    void Restore();

    boost::weak_ptr<CLayerBuffer> m_wpLayer; ///< shown alone
    boost::weak_ptr<CCanvasBuffer> m_wpCanvas;
    std::vector<std::pair<boost::weak_ptr<CLayerBuffer>, bool>> m_vBefore;
};
