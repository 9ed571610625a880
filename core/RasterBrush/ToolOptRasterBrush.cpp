#include "core/RasterBrush/ToolOptRasterBrush.h"

#include "core/Base/Failure.h"
#include "core/Base/Percent.h"
#include "core/RasterBrush/FreehandTools.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace {

// Control numbers within a pane.
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

// Rows labelled with their values, 0 as none.
std::vector<TOptRow> Numbers(std::initializer_list<int> lstValues, const wchar_t* pszUnit = L"") {
    std::vector<TOptRow> vRows;
    for (const int n : lstValues) vRows.push_back({n ? std::to_wstring(n) + pszUnit : L"なし", n});
    return vRows;
}

// Rows whose values are their indices.
std::vector<TOptRow> Texts(std::initializer_list<const wchar_t*> lstTexts) {
    std::vector<TOptRow> vRows;
    for (const wchar_t* pszText : lstTexts) vRows.push_back({pszText, static_cast<int>(vRows.size())});
    return vRows;
}

struct TCombo {
    int nId;
    const wchar_t* pszLabel;
    std::vector<TOptRow> vRows;
    int (*fnGet)(CRasterBrushBase& tool);
    void (*fnSet)(CRasterBrushBase& tool, int nValue);
};

template <auto Field>
TCombo Combo(int nId, const wchar_t* pszLabel, std::vector<TOptRow> vRows) {
    return {nId, pszLabel, std::move(vRows), Get<Field>, Set<Field>};
}

// Every combo of the panes.
const TCombo& ComboOf(int nId) {
    using P = TBrushParam;
    using F = TFreehandParam;
    static const std::vector<TCombo> s_vCombos{
        Combo<&P::WaveSmooth>(OPT_WAVE_SMOOTH, L"ブレ細かさ", Numbers({1, 2, 3, 4, 6, 8, 12, 16})),
        Combo<&P::WaveDistMin>(OPT_WAVE_MIN, L"ブレ(細線)", Numbers({0, 1, 2, 3, 4, 6, 8, 12, 16, 24, 32})),
        Combo<&P::WaveDistMax>(OPT_WAVE_MAX, L"ブレ(太線)", Numbers({0, 1, 2, 3, 4, 5, 6, 8, 12})),
        Combo<&P::CurveStrength>(OPT_CURVE, L"補完強度", Numbers({0, 1, 2, 3, 4, 6, 8, 12, 16, 24})),
        Combo<&F::m_uStrokeIn>(OPT_STROKE_IN, L"入りの長さ", Texts({L"短", L"中", L"長"})),
        Combo<&F::m_uStrokeOut>(OPT_STROKE_OUT, L"抜きの長さ", Texts({L"短", L"中", L"長"})),
        Combo<&P::Spray>(OPT_SPRAY, L"線の荒さ", Numbers({0, 10, 20, 30, 50, 75, 100, 150, 200}, L"%")),
        Combo<&P::AltitParam>(OPT_ALTITUDE, L"傾き感度",
                              {{L"1", 1}, {L"2", 2}, {L"3", 3}, {L"4", 4}, {L"5", 5}, {L"無効", 0}}),
        Combo<&P::PaperRoughness>(OPT_PAPER, L"紙の粗さ",
                                  Texts({L"1", L"2", L"3", L"4", L"5", L"6", L"7", L"8"})),
        Combo<&P::PencilHardness>(OPT_HARDNESS, L"芯の硬さ", Texts({L"1 軟", L"2", L"3", L"4", L"5 硬"})),
        Combo<&P::PencilTexture>(OPT_TEXTURE, L"テクスチャ",
                                 Texts({L"なし", L"細かい", L"荒い", L"さらに荒い"})),
    };
    const auto it = std::ranges::find(s_vCombos, nId, &TCombo::nId);
    SELF_CHECK(defect_logic, it != s_vCombos.end());
    return *it;
}

} // namespace

void CToolOptFreehand::AddCombos(std::initializer_list<int> lstIds) {
    for (const int nId : lstIds) {
        const TCombo& combo = ComboOf(nId);
        TPanelControl control{
            .kind = TPanelControl::EKind::Combo, .nId = m_nFirstId + nId, .strLabel = combo.pszLabel};
        for (const TOptRow& row : combo.vRows) control.vRows.push_back(row.strText);
        m_vControls.push_back(std::move(control));
        m_vBindings.push_back({nId, combo.vRows, combo.fnGet, combo.fnSet});
    }
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

void CToolOptFreehand::AddCourse() { AddCombos({OPT_CURVE, OPT_STROKE_IN, OPT_STROKE_OUT}); }

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
    // A combo whose effect is switched off keeps its value but is disabled.
    const bool bWave = spBrush->GetParam().WaveEnable;
    for (const int nId : {OPT_WAVE_SMOOTH, OPT_WAVE_MIN, OPT_WAVE_MAX})
        if (Has(m_nFirstId + nId)) Find(m_nFirstId + nId).bEnabled = bWave;
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
    AddCourse();
    AddSlow();
    AddCombos({OPT_SPRAY});
    AddCheck(L"", L"ぶれ",
             {OPT_WAVE_ENABLE, {}, Get<&TBrushParam::WaveEnable>, Set<&TBrushParam::WaveEnable>});
    AddCombos({OPT_WAVE_SMOOTH, OPT_WAVE_MIN, OPT_WAVE_MAX});
}

CToolOptRasterPencil::CToolOptRasterPencil()
    : CToolOptFreehand(1140, L"RefreshView: CRasterPencil not found") {
    AddPressure();
    AddCombos({OPT_ALTITUDE, OPT_PAPER, OPT_HARDNESS, OPT_TEXTURE});
    AddCourse();
    AddSlow();
    AddCombos({OPT_WAVE_SMOOTH, OPT_WAVE_MIN, OPT_WAVE_MAX});
    AddCheck(L"", L"ブレ効果強調",
             {OPT_ANTI_SPLIT, {}, Get<&TBrushParam::AntiSplit>, Set<&TBrushParam::AntiSplit>});
}

bool CToolOptRasterPencil::Serves(const CRasterBrushBase& tool) const {
    return dynamic_cast<const CRasterPencil*>(&tool) != nullptr;
}
