#include "core/PathToolBase/ToolOptPathTool.h"

#include "core/Base/Decimal.h"
#include "core/Base/Failure.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <span>

namespace {

constexpr int FIRST_DEFAULT = 1200;
constexpr int FIRST_TARGET = 1220;
constexpr int PIXEL = 8; ///< path units

// Control numbers: the two kinds of new paths, then those within a block.
enum EOption : int {
    OPT_OPEN = 1201,
    OPT_CLOSED = 1202,
    OPT_CAPTION = 3,
    OPT_WIDTH,
    OPT_UNIT,
    OPT_BEGIN, ///< three, by EPathTerm
    OPT_TERM = OPT_BEGIN + TERM_FLAT,
    OPT_WAVE = OPT_TERM + TERM_FLAT,
    OPT_WAVE_STEP,
    OPT_WAVE_WIDTH,
    OPT_COUNT,
};

struct TEnd {
    uint32_t uType;
    const wchar_t* pszBegin;
    const wchar_t* pszTerm;
    const char* pszBeginIcon;
    const char* pszTermIcon;
};

constexpr TEnd ENDS[] = {
    {TERM_SHARP, L"尖った始点", L"尖った終点", "icons/term-begin-sharp.svg", "icons/term-end-sharp.svg"},
    {TERM_ROUND, L"丸い始点", L"丸い終点", "icons/term-begin-round.svg", "icons/term-end-round.svg"},
    {TERM_FLAT, L"平らな始点", L"平らな終点", "icons/term-begin-flat.svg", "icons/term-end-flat.svg"},
};

int IdOf(int nOption, uint32_t uType) { return nOption + static_cast<int>(uType - TERM_SHARP); }

// The widths that the edit's buttons go to, in hundredths of a pixel: eighths of thin strokes, steps of about
// an eighth of the width of others.
std::vector<int> WidthStops() {
    constexpr int HUNDREDTHS = 100;
    std::vector<int> vStops;
    for (int n = 1; n <= int{PATH_PARAM_WIDTH_MAX};) {
        vStops.push_back((2 * n * HUNDREDTHS + PIXEL) / (2 * PIXEL));
        int nStep = 1;
        while (nStep * 2 * PIXEL <= n) nStep *= 2;
        n += nStep;
    }
    return vStops;
}

std::vector<std::wstring> TextsOf(std::span<const TWaveRow> rows) {
    std::vector<std::wstring> vTexts;
    for (const TWaveRow& row : rows) vTexts.emplace_back(row.pszText);
    return vTexts;
}

// A value that no row has, as a file may contain, shows none.
int RowOf(std::span<const TWaveRow> rows, uint32_t uValue) {
    const auto it = std::ranges::find(rows, uValue, &TWaveRow::uValue);
    return it == rows.end() ? -1 : static_cast<int>(it - rows.begin());
}

void SetRow(std::span<const TWaveRow> rows, int nRow, uint32_t& uValue) {
    if (nRow >= 0 && static_cast<size_t>(nRow) < rows.size()) uValue = rows[static_cast<size_t>(nRow)].uValue;
}

TPathParam ParamOf(const COpenPathStream& stream) {
    return {.uDefaultWidth = stream.GetWidth(),
            .uDefaultBegin = stream.GetTerm(true)->GetType(),
            .uDefaultTerm = stream.GetTerm(false)->GetType(),
            .bWaveEnable = stream.HasWave(),
            .uWaveStep = stream.GetWave().uStep,
            .uWaveWidth = stream.GetWave().uWidth};
}

// Sets the one value that a block's control shows; what is no value changes nothing.
void SetParam(TPathParam& param, int nOption, const TPanelControl& control) {
    if (nOption == OPT_WIDTH) {
        if (const auto n = ParseParts(control.strText, PIXEL))
            param.uDefaultWidth = static_cast<uint32_t>(std::clamp(*n, 1, int{PATH_PARAM_WIDTH_MAX}));
    } else if (nOption >= OPT_BEGIN && nOption < OPT_TERM) {
        param.uDefaultBegin = static_cast<uint32_t>(nOption - OPT_BEGIN) + TERM_SHARP;
    } else if (nOption >= OPT_TERM && nOption < OPT_WAVE) {
        param.uDefaultTerm = static_cast<uint32_t>(nOption - OPT_TERM) + TERM_SHARP;
    } else if (nOption == OPT_WAVE) {
        param.bWaveEnable = control.nValue != 0;
    } else if (nOption == OPT_WAVE_STEP) {
        SetRow(WAVE_STEP_ROWS, control.nValue, param.uWaveStep);
    } else if (nOption == OPT_WAVE_WIDTH) {
        SetRow(WAVE_WIDTH_ROWS, control.nValue, param.uWaveWidth);
    }
}

// An end that keeps its kind keeps its shape.
void ApplyChange(COpenPathStream& stream, const TPathParam& before, const TPathParam& after) {
    stream.SetWidth(after.uDefaultWidth);
    if (after.uDefaultBegin != before.uDefaultBegin)
        stream.SetTerm(CreateOpenPathTerm(after.uDefaultBegin, true));
    if (after.uDefaultTerm != before.uDefaultTerm)
        stream.SetTerm(CreateOpenPathTerm(after.uDefaultTerm, false));
    stream.SetWave(after.bWaveEnable, {after.uWaveStep, after.uWaveWidth});
}

} // namespace

CToolOptPathTool::CToolOptPathTool() {
    AddToggle(OPT_OPEN, L"新しいパス", L"開いたパス (線)", "icons/path-open.svg", false);
    AddToggle(OPT_CLOSED, L"", L"閉じたパス (塗り)", "icons/path-closed.svg", true);
    AddBlock(FIRST_DEFAULT, L"- デフォルト -");
    AddBlock(FIRST_TARGET, L"- ターゲット -");
}

void CToolOptPathTool::AddToggle(int nId, const wchar_t* pszLabel, const wchar_t* pszTip, const char* pszIcon,
                                 bool bSameLine) {
    m_vControls.push_back({.kind = TPanelControl::EKind::Toggle,
                           .nId = nId,
                           .strLabel = pszLabel,
                           .strText = pszTip,
                           .strIcon = pszIcon,
                           .bSameLine = bSameLine});
}

void CToolOptPathTool::AddBlock(int nFirstId, const wchar_t* pszCaption) {
    using enum TPanelControl::EKind;
    m_vControls.push_back({.kind = Label, .nId = nFirstId + OPT_CAPTION, .strText = pszCaption});
    m_vControls.push_back(
        {.kind = Number, .nId = nFirstId + OPT_WIDTH, .strLabel = L"太さ：", .vStops = WidthStops()});
    m_vControls.push_back({.kind = Label, .nId = nFirstId + OPT_UNIT, .strText = L"px", .bSameLine = true});
    // The target's ends stand in one row, which has no room for a label: the panel would need more width than
    // others.
    const bool bOneRow = nFirstId == FIRST_TARGET;
    for (const TEnd& end : ENDS)
        AddToggle(nFirstId + IdOf(OPT_BEGIN, end.uType),
                  end.uType == TERM_SHARP && !bOneRow ? L"始点：" : L"", end.pszBegin, end.pszBeginIcon,
                  end.uType != TERM_SHARP);
    for (const TEnd& end : ENDS)
        AddToggle(nFirstId + IdOf(OPT_TERM, end.uType), end.uType == TERM_SHARP && !bOneRow ? L"終点：" : L"",
                  end.pszTerm, end.pszTermIcon, bOneRow || end.uType != TERM_SHARP);
    m_vControls.push_back({.kind = Check, .nId = nFirstId + OPT_WAVE, .strText = L"ブレ："});
    m_vControls.push_back({.kind = Combo,
                           .nId = nFirstId + OPT_WAVE_STEP,
                           .strLabel = L"間隔：",
                           .vRows = TextsOf(WAVE_STEP_ROWS)});
    m_vControls.push_back({.kind = Combo,
                           .nId = nFirstId + OPT_WAVE_WIDTH,
                           .strLabel = L"強度：",
                           .vRows = TextsOf(WAVE_WIDTH_ROWS)});
}

void CToolOptPathTool::ShowBlock(int nFirstId, const TPathParam* pParam) {
    const TPathParam param = pParam ? *pParam : TPathParam();
    for (int n = OPT_CAPTION; n < OPT_COUNT; ++n) Find(nFirstId + n).bEnabled = pParam;
    Find(nFirstId + OPT_WIDTH).strText =
        pParam ? FormatParts(static_cast<int>(param.uDefaultWidth), PIXEL) : std::wstring();
    for (const auto& [nOption, uType] :
         {std::pair{OPT_BEGIN, param.uDefaultBegin}, {OPT_TERM, param.uDefaultTerm}})
        for (const TEnd& end : ENDS)
            Find(nFirstId + IdOf(nOption, end.uType)).nValue = pParam && end.uType == uType;
    Find(nFirstId + OPT_WAVE).nValue = pParam && param.bWaveEnable;
    for (const auto& [nOption, nRow] : {std::pair{OPT_WAVE_STEP, RowOf(WAVE_STEP_ROWS, param.uWaveStep)},
                                        {OPT_WAVE_WIDTH, RowOf(WAVE_WIDTH_ROWS, param.uWaveWidth)}}) {
        TPanelControl& combo = Find(nFirstId + nOption);
        combo.nValue = pParam ? nRow : -1;
        combo.bEnabled = pParam && param.bWaveEnable;
    }
}

void CToolOptPathTool::RefreshView(const boost::shared_ptr<CTools>& spTool) {
    const auto spPathTool = boost::dynamic_pointer_cast<CPathTool>(spTool);
    if (!spPathTool) throw internal_error(L"RefreshView: CPathTool not found");
    m_wpTool = spPathTool;
    const TPathParam& param = spPathTool->GetParam();
    Find(OPT_OPEN).nValue = param.bOpenPath;
    Find(OPT_CLOSED).nValue = !param.bOpenPath;
    ShowBlock(FIRST_DEFAULT, &param);
    const TOpenPathPtr spTarget = spPathTool->GetTargetPath();
    const TPathParam target = spTarget ? ParamOf(spTarget->GetStream()) : TPathParam();
    ShowBlock(FIRST_TARGET, spTarget ? &target : nullptr);
}

void CToolOptPathTool::OnControl(const TPanelControl& control) {
    const auto spTool = m_wpTool.lock();
    if (!spTool) return;
    if (control.nId == OPT_OPEN || control.nId == OPT_CLOSED) {
        spTool->GetParam().bOpenPath = control.nId == OPT_OPEN;
    } else if (control.nId < FIRST_TARGET) {
        SetParam(spTool->GetParam(), control.nId - FIRST_DEFAULT, control);
    } else if (const TOpenPathPtr pOpenPath = spTool->GetTargetPath()) {
        const TPathParam before = ParamOf(pOpenPath->GetStream());
        TPathParam after = before;
        SetParam(after, control.nId - FIRST_TARGET, control);
        // A width that is typed or stepped through is one change.
        spTool->ChangeTarget([&](COpenPathStream& stream) { ApplyChange(stream, before, after); },
                             control.nId == FIRST_TARGET + OPT_WIDTH);
    }
}
