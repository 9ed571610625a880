// Marks along a centre line: half-widths and opacities of the way that it stands for.
#pragma once

#include "core/PathFit/CentreFit.h"
#include "core/PathFit/EaseFit.h"

/// Width marks whose eased values follow a way's half-widths, closer where its points have smaller shares.
class CInkWidths {
public:
    /// The way must outlive it; its shares may change.
    CInkWidths(const TInkWay& vWay, double dTolerance) : m_vWay(vWay), m_dTolerance(dTolerance) {}

    const std::vector<TFittedMark>& GetMarks() const { return m_vMarks; }
    /// Fits all marks.
    void Fit(const std::vector<TCentreCurve>& vCurves, TEaseEnds ends);
    /// The same when the curves and the ends are nearly those of the last fit: marks stay where no curve
    /// beside them is new, and no point of `vTight` (sorted) is within `dReach` along the way. False when all
    /// stay.
    bool Refit(const std::vector<TCentreCurve>& vCurves, TEaseEnds ends, const std::vector<size_t>& vTight,
               double dReach);

private:
    const TInkWay& m_vWay;
    double m_dTolerance;
    std::vector<TCentreCurve> m_vCurves;
    TEaseEnds m_ends;
    std::vector<TFittedMark> m_vMarks;
};

/// Opacity marks; a single one for a way of one opacity.
std::vector<TFittedMark> FitOpacities(const TInkWay& vWay, const std::vector<TCentreCurve>& vCurves,
                                      double dTolerance);
