#include "core/PathCtlPtHandle/VectorTool.h"

#include "core/Base/Failure.h"
#include "core/Base/FixedMath.h"
#include "core/Platform/System.h"

#include <boost/pointer_cast.hpp>

namespace {

constexpr int32_t REACH_MOUSE = 6; ///< pixels at 96 dpi
constexpr int32_t REACH_PEN = 8;
constexpr int32_t THRESHOLD_MOUSE = 3;
constexpr int32_t THRESHOLD_PEN = 4;

} // namespace

const wchar_t* GetVectorRefusal(const TLayerPtr& spLayer) {
    if (!spLayer) return L"レイヤーが選択されていません。描くベクタレイヤーを選んでください。";
    if (!dynamic_cast<const CVectorLayerBuffer*>(spLayer.get()))
        return L"このツールはベクタレイヤーで使います。ベクタレイヤーを選ぶか、追加してください。";
    return spLayer->IsVisible() ? nullptr : L"非表示のレイヤーには描けません。レイヤーを表示してください。";
}

boost::shared_ptr<CVectorLayerBuffer> CVectorTool::GetVectorLayer() const {
    return boost::dynamic_pointer_cast<CVectorLayerBuffer>(GetLayer());
}

void CVectorTool::RegisterHistory(const boost::shared_ptr<CHistory>& spHistory) const {
    const auto spCanvas = GetCanvas();
    if (!spCanvas) throw internal_error(L"RegisterHistory: there is no active window.");
    spCanvas->GetHistory().Register(spHistory);
}

void CVectorTool::RegisterHistoryCancel(const boost::function<bool()>& fnCancel) const {
    const auto spCanvas = GetCanvas();
    if (!spCanvas) throw internal_error(L"RegisterHistoryCancel: there is no active window.");
    spCanvas->GetHistory().SetCancelHandler(fnCancel);
}

int32_t CVectorTool::ToWindowPixels(int32_t nPixels) const {
    const auto spView = GetView();
    return MulDiv(nPixels, spView ? spView->GetDpi() : DPI_NORMAL, DPI_NORMAL);
}

int32_t CVectorTool::GetReach(uint32_t flags) const {
    return ToWindowPixels(flags & POINTER_TABLET ? REACH_PEN : REACH_MOUSE);
}

int32_t CVectorTool::GetThreshold(uint32_t flags) const {
    return ToWindowPixels(flags & POINTER_TABLET ? THRESHOLD_PEN : THRESHOLD_MOUSE);
}

int64_t CVectorTool::WindowDistance(CPoint a, CPoint b) const {
    const auto spView = GetView();
    const CPoint away = spView ? spView->ToClient(b) - spView->ToClient(a) : CPoint();
    return Dot(away, away);
}

uint32_t CVectorTool::GetHeldKeys() const {
    IKeyState& keys = GetOutside().keys;
    return (keys.IsKeyDown(VK_Control) ? POINTER_CONTROL : 0u) |
           (keys.IsKeyDown(VK_Shift) ? POINTER_SHIFT : 0u) | (keys.IsKeyDown(VK_Alt) ? POINTER_ALT : 0u);
}
