// Message boxes.
#pragma once

#include "core/Platform/Dialogs.h"

#include <memory>

class CQtMessageBoxes : public IMessageBoxes {
public:
    /// Answers Cancel (Ok where nothing else is offered) when no window can be shown, or none now: while
    /// something is painted the box comes later.
    EBoxAnswer Show(IWindow* pOwner, const std::wstring& strText, const std::wstring& strTitle,
                    EBoxKind kind) override;

private:
    /// Shows the box when control is back in the event loop: a failed paint is told after it.
    void ShowLater(const std::wstring& strText, const std::wstring& strTitle, EBoxKind kind);

    std::shared_ptr<bool> m_spWaiting; ///< a box waits or shows; gone with this object
};
