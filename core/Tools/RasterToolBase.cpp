#include "core/Tools/RasterToolBase.h"

#include "core/Platform/System.h"

namespace {

constexpr int COMMAND_SELECT_ALL = 12840;
constexpr int COMMAND_DESELECT = 12841;
constexpr int COMMAND_CLEAR = 57632;

} // namespace

bool CRasterToolBase::IsEnabled() const {
    const auto spView = g_wpActiveView.lock();
    const TLayerPtr spLayer = m_spLayer ? m_spLayer
                              : spView  ? spView->GetCanvas()->GetActiveLayer()
                                        : TLayerPtr();
    return dynamic_cast<CRasterLayerBuffer*>(spLayer.get()) && spLayer->IsVisible();
}

bool CRasterToolBase::OnKeyDown(int nKey) {
    const bool bControl = GetOutside().keys.IsKeyDown(VK_Control);
    if (bControl && nKey == 'A')
        GetOutside().fnCommand(COMMAND_SELECT_ALL);
    else if (bControl && nKey == 'D')
        GetOutside().fnCommand(COMMAND_DESELECT);
    else if (nKey == VK_Delete)
        GetOutside().fnCommand(COMMAND_CLEAR);
    return false;
}
