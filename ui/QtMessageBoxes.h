// Message boxes.
#pragma once

#include "core/Platform/Dialogs.h"

class CQtMessageBoxes : public IMessageBoxes {
public:
    /// Answers Cancel (Ok where nothing else is offered) when no window can be shown.
    EBoxAnswer Show(IWindow* pOwner, const std::wstring& strText, const std::wstring& strTitle,
                    EBoxKind kind) override;
};
