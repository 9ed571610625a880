#include "session/scripts/Taken.h"

#include "core/AppModule/AppModule.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/Platform/System.h"
#include "core/Tools/Tools.h"
#include "session/scripts/Script.h"

namespace {

boost::shared_ptr<CTools> GetReadyTool() {
    const auto spTool = g_wpActiveTool.lock();
    return spTool && spTool->IsEnabled() ? spTool : nullptr;
}

// Space activates the hand, and a drag of the hand keeps it active.
bool IsHand(const CTools& tool) {
    if (g_AppModule.GetPlatform().keys.IsKeyDown(VK_Space)) return true;
    const auto spFrame = g_wpActiveFrame.lock();
    return tool.GetState() == STATE_IDLE && spFrame && spFrame->GetWindow()->HasCapture();
}

} // namespace

bool IsRefused(bool bTablet) {
    const auto spTool = GetReadyTool();
    return spTool && !IsHand(*spTool) && spTool->Refuses(bTablet);
}

bool IsBeside(const ICanvasWindow& window, CPoint pt, int32_t nUnits) {
    const CSize sz = window.GetClientSize();
    return pt.x < 0 || pt.y < 0 || pt.x / nUnits >= sz.cx || pt.y / nUnits >= sz.cy;
}

void RequireTaken(bool bTablet) {
    if (!IsRefused(bTablet)) return;
    throw step_failure(bTablet ? "nothing takes the pen while the mouse draws"
                               : "nothing takes the mouse while the pen draws and within a second of it");
}

void RequireTaken(const ICanvasWindow& window, CPoint pt, int32_t nUnits) {
    RequireTaken(true);
    if (!GetReadyTool() || window.HasCapture() || !IsBeside(window, pt, nUnits)) return;
    const CSize sz = window.GetClientSize();
    throw step_failure("nothing takes the pen beside the view of " + std::to_string(sz.cx) + " by " +
                       std::to_string(sz.cy) + " pixels");
}
