// The projective mapping of a rectangle of pixels onto a quadrilateral.
#pragma once

#include "core/Base/Geometry.h"
#include "core/RasterKernel/SampleKernel.h"

#include <array>
#include <optional>

/// A position in pixels; pixel (x, y) reaches from there to (x + 1, y + 1).
struct TPosition {
    double x = 0;
    double y = 0;

    friend bool operator==(const TPosition&, const TPosition&) = default;
    friend TPosition operator+(TPosition a, TPosition b) { return {a.x + b.x, a.y + b.y}; }
    friend TPosition operator-(TPosition a, TPosition b) { return {a.x - b.x, a.y - b.y}; }
    friend TPosition operator*(TPosition a, double d) { return {a.x * d, a.y * d}; }
};

/// The third component of the product of two vectors: positive when `b` lies clockwise of `a` on the screen.
inline double Cross(TPosition a, TPosition b) { return a.x * b.y - a.y * b.x; }

/// The corners that the left top, right top, right bottom and left bottom of a rectangle go to.
using TQuad = std::array<TPosition, 4>;

/// The corners of a rectangle itself.
TQuad QuadOf(const CRect& rc);
/// True when the mapping neither folds the picture over nor makes it vanish.
bool IsQuadUsable(const TQuad& quad);
/// The pixels that the quadrilateral touches, as far as they lie in `rcLimit`.
CRect BoundsOf(const TQuad& quad, const CRect& rcLimit);

/// A mapping that only moves whole pixels: turned by quarters, flipped, shifted. A pixel at (x, y) comes from
/// ptFirst + x * ptRight + y * ptDown.
struct TPixelMove {
    CPoint ptFirst;
    CPoint ptRight;
    CPoint ptDown;

    CPoint operator()(CPoint pt) const {
        return {ptFirst.x + pt.x * ptRight.x + pt.y * ptDown.x,
                ptFirst.y + pt.x * ptRight.y + pt.y * ptDown.y};
    }
};

/// The mapping of a rectangle to a usable quadrilateral. All is computed by operations that have the same
/// result on every machine.
class CTransformMap {
public:
    CTransformMap(const CRect& rcSource, const TQuad& quad);

    const CRect& GetSource() const { return m_rcSource; }
    const TQuad& GetQuad() const { return m_quad; }
    /// The mapping back as a move of whole pixels; nullopt for any other mapping.
    const std::optional<TPixelMove>& GetPixelMove() const { return m_move; }

    /// A position mapped back to the source. `dDepth` is positive for all positions in the quadrilateral;
    /// where it is not the position is meaningless.
    TPosition MapBack(TPosition pt, double& dDepth) const {
        const double x = pt.x - m_ptBase.x, y = pt.y - m_ptBase.y;
        dDepth = m_adBack[6] * x + m_adBack[7] * y + m_adBack[8];
        return {m_rcSource.left + (m_adBack[0] * x + m_adBack[1] * y + m_adBack[2]) / dDepth,
                m_rcSource.top + (m_adBack[3] * x + m_adBack[4] * y + m_adBack[5]) / dDepth};
    }
    /// The line of positions at height `y` mapped back, relative to the source's corner; where it lies in x,
    /// and what is to be done with the results, is left to the caller.
    TSampleLine GetLine(double y) const;
    /// How far the position in the source moves when one with a positive depth moves by a pixel.
    struct TSteps {
        TPosition right, down;
    };
    TSteps GetSteps(TPosition pt) const;
    /// The part of the pixel at `pt` that lies inside the quadrilateral, 0 to 256.
    int GetCover(CPoint pt) const;
    /// True when all pixels of a rectangle lie inside, or (false) when none may: nullopt when some may.
    std::optional<bool> Holds(const CRect& rc) const;

private:
    /// The least signed distance of a position from the edges, positive inside.
    double GetDepthInside(TPosition pt) const;

    struct TEdge {
        TPosition normal; ///< of length 1, to the inside
        double dOffset;
    };

    CRect m_rcSource;
    TQuad m_quad;
    TPosition m_ptBase; ///< subtracted from positions, which keeps the numbers small
    std::array<double, 9> m_adBack;
    std::array<TEdge, 4> m_aEdges;
    std::optional<TPixelMove> m_move;
};
