// The page of an empty desktop program: new documents of common sizes, recent documents, work that can be
// recovered.
#pragma once

#include "core/Panels/Panel.h"
#include "core/Platform/Snapshots.h"

#include <functional>

class CRecentDocumentList;
class CRecentPictures;
class CRecovery;

/// Lists that the page shows; they must outlive it.
struct TStartLists {
    CRecentDocumentList& recent;
    CRecentPictures& pictures;
    CRecovery& recovery;
    std::function<void(const std::wstring& strName)>
        fnRestore; ///< opens a snapshot by the store's name for it
};

class CStartPage : public CPanel {
public:
    CStartPage(const TPanelOutside& outside, TStartLists lists);
    std::wstring GetTitle() const override { return L"スタート"; }
    /// The command that a Panel message to the page stands for, 0 for none.
    int FindCommand(const TMessage& msg);

protected:
    void OnRefresh() override;
    void OnControl(TPanelControl& control) override;

private:
    const TStartLists m_lists;
    std::vector<TLeftSnapshot> m_vLeft; ///< as the page shows them
};
