// How far an outline is from the area that a way's discs sweep.
#pragma once

#include "core/Bezier/Bezier.h"
#include "core/PathFit/CellGrid.h"
#include "core/PathFit/InkWay.h"

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
    // From one point of the way to the next.
    struct TStretch {
        TInkVector from;
        TInkVector way;
        double dInverse; ///< of the way's square, 0 for none
        double dHalf;
        double dMore; ///< of the half-width to the next point
    };
    struct TEdge {
        TInkVector pt;
        size_t idx;
        bool bLeft;
    };

    void FindUncovered(CInkOutline& outline, TFaults& faults) const;
    void FindSpikes(const CInkOutline& outline, TFaults& faults) const;
    void FindHoles(const std::vector<TPolyBezier>& vShape, CInkOutline& outline, TFaults& faults) const;
    // Whether the place is within `d` of the area of a stretch; negative `d` lie inside.
    static bool IsNear(const TStretch& stretch, TInkVector pt, double d);
    // The same for all stretches; the one that was found is looked at first the next time.
    bool IsWithin(TInkVector pt, double d, size_t& idxFound) const;
    // The point of the way that an edge's place belongs to.
    size_t WayAt(TInkVector pt) const;
    void AddEdges();
    void AddEdge(TInkVector pt, size_t idx, bool bLeft);

    const TInkWay& m_vWay;
    double m_dTolerance;
    double m_dMost;
    std::vector<TStretch> m_vStretches;
    CCellGrid m_grid;            ///< of the stretches
    std::vector<TEdge> m_vEdges; ///< places of the edge beside points of the way
};
