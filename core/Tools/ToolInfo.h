// The description of a kind of tool, available without an instance.
#pragma once

#include "core/Platform/Cursor.h"

struct TToolInfo {
    int nId;                ///< the number used by settings and scripts
    const wchar_t* pszName; ///< also the label of its undo steps
    const char* pszIcon;    ///< resource of the tool panel's icon
    ECursor cursor;         ///< the cursor over a canvas that it can work on
};
