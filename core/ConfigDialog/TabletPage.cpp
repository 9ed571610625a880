#include "core/ConfigDialog/TabletPage.h"

#include "core/IniConfig/IniConfig.h"

namespace {

constexpr wchar_t SECTION[] = L"Tablet";

enum EField : int { FIELD_PAGE, FIELD_COORD, FIELD_NOTE, FIELD_TAP };

} // namespace

std::vector<TPanelControl> CTabletPage::MakeControls() {
    using enum TPanelControl::EKind;
    const auto spSection = GetOutside().settings.GetSection(SECTION);
    return {{.kind = Page,
             .nId = FIELD_PAGE,
             .strText = L"タブレット設定",
             .nValue = 1,
             .strName = "Page_EnvTablet"},
            // Shown the other way round: what is kept says that the mouse's coordinates are used.
            {.kind = Check,
             .nId = FIELD_COORD,
             .strText = L"タブレット座標を利用する",
             .nValue = spSection->GetInt(L"MouseCoord", 1) == 0,
             .strName = "tabletCoord"},
            {.kind = Label, .nId = FIELD_NOTE, .strText = L"※この設定は再起動するまで有効になりません"},
            {.kind = Check,
             .nId = FIELD_TAP,
             .strText = L"動かさずに押したとき点を打つ",
             .nValue = spSection->GetInt(L"TapDot", 1) != 0,
             .strName = "tapDot"}};
}

void CTabletPage::Apply() {
    GetOutside().settings.GetSection(SECTION)->SetInts(
        {{L"MouseCoord", Find(FIELD_COORD).nValue ? 0 : 1}, {L"TapDot", Find(FIELD_TAP).nValue ? 1 : 0}});
}
