// What is known of a kind of tool before one is made.
#pragma once

#include "core/Platform/Cursor.h"

struct TToolInfo {
    int nId;                ///< the number by which settings and scripts know it
    const wchar_t* pszName; ///< also the text of its undo steps
    const char* pszIcon;    ///< resource of the tool panel's icon
    ECursor cursor;         ///< over the canvas where it can work
};
