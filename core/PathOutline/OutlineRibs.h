// A stroke's cross-sections, which spread the opacity of its centre line over its width.
#pragma once

#include "core/PathOutline/OutlineSide.h"

/// A cross-section; positions in outline units.
struct TOutlineRib {
    static constexpr uint32_t ALPHA_UNIT = 256; ///< steps to a level of opacity

    CPoint left; ///< on the stroke's left edge
    CPoint right;
    CPoint centre;   ///< on the centre line
    uint32_t uAlpha; ///< 0 to 255 times ALPHA_UNIT

    friend bool operator==(const TOutlineRib&, const TOutlineRib&) = default;
};

/// The cross-sections along a stroke from its start on, at least one; neighbours are about a canvas pixel
/// apart where the stroke is not too long for that. The opacity is eased over the arc length between
/// `vAlphas` (sorted by `t`, at least one), constant before the first and behind the last.
std::vector<TOutlineRib> BuildRibs(const TSide& left, const TSide& right,
                                   const std::vector<TOutlineAlpha>& vAlphas);
