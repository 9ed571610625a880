#include "core/PathToolBase/StrokeBlock.h"

#include "core/Base/Decimal.h"

#include <algorithm>
#include <span>
#include <utility>

namespace {

constexpr int PIXEL = 8; ///< path units

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

TPanelControl MakeToggle(int nId, const wchar_t* pszLabel, const wchar_t* pszTip, const char* pszIcon,
                         bool bSameLine) {
    return {.kind = TPanelControl::EKind::Toggle,
            .nId = nId,
            .strLabel = pszLabel,
            .strText = pszTip,
            .strIcon = pszIcon,
            .bSameLine = bSameLine};
}

} // namespace

TCommonParam::TCommonParam(const TPathParam& param)
    : width(param.uDefaultWidth), begin(param.uDefaultBegin), term(param.uDefaultTerm),
      waveStep(param.uWaveStep), waveWidth(param.uWaveWidth), wave(param.bWaveEnable) {}

void TCommonParam::Join(const TPathParam& param) {
    const TCommonParam other(param);
    const auto join = [](auto& value, const auto& with) {
        if (value != with) value.reset();
    };
    join(width, other.width);
    join(begin, other.begin);
    join(term, other.term);
    join(waveStep, other.waveStep);
    join(waveWidth, other.waveWidth);
    join(wave, other.wave);
}

TPathParam ParamOf(const COpenPathStream& stream) {
    return {.uDefaultWidth = stream.GetWidth(),
            .uDefaultBegin = stream.GetTerm(true)->GetType(),
            .uDefaultTerm = stream.GetTerm(false)->GetType(),
            .bWaveEnable = stream.HasWave(),
            .uWaveStep = stream.GetWave().uStep,
            .uWaveWidth = stream.GetWave().uWidth};
}

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

void ApplyOption(COpenPathStream& stream, int nOption, const TPanelControl& control) {
    const TPathParam before = ParamOf(stream);
    TPathParam after = before;
    SetParam(after, nOption, control);
    stream.SetWidth(after.uDefaultWidth);
    if (after.uDefaultBegin != before.uDefaultBegin)
        stream.SetTerm(CreateOpenPathTerm(after.uDefaultBegin, true));
    if (after.uDefaultTerm != before.uDefaultTerm)
        stream.SetTerm(CreateOpenPathTerm(after.uDefaultTerm, false));
    stream.SetWave(after.bWaveEnable, {after.uWaveStep, after.uWaveWidth});
}

std::vector<TPanelControl> MakeStrokeBlock(int nFirstId, const wchar_t* pszCaption, bool bOneRow) {
    using enum TPanelControl::EKind;
    std::vector<TPanelControl> vControls;
    vControls.push_back({.kind = Label, .nId = nFirstId + OPT_CAPTION, .strText = pszCaption});
    vControls.push_back(
        {.kind = Number, .nId = nFirstId + OPT_WIDTH, .strLabel = L"太さ：", .vStops = WidthStops()});
    vControls.push_back({.kind = Label, .nId = nFirstId + OPT_UNIT, .strText = L"px", .bSameLine = true});
    for (const TEnd& end : ENDS)
        vControls.push_back(MakeToggle(nFirstId + IdOf(OPT_BEGIN, end.uType),
                                       end.uType == TERM_SHARP && !bOneRow ? L"始点：" : L"", end.pszBegin,
                                       end.pszBeginIcon, end.uType != TERM_SHARP));
    for (const TEnd& end : ENDS)
        vControls.push_back(MakeToggle(nFirstId + IdOf(OPT_TERM, end.uType),
                                       end.uType == TERM_SHARP && !bOneRow ? L"終点：" : L"", end.pszTerm,
                                       end.pszTermIcon, bOneRow || end.uType != TERM_SHARP));
    vControls.push_back({.kind = Check, .nId = nFirstId + OPT_WAVE, .strText = L"ブレ："});
    vControls.push_back({.kind = Combo,
                         .nId = nFirstId + OPT_WAVE_STEP,
                         .strLabel = L"間隔：",
                         .vRows = TextsOf(WAVE_STEP_ROWS)});
    vControls.push_back({.kind = Combo,
                         .nId = nFirstId + OPT_WAVE_WIDTH,
                         .strLabel = L"強度：",
                         .vRows = TextsOf(WAVE_WIDTH_ROWS)});
    return vControls;
}

void ShowStrokeBlock(const boost::function<TPanelControl&(int)>& fnFind, int nFirstId,
                     const TCommonParam* pParam) {
    static const TCommonParam NOTHING;
    const TCommonParam& param = pParam ? *pParam : NOTHING;
    for (int n = OPT_CAPTION; n < OPT_COUNT; ++n) fnFind(nFirstId + n).bEnabled = pParam;
    fnFind(nFirstId + OPT_WIDTH).strText =
        param.width ? FormatParts(static_cast<int>(*param.width), PIXEL) : std::wstring();
    for (const auto& [nOption, type] : {std::pair{OPT_BEGIN, param.begin}, {OPT_TERM, param.term}})
        for (const TEnd& end : ENDS) fnFind(nFirstId + IdOf(nOption, end.uType)).nValue = type == end.uType;
    fnFind(nFirstId + OPT_WAVE).nValue = param.wave.value_or(false);
    // Strokes that differ may have a wave.
    const bool bWave = pParam && param.wave.value_or(true);
    const auto show = [&](int nOption, std::span<const TWaveRow> rows, const std::optional<uint32_t>& value) {
        TPanelControl& combo = fnFind(nFirstId + nOption);
        combo.nValue = value ? RowOf(rows, *value) : -1;
        combo.bEnabled = bWave;
    };
    show(OPT_WAVE_STEP, WAVE_STEP_ROWS, param.waveStep);
    show(OPT_WAVE_WIDTH, WAVE_WIDTH_ROWS, param.waveWidth);
}
