// How the marks of an open path follow its anchors.
#include "core/Base/Failure.h"
#include "core/PathObject/OpenPathStream.h"

#include <algorithm>

namespace {

// The new parameter after the segment before the anchor `idx` was divided at the fraction `f`.
uint32_t AfterInsertion(uint32_t t, size_t idx, uint32_t f) {
    const uint32_t tDivided = static_cast<uint32_t>(idx == 0 ? 0 : idx - 1) * BEZIER_T_RESOLUTION;
    if (t < tDivided || (idx > 0 && t == tDivided)) return t;
    if (idx == 0 || t - tDivided >= BEZIER_T_RESOLUTION) return t + BEZIER_T_RESOLUTION;
    const uint32_t uFraction = t - tDivided;
    if (uFraction < f) return tDivided + static_cast<uint32_t>(MulDiv(uFraction, BEZIER_T_RESOLUTION, f));
    const uint32_t uRest = BEZIER_T_RESOLUTION - f;
    return tDivided + BEZIER_T_RESOLUTION +
           (uRest == 0 ? 0 : static_cast<uint32_t>(MulDiv(uFraction - f, BEZIER_T_RESOLUTION, uRest)));
}

// The marks of the segment that is removed with the path's first or last anchor.
struct TEndRemoval {
    uint32_t tBegin; ///< of that segment
    bool bFirst;     ///< the first anchor is removed

    bool Drops(uint32_t t) const {
        const uint32_t tEnd = tBegin + BEZIER_T_RESOLUTION;
        return bFirst ? t < tEnd : t > tBegin;
    }
};

} // namespace

void COpenPathStream::OnInserted(size_t idx, uint32_t f) {
    const auto move = [&](const auto& spMark) {
        CDualValue<uint32_t> t = spMark->GetParameter();
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) t[state] = AfterInsertion(t[state], idx, f);
        spMark->SetParameter(t);
    };
    std::ranges::for_each(GetWidthPoints(), move);
    std::ranges::for_each(GetTransPoints(), move);
}

// The segments beside an inner anchor become one; their marks move to the nearest places of it, in their
// order and at least a unit apart. Marks at its ends stay there.
template <class TPoints>
void COpenPathStream::KeepOnMerged(const TPoints& vMarks, size_t idx) {
    const uint32_t tBegin = static_cast<uint32_t>(idx - 1) * BEZIER_T_RESOLUTION;
    const uint32_t tEnd = tBegin + 2 * BEZIER_T_RESOLUTION;
    std::vector<CDualValue<uint32_t>> vPlaces;
    for (const auto& spMark : vMarks) vPlaces.push_back(spMark->GetParameter());
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) {
        const TPoints vSorted = SortedByParameter(vMarks, state);
        const std::vector<CBezier> vMerged{
            SegmentOf(GetControlPoint(idx - 1)->At(state), GetControlPoint(idx + 1)->At(state))};
        TPoints vInside;
        for (const auto& spMark : vSorted) {
            const uint32_t t = spMark->GetParameter()[state];
            if (t > tBegin && t < tEnd) vInside.push_back(spMark);
        }
        std::vector<uint32_t> vNew(vInside.size());
        const auto nLeast = [](size_t i) { return static_cast<uint32_t>(i + 1); };
        for (size_t i = 0; i < vInside.size(); ++i) {
            const uint32_t t = vInside[i]->GetParameter()[state];
            const uint32_t f = SearchNearOnLine(vMerged, PointAt(t, state)).t;
            vNew[i] = std::max(f, i == 0 ? nLeast(0) : vNew[i - 1] + 1);
        }
        for (size_t i = vInside.size(); i-- > 0;)
            vNew[i] = std::min(vNew[i], i + 1 == vInside.size() ? BEZIER_T_RESOLUTION - 1 : vNew[i + 1] - 1);
        for (size_t m = 0; m < vMarks.size(); ++m) {
            const auto it = std::find(vInside.begin(), vInside.end(), vMarks[m]);
            uint32_t& t = vPlaces[m][state];
            if (it != vInside.end())
                t = tBegin + vNew[static_cast<size_t>(it - vInside.begin())];
            else if (t >= tEnd)
                t -= BEZIER_T_RESOLUTION;
        }
    }
    for (size_t m = 0; m < vMarks.size(); ++m) vMarks[m]->SetParameter(vPlaces[m]);
}

void COpenPathStream::OnRemoving(size_t idx) {
    const size_t nCount = m_lstControlPoint.size();
    if (nCount == 1) throw internal_error(L"RemoveControlPoint: zero anchor");
    if (idx != 0 && idx + 1 != nCount) {
        KeepOnMerged(GetWidthPoints(), idx);
        KeepOnMerged(GetTransPoints(), idx);
        return;
    }
    const bool bFirst = idx == 0;
    const TEndRemoval removal{bFirst ? 0 : static_cast<uint32_t>(idx - 1) * BEZIER_T_RESOLUTION, bFirst};
    const auto drops = [&](const auto& spMark) {
        return removal.Drops(spMark->GetParameter()[STATE_COMMITTED]);
    };
    TWidthPoints vKept = GetWidthPoints();
    std::erase_if(vKept, drops);
    m_widthPoints.Set(vKept);
    // Cuts are removed in pairs: a single one would hide the rest of the stroke.
    const TTransPoints vSorted = SortedByParameter(GetTransPoints(), STATE_COMMITTED);
    TTransPoints lst;
    for (size_t i = 0; i + 1 < vSorted.size(); i += 2)
        if (!drops(vSorted[i]) && !drops(vSorted[i + 1])) lst.insert(lst.end(), {vSorted[i], vSorted[i + 1]});
    SELF_CHECK(defect_logic, lst.size() % 2 == 0);
    m_transPoints.Set(lst);
    if (!bFirst) return;
    const auto move = [](const auto& spMark) {
        CDualValue<uint32_t> t = spMark->GetParameter();
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) t[state] -= BEZIER_T_RESOLUTION;
        spMark->SetParameter(t);
    };
    std::ranges::for_each(GetWidthPoints(), move);
    std::ranges::for_each(GetTransPoints(), move);
}
