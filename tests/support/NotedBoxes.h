// Message boxes that are only noted.
#pragma once

#include "core/Platform/Dialogs.h"

struct CNotedBoxes : IMessageBoxes {
    EBoxAnswer Show(IWindow*, const std::wstring& strText, const std::wstring& strTitle, EBoxKind) override {
        m_str = strText + strTitle;
        return EBoxAnswer::Ok;
    }
    std::wstring m_str; ///< the last one's text and title
};
