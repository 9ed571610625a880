#include "core/ConfigDialog/ConfigDialog.h"

#include "core/ConfigDialog/MemoryPage.h"
#include "core/ConfigDialog/PenPage.h"
#include "core/ConfigDialog/ShortcutPage.h"
#include "core/ConfigDialog/TabletPage.h"

#include <algorithm>

CConfigDialog::CConfigDialog(const TConfigOutside& outside) {
    m_vPages.push_back(std::make_unique<CTabletPage>(outside));
    m_vPages.push_back(std::make_unique<CPenPage>(outside));
    m_vPages.push_back(std::make_unique<CMemoryPage>(outside));
    m_vPages.push_back(std::make_unique<CShortcutPage>(outside));
    int nFirst = 0;
    for (const auto& pPage : m_vPages) {
        nFirst += CConfigPage::IDS;
        for (TPanelControl& control : pPage->MakeControls()) {
            control.nId += nFirst;
            m_vControls.push_back(std::move(control));
        }
        pPage->Open([this, nFirst](int nId) -> TPanelControl& { return Find(nFirst + nId); });
    }
}

CConfigPage& CConfigDialog::PageOf(int nId) const {
    return *m_vPages.at(static_cast<size_t>(nId / CConfigPage::IDS - 1));
}

void CConfigDialog::OnControl(TPanelControl& control) { PageOf(control.nId).OnControl(control); }
void CConfigDialog::OnFold(int nId, int nRow, bool bClosed) { PageOf(nId).OnFold(nRow, bClosed); }
void CConfigDialog::OnPointer(int nId, EMessage id, CPoint pt) { PageOf(nId).OnPointer(id, pt); }
void CConfigDialog::OnPen(int nView, const TPenReport& report) { PageOf(nView).OnPen(report); }

bool CConfigDialog::OnOk(IWindow*) {
    if (!std::ranges::all_of(m_vPages, [](const auto& pPage) { return pPage->Check(); })) return false;
    for (const auto& pPage : m_vPages) pPage->Apply();
    return true;
}
