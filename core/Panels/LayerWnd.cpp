#include "core/Panels/LayerWnd.h"

#include "core/Base/Percent.h"
#include "core/CanvasFrame/CanvasFrame.h"
#include "core/Commands/CommandIds.h"
#include "core/Commands/MenuTable.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "core/Panels/LayerColorDialog.h"
#include "core/Platform/Platform.h"
#include "core/Platform/System.h"

#include <boost/algorithm/string/trim.hpp>
#include <boost/pointer_cast.hpp>

#include <algorithm>

namespace {

enum ELayerControl : int {
    LAYER_OPACITY = 1,
    LAYER_COLOR,
    LAYER_TREE,
    LAYER_FIRST_BUTTON,
};

constexpr std::pair<int, const wchar_t*> BUTTONS[] = {
    {ID_LAYER_NEW_RASTER, L"新規ラスタレイヤー"}, {ID_LAYER_NEW_VECTOR, L"新規ベクタレイヤー"},
    {ID_LAYER_NEW_SET, L"新規レイヤーセット"},    {ID_LAYER_CLIPPING, L"クリッピング"},
    {ID_LAYER_MERGE_DOWN, L"下のレイヤーと結合"}, {ID_LAYER_DELETE, L"レイヤーの削除"},
};

boost::shared_ptr<CVectorLayerBuffer> AsVector(const TLayerPtr& spLayer) {
    return boost::dynamic_pointer_cast<CVectorLayerBuffer>(spLayer);
}

} // namespace

TLayerPtr CLayerWnd::GetActiveLayer() const {
    const auto spFrame = GetFrame();
    return spFrame ? spFrame->GetCanvas()->GetActiveLayer() : TLayerPtr();
}

CLayerWnd::CLayerWnd(const wchar_t* pszSection, const TPanelOutside& outside) : CPanel(pszSection, outside) {
    using EKind = TPanelControl::EKind;
    m_vControls = {
        {.kind = EKind::Slider, .nId = LAYER_OPACITY, .strLabel = L"不透明度", .strUnit = L"%", .nMax = 100},
        // Beside the slider, so that nothing moves when another kind of layer is selected.
        {.kind = EKind::View,
         .nId = LAYER_COLOR,
         .strText = L"レイヤーカラー",
         .bSameLine = true,
         .szView = {28, 24},
         .pView = &m_swatch},
    };
    int nId = LAYER_FIRST_BUTTON;
    for (const auto& [nCommand, pszText] : BUTTONS)
        m_vControls.push_back({.kind = EKind::Button,
                               .nId = nId++,
                               .strText = pszText,
                               .strIcon = "icons/" + std::to_string(nCommand) + ".svg",
                               .bSameLine = nCommand != BUTTONS[0].first,
                               .nCommand = nCommand});
    m_vControls.push_back(
        {.kind = EKind::Tree, .nId = LAYER_TREE, .nValue = -1, .bEditable = true, .szView = {200, 82}});
}

void CLayerWnd::OnRefresh() {
    const auto spFrame = GetFrame();
    CCanvasBuffer* pCanvas = spFrame ? spFrame->GetCanvas().get() : nullptr;
    m_rows.Read(pCanvas);
    m_thumbnails.Clean();
    const TLayerPtr spActive = GetActiveLayer();
    TPanelControl& tree = Find(LAYER_TREE);
    tree.vTree = MakeTree();
    tree.nValue = spActive ? m_rows.FindRow(*spActive) : -1;
    Find(LAYER_OPACITY).bEnabled = spActive != nullptr;
    if (spActive) Find(LAYER_OPACITY).nValue = PercentOfByte(spActive->GetOpacity());
    const auto spVector = AsVector(spActive);
    Find(LAYER_COLOR).bEnabled = spVector != nullptr;
    m_swatch.m_color.reset();
    if (spVector) m_swatch.m_color = spVector->GetLayerColor();
}

std::vector<TTreeRow> CLayerWnd::MakeTree() const {
    std::vector<TTreeRow> vTree = m_rows.MakeTree();
    for (int nRow = 0; nRow < m_rows.GetCount(); ++nRow)
        if (const TLayerPtr spLayer = m_rows.GetLayer(nRow))
            vTree[static_cast<size_t>(nRow)].spPicture = m_thumbnails.Get(spLayer);
    return vTree;
}

bool CLayerWnd::OnIdle() {
    const auto spFrame = GetFrame();
    if (!spFrame || spFrame->GetCanvas()->IsBehind()) return false;
    std::vector<TLayerPtr> vLayers;
    for (int nRow = 0; nRow < m_rows.GetCount(); ++nRow)
        if (const TLayerPtr spLayer = m_rows.GetLayer(nRow)) vLayers.push_back(spLayer);
    bool bChanged = false;
    const uint32_t uTick = GetOutside().platform.clock.GetTickCount();
    const bool bMore = m_thumbnails.Update(*spFrame->GetCanvas(), vLayers, uTick, bChanged);
    if (bChanged) {
        Find(LAYER_TREE).vTree = MakeTree();
        GetWindow()->SetControls(m_vControls);
    }
    return bMore;
}

void CLayerWnd::SelectRow(int nRow) {
    const auto spFrame = GetFrame();
    const TLayerPtr spLayer = m_rows.GetLayer(nRow);
    if (!spFrame || !spLayer || spLayer == GetActiveLayer()) return;
    spFrame->SelectLayer(spLayer);
}

void CLayerWnd::OnControl(TPanelControl& control) {
    const auto spFrame = GetFrame();
    if (!spFrame) return;
    if (control.nId == LAYER_TREE) return SelectRow(control.nValue);
    const TLayerPtr spLayer = GetActiveLayer();
    if (control.nId != LAYER_OPACITY || !spLayer) return;
    spFrame->EditTree([&, uOpacity = ByteOfPercent(std::clamp(control.nValue, 0, 100))] {
        spLayer->SetOpacity(uOpacity, true);
        return true;
    });
}

void CLayerWnd::OnRenameRow(int, int nRow, const std::wstring& strName) {
    const auto spFrame = GetFrame();
    const TLayerPtr spLayer = m_rows.GetLayer(nRow);
    const std::wstring strTrimmed = boost::algorithm::trim_copy(strName);
    if (!spFrame || !spLayer || strTrimmed.empty() || strTrimmed == spLayer->GetName()) return;
    spFrame->EditTree([&] {
        spLayer->setName(strTrimmed, true);
        return true;
    });
}

void CLayerWnd::OnEye(int, int nRow, EEyeAct act) {
    const auto spFrame = GetFrame();
    const TLayerPtr spLayer = m_rows.GetLayer(nRow);
    if (!spFrame || !spLayer) return;
    if (act == EEyeAct::Alone) return ShowAlone(spLayer);
    if (spLayer->IsVisible() != (act == EEyeAct::Show)) spLayer->SetVisible(act == EEyeAct::Show, true);
    spFrame->RequestRedraw();
}

void CLayerWnd::ShowAlone(const TLayerPtr& spLayer) {
    const auto spFrame = GetFrame();
    if (!spFrame || !spLayer) return;
    m_solo.Toggle(*spFrame->GetCanvas(), spLayer);
    spFrame->RequestRedraw();
}

void CLayerWnd::OnFold(int, int nRow, bool bClosed) { m_rows.Fold(nRow, bClosed); }

void CLayerWnd::OnDrop(int, int nFrom, int nTo, EDropAt at) {
    const auto spFrame = GetFrame();
    const TLayerPtr spLayer = m_rows.GetLayer(nFrom);
    const TLayerPlace place = m_rows.FindPlace(nFrom, nTo, at);
    if (!spFrame || !spLayer || !place.spParent) return;
    spFrame->EditTree([&] {
        const TLayerPtr spParent = spFrame->GetCanvas()->GetRoot().FindParentOf(*spLayer);
        if (!spParent) return false;
        spParent->MoveLayer(spLayer, place.spParent, place.idxLayer);
        return true;
    });
}

void CLayerWnd::OnMenu(int, int nRow) {
    SelectRow(nRow);
    ShowMenu(LoadMenu(MENU_LAYER).front().vChildren);
}

void CLayerWnd::OnPointer(int nId, EMessage id, CPoint) {
    if (nId == LAYER_COLOR && id == EMessage::LButtonUp) ChooseColor();
}

void CLayerWnd::OnKey(int nId, int nKey) {
    if (nId == LAYER_COLOR && nKey == VK_Space) ChooseColor();
}

void CLayerWnd::ChooseColor() {
    const auto spFrame = GetFrame();
    const auto spLayer = AsVector(GetActiveLayer());
    if (!spFrame || !spLayer) return;
    const TColor clrBefore = spLayer->GetLayerColor();
    const auto show = [&](TColor color) {
        spLayer->SetLayerColor(color);
        m_swatch.m_color = color;
        spFrame->RequestRedraw();
    };
    CLayerColorDialog dialog(clrBefore, show);
    const bool bOk = GetOutside().platform.dialogs.Run(GetWindow(), dialog);
    show(clrBefore);
    if (!bOk) return;
    spFrame->EditTree([&] {
        spLayer->SetLayerColor(dialog.GetColor(), true);
        return true;
    });
}
