// From a stroke of varying width to the closed outlines that are filled. Parameters `t` are 16.16: anchor i
// lies at i * BEZIER_T_RESOLUTION.
//
// All arithmetic is on whole numbers, in outline units, sixteenths of a path unit: in path units themselves
// the rounding of short pieces would turn their tangents by several degrees and leave a thick stroke with
// corners. Only the finished outlines are rounded to path units.
#pragma once

#include "core/Bezier/Bezier.h"

#include <array>
#include <vector>

/// Outline units to a path unit, which is an eighth of a canvas pixel.
constexpr int32_t OUTLINE_UNIT = 16;

/// Sides of a stroke, seen along the path on the screen.
enum EPathSide : size_t { SIDE_LEFT, SIDE_RIGHT };

/// An anchor with its handles relative to it; a missing handle is zero.
struct TOutlinePoint {
    CPoint anchor;
    CPoint back;
    CPoint fore;
};

using TOutlinePoints = std::vector<TOutlinePoint>;

/// The curve from one anchor to the next. Raises boost::numeric::bad_numeric_cast when a handle's end leaves
/// 32 bits.
CBezier SegmentOf(const TOutlinePoint& from, const TOutlinePoint& to);

/// The half-widths fixed at `t`, by side.
struct TOutlineWidth {
    uint32_t t;
    std::array<uint32_t, 2> auWidth;
};

/// The opacity fixed at `t`, 0 to 255.
struct TOutlineAlpha {
    uint32_t t;
    uint32_t uAlpha;
};

/// A cut across the stroke.
struct TOutlineCut {
    uint32_t t;
    int nAngle; ///< degrees between centre line and cut, 90 square
};

/// The irregular hand: random widths added along the stroke.
struct TOutlineWave {
    uint32_t uStep = 0;  ///< wanted distance between two
    uint32_t uWidth = 0; ///< the most that is added or taken away; 0 for no wave

    friend bool operator==(const TOutlineWave&, const TOutlineWave&) = default;
};

/// The shape of one end of a stroke, in outline units.
class IOutlineTerm {
public:
    virtual ~IOutlineTerm() = default;
    /// The end's half-width on one side, where a wave starts.
    virtual uint32_t GetWidth(EPathSide side) const = 0;
    /// The half-width as a curve over the arc length, from the end to the first width point `nLength` away,
    /// where it is `nWidth`.
    virtual CBezier WidthCurve(int32_t nLength, int32_t nWidth, EPathSide side) const = 0;
    /// May move a side's outermost point; `piece` leads away from the end.
    virtual void AdjustEnd(TOutlinePoint& point, const CBezier& piece) const = 0;
    /// The points from `p`, the last of one side, to `q`, the first of the other, both included.
    virtual TOutlinePoints BuildTip(TOutlinePoint p, TOutlinePoint q) const = 0;
};

/// All that an outline is made of, in outline units.
struct TOutlineSource {
    TOutlinePoints vAnchors;
    std::vector<TOutlineWidth> vWidths; ///< sorted by `t`, each `t` once, none behind the last anchor
    std::vector<TOutlineCut> vCuts;     ///< sorted by `t`
    std::vector<TOutlineAlpha> vAlphas; ///< sorted by `t`; none for an opaque stroke
    uint32_t uWidth = 0;                ///< half-width without `vWidths`
    TOutlineWave wave;
    const IOutlineTerm* pBegin = nullptr;
    const IOutlineTerm* pEnd = nullptr;
};

/// A visible stretch of a stroke, in path units.
struct TStretchOutline {
    TPolyBezier vCurve; ///< closed: the visible outline
    /// Closed too: areas where the stroke is wider than its bend, which the outline may cancel in part.
    /// Filled with the outline as one shape.
    std::vector<TPolyBezier> vFolds;

    friend bool operator==(const TStretchOutline&, const TStretchOutline&) = default;
};

/// The closed curve through the points, in their order; two points at the same place without handles make no
/// closing segment.
TPolyBezier CloseOutline(const TOutlinePoints& vPoints);

/// A position or a width of path units in outline units; raises boost::numeric::bad_numeric_cast when it
/// leaves 32 bits.
CPoint ToOutline(CPoint pt);
uint32_t ToOutline(uint32_t uWidth);

/// The parameter of the path's last anchor.
inline uint32_t LastParameter(const TOutlinePoints& vAnchors) {
    return vAnchors.empty() ? 0 : static_cast<uint32_t>(vAnchors.size() - 1) * BEZIER_T_RESOLUTION;
}
