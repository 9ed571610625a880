#include "core/Panels/BrushWnd.h"

#include "core/Base/Percent.h"
#include "core/Platform/Platform.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>

namespace {

enum EBrushControl : int {
    BRUSH_PREVIEW = 1,
    BRUSH_NONE,
    BRUSH_LIST,
    BRUSH_ADD,
    BRUSH_REMOVE,
    BRUSH_SIZE,
    BRUSH_EDGE,
    BRUSH_ALPHA
};

constexpr int EDGE_STEP = 25; ///< percent between rows of the edge
constexpr int EDGES = 5;
constexpr int FINE_STOPS = 16; ///< a slider's step is the size divided by this, at least 1

// Fine steps for small brushes, where one pixel counts, coarse ones for large brushes.
std::vector<int> SizeStops() {
    std::vector<int> vStops;
    for (int n = 1; n < static_cast<int>(MAX_BRUSH_RADIUS); n += std::max(1, n / FINE_STOPS))
        vStops.push_back(n);
    vStops.push_back(static_cast<int>(MAX_BRUSH_RADIUS));
    return vStops;
}

} // namespace

boost::shared_ptr<CRasterBrushBase> CBrushWnd::GetBrush() const {
    return boost::dynamic_pointer_cast<CRasterBrushBase>(GetTool());
}

CBrushWnd::CBrushWnd(const wchar_t* pszSection, const TPanelOutside& outside)
    : CPanel(pszSection, outside), m_view(outside.platform.clock, outside.platform.codecs) {
    using EKind = TPanelControl::EKind;
    m_vControls = {
        {.kind = EKind::View, .nId = BRUSH_PREVIEW, .szView = {200, 44}, .pView = &m_view},
        {.kind = EKind::Label, .nId = BRUSH_NONE, .strText = L"ツールが選択されていないか無効なツールです。"},
        {.kind = EKind::List, .nId = BRUSH_LIST, .nValue = -1, .bGrid = true, .szView = {200, 28}},
        {.kind = EKind::Button, .nId = BRUSH_ADD, .strText = L"追加"},
        {.kind = EKind::Button, .nId = BRUSH_REMOVE, .strText = L"削除", .bSameLine = true},
        {.kind = EKind::Slider,
         .nId = BRUSH_SIZE,
         .strLabel = L"サイズ",
         .strUnit = L" px",
         .vStops = SizeStops(),
         .nMin = 1,
         .nMax = static_cast<int>(MAX_BRUSH_RADIUS),
         .nValue = 1},
        {.kind = EKind::Combo, .nId = BRUSH_EDGE, .strLabel = L"硬さ"},
        {.kind = EKind::Slider, .nId = BRUSH_ALPHA, .strLabel = L"不透明度", .strUnit = L"%", .nMax = 100},
    };
    for (int n = 0; n < EDGES; ++n) Find(BRUSH_EDGE).vRows.push_back(std::to_wstring(n * EDGE_STEP) + L"%");
}

void CBrushWnd::OnOpen() { m_list.Read(GetOutside().settings); }

void CBrushWnd::OnKeep() { m_list.Write(GetOutside().settings); }

void CBrushWnd::OnRefresh() {
    const auto spTool = GetBrush();
    m_view.SetTool(spTool.get());
    EnableAll(spTool != nullptr);
    Find(BRUSH_NONE).bVisible = !spTool;
    Find(BRUSH_NONE).bEnabled = true;
    Find(BRUSH_LIST).bVisible = spTool != nullptr;
    if (!spTool) return;
    const TBrushParam& param = spTool->GetParam();
    TPanelControl& list = Find(BRUSH_LIST);
    list.vRows.clear();
    for (const uint32_t uSize : m_list.GetSizes()) list.vRows.push_back(std::to_wstring(uSize));
    list.nValue = m_list.Find(param.BrushRadius);
    Find(BRUSH_ADD).bEnabled = list.nValue < 0;
    Find(BRUSH_REMOVE).bEnabled = list.nValue >= 0;
    Find(BRUSH_SIZE).nValue = std::max(1, static_cast<int>(param.BrushRadius));
    Find(BRUSH_EDGE).nValue = std::min((param.BlurLevel + EDGE_STEP / 2) / EDGE_STEP, EDGES - 1);
    Find(BRUSH_ALPHA).nValue = PercentOfByte(param.BrushAlpha);
}

void CBrushWnd::OnControl(TPanelControl& control) {
    const auto spTool = GetBrush();
    if (!spTool) return;
    TBrushParam& param = spTool->GetParam();
    switch (control.nId) {
    case BRUSH_LIST:
        if (control.nValue < 0 || static_cast<size_t>(control.nValue) >= m_list.GetSizes().size()) return;
        param.BrushRadius = m_list.GetSizes()[static_cast<size_t>(control.nValue)];
        break;
    case BRUSH_ADD:
        m_list.Add(param.BrushRadius);
        break;
    case BRUSH_REMOVE:
        if (const int idx = m_list.Find(param.BrushRadius); idx >= 0) m_list.Remove(idx);
        break;
    case BRUSH_SIZE:
        param.BrushRadius =
            static_cast<uint32_t>(std::clamp(control.nValue, 1, static_cast<int>(MAX_BRUSH_RADIUS)));
        break;
    case BRUSH_EDGE:
        param.BlurLevel = static_cast<uint8_t>(std::clamp(control.nValue, 0, EDGES - 1) * EDGE_STEP);
        break;
    case BRUSH_ALPHA:
        param.BrushAlpha = ByteOfPercent(std::clamp(control.nValue, 0, 100));
        break;
    default:
        return;
    }
    NotifyTool();
}
