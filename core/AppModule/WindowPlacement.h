// Window rectangles saved on closing, in the "Windows\..." sections of the settings.
#pragma once

#include "core/Base/Geometry.h"

#include <string>
#include <vector>

/// The saved rectangle of a window ("Main", "Canvas"); `rcDefault` when there is none or its size is not
/// positive.
CRect ReadPlacement(const std::wstring& strWindow, const CRect& rcDefault);
void WritePlacement(const std::wstring& strWindow, const CRect& rc);

/// Moves a rectangle into the screen that shows most of it, or the first screen when none shows any of it.
CRect PlaceOnScreen(const CRect& rc, const std::vector<CRect>& vScreens);
