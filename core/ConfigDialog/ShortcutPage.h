// The page of the keys.
#pragma once

#include "core/Commands/Shortcuts.h"
#include "core/ConfigDialog/ConfigPage.h"

#include <set>

class CShortcutPage : public CConfigPage {
public:
    explicit CShortcutPage(const TConfigOutside& outside);

    std::vector<TPanelControl> MakeControls() override;
    void OnControl(TPanelControl& control) override;
    void OnFold(int nRow, bool bClosed) override;
    void Apply() override;

protected:
    void OnOpen() override { Show(); }

private:
    /// A line of the list: a group's title, a command, or a fixed gesture.
    struct TRow {
        std::wstring strText;
        int nCommand = 0;           ///< 0 for a title and a gesture
        std::wstring strFixed = {}; ///< keys that cannot be changed
        bool bTitle = false;
    };

    void AddRows(const std::vector<TMenuItem>& vMenu, const std::wstring& strPath, std::vector<TRow>& vRows);
    void AddGroup(const std::wstring& strTitle, const std::vector<TRow>& vRows);
    std::wstring GetKeyTexts(const TRow& row) const;
    std::wstring GetNameOf(int nCommand) const;
    /// The selected command, 0 for none.
    int GetSelected() const;
    std::wstring DescribeKey() const;
    bool CanAssign() const;
    bool Matches(const TRow& row) const;
    void Show();
    void FillTree();
    void Press(int nButton);
    void Take(std::string_view strText);

    CShortcuts m_shortcuts;
    std::vector<TRow> m_vRows;
    std::vector<size_t> m_vShown; ///< the row of each line of the tree
    std::set<size_t> m_setClosed; ///< titles
    size_t m_idxSelected;         ///< m_vRows.size() for none
    TKey m_key;                   ///< the key in the field
};
