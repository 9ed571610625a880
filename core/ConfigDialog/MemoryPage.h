// The page of undo steps and snapshots.
#pragma once

#include "core/ConfigDialog/ConfigPage.h"

class CMemoryPage : public CConfigPage {
public:
    using CConfigPage::CConfigPage;
    std::vector<TPanelControl> MakeControls() override;
    bool Check() override;
    void Apply() override;
};
