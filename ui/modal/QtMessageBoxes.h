// Message boxes.
#pragma once

#include "core/Platform/Dialogs.h"

#include <memory>

class CQtMessageBoxes : public IMessageBoxes {
public:
    /// Returns Cancel (Ok if there is no other button) when no window can be shown, or not now: during
    /// painting the box is deferred.
    EBoxAnswer Show(IWindow* pOwner, const std::wstring& strText, const std::wstring& strTitle,
                    EBoxKind kind) override;

private:
    /// Shows the box when control returns to the event loop: a failed paint is reported after it.
    void ShowLater(const std::wstring& strText, const std::wstring& strTitle, EBoxKind kind);

    std::shared_ptr<bool> m_spWaiting; ///< a box is pending or shown; reset with this object
};
