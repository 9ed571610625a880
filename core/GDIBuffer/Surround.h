// The neutral grey around a picture.
#pragma once

#include "core/GDIBuffer/GDIBuffer.h"

/// Fills everything outside of a picture's rectangle, with an edge of one pixel around the picture.
void DrawSurround(CGDIBuffer& target, const CRect& rcPicture);
