// Where windows were when they closed: the "Windows\..." sections of the settings.
#pragma once

#include "core/Base/Geometry.h"

#include <string>

/// The rectangle kept for a window ("Main", "Canvas"), `rcDefault` for what was never written. A kept
/// rectangle without a positive size counts as never written.
CRect ReadPlacement(const std::wstring& strWindow, const CRect& rcDefault);
void WritePlacement(const std::wstring& strWindow, const CRect& rc);
