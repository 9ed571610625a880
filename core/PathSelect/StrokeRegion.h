// A region of the canvas that strokes are selected by.
#pragma once

#include "core/PathObject/PathObject.h"

/// The inside of a closed polygon, by even and odd. Positions are path units; the edge belongs to the region.
/// A path's shape is its committed ink.
class CStrokeRegion {
public:
    /// Fewer than three different corners hold and touch what lies on the lines between them.
    explicit CStrokeRegion(std::vector<CPoint> vCorners);
    /// The rectangle between two opposite corners.
    CStrokeRegion(CPoint ptFrom, CPoint ptTo);

    /// The box around the region, at least one unit each way.
    const CRect& GetBounds() const { return m_rcBounds; }
    bool Contains(CPoint pt) const;
    /// True when the whole shape lies inside.
    bool Holds(const CPathObject& path) const;
    /// True when some of the shape lies inside.
    bool Touches(const CPathObject& path) const;

private:
    /// An edge, the upper end first.
    struct TEdge {
        CPoint ptUpper, ptLower;
    };
    bool CrossesEdge(CPoint ptFrom, CPoint ptTo) const;
    size_t BandAt(int32_t y) const;

    std::vector<CPoint> m_vCorners;
    CRect m_rcBounds;
    int32_t m_nBand = 1;                      ///< the height of a band
    std::vector<std::vector<TEdge>> m_vBands; ///< the edges that meet each, from the top
};
