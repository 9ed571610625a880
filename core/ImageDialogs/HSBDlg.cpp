#include "core/ImageDialogs/HSBDlg.h"

#include "core/Base/Decimal.h"
#include "core/Base/Failure.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int ID_PREVIEW = 1431, ID_ZOOM = 1432;

float HueAt(int nPosition) { return static_cast<float>(nPosition - 180); }
float PartAt(int nPosition) { return static_cast<float>(nPosition) / 512; }
float BandAt(int nPosition) { return HsbCurve(nPosition) * 0.5F; }

/// A slider with its edit and the button that puts it back.
struct TSliderRow {
    int nId, nIdEdit, nIdReset;
    const wchar_t* pszLabel;
    const char* pszName; ///< of the slider, in scripts
    int nMax;
    float (*fnValueAt)(int nPosition); ///< rising
    float* (*fnField)(THsbValues& values);
    bool bColorOnly; ///< without effect on grey pixels
};

template <float THsbValues::*FIELD>
float* Field(THsbValues& values) {
    return &(values.*FIELD);
}
template <std::array<float, 3> THsbValues::*FIELD, size_t BAND>
float* Band(THsbValues& values) {
    return &(values.*FIELD)[BAND];
}

using THsb = THsbValues;
constexpr TSliderRow ROWS[] = {
    {1433, 1443, 1453, L"色相", "hue", 360, HueAt, Field<&THsb::fHue>, true},
    {1434, 1444, 1454, L"彩度優先", "satPriority", 512, PartAt, Field<&THsb::fSatPriority>, true},
    {1441, 1445, 1455, L"彩度", "sat", 512, HsbCurve, Field<&THsb::fSat>, true},
    {1435, 1446, 1456, L"　低彩度", "satBand0", 512, BandAt, Band<&THsb::afSatBand, 0>, true},
    {1436, 1447, 1457, L"　中彩度", "satBand1", 512, BandAt, Band<&THsb::afSatBand, 1>, true},
    {1437, 1448, 1458, L"　高彩度", "satBand2", 512, BandAt, Band<&THsb::afSatBand, 2>, true},
    {1442, 1449, 1459, L"明度", "bright", 512, HsbCurve, Field<&THsb::fBright>, false},
    {1438, 1450, 1460, L"　暗部", "brightBand0", 512, BandAt, Band<&THsb::afBrightBand, 0>, false},
    {1439, 1451, 1461, L"　中間", "brightBand1", 512, BandAt, Band<&THsb::afBrightBand, 1>, false},
    {1440, 1452, 1462, L"　明部", "brightBand2", 512, BandAt, Band<&THsb::afBrightBand, 2>, false},
};
constexpr const TSliderRow& HUE = ROWS[0];

constexpr int PAGE = 10;
constexpr CSize SLIDER_SIZE{180, 0}, EDIT_SIZE{56, 0};

// The position whose value is nearest.
int PositionOf(const TSliderRow& row, double dValue) {
    int nNearest = 0;
    for (int n = 1; n <= row.nMax; ++n)
        if (std::abs(row.fnValueAt(n) - dValue) < std::abs(row.fnValueAt(nNearest) - dValue)) nNearest = n;
    return nNearest;
}

} // namespace

CHSBDlg::CHSBDlg(const TPreviewSource& source) : CPreviewDialog(source, ID_PREVIEW, ID_ZOOM) {
    using enum TPanelControl::EKind;
    for (const TSliderRow& row : ROWS) {
        const bool bEnabled = IsColor() || !row.bColorOnly;
        m_vControls.push_back({.kind = Slider,
                               .nId = row.nId,
                               .strLabel = row.pszLabel,
                               .nMin = 0,
                               .nMax = row.nMax,
                               .nValue = row.nMax / 2,
                               .bEnabled = bEnabled,
                               .bBare = true,
                               .nPage = PAGE,
                               .szView = SLIDER_SIZE,
                               .strName = row.pszName});
        m_vControls.push_back(
            {.kind = Text, .nId = row.nIdEdit, .bEnabled = bEnabled, .bSameLine = true, .szView = EDIT_SIZE});
        m_vControls.push_back({.kind = Button,
                               .nId = row.nIdReset,
                               .strText = L"戻す",
                               .bEnabled = bEnabled,
                               .bSameLine = true});
    }
    ShowValues();
}

void CHSBDlg::ShowValues() {
    for (const TSliderRow& row : ROWS) {
        float& fValue = *row.fnField(m_values);
        fValue = row.fnValueAt(std::clamp(Find(row.nId).nValue, 0, row.nMax));
        Find(row.nIdEdit).strText = FormatNumber(&row == &HUE ? L"%1$+3.0f" : L"%1$+1.2f", fValue);
    }
    GetPreview().SetOperation(HsbOperation(m_values));
}

void CHSBDlg::OnValue(TPanelControl& control) {
    for (const TSliderRow& row : ROWS) {
        TPanelControl& slider = Find(row.nId);
        if (control.nId == row.nIdReset) slider.nValue = row.nMax / 2;
        if (control.nId != row.nIdEdit) continue;
        const auto number = ParseNumber(control.strText);
        if (!number) throw refused_error(L"数字を入力してください。");
        slider.nValue = PositionOf(row, *number);
    }
    ShowValues();
}
