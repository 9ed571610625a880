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

/// The status pane's text of a zoom value.
std::wstring FormatScale(uint16_t uZoom);
