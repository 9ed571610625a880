#include "core/CanvasBuffer/NewLayer.h"

#include "core/Base/Failure.h"
#include "core/LayerBuffer/LayerSetBuffer.h"

#include <algorithm>

TNewPlace FindNewPlace(const CCanvasBuffer& canvas) {
    const TLayerPtr spActive = canvas.GetActiveLayer();
    const bool bInside = !spActive || dynamic_cast<CLayerSetBuffer*>(spActive.get());
    const TLayerPtr spParent = !spActive ? canvas.GetRoot().shared_from_this()
                               : bInside ? spActive
                                         : canvas.GetRoot().FindParentOf(*spActive);
    const int nCount = static_cast<int>(spParent->GetChildren().size());
    return {spParent, bInside ? nCount : spParent->IndexOf(*spActive) + 1};
}

std::wstring UniqueLayerName(const CLayerBuffer& parent, const std::wstring& strBase) {
    const auto isTaken = [&](const std::wstring& strName) {
        return std::any_of(parent.GetChildren().begin(), parent.GetChildren().end(),
                           [&](const TLayerPtr& spChild) { return spChild->GetName() == strName; });
    };
    std::wstring strName = strBase;
    for (int n = 2; isTaken(strName); ++n) strName = FormatText(L"%1% (%2%)", {strBase, std::to_wstring(n)});
    return strName;
}
