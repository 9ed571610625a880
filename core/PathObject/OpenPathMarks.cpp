// The marks of an open path, and how they follow its anchors.
#include "core/Base/Failure.h"
#include "core/PathObject/OpenPathStream.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <type_traits>

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

// The first and the last parameter that a mark at `t` reaches without passing another. Marks at one parameter
// would become one.
template <class TPoints>
std::pair<uint32_t, uint32_t> RangeAmong(const TPoints& vPoints, uint32_t t, size_t state, uint32_t tLast) {
    std::pair<uint32_t, uint32_t> range{0, std::max(t, tLast)};
    for (const auto& spPoint : vPoints) {
        const uint32_t tPoint = spPoint->GetParameter()[state];
        if (tPoint < t) range.first = std::max(range.first, tPoint + 1);
        if (tPoint > t) range.second = std::min(range.second, tPoint - 1);
    }
    return range;
}

} // namespace

template <class TPoint>
boost::shared_ptr<TPoint> COpenPathStream::MakeMark(uint32_t t) const {
    const CDualValue<uint32_t> place(t);
    if constexpr (std::is_same_v<TPoint, CPathWidthControlPoint>)
        return boost::make_shared<TPoint>(weak_from_this(), place, GetWidth());
    else
        return boost::make_shared<TPoint>(weak_from_this(), place);
}

template <class TPoint>
boost::shared_ptr<TPoint> COpenPathStream::AddMark(uint32_t t) {
    const auto spMark = MakeMark<TPoint>(t);
    CDualValue<TPathMarks<TPoint>> marks;
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) {
        marks[state] = GetMarks<TPoint>(state);
        marks[state].push_back(spMark);
    }
    Exchange(marks);
    return spMark;
}

template <class TPoint>
void COpenPathStream::SetLiveMarks(TPathMarks<TPoint> vMarks) {
    for (const auto& spMark : vMarks) spMark->SetLine(weak_from_this());
    std::get<CDualValue<TPathMarks<TPoint>>>(m_marks)[STATE_LIVE] = std::move(vMarks);
}

template <class TPoint>
void COpenPathStream::SetMarks(TPathMarks<TPoint> vMarks) {
    SetLiveMarks(std::move(vMarks));
    std::get<CDualValue<TPathMarks<TPoint>>>(m_marks).Commit();
}

template boost::shared_ptr<CPathWidthControlPoint> COpenPathStream::MakeMark(uint32_t) const;
template boost::shared_ptr<CPathTransControlPoint> COpenPathStream::MakeMark(uint32_t) const;
template boost::shared_ptr<CPathAlphaControlPoint> COpenPathStream::MakeMark(uint32_t) const;
template void COpenPathStream::SetLiveMarks(TWidthPoints);
template void COpenPathStream::SetLiveMarks(TTransPoints);
template void COpenPathStream::SetLiveMarks(TAlphaPoints);
template void COpenPathStream::SetMarks(TWidthPoints);
template void COpenPathStream::SetMarks(TTransPoints);
template void COpenPathStream::SetMarks(TAlphaPoints);

boost::shared_ptr<CPathWidthControlPoint> COpenPathStream::AddWidthPoint(uint32_t t) {
    return AddMark<CPathWidthControlPoint>(t);
}

boost::shared_ptr<CPathTransControlPoint> COpenPathStream::AddTransPoint(uint32_t t) {
    return AddMark<CPathTransControlPoint>(t);
}

boost::shared_ptr<CPathAlphaControlPoint> COpenPathStream::AddAlphaPoint(uint32_t t) {
    return AddMark<CPathAlphaControlPoint>(t);
}

std::pair<uint32_t, uint32_t> COpenPathStream::GetMarkRange(uint32_t uMark, uint32_t t, size_t state) const {
    const uint32_t tLast = LastParameter(GetAnchors(state));
    std::pair<uint32_t, uint32_t> range{0, tLast};
    ForEachKind([&]<class TPoint>(const CDualValue<TPathMarks<TPoint>>& marks) {
        if (TPoint::CHUNK_TAG == uMark) range = RangeAmong(marks[state], t, state, tLast);
    });
    return range;
}

void COpenPathStream::OnInserted(size_t idx, uint32_t f) {
    const auto move = [&](const auto& spMark) {
        CDualValue<uint32_t> t = spMark->GetParameter();
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) t[state] = AfterInsertion(t[state], idx, f);
        spMark->SetParameter(t);
    };
    ForEachKind([&](const auto& marks) { std::ranges::for_each(marks[STATE_COMMITTED], move); });
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
        ForEachKind([&](const auto& marks) { KeepOnMerged(marks[STATE_COMMITTED], idx); });
        return;
    }
    const bool bFirst = idx == 0;
    const TEndRemoval removal{bFirst ? 0 : static_cast<uint32_t>(idx - 1) * BEZIER_T_RESOLUTION, bFirst};
    const auto drops = [&](const auto& spMark) {
        return removal.Drops(spMark->GetParameter()[STATE_COMMITTED]);
    };
    const auto setKept = [&](auto vMarks) {
        std::erase_if(vMarks, drops);
        SetMarks(std::move(vMarks));
    };
    setKept(GetWidthPoints());
    setKept(GetAlphaPoints());
    // Cuts are removed in pairs: a single one would hide the rest of the stroke.
    const TTransPoints vSorted = SortedByParameter(GetTransPoints(), STATE_COMMITTED);
    TTransPoints lst;
    for (size_t i = 0; i + 1 < vSorted.size(); i += 2)
        if (!drops(vSorted[i]) && !drops(vSorted[i + 1])) lst.insert(lst.end(), {vSorted[i], vSorted[i + 1]});
    SELF_CHECK(defect_logic, lst.size() % 2 == 0);
    SetTransPoints(lst);
    if (!bFirst) return;
    const auto move = [](const auto& spMark) {
        CDualValue<uint32_t> t = spMark->GetParameter();
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) t[state] -= BEZIER_T_RESOLUTION;
        spMark->SetParameter(t);
    };
    ForEachKind([&](const auto& marks) { std::ranges::for_each(marks[STATE_COMMITTED], move); });
}
