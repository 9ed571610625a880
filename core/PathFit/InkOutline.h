// A shape's outline as straight lines.
#pragma once

#include "core/Bezier/Bezier.h"
#include "core/PathFit/CellGrid.h"

#include <optional>
#include <vector>

/// Finds the lines of an outline near a place, and whether a place lies within its closed curves. The first
/// curve leads around the whole stroke; the others fill its folds.
class CInkOutline {
public:
    struct TLine {
        TInkVector from;
        TInkVector to;
    };

    /// No line is farther from its curve than `dFlatness`, but for curves that need more than 64 lines.
    CInkOutline(const std::vector<TPolyBezier>& vShape, double dFlatness);

    /// The lines of all curves, one curve after the other.
    const std::vector<TLine>& GetLines() const { return m_vLines; }
    /// The number of the second curve's first line; of all lines when there is one curve.
    size_t FirstOfFolds() const { return m_vStarts.size() > 1 ? m_vStarts[1] : 0; }
    /// Whether a line is within `d` of the place. The search begins at the line `idxFound`, which becomes the
    /// one that was found.
    bool HasNear(TInkVector pt, double d, size_t& idxFound);
    /// Whether the place lies within a curve by itself, by non-zero winding: the lines that cross the place's
    /// row to its left are counted. The curve with number 0 has the most lines and keeps a table of rows.
    bool IsFilledBy(size_t nCurve, TInkVector pt);

private:
    std::vector<TLine> m_vLines;
    std::vector<size_t> m_vStarts;    ///< of each curve's lines, and their end
    std::optional<CCellGrid> m_cells; ///< of all lines; made when it is needed, as the next
    std::optional<CCellGrid> m_rows;  ///< of the first curve's lines
};
