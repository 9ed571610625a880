#include "core/Panels/ToolOptRasterBrush.h"

#include "core/Base/Failure.h"
#include "core/Panels/Percent.h"
#include "core/RasterBrush/FreehandTools.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <utility>

namespace {

// Numbers of controls within a pane.
enum EOption : int {
    OPT_WAVE_ENABLE = 1,
    OPT_WAVE_SMOOTH,
    OPT_WAVE_MIN,
    OPT_WAVE_MAX,
    OPT_CURVE,
    OPT_ALPHA,
    OPT_PRESS_RADIUS,
    OPT_PRESS_ALPHA,
    OPT_SPRAY,
    OPT_STROKE_IN,
    OPT_STROKE_OUT,
    OPT_SLOW,
    OPT_SLOW_WEAK,
    OPT_SLOW_MEDIUM,
    OPT_SLOW_STRONG,
    OPT_SLOW_SCALE,
    OPT_ALTITUDE,
    OPT_PAPER,
    OPT_HARDNESS,
    OPT_TEXTURE,
    OPT_ANTI_SPLIT,
};

constexpr int SLOW_STEP = 4; ///< weak, medium and strong are 4, 8 and 12

template <auto Field>
int Get(CRasterBrushBase& tool) {
    if constexpr (requires { tool.GetParam().*Field; })
        return static_cast<int>(tool.GetParam().*Field);
    else
        return static_cast<int>(tool.GetFreehand().*Field);
}

template <auto Field>
void Set(CRasterBrushBase& tool, int nValue) {
    const auto set = [&](auto& field) {
        field = static_cast<std::remove_reference_t<decltype(field)>>(nValue);
    };
    if constexpr (requires { tool.GetParam().*Field; })
        set(tool.GetParam().*Field);
    else
        set(tool.GetFreehand().*Field);
}

const std::vector<TOptRow>& LengthRows() {
    static const std::vector<TOptRow> s_vRows{{L"短", 0}, {L"中", 1}, {L"長", 2}};
    return s_vRows;
}

} // namespace

void CToolOptFreehand::AddCombo(const wchar_t* pszLabel, const TBinding& binding) {
    TPanelControl control{
        .kind = TPanelControl::EKind::Combo, .nId = m_nFirstId + binding.nId, .strLabel = pszLabel};
    for (const TOptRow& row : binding.vRows) control.vRows.push_back(row.pszText);
    m_vControls.push_back(std::move(control));
    m_vBindings.push_back(binding);
}

void CToolOptFreehand::AddCheck(const wchar_t* pszLabel, const wchar_t* pszText, const TBinding& binding,
                                bool bSameLine) {
    m_vControls.push_back({.kind = TPanelControl::EKind::Check,
                           .nId = m_nFirstId + binding.nId,
                           .strLabel = pszLabel,
                           .strText = pszText,
                           .bSameLine = bSameLine});
    m_vBindings.push_back(binding);
}

void CToolOptFreehand::AddWobble() {
    AddCombo(L"ブレ細かさ",
             {OPT_WAVE_SMOOTH,
              {{L"1", 1}, {L"2", 2}, {L"3", 3}, {L"4", 4}, {L"6", 6}, {L"8", 8}, {L"12", 12}, {L"16", 16}},
              Get<&TBrushParam::WaveSmooth>,
              Set<&TBrushParam::WaveSmooth>});
    AddCombo(L"ブレ(細線)", {OPT_WAVE_MIN,
                             {{L"なし", 0},
                              {L"1", 1},
                              {L"2", 2},
                              {L"3", 3},
                              {L"4", 4},
                              {L"6", 6},
                              {L"8", 8},
                              {L"12", 12},
                              {L"16", 16},
                              {L"24", 24},
                              {L"32", 32}},
                             Get<&TBrushParam::WaveDistMin>,
                             Set<&TBrushParam::WaveDistMin>});
    AddCombo(L"ブレ(太線)", {OPT_WAVE_MAX,
                             {{L"なし", 0},
                              {L"1", 1},
                              {L"2", 2},
                              {L"3", 3},
                              {L"4", 4},
                              {L"5", 5},
                              {L"6", 6},
                              {L"8", 8},
                              {L"12", 12}},
                             Get<&TBrushParam::WaveDistMax>,
                             Set<&TBrushParam::WaveDistMax>});
}

void CToolOptFreehand::AddLine() {
    AddCombo(L"補完強度", {OPT_CURVE,
                           {{L"なし", 0},
                            {L"1", 1},
                            {L"2", 2},
                            {L"3", 3},
                            {L"4", 4},
                            {L"6", 6},
                            {L"8", 8},
                            {L"12", 12},
                            {L"16", 16},
                            {L"24", 24}},
                           Get<&TBrushParam::CurveStrength>,
                           Set<&TBrushParam::CurveStrength>});
    AddCombo(L"入りの長さ", {OPT_STROKE_IN, LengthRows(), Get<&TFreehandParam::m_uStrokeIn>,
                             Set<&TFreehandParam::m_uStrokeIn>});
    AddCombo(L"抜きの長さ", {OPT_STROKE_OUT, LengthRows(), Get<&TFreehandParam::m_uStrokeOut>,
                             Set<&TFreehandParam::m_uStrokeOut>});
}

void CToolOptFreehand::AddPressure() {
    m_vControls.push_back({.kind = TPanelControl::EKind::Slider,
                           .nId = m_nFirstId + OPT_ALPHA,
                           .strLabel = L"不透明度",
                           .strUnit = L"%",
                           .nMax = 100});
    m_vBindings.push_back(
        {OPT_ALPHA,
         {},
         [](CRasterBrushBase& tool) { return PercentOfByte(tool.GetParam().BrushAlpha); },
         [](CRasterBrushBase& tool, int n) { tool.GetParam().BrushAlpha = ByteOfPercent(n); }});
    AddCheck(L"筆圧", L"太さ",
             {OPT_PRESS_RADIUS, {}, Get<&TBrushParam::PressRadius>, Set<&TBrushParam::PressRadius>});
    AddCheck(L"", L"α", {OPT_PRESS_ALPHA, {}, Get<&TBrushParam::PressAlpha>, Set<&TBrushParam::PressAlpha>},
             true);
}

void CToolOptFreehand::AddSlow() {
    AddCheck(L"", L"ゆっくり描いても補間",
             {OPT_SLOW,
              {},
              [](CRasterBrushBase& tool) { return static_cast<int>(tool.GetFreehand().m_uSlowSmooth != 0); },
              [](CRasterBrushBase& tool, int n) { tool.GetFreehand().m_uSlowSmooth = n ? SLOW_STEP : 0; }});
    constexpr std::pair<int, const wchar_t*> STRENGTHS[] = {
        {OPT_SLOW_WEAK, L"弱"}, {OPT_SLOW_MEDIUM, L"中"}, {OPT_SLOW_STRONG, L"強"}};
    for (const auto& [nId, pszText] : STRENGTHS)
        m_vControls.push_back({.kind = TPanelControl::EKind::Radio,
                               .nId = m_nFirstId + nId,
                               .strLabel = nId == OPT_SLOW_WEAK ? L"強さ" : L"",
                               .strText = pszText,
                               .bSameLine = nId != OPT_SLOW_WEAK});
    AddCheck(L"", L"倍率に合わせて補間",
             {OPT_SLOW_SCALE, {}, Get<&TFreehandParam::m_bSlowScale>, Set<&TFreehandParam::m_bSlowScale>});
}

void CToolOptFreehand::RefreshView(const boost::shared_ptr<CTools>& spTool) {
    const auto spBrush = boost::dynamic_pointer_cast<CRasterBrushBase>(spTool);
    if (!spBrush || !Serves(*spBrush)) throw internal_error(m_pszFailure);
    m_wpTool = spBrush;
    for (const TBinding& binding : m_vBindings) {
        const int nValue = binding.fnGet(*spBrush);
        Find(m_nFirstId + binding.nId).nValue =
            binding.vRows.empty() ? nValue : FindOptRow(binding.vRows, nValue);
    }
    const int nSlow = static_cast<int>(spBrush->GetFreehand().m_uSlowSmooth);
    for (const int nId : {OPT_SLOW_WEAK, OPT_SLOW_MEDIUM, OPT_SLOW_STRONG}) {
        TPanelControl& control = Find(m_nFirstId + nId);
        control.bEnabled = nSlow != 0;
        control.nValue = nSlow == (nId - OPT_SLOW) * SLOW_STEP;
    }
    // A combo whose effect is switched off keeps its value but takes none.
    const bool bWave = spBrush->GetParam().WaveEnable;
    for (const int nId : {OPT_WAVE_SMOOTH, OPT_WAVE_MIN, OPT_WAVE_MAX})
        Find(m_nFirstId + nId).bEnabled = bWave;
}

void CToolOptFreehand::OnControl(const TPanelControl& control) {
    const auto spTool = m_wpTool.lock();
    if (!spTool) return;
    const int nId = control.nId - m_nFirstId;
    if (nId >= OPT_SLOW_WEAK && nId <= OPT_SLOW_STRONG) {
        spTool->GetFreehand().m_uSlowSmooth = static_cast<uint32_t>((nId - OPT_SLOW) * SLOW_STEP);
        return;
    }
    const auto it = std::find_if(m_vBindings.begin(), m_vBindings.end(),
                                 [&](const TBinding& binding) { return binding.nId == nId; });
    if (it == m_vBindings.end()) return;
    const int nRows = static_cast<int>(it->vRows.size());
    if (nRows != 0 && (control.nValue < 0 || control.nValue >= nRows)) return;
    it->fnSet(*spTool, nRows ? it->vRows[static_cast<size_t>(control.nValue)].nValue : control.nValue);
}

CToolOptRasterBrush::CToolOptRasterBrush()
    : CToolOptFreehand(1100, L"RefreshView: CRasterBrushBase not found") {
    AddPressure();
    AddLine();
    AddSlow();
    AddCombo(L"線の荒さ", {OPT_SPRAY,
                           {{L"なし", 0},
                            {L"10%", 10},
                            {L"20%", 20},
                            {L"30%", 30},
                            {L"50%", 50},
                            {L"75%", 75},
                            {L"100%", 100},
                            {L"150%", 150},
                            {L"200%", 200}},
                           Get<&TBrushParam::Spray>,
                           Set<&TBrushParam::Spray>});
    AddCheck(L"", L"ぶれ",
             {OPT_WAVE_ENABLE, {}, Get<&TBrushParam::WaveEnable>, Set<&TBrushParam::WaveEnable>});
    AddWobble();
}

CToolOptRasterPencil::CToolOptRasterPencil()
    : CToolOptFreehand(1140, L"RefreshView: CRasterPencil not found") {
    AddPressure();
    AddCombo(L"傾き感度", {OPT_ALTITUDE,
                           {{L"1", 1}, {L"2", 2}, {L"3", 3}, {L"4", 4}, {L"5", 5}, {L"無効", 0}},
                           Get<&TBrushParam::AltitParam>,
                           Set<&TBrushParam::AltitParam>});
    AddCombo(L"紙の粗さ",
             {OPT_PAPER,
              {{L"1", 0}, {L"2", 1}, {L"3", 2}, {L"4", 3}, {L"5", 4}, {L"6", 5}, {L"7", 6}, {L"8", 7}},
              Get<&TBrushParam::PaperRoughness>,
              Set<&TBrushParam::PaperRoughness>});
    AddCombo(L"芯の硬さ", {OPT_HARDNESS,
                           {{L"1 軟", 0}, {L"2", 1}, {L"3", 2}, {L"4", 3}, {L"5 硬", 4}},
                           Get<&TBrushParam::PencilHardness>,
                           Set<&TBrushParam::PencilHardness>});
    AddCombo(L"テクスチャ", {OPT_TEXTURE,
                             {{L"なし", 0}, {L"細かい", 1}, {L"荒い", 2}, {L"さらに荒い", 3}},
                             Get<&TBrushParam::PencilTexture>,
                             Set<&TBrushParam::PencilTexture>});
    AddLine();
    AddSlow();
    AddWobble();
    AddCheck(L"", L"ブレ効果強調",
             {OPT_ANTI_SPLIT, {}, Get<&TBrushParam::AntiSplit>, Set<&TBrushParam::AntiSplit>});
}

bool CToolOptRasterPencil::Serves(const CRasterBrushBase& tool) const {
    return dynamic_cast<const CRasterPencil*>(&tool) != nullptr;
}
