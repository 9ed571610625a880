// How far an outline is from the area that a way's discs sweep.
#pragma once

#include "core/Bezier/Bezier.h"
#include "core/PathFit/CellGrid.h"
#include "core/PathFit/InkWay.h"

/// Finds where outlines leave the edge of what was drawn. Requires at least two points; the way must outlive
/// it.
class CInkCheck {
public:
    CInkCheck(const TInkWay& vWay, double dTolerance);

    /// The points of the way near which the shape is farther than the tolerance from the drawn area's edge:
    /// beyond it, or no outline near it. Sorted, each once.
    std::vector<size_t> FindFaults(const std::vector<TPolyBezier>& vShape) const;

    /// The number of places where it is.
    size_t CountFaults(const std::vector<TPolyBezier>& vShape) const { return FindAll(vShape).size(); }

private:
    std::vector<size_t> FindAll(const std::vector<TPolyBezier>& vShape) const;
    double DistanceTo(size_t idx, TInkVector pt) const;
    bool IsWithin(TInkVector pt, double d) const;
    // The point of the way that an edge's place belongs to.
    size_t WayAt(TInkVector pt) const;
    void AddEdge(TInkVector pt, size_t idx);

    struct TEdge {
        TInkVector pt;
        size_t idx;
    };
    const TInkWay& m_vWay;
    double m_dTolerance;
    CCellGrid m_grid;            ///< of the stretches from one point to the next
    std::vector<TEdge> m_vEdges; ///< places of the edge beside points of the way
};
