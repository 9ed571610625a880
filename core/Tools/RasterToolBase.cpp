#include "core/Tools/RasterToolBase.h"

#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "core/Platform/System.h"

namespace {

constexpr int COMMAND_SELECT_ALL = 12840;
constexpr int COMMAND_DESELECT = 12841;
constexpr int COMMAND_CLEAR = 57632;

} // namespace

const wchar_t* CRasterToolBase::GetRefusal() const {
    const TLayerPtr spLayer = GetLayer();
    if (!spLayer) return L"レイヤーが選択されていません。描くラスタレイヤーを選んでください。";
    if (dynamic_cast<CVectorLayerBuffer*>(spLayer.get()))
        return L"ベクタレイヤーにはこのツールで描けません。ラスタレイヤーを選んでください。";
    if (!dynamic_cast<CRasterLayerBuffer*>(spLayer.get()))
        return L"レイヤーセットには描けません。中のラスタレイヤーを選んでください。";
    return spLayer->IsVisible() ? nullptr : L"非表示のレイヤーには描けません。レイヤーを表示してください。";
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
