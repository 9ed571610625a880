// Where windows were when they closed: the "Windows\..." sections of the settings.
#pragma once

#include "core/Base/Geometry.h"

#include <string>
#include <vector>

/// The rectangle kept for a window ("Main", "Canvas"), `rcDefault` for what was never written. A kept
/// rectangle without a positive size counts as never written.
CRect ReadPlacement(const std::wstring& strWindow, const CRect& rcDefault);
void WritePlacement(const std::wstring& strWindow, const CRect& rc);

/// Moves a rectangle into the screen that shows most of it, the first one when none does.
CRect PlaceOnScreen(const CRect& rc, const std::vector<CRect>& vScreens);
