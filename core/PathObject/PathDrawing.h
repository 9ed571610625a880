// The lines and shapes of a path, kept to find the areas that a change has touched.
#pragma once

#include "core/Bezier/Bezier.h"
#include "core/PathObject/PathControlPointBase.h"

#include <array>
#include <vector>

/// Takes down what is drawn, as positions.
class CPathDrawing : public IPathDevice {
public:
    void Line(CPoint from, CPoint to, TColor, bool) override { m_vLines.push_back({from, to}); }
    void Square(CPoint center, int, TColor, TColor) override { m_vLines.push_back({center, center}); }
    void PolyBezier(const std::vector<CPoint>& vPoints, TColor) override { m_vCurves.push_back(vPoints); }

    /// The box around everything; empty for nothing.
    CRect GetBounds() const;
    /// The box around what only one of two drawings has, curve by curve and line by line.
    CRect GetDifference(const CPathDrawing& other) const;

private:
    std::vector<std::array<CPoint, 2>> m_vLines; ///< a mark is a line to itself
    std::vector<TPolyBezier> m_vCurves;
};

/// Boxes around the stretches in which the curves of two shapes differ: what is filled by one of them alone
/// lies inside. At most a dozen boxes.
std::vector<CRect> ChangedBoxes(const std::vector<TPolyBezier>& vBefore,
                                const std::vector<TPolyBezier>& vNow);
