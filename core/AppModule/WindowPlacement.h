// Window rectangles saved on closing, in the "Windows\..." sections of the settings.
#pragma once

#include "core/Base/Geometry.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// The saved rectangle of a window ("Main", "Canvas"); `rcDefault` when there is none or its size is not
/// positive.
CRect ReadPlacement(const std::wstring& strWindow, const CRect& rcDefault);
/// Writes the rectangle, and more values of the window's section, in one write.
void WritePlacement(const std::wstring& strWindow, const CRect& rc,
                    std::vector<std::pair<std::wstring, int32_t>> vMore = {});
/// Whether a window was maximised when it was closed; `bDefault` when none was closed.
bool ReadMaximized(const std::wstring& strWindow, bool bDefault);
/// The value for WritePlacement that ReadMaximized reads.
std::pair<std::wstring, int32_t> MaximizedValue(bool bMaximized);

/// Moves a rectangle into the screen that shows most of it, or the first screen when none shows any of it.
CRect PlaceOnScreen(const CRect& rc, const std::vector<CRect>& vScreens);

/// Moves a canvas frame down to the right until none of the others has its corner. It stays inside the area,
/// at whose end it begins at the top left again, and is not larger; an empty area limits nothing.
CRect PlaceInCascade(const CRect& rc, const std::vector<CRect>& vOthers, CSize szArea);
