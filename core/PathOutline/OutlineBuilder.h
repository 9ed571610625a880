// From a stroke to its outlines.
#pragma once

#include "core/PathOutline/OutlineRibs.h"

/// Builds a stroke's outlines again and again while it changes. What the last builds made of the same values
/// is taken over, so that a build costs little where few of them changed; the outlines are those that a new
/// builder makes.
class COutlineBuilder {
public:
    /// The outlines of the visible stretches, from the path's start on. Cuts come in pairs: the stretch
    /// between the two of a pair is omitted. Without anchors there is none. Raises
    /// boost::numeric::bad_numeric_cast when a point exceeds 32 bits.
    std::vector<TStretchOutline> Build(const TOutlineSource& source);
    /// The cross-sections of the stroke that was built last; none without opacity marks.
    const std::vector<TOutlineRib>& GetRibs() const { return m_vRibs; }
    /// The runs, a side of a segment each, that the last build did not take over.
    size_t CountRuns() const {
        return m_aBuilders[SIDE_LEFT].CountRuns() + m_aBuilders[SIDE_RIGHT].CountRuns();
    }

private:
    CCentreLine m_line;
    std::array<CSideBuilder, 2> m_aBuilders; ///< by side
    size_t m_nWidths = 0;                    ///< of the last build
    std::vector<TOutlineRib> m_vRibs;        ///< the same
};
