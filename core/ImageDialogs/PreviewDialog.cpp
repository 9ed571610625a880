#include "core/ImageDialogs/PreviewDialog.h"

#include <array>

namespace {

constexpr int ID_BEFORE = 1;
constexpr CSize PREVIEW_SIZE{560, 480};

struct TZoomRow {
    const wchar_t* pszText;
    uint16_t uZoom; ///< in 48ths
};

constexpr std::array<TZoomRow, 9> ZOOM_ROWS{{{L"1/4", 12},
                                             {L"1/3", 16},
                                             {L"1/2", 24},
                                             {L"2/3", 32},
                                             {L"等角", 48},
                                             {L"200%", 96},
                                             {L"300%", 144},
                                             {L"400%", 192},
                                             {L"500%", 240}}};
constexpr int FIRST_ROW = 4;

} // namespace

CPreviewDialog::CPreviewDialog(const TPreviewSource& source, int nIdPreview, int nIdZoom)
    : m_nIdPreview(nIdPreview), m_nIdZoom(nIdZoom),
      m_bColor(ChannelsOf(*source.rstPreview) == COLOR_CHANNELS), m_wndPreview(source) {
    using enum TPanelControl::EKind;
    std::vector<std::wstring> vRows;
    for (const TZoomRow& row : ZOOM_ROWS) vRows.emplace_back(row.pszText);
    m_vControls = {
        {.kind = View,
         .nId = nIdPreview,
         .bStretch = true,
         .bHand = true,
         .szView = PREVIEW_SIZE,
         .pView = &m_wndPreview},
        {.kind = Combo, .nId = nIdZoom, .strLabel = L"倍率：", .vRows = vRows, .nValue = FIRST_ROW},
        {.kind = Button,
         .nId = ID_BEFORE,
         .strText = L"処理前",
         .strTip = L"押している間、処理前の画像を表示します",
         .bSameLine = true,
         .bHold = true},
        {.kind = Column}};
}

void CPreviewDialog::OnControl(TPanelControl& control) {
    if (control.nId == m_nIdZoom) {
        if (control.nValue >= 0 && static_cast<size_t>(control.nValue) < ZOOM_ROWS.size())
            m_wndPreview.SetZoom(ZOOM_ROWS[static_cast<size_t>(control.nValue)].uZoom);
    } else if (control.nId == ID_BEFORE) {
        m_wndPreview.ShowBefore(control.nValue != 0);
    } else {
        OnValue(control);
    }
}

void CPreviewDialog::OnPointer(int nView, EMessage id, CPoint pt) {
    if (nView == m_nIdPreview) m_wndPreview.OnPointer(id, pt);
}
