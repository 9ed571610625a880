// The area that a way's discs sweep from each point to the next.
#pragma once

#include "core/PathFit/CellGrid.h"
#include "core/PathFit/InkWay.h"

#include <optional>

/// Tells how places lie to the area of a way of at least two points.
class CInkArea {
public:
    /// `dMost` is the largest distance that is asked for.
    CInkArea(const TInkWay& vWay, double dMost);

    /// Whether the place is within `d` of the area; for a negative `d`, so deep inside it. The search begins
    /// at the stretch `idxFound`, which becomes the one that was found.
    bool HasNear(TInkVector pt, double d, size_t& idxFound) const;
    /// How deep the place lies in the area of a stretch; nullopt when it lies in none deeper than `dLeast`.
    /// Other stretches may cover it more.
    std::optional<double> DepthAt(TInkVector pt, double dLeast) const;
    /// The number of the stretch whose edge is nearest.
    size_t NearestEdge(TInkVector pt) const;
    /// True when the way comes nowhere else near a point of it, as neither a crossing line nor a tight bend
    /// does: only the discs around the point may cover its surroundings.
    bool IsAlone(size_t idx) const;

private:
    // From one point of the way to the next.
    struct TStretch {
        TInkVector from;
        TInkVector way;
        double dInverse; ///< of the way's square, 0 for none
        double dHalf;
        double dMore; ///< of the half-width to the next point

        bool HasNear(TInkVector pt, double d) const;
        double DepthAt(TInkVector pt) const;
    };
    static TStretch StretchOf(TInkVector from, TInkVector to, double dHalf, double dMore);
    template <class Visitor>
    bool VisitNear(TInkVector pt, double d, Visitor visit) const;

    void FindAlone(const TInkWay& vWay, double dMost);

    std::vector<TStretch> m_vStretches;
    std::vector<bool> m_vAlone;      ///< by blocks
    std::vector<TStretch> m_vBlocks; ///< each around BLOCK stretches
    CCellGrid m_grid;                ///< of the blocks
};
