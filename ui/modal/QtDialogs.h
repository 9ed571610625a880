// Modal dialogs from their models: one row a control, OK and Cancel, an extra button where the model has one.
#pragma once

#include "core/Platform/Dialogs.h"

class CQtDialogs : public IDialogs {
public:
    bool Run(IWindow* pOwner, CDialogModel& dialog) override;
};
