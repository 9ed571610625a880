#include "core/ImageDialogs/RescaleDialog.h"

#include "core/Base/Decimal.h"
#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/CanvasBuffer/SideLimits.h"
#include "core/ImageDialogs/SizeText.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

enum EControl : int {
    ID_WIDTH = 711,
    ID_HEIGHT,
    ID_WIDTH_PERCENT,
    ID_HEIGHT_PERCENT,
    ID_KEEP,
    ID_MODE,
    ID_NEW_SIZE
};

/// The fields of one side.
struct TSide {
    int nId, nPercentId;
    int32_t CSize::*pLength;
};
constexpr TSide WIDTH{ID_WIDTH, ID_WIDTH_PERCENT, &CSize::cx},
    HEIGHT{ID_HEIGHT, ID_HEIGHT_PERCENT, &CSize::cy};

/// A side's new length by the old one.
struct TFactor {
    double dPart, dWhole;

    double ToPixels(int32_t nOld) const {
        const double dPixels = std::floor(dPart * nOld / dWhole + 0.5);
        return dPart > 0 ? std::max(1.0, dPixels) : dPixels;
    }
};

constexpr double HUNDRED = 100;

// The text in front of a sign for percent; nullopt without the sign.
std::optional<std::wstring_view> BeforePercent(std::wstring_view str) {
    const size_t nEnd = str.find_last_not_of(L" \t　");
    if (nEnd == str.npos || (str[nEnd] != L'%' && str[nEnd] != L'％')) return {};
    return str.substr(0, nEnd);
}

std::optional<TFactor> ParsePercent(std::wstring_view str) {
    const auto percent = ParseNumber(BeforePercent(str).value_or(str));
    return percent ? std::optional<TFactor>({*percent, HUNDRED}) : std::nullopt;
}

// Reads a side's length: whole pixels, or percent with their sign.
std::optional<TFactor> ParseLength(std::wstring_view str, int32_t nOld) {
    if (BeforePercent(str)) return ParsePercent(str);
    const auto pixels = ParseWhole(str);
    return pixels ? std::optional<TFactor>({double(*pixels), double(nOld)}) : std::nullopt;
}

// To hundredths, without needless zeros.
std::wstring FormatPercent(const TFactor& factor) {
    const double dHundredths = std::floor(factor.dPart / factor.dWhole * HUNDRED * HUNDRED + 0.5);
    std::wstring str =
        FormatParts(static_cast<int>(std::clamp(dHundredths, 0.0, 1e9)), static_cast<int>(HUNDRED));
    str.erase(str.find_last_not_of(L'0') + 1);
    if (str.back() == L'.') str.pop_back();
    return str;
}

TPanelControl LengthControl(const TSide& side, const char* pszName, const wchar_t* pszLabel, int32_t nOld) {
    return {.kind = TPanelControl::EKind::Number,
            .nId = side.nId,
            .strLabel = pszLabel,
            .strText = std::to_wstring(nOld),
            .nMin = 1,
            .nMax = MAX_CANVAS_SIDE,
            .bLive = true,
            .strName = pszName};
}

TPanelControl PercentControl(const TSide& side, const char* pszName) {
    return {.kind = TPanelControl::EKind::Text,
            .nId = side.nPercentId,
            .strText = L"100",
            .bSameLine = true,
            .bLive = true,
            .szView = {64, 0},
            .strName = pszName};
}

TPanelControl UnitControl(const wchar_t* pszUnit) {
    return {.kind = TPanelControl::EKind::Label, .strText = pszUnit, .bSameLine = true};
}

} // namespace

CRescaleDialog::CRescaleDialog(IMessageBoxes& boxes, CSize szCanvas)
    : m_boxes(boxes), m_szCanvas(szCanvas), m_size(szCanvas) {
    using enum TPanelControl::EKind;
    m_vControls = {
        {.kind = Label, .strLabel = L"現在", .strText = FormatSize(szCanvas)},
        LengthControl(WIDTH, "width", L"幅", szCanvas.cx),
        UnitControl(L"px"),
        PercentControl(WIDTH, "widthPercent"),
        UnitControl(L"%"),
        LengthControl(HEIGHT, "height", L"高さ", szCanvas.cy),
        UnitControl(L"px"),
        PercentControl(HEIGHT, "heightPercent"),
        UnitControl(L"%"),
        {.kind = Check, .nId = ID_KEEP, .strText = L"縦横比を保つ", .nValue = 1, .strName = "keep"},
        {.kind = Combo,
         .nId = ID_MODE,
         .strLabel = L"補間方法",
         .vRows = {L"ニアレストネイバー", L"バイリニア", L"バイキュービック"},
         .nValue = static_cast<int>(ERescaleMode::Bicubic),
         .strName = "mode"},
        {.kind = Label, .nId = ID_NEW_SIZE, .strLabel = L"変更後"}};
    ShowSize();
}

ERescaleMode CRescaleDialog::GetMode() const {
    constexpr std::array MODES{ERescaleMode::Nearest, ERescaleMode::Bilinear, ERescaleMode::Bicubic};
    const auto it = std::ranges::find(m_vControls, int{ID_MODE}, &TPanelControl::nId);
    return MODES[std::clamp<size_t>(static_cast<size_t>(it->nValue), 0, MODES.size() - 1)];
}

std::optional<CSize> CRescaleDialog::ReadSize() {
    CSize sz;
    for (const TSide& side : {WIDTH, HEIGHT}) {
        const int32_t nOld = m_szCanvas.*side.pLength;
        const auto factor = ParseLength(Find(side.nId).strText, nOld);
        if (!factor) return {};
        sz.*side.pLength = static_cast<int32_t>(std::clamp(factor->ToPixels(nOld), -1e9, 1e9));
    }
    return sz;
}

void CRescaleDialog::ShowSize() {
    const auto size = ReadSize();
    Find(ID_NEW_SIZE).strText = size ? FormatSize(*size) : L"－";
}

void CRescaleDialog::OnControl(TPanelControl& control) {
    if (control.nId == ID_MODE) return;
    const bool bHeight = control.nId == ID_HEIGHT || control.nId == ID_HEIGHT_PERCENT;
    const TSide& typed = bHeight ? HEIGHT : WIDTH;
    const auto showPixels = [this](const TSide& side, const TFactor& factor) {
        const double dPixels = factor.ToPixels(m_szCanvas.*side.pLength);
        Find(side.nId).strText = std::to_wstring(static_cast<int64_t>(dPixels));
    };
    const auto showPercent = [this](const TSide& side, const TFactor& factor) {
        Find(side.nPercentId).strText = FormatPercent(factor);
    };
    const bool bPercent = control.nId == typed.nPercentId;
    const auto factor = bPercent ? ParsePercent(control.strText)
                                 : ParseLength(Find(typed.nId).strText, m_szCanvas.*typed.pLength);
    if (!factor) {
        Find(bPercent ? typed.nId : typed.nPercentId).strText.clear();
    } else {
        bPercent ? showPixels(typed, *factor) : showPercent(typed, *factor);
        if (Find(ID_KEEP).nValue) {
            const TSide& other = bHeight ? WIDTH : HEIGHT;
            showPixels(other, *factor);
            showPercent(other, *factor);
        }
    }
    ShowSize();
}

bool CRescaleDialog::OnOk(IWindow* pOwner) {
    const auto size = ReadSize();
    if (!size) return Refuse(m_boxes, pOwner, NO_NUMBER);
    if (std::min(size->cx, size->cy) < 1 || std::max(size->cx, size->cy) > MAX_CANVAS_SIDE)
        return Refuse(m_boxes, pOwner, SIDE_LIMITS);
    m_size = *size;
    return true;
}
