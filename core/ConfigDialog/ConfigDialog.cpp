#include "core/ConfigDialog/ConfigDialog.h"

#include "core/IniConfig/IniConfig.h"

namespace {

constexpr wchar_t SECTION[] = L"Tablet";

// The fields' places in the dialog.
enum EField : size_t { FIELD_COORD = 1, FIELD_TAP = 3 };

} // namespace

CConfigDialog::CConfigDialog(CIniConfig& config) : m_config(config) {
    const auto spSection = config.GetSection(SECTION);
    using enum TPanelControl::EKind;
    const auto add = [&](TPanelControl::EKind kind, const char* pszName, const wchar_t* pszText,
                         bool bChecked) {
        m_vControls.push_back({.kind = kind,
                               .nId = static_cast<int>(m_vControls.size()) + 1,
                               .strText = pszText,
                               .nValue = bChecked,
                               .strName = pszName});
    };
    add(Label, "title", L"タブレット設定", false);
    // Shown the other way round: what is kept says that the mouse's coordinates are used.
    add(Check, "tabletCoord", L"タブレット座標を利用する", spSection->GetInt(L"MouseCoord", 1) == 0);
    add(Label, "note", L"※この設定は再起動するまで有効になりません", false);
    add(Check, "tapDot", L"動かさずに押したとき点を打つ", spSection->GetInt(L"TapDot", 1) != 0);
}

bool CConfigDialog::OnOk(IWindow*) {
    const auto spSection = m_config.GetSection(SECTION);
    spSection->SetInt(L"MouseCoord", m_vControls[FIELD_COORD].nValue ? 0 : 1);
    spSection->SetInt(L"TapDot", m_vControls[FIELD_TAP].nValue ? 1 : 0);
    return true;
}
