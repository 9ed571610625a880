// Curves of a centre line that are replaced where the outline beside them has faults.
#pragma once

#include "core/PathFit/CentreFit.h"

#include <span>
#include <utility>

/// Changes the curves near faults, each place by itself, and takes back what does not lessen its faults.
class CInkMend {
public:
    /// The way must outlive it.
    CInkMend(const TInkWay& vWay, double dTolerance, std::vector<TCentreCurve> vCurves)
        : m_vWay(vWay), m_dTolerance(dTolerance), m_vCurves(std::move(vCurves)) {}

    const std::vector<TCentreCurve>& GetCurves() const { return m_vCurves; }
    /// Takes the faults that an outline along the present curves has: points of the way, sorted. False when
    /// the curves stay as they are.
    bool Change(std::vector<size_t> vFaults);

private:
    // Curves that are changed together.
    struct TPlace {
        size_t nFirst, nEnd; ///< of the present curves
        int nTry;            ///< more than there are when nothing is left to try
        std::vector<TCentreCurve> vBefore{}, vNow{};
        std::vector<size_t> vFaults{}; ///< those with the curves before
    };
    using TCurves = std::vector<TCentreCurve> TPlace::*;

    std::span<const size_t> FaultsAt(const TPlace& place, const std::vector<size_t>& vFaults) const;
    bool TakeBack(std::vector<size_t>& vFaults);
    TPlace Around(size_t nFirst, size_t nEnd, int nTry) const;
    void AddPlace(std::vector<TPlace>& vPlaces, size_t nFirst, size_t nEnd, int nTry);
    std::vector<TPlace> FindPlaces(const std::vector<size_t>& vFaults);
    std::vector<TCentreCurve> Attempt(const TPlace& place);
    void Replace(std::vector<TPlace> vPlaces, TCurves curves);

    const TInkWay& m_vWay;
    double m_dTolerance;
    std::vector<TCentreCurve> m_vCurves;
    std::vector<TPlace> m_vPlaces; ///< in their order, apart from each other
    size_t m_nAttempts = 0;
};
