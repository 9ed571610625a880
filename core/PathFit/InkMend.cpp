#include "core/PathFit/InkMend.h"

#include <algorithm>

namespace {

constexpr int MOST_TRIES = 6; ///< at a place
/// At all places together: scribbles may have hundreds of faults.
constexpr size_t MOST_ATTEMPTS = 160;
/// No curve is replaced by more than so many, which would follow the tremor itself.
constexpr size_t MOST_PARTS = 3;
/// Faults so far beside a place, in tolerances, belong to it.
constexpr double REACH = 2;

} // namespace

// Faults of a place are those beside its curves.
std::span<const size_t> CInkMend::FaultsAt(const TPlace& place, const std::vector<size_t>& vFaults) const {
    const double dFirst = m_vWay[m_vCurves[place.nFirst].range.idxFirst].dLength - REACH * m_dTolerance;
    const double dLast = m_vWay[m_vCurves[place.nEnd - 1].range.idxLast].dLength + REACH * m_dTolerance;
    const auto lengthOf = [&](size_t idx) { return m_vWay[idx].dLength; };
    return {std::ranges::lower_bound(vFaults, dFirst, {}, lengthOf),
            std::ranges::upper_bound(vFaults, dLast, {}, lengthOf)};
}

// Gives the places other curves; the places stay as the ones that have been changed.
void CInkMend::Replace(std::vector<TPlace> vPlaces, TCurves curves) {
    std::vector<TCentreCurve> vAll;
    auto itDone = m_vCurves.cbegin();
    for (TPlace& place : vPlaces) {
        const std::vector<TCentreCurve>& vNew = place.*curves;
        vAll.insert(vAll.end(), itDone, m_vCurves.cbegin() + static_cast<std::ptrdiff_t>(place.nFirst));
        itDone = m_vCurves.cbegin() + static_cast<std::ptrdiff_t>(place.nEnd);
        place.nFirst = vAll.size();
        vAll.insert(vAll.end(), vNew.begin(), vNew.end());
        place.nEnd = vAll.size();
    }
    vAll.insert(vAll.end(), itDone, m_vCurves.cend());
    m_vCurves = std::move(vAll);
    m_vPlaces = std::move(vPlaces);
}

// Changes that did not lessen the faults are undone, which brings back the faults before them.
bool CInkMend::TakeBack(std::vector<size_t>& vFaults) {
    std::vector<size_t> vGone, vBack;
    bool bChanged = false;
    std::erase_if(m_vPlaces, [&](TPlace& place) {
        const auto vNow = FaultsAt(place, vFaults);
        if (vNow.size() < place.vFaults.size()) return true;
        if (place.nTry > MOST_TRIES) return false;
        vGone.insert(vGone.end(), vNow.begin(), vNow.end());
        vBack.insert(vBack.end(), place.vFaults.begin(), place.vFaults.end());
        ++place.nTry;
        bChanged = true;
        return false;
    });
    Replace(std::move(m_vPlaces), &TPlace::vBefore);
    std::erase_if(vFaults, [&](size_t idx) { return std::ranges::find(vGone, idx) != vGone.end(); });
    vFaults.insert(vFaults.end(), vBack.begin(), vBack.end());
    std::ranges::sort(vFaults);
    vFaults.erase(std::unique(vFaults.begin(), vFaults.end()), vFaults.end());
    return bChanged;
}

// The place around curves with faults.
CInkMend::TPlace CInkMend::Around(size_t nFirst, size_t nEnd, int nTry) const {
    if (nTry > MOST_TRIES) return {nFirst, nEnd, nTry};
    const bool bTurn = std::any_of(m_vCurves.begin() + static_cast<std::ptrdiff_t>(nFirst),
                                   m_vCurves.begin() + static_cast<std::ptrdiff_t>(nEnd),
                                   [](const TCentreCurve& curve) { return curve.IsTurn(); });
    // Later attempts change more of the curves beside the faults.
    const auto nMore = static_cast<size_t>(nTry > 0 ? (nTry + 1) / 2 : bTurn ? 1 : 0);
    nFirst -= std::min(nFirst, nMore);
    nEnd = std::min(nEnd + nMore, m_vCurves.size());
    if (m_vCurves[nFirst].IsTurn()) --nFirst;
    if (m_vCurves[nEnd - 1].IsTurn()) ++nEnd;
    return {nFirst, nEnd, nTry};
}

void CInkMend::AddPlace(std::vector<TPlace>& vPlaces, size_t nFirst, size_t nEnd, int nTry) {
    while (true) {
        if (m_nAttempts >= MOST_ATTEMPTS) nTry = MOST_TRIES + 1;
        TPlace place = Around(nFirst, nEnd, nTry);
        if (!vPlaces.empty() && place.nFirst < vPlaces.back().nEnd) {
            const TPlace& last = vPlaces.back();
            nFirst = std::min(nFirst, last.nFirst);
            nEnd = std::max(nEnd, last.nEnd);
            nTry = std::max(nTry, last.nTry);
            vPlaces.pop_back();
            continue;
        }
        place.vBefore.assign(m_vCurves.begin() + static_cast<std::ptrdiff_t>(place.nFirst),
                             m_vCurves.begin() + static_cast<std::ptrdiff_t>(place.nEnd));
        place.vNow = nTry > MOST_TRIES ? place.vBefore : Attempt(place);
        const bool bOther =
            place.vNow != place.vBefore && place.vNow.size() <= MOST_PARTS * place.vBefore.size();
        if (nTry > MOST_TRIES || bOther) {
            vPlaces.push_back(std::move(place));
            return;
        }
        ++nTry;
    }
}

std::vector<CInkMend::TPlace> CInkMend::FindPlaces(const std::vector<size_t>& vFaults) {
    const auto hasFaults = [&](const TCentreCurve& curve) {
        const auto it = std::ranges::lower_bound(vFaults, curve.range.idxFirst);
        return it != vFaults.end() && *it <= curve.range.idxLast;
    };
    std::vector<TPlace> vPlaces;
    for (auto it = m_vCurves.begin(); it != m_vCurves.end();) {
        const auto itFirst = std::find_if(it, m_vCurves.end(), hasFaults);
        if (itFirst == m_vCurves.end()) break;
        it = std::find_if_not(itFirst, m_vCurves.end(), hasFaults);
        const auto nFirst = static_cast<size_t>(itFirst - m_vCurves.begin());
        const auto nEnd = static_cast<size_t>(it - m_vCurves.begin());
        int nTry = 0;
        for (const TPlace& place : m_vPlaces)
            if (place.nFirst < nEnd && nFirst < place.nEnd) nTry = std::max(nTry, place.nTry);
        AddPlace(vPlaces, nFirst, nEnd, nTry);
    }
    for (TPlace& place : vPlaces) {
        const auto vBeside = FaultsAt(place, vFaults);
        place.vFaults.assign(vBeside.begin(), vBeside.end());
    }
    return vPlaces;
}

// First curves with faults are divided. Then all are fitted otherwise, as they are at once beside a turn.
std::vector<TCentreCurve> CInkMend::Attempt(const TPlace& place) {
    ++m_nAttempts;
    if (place.nTry > 0 || std::ranges::any_of(place.vBefore, &TCentreCurve::IsTurn))
        return RefitCurves(place.vBefore, m_vWay, m_dTolerance, place.nTry);
    std::vector<TCentreCurve> vNew;
    for (const TCentreCurve& curve : place.vBefore) {
        if (const auto halves = DivideCurve(curve, m_vWay, m_dTolerance))
            vNew.insert(vNew.end(), halves->begin(), halves->end());
        else
            vNew.push_back(curve);
    }
    return vNew;
}

bool CInkMend::Change(std::vector<size_t> vFaults) {
    const bool bBack = TakeBack(vFaults);
    Replace(FindPlaces(vFaults), &TPlace::vNow);
    return bBack ||
           std::ranges::any_of(m_vPlaces, [](const TPlace& place) { return place.nTry <= MOST_TRIES; });
}
