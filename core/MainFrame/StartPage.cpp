#include "core/MainFrame/StartPage.h"

#include "core/AppModule/PrivateMessages.h"
#include "core/Commands/CommandIds.h"
#include "core/ImageFile/RecentPictures.h"
#include "core/IniConfig/RecentDocumentList.h"
#include "core/MainFrame/NewDocument.h"
#include "core/Recovery/Recovery.h"

#include <algorithm>
#include <array>

namespace {

enum EStartControl : int {
    START_FIRST_BUTTON = 1,
    START_RECENT_TITLE = 20,
    START_RECENT,
    START_LEFT_TITLE,
    START_LEFT
};

struct TStartButton {
    int nCommand;
    const wchar_t* pszText;
    bool bSameLine;
};

constexpr std::array BUTTONS{TStartButton{ID_NEW_A4_350, L"A4 350dpi\n2894 × 4093", false},
                             TStartButton{ID_NEW_A4_600, L"A4 600dpi\n4961 × 7016", true},
                             TStartButton{ID_NEW_FULL_HD, L"フルHD\n1920 × 1080", true},
                             TStartButton{ID_NEW_LAST, L"", true},
                             TStartButton{ID_FILE_NEW, L"サイズを指定して新規作成...", false},
                             TStartButton{ID_FILE_OPEN, L"ファイルを開く...", true}};

constexpr wchar_t LAST_TEXT[] = L"前回と同じ\n";
constexpr wchar_t SEPARATORS[] = L"/\\";

TTreeRow RowOf(const std::wstring& strPath) {
    const size_t nName = strPath.find_last_of(SEPARATORS);
    if (nName == std::wstring::npos) return {.strText = strPath};
    return {.strText = strPath.substr(nName + 1), .strNote = strPath.substr(0, nName)};
}

} // namespace

CStartPage::CStartPage(const TPanelOutside& outside, TStartLists lists)
    : CPanel(L"Start", outside), m_lists(std::move(lists)) {
    using EKind = TPanelControl::EKind;
    m_vControls.push_back({.kind = EKind::Label, .strText = L"新規作成", .bTitle = true});
    int nId = START_FIRST_BUTTON;
    for (const TStartButton& button : BUTTONS)
        m_vControls.push_back({.kind = EKind::Button,
                               .nId = nId++,
                               .strText = button.pszText,
                               .bSameLine = button.bSameLine,
                               .nCommand = button.nCommand});
    m_vControls.push_back(
        {.kind = EKind::Label, .strText = L"ファイルはここにドロップして開くこともできます。"});
    m_vControls.push_back(
        {.kind = EKind::Label, .nId = START_RECENT_TITLE, .strText = L"最近使ったファイル", .bTitle = true});
    m_vControls.push_back({.kind = EKind::Tree,
                           .nId = START_RECENT,
                           .nValue = -1,
                           .szView = {300, 120},
                           .szPicture = {72, 56}});
    m_vControls.push_back({.kind = EKind::Label,
                           .nId = START_LEFT_TITLE,
                           .strText = L"保存されずに終わった作業",
                           .bTitle = true});
    m_vControls.push_back({.kind = EKind::Tree, .nId = START_LEFT, .nValue = -1, .szView = {300, 60}});
}

void CStartPage::OnRefresh() {
    const auto last = FindNewDocument(ID_NEW_LAST, GetOutside().settings);
    std::ranges::find(m_vControls, ID_NEW_LAST, &TPanelControl::nCommand)->strText =
        LAST_TEXT + (last ? std::to_wstring(last->sz.cx) + L" × " + std::to_wstring(last->sz.cy) : L"―");
    TPanelControl& recent = Find(START_RECENT);
    recent.vTree.clear();
    for (const std::wstring& strPath : m_lists.recent.GetPaths()) {
        recent.vTree.push_back(RowOf(strPath));
        recent.vTree.back().spPicture = m_lists.pictures.Find(strPath);
    }
    recent.nValue = -1;
    // Another session that ends meanwhile must find them free.
    m_vLeft = m_lists.recovery.FindLeft();
    m_lists.recovery.ReleaseLeft();
    TPanelControl& left = Find(START_LEFT);
    left.vTree.clear();
    for (const TLeftSnapshot& snapshot : m_vLeft)
        left.vTree.push_back({.strText = snapshot.note.GetShownTitle(), .strNote = snapshot.note.strTime});
    left.nValue = -1;
    recent.bVisible = !recent.vTree.empty();
    Find(START_RECENT_TITLE).bVisible = recent.bVisible;
    Find(START_LEFT_TITLE).bVisible = left.bVisible = !m_vLeft.empty();
}

int CStartPage::FindCommand(const TMessage& msg) {
    if (msg.id != EMessage::PanelChange) return 0;
    const TPanelControl& control = Find(static_cast<int>(msg.wParam));
    const auto nRow = static_cast<int>(msg.lParam);
    if (control.nId != START_RECENT) return control.nCommand;
    return nRow >= 0 && nRow <= ID_FILE_MRU_LAST - ID_FILE_MRU_FIRST ? ID_FILE_MRU_FIRST + nRow : 0;
}

void CStartPage::OnControl(TPanelControl& control) {
    const int nRow = control.nValue;
    if (nRow < 0 || static_cast<size_t>(nRow) >= control.vTree.size()) return;
    if (control.nId == START_RECENT) PostToMainFrame(EMessage::Command, ID_FILE_MRU_FIRST + nRow);
    if (control.nId == START_LEFT) m_lists.fnRestore(m_vLeft[static_cast<size_t>(nRow)].strName);
}
