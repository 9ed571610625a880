// The page of the tablet, which the dialog opens with.
#pragma once

#include "core/ConfigDialog/ConfigPage.h"

class CTabletPage : public CConfigPage {
public:
    using CConfigPage::CConfigPage;
    std::vector<TPanelControl> MakeControls() override;
    void Apply() override;
};
