// How far an outline is from the area that a way's discs sweep.
#pragma once

#include "core/Bezier/Bezier.h"
#include "core/PathFit/InkEdges.h"

class CInkOutline;

/// Finds where outlines leave the edge of what was drawn. Requires at least two points; the way must outlive
/// it.
class CInkCheck {
public:
    /// `dMost` is the largest tolerance, at least `dTolerance`.
    CInkCheck(const TInkWay& vWay, double dTolerance, double dMost);
    CInkCheck(const TInkWay& vWay, double dTolerance) : CInkCheck(vWay, dTolerance, dTolerance) {}

    struct TFaults {
        /// The points of the way near which the shape is farther than the tolerance from the drawn area's
        /// edge: beyond it, or no outline near it. Sorted, each once. Holes are looked for where there are no
        /// others.
        std::vector<size_t> vPoints;
        size_t nGross = 0; ///< places where it is farther than the largest tolerance
    };
    TFaults Find(const std::vector<TPolyBezier>& vShape) const;

private:
    void FindUncovered(CInkOutline& outline, TFaults& faults) const;
    void FindSpikes(const CInkOutline& outline, TFaults& faults) const;
    void FindHoles(const std::vector<TPolyBezier>& vShape, CInkOutline& outline, TFaults& faults) const;

    const TInkWay& m_vWay;
    double m_dTolerance;
    double m_dMost;
    CInkArea m_area;
    std::vector<TInkEdge> m_vEdges;
};
