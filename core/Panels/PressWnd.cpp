#include "core/Panels/PressWnd.h"

#include "core/RasterBrush/RasterBrushBase.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>

namespace {

enum EPressControl : int {
    PRESS_CURVE = 1,
    PRESS_AVAIL_INPUT,
    PRESS_MIN_RADIUS,
    PRESS_AVAIL_ALPHA,
    PRESS_MIN_ALPHA,
    PRESS_MEMOS,
    PRESS_ADD,
    PRESS_REMOVE,
};

// The field bound to a trackbar, null for other controls.
uint8_t* FieldOf(TBrushParam& param, int nId) {
    switch (nId) {
    case PRESS_AVAIL_INPUT:
        return &param.AvailInput;
    case PRESS_MIN_RADIUS:
        return &param.MinRadiusRate;
    case PRESS_AVAIL_ALPHA:
        return &param.AvailAlpha;
    case PRESS_MIN_ALPHA:
        return &param.MinAlphaRate;
    default:
        return nullptr;
    }
}

} // namespace

boost::shared_ptr<CRasterBrushBase> CPressWnd::GetBrush() const {
    return boost::dynamic_pointer_cast<CRasterBrushBase>(GetTool());
}

CPressWnd::CPressWnd(const wchar_t* pszSection, const TPanelOutside& outside) : CPanel(pszSection, outside) {
    using EKind = TPanelControl::EKind;
    const auto trackbar = [](int nId, const wchar_t* pszLabel) {
        return TPanelControl{
            .kind = EKind::Slider, .nId = nId, .strLabel = pszLabel, .strUnit = L"%", .nMax = 100};
    };
    m_vControls = {
        {.kind = EKind::View, .nId = PRESS_CURVE, .szView = {200, 160}, .pView = &m_curve},
        trackbar(PRESS_AVAIL_INPUT, L"最大半径筆圧"),
        trackbar(PRESS_MIN_RADIUS, L"最小半径"),
        trackbar(PRESS_AVAIL_ALPHA, L"最大濃度筆圧"),
        trackbar(PRESS_MIN_ALPHA, L"最小濃度"),
        {.kind = EKind::List, .nId = PRESS_MEMOS, .nValue = -1, .bEditable = true, .szView = {200, 60}},
        {.kind = EKind::Button, .nId = PRESS_ADD, .strText = L"追加"},
        {.kind = EKind::Button, .nId = PRESS_REMOVE, .strText = L"削除", .bSameLine = true},
    };
}

void CPressWnd::OnOpen() { m_memo.Read(GetOutside().settings); }

void CPressWnd::OnKeep() { m_memo.Write(GetOutside().settings); }

void CPressWnd::OnRefresh() {
    const auto spTool = GetBrush();
    EnableAll(spTool != nullptr);
    TPanelControl& list = Find(PRESS_MEMOS);
    list.vRows.clear();
    for (const TPressMemo& memo : m_memo.GetMemos()) list.vRows.push_back(memo.strName);
    m_idxSel = std::min(m_idxSel, static_cast<int>(list.vRows.size()) - 1);
    list.nValue = m_idxSel;
    if (!spTool) return;
    Find(PRESS_REMOVE).bEnabled = m_idxSel >= 0;
    TBrushParam& param = spTool->GetParam();
    m_curve.m_handles = HandlesOf(param);
    for (TPanelControl& control : m_vControls)
        if (const uint8_t* pField = FieldOf(param, control.nId)) control.nValue = *pField;
}

void CPressWnd::OnControl(TPanelControl& control) {
    const auto spTool = GetBrush();
    if (!spTool) return;
    if (uint8_t* pField = FieldOf(spTool->GetParam(), control.nId)) {
        *pField = static_cast<uint8_t>(std::clamp(control.nValue, 0, 100));
        return NotifyTool();
    }
    if (control.nId == PRESS_MEMOS) m_idxSel = control.nValue;
    if (control.nId == PRESS_ADD) m_idxSel = m_memo.Add(spTool->GetParam());
    if (control.nId == PRESS_REMOVE) m_memo.Remove(m_idxSel);
}

void CPressWnd::OnActivateRow(int, int nRow) {
    const auto spTool = GetBrush();
    if (!spTool) return;
    CopyPressure(spTool->GetParam(), m_memo.Get(nRow).param);
    NotifyTool();
}

void CPressWnd::OnRenameRow(int, int nRow, const std::wstring& strName) { m_memo.Rename(nRow, strName); }

void CPressWnd::OnMoveRow(int, int nFrom, int nTo) {
    m_memo.Move(nFrom, nTo);
    m_idxSel = nTo;
}

void CPressWnd::TakeHandles() {
    if (const auto spTool = GetBrush()) SetHandles(spTool->GetParam(), m_curve.m_handles);
    NotifyTool();
}

void CPressWnd::OnPointer(int, EMessage id, CPoint pt) {
    if (m_curve.OnPointer(id, pt)) TakeHandles();
}

void CPressWnd::OnKey(int, int nKey) {
    if (m_curve.OnKey(nKey)) TakeHandles();
}
