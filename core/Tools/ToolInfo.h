// The description of a kind of tool, available without an instance.
#pragma once

#include "core/Platform/Cursor.h"

#include <cstdint>
#include <span>

/// A hint for the status line: the effect of pointer and keys while these modifiers are held.
struct TToolHint {
    uint32_t uModifiers; ///< POINTER_CONTROL, POINTER_SHIFT, POINTER_ALT
    const wchar_t* pszText;
};

struct TToolInfo {
    int nId;                               ///< the number used by settings and scripts
    const wchar_t* pszName;                ///< also the label of its undo steps
    const char* pszIcon;                   ///< resource of the tool panel's icon
    ECursor cursor;                        ///< the cursor over a canvas that it can work on
    std::span<const TToolHint> hints = {}; ///< of the idle tool; the first one is that of no modifier
};
