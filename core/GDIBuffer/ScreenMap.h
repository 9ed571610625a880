// The mapping of canvas pixels to the screen: the view record and its sampling tables.
#pragma once

#include "core/Base/Geometry.h"

#include <cstdint>
#include <vector>

/// A view: magnification, rotation and flips. Flips apply in canvas space, before the rotation.
struct TViewState {
    uint16_t uZoom = 48; ///< 48ths: 48 is 100 percent
    uint16_t uAngle = 0; ///< degrees: 0, 90, 180 or 270
    bool bFlipH = false;
    bool bFlipV = false;

    friend bool operator==(const TViewState&, const TViewState&) = default;
};

/// A view reduced to 0 or 90 degrees: a half turn becomes both flips; at 90 degrees the vertical flip is
/// inverted, since x and y are exchanged first.
struct TNormalView {
    bool bSwap = false; ///< x and y are exchanged
    bool bFlipH = false;
    bool bFlipV = false;
};
TNormalView NormalizeView(const TViewState& view);

/// The size of a canvas under a view, in screen pixels: each side times zoom / 48, exchanged at 90 and 270
/// degrees, at least 1.
CSize ScaledSize(CSize szCanvas, const TViewState& view);

/// Nearest-sample tables for one view of a plane. Every screen pixel of the canvas shows exactly one canvas
/// pixel; shrinking by n takes sample n / 2 of each cell; a flipped view is the exact mirror of the
/// unflipped one.
class CScreenMap {
public:
    /// `ptOrigin` is the position of the scaled canvas's top-left corner in the target, `szTarget` the
    /// target's size; only the part of the canvas inside the target is mapped.
    CScreenMap(CSize szCanvas, CPoint ptOrigin, const TViewState& view, CSize szTarget);

    /// The target pixels that show the canvas; may be empty.
    const CRect& GetTargetRect() const { return m_rcTarget; }
    /// True when target rows run along canvas columns.
    bool IsSwapped() const { return m_bSwap; }
    /// Canvas coordinate of a target column (canvas y when swapped) or row (canvas x when swapped), for
    /// positions inside GetTargetRect. Monotonic in each direction.
    int32_t AtColumn(int32_t x) const { return m_vColumns[static_cast<size_t>(x - m_rcTarget.left)]; }
    int32_t AtRow(int32_t y) const { return m_vRows[static_cast<size_t>(y - m_rcTarget.top)]; }
    /// The target pixels that sample inside a canvas rectangle.
    CRect ToTarget(const CRect& rcCanvas) const;
    /// The smallest canvas rectangle around all samples of a target rectangle.
    CRect ToCanvas(const CRect& rcTarget) const;

private:
    CRect m_rcTarget;
    bool m_bSwap = false;
    std::vector<int32_t> m_vColumns;
    std::vector<int32_t> m_vRows;
};
