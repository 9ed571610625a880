#include "core/ConfigDialog/ShortcutPage.h"

#include "core/AppModule/SharedFile.h"
#include "core/Base/Failure.h"
#include "core/Commands/HeldKeys.h"
#include "core/Commands/MenuTable.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <utility>

namespace {

enum EField : int {
    FIELD_PAGE,
    FIELD_FILTER,
    FIELD_LIST,
    FIELD_KEY,
    FIELD_CONFLICT,
    FIELD_ASSIGN,
    FIELD_REMOVE,
    FIELD_RESET,
    FIELD_RESET_ALL,
    FIELD_WRITE,
    FIELD_READ,
};

constexpr wchar_t FIXED_TITLE[] = L"決まった操作";
constexpr std::pair<const wchar_t*, const wchar_t*> GESTURES[] = {
    {L"視点を動かす", L"中ボタンのドラッグ"},
    {L"指した所を拡大・縮小", L"Ctrl＋ホイール、二本指"},
    {L"拡大・縮小", L"ホイール"},
    {L"描きかけの線をやめる", L"Esc、右ボタン"},
    {L"レイヤーだけを表示", L"Alt＋目のクリック"},
    {L"パネルへ移る、絵に戻る", L"Tab、Esc"},
};
/// Keys that mean something of their own wherever they are pressed.
constexpr int FIXED_KEYS[] = {VK_Tab, VK_Escape, VK_Space};

constexpr TSharedKind FILE_KIND{L"ショートカット", L"vellumcraft", L"keys"};

const THeldCommand* FindHeld(int nCommand) {
    const auto held = GetHeldCommands();
    const auto it = std::ranges::find(held, nCommand, &THeldCommand::nCommand);
    return it == held.end() ? nullptr : &*it;
}

bool IsBare(const TKey& key) { return key == TKey{key.nKey}; }

bool IsFixed(const TKey& key) {
    return !key.bControl && !key.bAlt && std::ranges::count(FIXED_KEYS, key.nKey) != 0;
}

} // namespace

CShortcutPage::CShortcutPage(const TConfigOutside& outside)
    : CConfigPage(outside), m_shortcuts(outside.shortcuts) {
    for (const TMenuItem& popup : outside.vCommands) {
        std::vector<TRow> vRows;
        AddRows(popup.vChildren, {}, vRows);
        AddGroup(PlainTextOf(popup.strText), vRows);
    }
    std::vector<TRow> vFixed;
    for (const auto& [pszText, pszKeys] : GESTURES) vFixed.push_back({pszText, 0, pszKeys});
    AddGroup(FIXED_TITLE, vFixed);
    m_idxSelected = m_vRows.size();
}

void CShortcutPage::AddRows(const std::vector<TMenuItem>& vMenu, const std::wstring& strPath,
                            std::vector<TRow>& vRows) {
    for (const TMenuItem& item : vMenu) {
        const std::wstring strText = strPath + PlainTextOf(item.strText);
        if (item.nId != 0) {
            const THeldCommand* pHeld = FindHeld(item.nId);
            vRows.push_back({strText, item.nId,
                             !pHeld                       ? L""
                             : pHeld->nFixedKey == VK_Alt ? L"Alt"
                                                          : L"Space",
                             false});
        }
        AddRows(item.vChildren, strText + L"：", vRows);
    }
}

// Groups of the same title are one.
void CShortcutPage::AddGroup(const std::wstring& strTitle, const std::vector<TRow>& vRows) {
    auto it =
        std::ranges::find_if(m_vRows, [&](const TRow& row) { return row.bTitle && row.strText == strTitle; });
    if (it == m_vRows.end()) {
        m_vRows.push_back({strTitle, 0, {}, true});
        it = m_vRows.end() - 1;
    }
    it = std::find_if(it + 1, m_vRows.end(), [](const TRow& row) { return row.bTitle; });
    m_vRows.insert(it, vRows.begin(), vRows.end());
}

std::vector<TPanelControl> CShortcutPage::MakeControls() {
    using enum TPanelControl::EKind;
    const auto button = [](int nId, const wchar_t* pszText, bool bSameLine) -> TPanelControl {
        return {.kind = Button, .nId = nId, .strText = pszText, .bSameLine = bSameLine};
    };
    return {{.kind = Page, .nId = FIELD_PAGE, .strText = L"ショートカット", .strName = "Page_EnvShortcut"},
            {.kind = Text, .nId = FIELD_FILTER, .strLabel = L"絞り込み", .bLive = true, .strName = "filter"},
            {.kind = Tree, .nId = FIELD_LIST, .nValue = -1, .szView = {420, 300}, .strName = "commands"},
            {.kind = Key, .nId = FIELD_KEY, .strLabel = L"キー", .strName = "key"},
            {.kind = Label, .nId = FIELD_CONFLICT},
            button(FIELD_ASSIGN, L"割り当てる", false),
            button(FIELD_REMOVE, L"キーを外す", true),
            button(FIELD_RESET, L"既定に戻す", true),
            button(FIELD_WRITE, L"書き出す...", false),
            button(FIELD_READ, L"読み込む...", true),
            button(FIELD_RESET_ALL, L"すべて既定に戻す", true)};
}

std::wstring CShortcutPage::GetKeyTexts(const TRow& row) const {
    if (row.nCommand == 0) return row.strFixed;
    const std::wstring strKeys = NamesOfKeys(m_shortcuts.GetKeys(row.nCommand));
    return row.strFixed + (row.strFixed.empty() || strKeys.empty() ? L"" : L", ") + strKeys;
}

std::wstring CShortcutPage::GetNameOf(int nCommand) const {
    const auto it = std::ranges::find(m_vRows, nCommand, &TRow::nCommand);
    return it == m_vRows.end() ? std::wstring() : it->strText;
}

int CShortcutPage::GetSelected() const {
    return m_idxSelected < m_vRows.size() ? m_vRows[m_idxSelected].nCommand : 0;
}

std::wstring CShortcutPage::DescribeKey() const {
    if (m_key.nKey == 0) return L"一覧の行を選び、キーの欄でキーを押してください。";
    if (IsFixed(m_key)) return NameOfKey(m_key) + L" は決まった操作のキーです。";
    const int nSelected = GetSelected();
    if (FindHeld(nSelected) && !IsBare(m_key))
        return L"押している間のキーには Ctrl、Shift、Alt を付けられません。";
    const int nOwner = m_shortcuts.FindCommand(m_key);
    if (nOwner == 0) return NameOfKey(m_key) + L" は空いています。";
    if (nOwner == nSelected) return NameOfKey(m_key) + L" はこの行のキーです。";
    return FormatText(L"%1% は「%2%」のキーです。割り当てるとそちらから外れます。",
                      {NameOfKey(m_key), GetNameOf(nOwner)});
}

bool CShortcutPage::CanAssign() const {
    const int nSelected = GetSelected();
    return nSelected != 0 && m_key.nKey != 0 && !IsFixed(m_key) && (!FindHeld(nSelected) || IsBare(m_key)) &&
           m_shortcuts.FindCommand(m_key) != nSelected;
}

bool CShortcutPage::Matches(const TRow& row) const {
    const auto lower = [](const std::wstring& str) { return boost::algorithm::to_lower_copy(str); };
    return boost::algorithm::contains(lower(row.strText + L' ' + GetKeyTexts(row)),
                                      lower(Find(FIELD_FILTER).strText));
}

void CShortcutPage::FillTree() {
    const bool bFiltered = !Find(FIELD_FILTER).strText.empty();
    TPanelControl& list = Find(FIELD_LIST);
    list.vTree.clear();
    list.nValue = -1;
    m_vShown.clear();
    const auto add = [&](size_t idx, TTreeRow row) {
        if (idx == m_idxSelected) list.nValue = static_cast<int>(m_vShown.size());
        m_vShown.push_back(idx);
        list.vTree.push_back(std::move(row));
    };
    size_t idxTitle = 0;
    bool bTitled = false, bClosed = false;
    const auto addTitle = [&] {
        if (!std::exchange(bTitled, true))
            add(idxTitle,
                {.strText = m_vRows[idxTitle].strText, .fold = bClosed ? EFold::Closed : EFold::Open});
    };
    for (size_t idx = 0; idx < m_vRows.size(); ++idx) {
        const TRow& row = m_vRows[idx];
        if (row.bTitle) {
            idxTitle = idx;
            bTitled = false;
            bClosed = !bFiltered && m_setClosed.contains(idx);
            if (!bFiltered) addTitle();
            continue;
        }
        // The selected line stays when its keys have changed.
        if (bClosed || (idx != m_idxSelected && !Matches(row))) continue;
        addTitle();
        add(idx,
            {.strText = row.strText, .strNote = GetKeyTexts(row), .nDepth = 1, .bDim = row.nCommand == 0});
    }
    if (list.nValue < 0) m_idxSelected = m_vRows.size();
}

void CShortcutPage::Show() {
    FillTree();
    const int nSelected = GetSelected();
    Find(FIELD_KEY).strText = m_key.nKey ? NameOfKey(m_key) : L"";
    Find(FIELD_CONFLICT).strText = DescribeKey();
    Find(FIELD_ASSIGN).bEnabled = CanAssign();
    const std::vector<TKey> vKeys = m_shortcuts.GetKeys(nSelected);
    Find(FIELD_REMOVE).bEnabled = nSelected != 0 && !vKeys.empty();
    Find(FIELD_RESET).bEnabled = nSelected != 0 && vKeys != CShortcuts::GetDefault().GetKeys(nSelected);
    Find(FIELD_RESET_ALL).bEnabled = !(m_shortcuts == CShortcuts::GetDefault());
}

void CShortcutPage::OnControl(TPanelControl& control) {
    const int nField = control.nId % IDS;
    if (nField == FIELD_LIST) {
        const auto nRow = static_cast<size_t>(control.nValue);
        if (nRow < m_vShown.size()) m_idxSelected = m_vShown[nRow];
    } else if (nField == FIELD_KEY) {
        m_key = KeyOfValue(control.nValue);
    } else if (nField != FIELD_FILTER) {
        Press(nField);
    } else if (m_idxSelected < m_vRows.size() && !Matches(m_vRows[m_idxSelected])) {
        m_idxSelected = m_vRows.size();
    }
    Show();
}

void CShortcutPage::Press(int nButton) {
    const int nSelected = GetSelected();
    if (nButton == FIELD_RESET_ALL) m_shortcuts = CShortcuts::GetDefault();
    const TConfigOutside& outside = GetOutside();
    if (nButton == FIELD_WRITE)
        WriteSharedFile(outside.platform, outside.pOwner, FILE_KIND, m_shortcuts.Format());
    if (nButton == FIELD_READ)
        ReadSharedFile(outside.platform, outside.pOwner, FILE_KIND,
                       [this](std::string_view strText) { Take(strText); });
    if (nSelected == 0) return;
    if (nButton == FIELD_ASSIGN && CanAssign()) m_shortcuts.Assign(m_key, nSelected);
    if (nButton == FIELD_RESET) m_shortcuts.Reset(nSelected);
    if (nButton != FIELD_REMOVE) return;
    // The one in the field, where it is one of this command's; otherwise all.
    if (m_shortcuts.FindCommand(m_key) == nSelected)
        m_shortcuts.Remove(m_key);
    else
        m_shortcuts.Clear(nSelected);
}

void CShortcutPage::OnFold(int nRow, bool bClosed) {
    if (nRow < 0 || static_cast<size_t>(nRow) >= m_vShown.size()) return;
    const size_t idx = m_vShown[static_cast<size_t>(nRow)];
    if (bClosed)
        m_setClosed.insert(idx);
    else
        m_setClosed.erase(idx);
    Show();
}

void CShortcutPage::Take(std::string_view strText) {
    CShortcuts shortcuts = CShortcuts::Parse(strText);
    if (shortcuts == CShortcuts()) throw deserialize_error();
    for (const int nKey : FIXED_KEYS)
        for (const bool bShift : {false, true}) shortcuts.Remove({nKey, false, bShift});
    m_shortcuts = shortcuts;
}

void CShortcutPage::Apply() {
    CShortcuts& shortcuts = GetOutside().shortcuts;
    if (m_shortcuts == shortcuts) return;
    shortcuts = m_shortcuts;
    shortcuts.Write(GetOutside().settings);
}
