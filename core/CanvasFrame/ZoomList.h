// The zoom box's lines.
#pragma once

#include <cstdint>
#include <span>
#include <string>

struct TZoomEntry {
    const wchar_t* pszText;
    uint16_t uZoom; ///< 48ths
};

/// All lines, from the largest magnification to the smallest.
std::span<const TZoomEntry> GetZoomList();

/// The line of a zoom value, -1 when the list has none.
int FindZoomLine(uint16_t uZoom);

/// The zoom value `nStep` lines below (or, negative, above) a value; for one that the list does not have, the
/// next line in that direction counts as the first. 0 beyond the list's ends.
uint16_t StepZoom(uint16_t uZoom, int nStep);

/// A zoom value in whole percent.
std::wstring FormatPercent(uint16_t uZoom);

/// The status pane's text of a zoom value.
std::wstring FormatScale(uint16_t uZoom);
