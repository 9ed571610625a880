#include "core/CanvasFrame/FramePlace.h"

#include "core/AppModule/WindowPlacement.h"
#include "core/CanvasFrame/CanvasFrame.h"

namespace {

constexpr wchar_t SECTION[] = L"Canvas";

} // namespace

void PlaceFrame(ICanvasWindow& window, CSize szArea) {
    std::vector<CRect> vOthers;
    for (const auto& spFrame : g_lstCanvasFrame)
        if (spFrame->GetWindow() && spFrame->GetWindow() != &window)
            vOthers.push_back(spFrame->GetWindow()->GetRect());
    window.SetRect(PlaceInCascade(ReadPlacement(SECTION, window.GetRect()), vOthers, szArea));
}

bool OpensMaximized() {
    const auto spActive = g_wpActiveFrame.lock();
    if (spActive && spActive->GetWindow()) return spActive->GetWindow()->IsMaximized();
    return ReadMaximized(SECTION, true);
}

void KeepFramePlace(const ICanvasWindow& window) {
    WritePlacement(SECTION, window.GetRect(), {MaximizedValue(window.IsMaximized())});
}
