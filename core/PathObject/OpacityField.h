// The opacity of a stroke over the plane.
#pragma once

#include "core/PathOutline/OutlineRibs.h"
#include "core/RasterBuffer/AlphaBuffer.h"

#include <boost/core/noncopyable.hpp>
#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

/// Each pixel has the highest opacity of the stroke's cross-sections that reach its middle, up to a pixel
/// beyond the edges; a pixel that none reaches (of an end, or outside a corner) that of the nearest place of
/// the centre line. So a stroke that crosses itself stays even. All is exact: a pixel's opacity depends on
/// the cross-sections only.
class COpacityField : boost::noncopyable {
public:
    /// At least one cross-section.
    explicit COpacityField(std::vector<TOutlineRib> vRibs);

    /// Raises a tile of a plane whose origin is the canvas's corner to coverage times opacity. `fnFill` adds
    /// the stroke's coverage, which lies inside `rcPath` (path units) and the filter's reach, to an empty
    /// tile.
    void Raise(CAlphaBlock8& tile, const CRect& rcPath,
               const boost::function<void(CAlphaBlock8&)>& fnFill) const;
    /// The mean along the centre line, 0 to 255, rounded.
    uint32_t GetMean() const;

    friend bool operator==(const COpacityField& a, const COpacityField& b) { return a.m_vRibs == b.m_vRibs; }

private:
    // Consecutive cross-sections, with the first of the next group.
    struct TGroup {
        size_t nFirst, nEnd;
        CRect rcReach;  ///< of what they reach, in outline units
        CRect rcCentre; ///< of their places on the centre line
    };
    class CPixels;

    void Extend();
    // The cross-section whose place on the centre line is the nearest, of several the one of the highest
    // opacity, whichever is guessed.
    size_t FindNearest(CPoint pt, size_t nGuess) const;
    void Multiply(CAlphaBlock8& tile) const;

    std::vector<TOutlineRib> m_vRibs;
    std::vector<std::array<CPoint, 2>> m_vEnds; ///< of the cross-sections, a pixel beyond the edges
    std::vector<TGroup> m_vGroups;
    std::vector<CRect> m_vWide; ///< the centres of wide groups
};

/// True for two that make the same picture; null for none.
bool AreSame(const boost::shared_ptr<const COpacityField>& spA,
             const boost::shared_ptr<const COpacityField>& spB);
