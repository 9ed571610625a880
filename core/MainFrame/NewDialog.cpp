#include "core/MainFrame/NewDialog.h"

#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/CanvasBuffer/SideLimits.h"

#include <boost/lexical_cast/try_lexical_convert.hpp>

namespace {

enum EField : int { ID_COLOR = 3, ID_LIGHT };

constexpr int DEFAULT_WIDTH = 800;
constexpr int DEFAULT_HEIGHT = 600;

bool ParseSide(const std::wstring& strText, int32_t& nSide) {
    return boost::conversion::try_lexical_convert(strText, nSide) && nSide >= 1 && nSide <= MAX_CANVAS_SIDE;
}

TPanelControl SizeControl(int nId, const char* pszName, const wchar_t* pszLabel, int nDefault) {
    return {.kind = TPanelControl::EKind::Number,
            .nId = nId,
            .strLabel = pszLabel,
            .strText = std::to_wstring(nDefault),
            .nMin = 1,
            .nMax = MAX_CANVAS_SIDE,
            .strName = pszName};
}

} // namespace

CNewDialog::CNewDialog(IMessageBoxes& boxes) : m_boxes(boxes) {
    m_vControls = {SizeControl(1, "width", L"幅", DEFAULT_WIDTH),
                   SizeControl(2, "height", L"高さ", DEFAULT_HEIGHT),
                   {.kind = TPanelControl::EKind::Check,
                    .nId = ID_COLOR,
                    .strText = L"カラー",
                    .nValue = 1,
                    .strName = "color"},
                   {.kind = TPanelControl::EKind::Check,
                    .nId = ID_LIGHT,
                    .strText = L"軽量表示",
                    .bSameLine = true,
                    .strName = "light"}};
}

void CNewDialog::OnControl(TPanelControl& control) {
    if (control.nId != ID_COLOR) return;
    TPanelControl& light = Find(ID_LIGHT);
    if (light.bEnabled) m_bLight = light.nValue != 0;
    light.bEnabled = control.nValue != 0;
    light.nValue = light.bEnabled && m_bLight ? 1 : 0;
}

bool CNewDialog::OnOk(IWindow* pOwner) {
    const bool bWidth = ParseSide(m_vControls[0].strText, m_document.sz.cx);
    const bool bHeight = ParseSide(m_vControls[1].strText, m_document.sz.cy);
    m_document.bColor = Find(ID_COLOR).nValue != 0;
    m_document.bLight = m_document.bColor && Find(ID_LIGHT).nValue != 0;
    if (bWidth && bHeight) return true;
    m_boxes.Show(pOwner, SIDE_LIMITS, L"Vellumcraft", EBoxKind::Plain);
    if (!bWidth) m_vControls[0].strText = std::to_wstring(DEFAULT_WIDTH);
    if (!bHeight) m_vControls[1].strText = std::to_wstring(DEFAULT_HEIGHT);
    return false;
}
