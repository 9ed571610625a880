#include "core/ConfigDialog/ConfigDialog.h"

#include "core/IniConfig/IniConfig.h"

namespace {

constexpr wchar_t SECTION[] = L"Tablet";

// The fields' places in the dialog.
enum EField : size_t { FIELD_COORD = 1, FIELD_TAP = 3 };

} // namespace

CConfigDialog::CConfigDialog(CIniConfig& config) : m_config(config) {
    const auto spSection = config.GetSection(SECTION);
    using enum TDialogField::EKind;
    const auto add = [&](TDialogField::EKind kind, const char* pszName, const wchar_t* pszText,
                         bool bChecked) {
        TDialogField field;
        field.kind = kind;
        field.strName = pszName;
        (kind == Check ? field.strLabel : field.strText) = pszText;
        field.bChecked = bChecked;
        m_vFields.push_back(field);
    };
    add(Text, "title", L"タブレット設定", false);
    // Shown the other way round: what is kept says that the mouse's coordinates are used.
    add(Check, "tabletCoord", L"タブレット座標を利用する", spSection->GetInt(L"MouseCoord", 1) == 0);
    add(Text, "note", L"※この設定は再起動するまで有効になりません", false);
    add(Check, "tapDot", L"動かさずに押したとき点を打つ", spSection->GetInt(L"TapDot", 1) != 0);
}

bool CConfigDialog::OnOk(IWindow*) {
    const auto spSection = m_config.GetSection(SECTION);
    spSection->SetInt(L"MouseCoord", m_vFields[FIELD_COORD].bChecked ? 0 : 1);
    spSection->SetInt(L"TapDot", m_vFields[FIELD_TAP].bChecked ? 1 : 0);
    return true;
}
