// The history panel: every state of the active document that undo and redo can reach.
#pragma once

#include "core/History/History.h"
#include "core/Panels/Panel.h"

class CHistoryWnd : public CPanel {
public:
    CHistoryWnd(const wchar_t* pszSection, const TPanelOutside& outside);
    std::wstring GetTitle() const override { return L"ヒストリー"; }

protected:
    void OnRefresh() override;
    void OnControl(TPanelControl& control) override;

private:
    void GoTo(int nRow);

    /// The newest done action of each row; null in the first, whose state is the oldest.
    std::vector<boost::weak_ptr<CHistory>> m_vStates;
};
