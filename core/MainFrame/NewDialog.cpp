#include "core/MainFrame/NewDialog.h"

#include "core/CanvasBuffer/CanvasBuffer.h"

#include <boost/lexical_cast/try_lexical_convert.hpp>

namespace {

constexpr int DEFAULT_WIDTH = 800;
constexpr int DEFAULT_HEIGHT = 600;

bool ParseSide(const std::wstring& strText, int32_t& nSide) {
    return boost::conversion::try_lexical_convert(strText, nSide) && nSide >= 1 && nSide <= MAX_CANVAS_SIDE;
}

TDialogField SizeField(const char* pszName, const wchar_t* pszLabel, int nDefault) {
    TDialogField field;
    field.strName = pszName;
    field.strLabel = pszLabel;
    field.strText = std::to_wstring(nDefault);
    field.nMin = 1;
    field.nMax = MAX_CANVAS_SIDE;
    return field;
}

} // namespace

CNewDialog::CNewDialog(IMessageBoxes& boxes) : m_boxes(boxes) {
    TDialogField color;
    color.kind = TDialogField::EKind::Check;
    color.strName = "color";
    color.strLabel = L"カラー";
    color.bChecked = true;
    m_vFields = {SizeField("width", L"幅", DEFAULT_WIDTH), SizeField("height", L"高さ", DEFAULT_HEIGHT),
                 color};
}

bool CNewDialog::OnOk(IWindow* pOwner) {
    const bool bWidth = ParseSide(m_vFields[0].strText, m_size.cx);
    const bool bHeight = ParseSide(m_vFields[1].strText, m_size.cy);
    if (bWidth && bHeight) return true;
    m_boxes.Show(pOwner, L"ピクセルサイズは 1～12000 に限定されています。", L"Vellumcraft", EBoxKind::Plain);
    if (!bWidth) m_vFields[0].strText = std::to_wstring(DEFAULT_WIDTH);
    if (!bHeight) m_vFields[1].strText = std::to_wstring(DEFAULT_HEIGHT);
    return false;
}
