#include "core/PathCtlPtHandle/VectorTool.h"

#include "core/Base/Failure.h"

#include <boost/pointer_cast.hpp>

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
