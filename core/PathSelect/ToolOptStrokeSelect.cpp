#include "core/PathSelect/ToolOptStrokeSelect.h"

#include "core/Base/Decimal.h"
#include "core/Base/Failure.h"
#include "core/PathToolBase/StrokeBlock.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>

namespace {

enum EStrokeSelectControl : int {
    STROKE_SELECT_RECT = 1401,
    STROKE_SELECT_LASSO,
    STROKE_SELECT_TOUCHED,
    STROKE_SELECT_WIDTHS,
};
constexpr int FIRST_COMMON = 1410;
constexpr int HUNDREDTHS = 100;

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

} // namespace

CToolOptStrokeSelect::CToolOptStrokeSelect() {
    using enum TPanelControl::EKind;
    m_vControls = {{.kind = Radio, .nId = STROKE_SELECT_RECT, .strText = L"矩形"},
                   {.kind = Radio, .nId = STROKE_SELECT_LASSO, .strText = L"投げ縄", .bSameLine = true},
                   {.kind = Check, .nId = STROKE_SELECT_TOUCHED, .strText = L"触れた線も選ぶ"},
                   {.kind = Check, .nId = STROKE_SELECT_WIDTHS, .strText = L"太さも拡大"}};
    const auto vBlock = MakeStrokeBlock(FIRST_COMMON, L"- 選択した線 -", true);
    m_vControls.insert(m_vControls.end(), vBlock.begin(), vBlock.end());
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
    for (const auto& spStroke : spSelect->GetStrokes()) {
        const TPathParam values = ParamOf(spStroke->GetStream());
        if (common)
            common->Join(values);
        else
            common.emplace(values);
    }
    ShowStrokeBlock([&](int nId) -> TPanelControl& { return Find(nId); }, FIRST_COMMON,
                    common ? &*common : nullptr);
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
    const int nOption = control.nId - FIRST_COMMON;
    const auto percent = nOption == OPT_WIDTH ? PercentOf(control.strText) : std::nullopt;
    spTool->ChangeStrokes(
        [&](COpenPathStream& stream) {
            percent ? MultiplyWidth(stream, *percent) : ApplyOption(stream, nOption, control);
        },
        nOption == OPT_WIDTH);
}
