#include "core/Panels/BrushWnd.h"

#include "core/AppModule/SharedFile.h"
#include "core/Base/Failure.h"
#include "core/Base/Percent.h"
#include "core/Platform/Platform.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>

namespace {

enum EBrushControl : int {
    BRUSH_PREVIEW = 1,
    BRUSH_NONE,
    BRUSH_PRESETS,
    BRUSH_PRESET_ADD,
    BRUSH_PRESET_UPDATE,
    BRUSH_PRESET_REMOVE,
    BRUSH_PRESETS_READ,
    BRUSH_PRESETS_WRITE,
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
constexpr TSharedKind FILE_KIND{L"ブラシ", L"ブラシ", L"vlbrush"};

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
    : CPanel(pszSection, outside), m_presets(outside.platform.clock, outside.platform.codecs),
      m_view(outside.platform.clock, outside.platform.codecs) {
    using EKind = TPanelControl::EKind;
    const auto button = [](int nId, const wchar_t* pszText, const char* pszIcon, bool bFirst) {
        return TPanelControl{
            .kind = EKind::Button, .nId = nId, .strText = pszText, .strIcon = pszIcon, .bSameLine = !bFirst};
    };
    m_vControls = {
        {.kind = EKind::View, .nId = BRUSH_PREVIEW, .szView = {200, 44}, .pView = &m_view},
        {.kind = EKind::Label, .nId = BRUSH_NONE, .strText = L"ツールが選択されていないか無効なツールです。"},
        {.kind = EKind::Tree,
         .nId = BRUSH_PRESETS,
         .nValue = -1,
         .bEditable = true,
         .szView = {200, 70},
         .szPicture = {56, 20}},
        button(BRUSH_PRESET_ADD, L"今の設定をブラシに追加", "icons/list-add.svg", true),
        button(BRUSH_PRESET_UPDATE, L"選んだブラシを今の設定に更新", "icons/list-update.svg", false),
        button(BRUSH_PRESET_REMOVE, L"選んだブラシを削除", "icons/12903.svg", false),
        button(BRUSH_PRESETS_READ, L"ブラシをファイルから読み込む", "icons/list-import.svg", false),
        button(BRUSH_PRESETS_WRITE, L"ブラシをファイルに書き出す", "icons/list-export.svg", false),
        {.kind = EKind::List, .nId = BRUSH_LIST, .nValue = -1, .bGrid = true, .szView = {200, 50}},
        button(BRUSH_ADD, L"サイズを追加", "icons/list-add.svg", false),
        button(BRUSH_REMOVE, L"サイズを削除", "icons/list-remove.svg", false),
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

void CBrushWnd::OnOpen() {
    m_list.Read(GetOutside().settings);
    m_presets.Read(GetOutside().settings);
}

void CBrushWnd::OnKeep() {
    m_list.Write(GetOutside().settings);
    m_presets.Write(GetOutside().settings);
}

void CBrushWnd::OnRefresh() {
    const auto spTool = GetBrush();
    m_view.SetTool(spTool.get());
    EnableAll(spTool != nullptr);
    Find(BRUSH_NONE).bVisible = !spTool;
    Find(BRUSH_NONE).bEnabled = true;
    Find(BRUSH_LIST).bVisible = Find(BRUSH_PRESETS).bVisible = spTool != nullptr;
    if (!spTool) return;
    TPanelControl& presets = Find(BRUSH_PRESETS);
    presets.vTree = m_presets.MakeRows(*spTool);
    presets.nValue = m_presets.GetChosen(*spTool);
    Find(BRUSH_PRESET_UPDATE).bEnabled = Find(BRUSH_PRESET_REMOVE).bEnabled = presets.nValue >= 0;
    const TBrushParam& param = spTool->GetParam();
    TPanelControl& list = Find(BRUSH_LIST);
    list.vRows.clear();
    for (const uint32_t uSize : m_list.GetSizes()) list.vRows.push_back(std::to_wstring(uSize));
    list.nValue = m_list.Find(param.BrushRadius);
    Find(BRUSH_ADD).bEnabled = list.nValue < 0;
    Find(BRUSH_REMOVE).bEnabled = list.nValue >= 0;
    Find(BRUSH_SIZE).nValue = std::max(1, static_cast<int>(param.BrushRadius));
    Find(BRUSH_EDGE).nValue = std::min((param.BlurLevel + EDGE_STEP / 2) / EDGE_STEP, EDGES - 1);
    Find(BRUSH_EDGE).bEnabled = spTool->HasSoftEdge();
    Find(BRUSH_ALPHA).nValue = PercentOfByte(param.BrushAlpha);
}

void CBrushWnd::OnControl(TPanelControl& control) {
    const auto spTool = GetBrush();
    if (!spTool) return;
    if (OnPresetControl(control, *spTool)) return NotifyTool();
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

bool CBrushWnd::OnPresetControl(const TPanelControl& control, CRasterBrushBase& tool) {
    const TPlatform& platform = GetOutside().platform;
    switch (control.nId) {
    case BRUSH_PRESETS:
        return m_presets.Choose(tool, control.nValue), true;
    case BRUSH_PRESET_ADD:
        return m_presets.Add(tool), true;
    case BRUSH_PRESET_UPDATE:
        return m_presets.Update(tool), true;
    case BRUSH_PRESET_REMOVE:
        return m_presets.RemoveChosen(tool), true;
    case BRUSH_PRESETS_READ:
        return ReadSharedFile(platform, GetWindow(), FILE_KIND,
                              [&](std::string_view strText) { m_presets.AppendFile(strText); }),
               true;
    case BRUSH_PRESETS_WRITE:
        return WriteSharedFile(platform, GetWindow(), FILE_KIND, m_presets.FormatFile(tool.GetSection())),
               true;
    default:
        return false;
    }
}

void CBrushWnd::OnRenameRow(int, int nRow, const std::wstring& strName) {
    if (const auto spTool = GetBrush()) m_presets.Rename(*spTool, nRow, strName);
}

void CBrushWnd::OnDrop(int, int nFrom, int nTo, EDropAt at) {
    if (const auto spTool = GetBrush()) m_presets.Move(*spTool, nFrom, nTo, at);
}

bool CBrushWnd::OnIdle() {
    const auto spTool = GetBrush();
    if (!spTool || !m_presets.DrawNextSample(*spTool)) return false;
    Find(BRUSH_PRESETS).vTree = m_presets.MakeRows(*spTool);
    GetWindow()->SetControls(m_vControls);
    return true;
}
