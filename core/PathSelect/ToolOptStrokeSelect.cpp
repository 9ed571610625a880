#include "core/PathSelect/ToolOptStrokeSelect.h"

#include "core/Base/Decimal.h"
#include "core/Base/Failure.h"
#include "core/PathFit/InkCorrection.h"
#include "core/PathToolBase/StrokeBlock.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <set>

namespace {

enum EStrokeSelectControl : int {
    STROKE_SELECT_RECT = 1401,
    STROKE_SELECT_LASSO,
    STROKE_SELECT_TOUCHED,
    STROKE_SELECT_WIDTHS,
};
constexpr int FIRST_COMMON = 1410;
enum EInkControl : int { INK_SMOOTHING = 1430, INK_TOLERANCE, INK_UNIT };
constexpr int HUNDREDTHS = 100;
constexpr int MOST_SMOOTHING = 24;
constexpr int LEAST_TOLERANCE = 5;
constexpr int MOST_TOLERANCE = 800;

// Hundredths of a percent, for a text such as "150%".
std::optional<int> PercentOf(std::wstring strText) {
    const size_t nSign = strText.find_last_not_of(L" \u3000");
    if (nSign == std::wstring::npos || (strText[nSign] != L'%' && strText[nSign] != L'\uFF05'))
        return std::nullopt;
    strText.resize(nSign);
    return ParseParts(strText, HUNDREDTHS);
}

void MultiplyWidth(COpenPathStream& stream, int nPercent) {
    constexpr uint64_t WHOLE = uint64_t{HUNDREDTHS} * 100;
    const uint64_t uWidth =
        (uint64_t{stream.GetWidth()} * static_cast<uint64_t>(nPercent) + WHOLE / 2) / WHOLE;
    stream.SetWidth(static_cast<uint32_t>(std::clamp<uint64_t>(uWidth, 1, PATH_PARAM_WIDTH_MAX)));
}

/// The different values of strokes that have samples.
struct TCommonInk {
    std::set<uint32_t> setSmoothing, setTolerance;

    void Join(const TInkSamples& samples) {
        setSmoothing.insert(samples.param.CurveStrength);
        setTolerance.insert(samples.uTolerance);
    }
};

// Without a value for a text that is no number.
TInkCorrection CorrectionOf(const TPanelControl& control) {
    TInkCorrection correction;
    if (control.nId == INK_SMOOTHING) {
        if (const auto n = ParseParts(control.strText, 1))
            correction.uSmoothing = static_cast<uint8_t>(std::clamp(*n, 0, MOST_SMOOTHING));
    } else if (const auto n = ParseParts(control.strText, HUNDREDTHS)) {
        correction.uTolerance = static_cast<uint32_t>(std::clamp(*n, LEAST_TOLERANCE, MOST_TOLERANCE));
    }
    return correction;
}

} // namespace

CToolOptStrokeSelect::CToolOptStrokeSelect() {
    using enum TPanelControl::EKind;
    m_vControls = {{.kind = Radio, .nId = STROKE_SELECT_RECT, .strText = L"矩形"},
                   {.kind = Radio, .nId = STROKE_SELECT_LASSO, .strText = L"投げ縄", .bSameLine = true},
                   {.kind = Check, .nId = STROKE_SELECT_TOUCHED, .strText = L"触れた線も選ぶ"},
                   {.kind = Check, .nId = STROKE_SELECT_WIDTHS, .strText = L"太さも拡大"}};
    const auto vBlock = MakeStrokeBlock(FIRST_COMMON, L"- 選択した線 -", true);
    m_vControls.insert(m_vControls.end(), vBlock.begin(), vBlock.end());
    // The values of strokes that the pen has drawn.
    m_vControls.push_back(
        {.kind = Number, .nId = INK_SMOOTHING, .strLabel = L"補完強度", .vStops = SMOOTHING_STOPS});
    m_vControls.push_back(
        {.kind = Number, .nId = INK_TOLERANCE, .strLabel = L"あと補正", .vStops = TOLERANCE_STOPS});
    m_vControls.push_back({.kind = Label, .nId = INK_UNIT, .strText = L"px", .bSameLine = true});
}

void CToolOptStrokeSelect::RefreshView(const boost::shared_ptr<CTools>& spTool) {
    const auto spSelect = boost::dynamic_pointer_cast<CStrokeSelect>(spTool);
    if (!spSelect) throw internal_error(L"RefreshView: CStrokeSelect not found");
    m_wpTool = spSelect;
    const TStrokeSelectParam& param = spSelect->GetParam();
    Find(STROKE_SELECT_RECT).nValue = param.shape == STROKE_RECT;
    Find(STROKE_SELECT_LASSO).nValue = param.shape == STROKE_LASSO;
    Find(STROKE_SELECT_TOUCHED).nValue = param.bTouched;
    Find(STROKE_SELECT_WIDTHS).nValue = param.bScaleWidths;
    std::optional<TCommonParam> common;
    TCommonInk ink;
    for (const auto& spStroke : spSelect->GetStrokes()) {
        if (const auto spSamples = spStroke->GetStream().GetSamples()) ink.Join(*spSamples);
        const TPathParam values = ParamOf(spStroke->GetStream());
        if (common)
            common->Join(values);
        else
            common.emplace(values);
    }
    ShowStrokeBlock([&](int nId) -> TPanelControl& { return Find(nId); }, FIRST_COMMON,
                    common ? &*common : nullptr);
    const auto show = [&](int nId, const std::set<uint32_t>& setValues, auto format) {
        Find(nId).bEnabled = !setValues.empty();
        Find(nId).strText = setValues.size() == 1 ? format(*setValues.begin()) : std::wstring();
    };
    show(INK_SMOOTHING, ink.setSmoothing, [](uint32_t u) { return std::to_wstring(u); });
    show(INK_TOLERANCE, ink.setTolerance,
         [](uint32_t u) { return FormatParts(static_cast<int>(u), HUNDREDTHS); });
}

void CToolOptStrokeSelect::OnControl(const TPanelControl& control) {
    const auto spTool = m_wpTool.lock();
    if (!spTool) return;
    TStrokeSelectParam& param = spTool->GetParam();
    switch (control.nId) {
    case STROKE_SELECT_RECT:
    case STROKE_SELECT_LASSO:
        param.shape = control.nId == STROKE_SELECT_RECT ? STROKE_RECT : STROKE_LASSO;
        return;
    case STROKE_SELECT_TOUCHED:
        param.bTouched = control.nValue != 0;
        return;
    case STROKE_SELECT_WIDTHS:
        param.bScaleWidths = control.nValue != 0;
        return;
    default:
        break;
    }
    if (control.nId == INK_SMOOTHING || control.nId == INK_TOLERANCE) {
        const TInkCorrection correction = CorrectionOf(control);
        return spTool->ChangeStrokes([&](COpenPathStream& stream) { CorrectInk(stream, correction); }, true);
    }
    const int nOption = control.nId - FIRST_COMMON;
    const auto percent = nOption == OPT_WIDTH ? PercentOf(control.strText) : std::nullopt;
    spTool->ChangeStrokes(
        [&](COpenPathStream& stream) {
            percent ? MultiplyWidth(stream, *percent) : ApplyOption(stream, nOption, control);
        },
        nOption == OPT_WIDTH);
}
