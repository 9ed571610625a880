#include "core/PathObject/PathStream.h"

#include "core/Base/Failure.h"
#include "core/PathOutline/OutlineFit.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace {

constexpr uint32_t TAG_ANCHORS = MakeTag("PSTM");
/// The largest number that parameters can address, with a segment back to the first.
constexpr size_t MAX_ANCHORS = 0xFFFF;

void ExpectRoom(size_t nAnchors) {
    if (nAnchors >= MAX_ANCHORS)
        throw refused_error(L"パスの制御点が多すぎます。\n\n新しいパスに分けて描いてください。");
}

// A position in segments: index and fraction; the last anchor is the end of the last segment.
std::pair<size_t, uint32_t> PlaceOf(size_t nSegments, uint32_t t) {
    const size_t idx = t / BEZIER_T_RESOLUTION;
    if (idx >= nSegments) return {nSegments - 1, BEZIER_T_RESOLUTION};
    return {idx, t % BEZIER_T_RESOLUTION};
}

// The direction of the stroke's sides there.
CPoint DirectionOf(const CBezier& bez, uint32_t f) {
    return DirectionAt({ToOutline(bez.p0), ToOutline(bez.p1), ToOutline(bez.p2), ToOutline(bez.p3)}, f);
}

} // namespace

TLinePlace PlaceOnLine(const std::vector<CBezier>& vSegments, uint32_t t) {
    const auto [idx, f] = PlaceOf(vSegments.size(), t);
    return {vSegments[idx].PointAt(f), DirectionOf(vSegments[idx], f)};
}

CPoint CPathStream::PointAt(uint32_t t, size_t state) const {
    const auto vSegments = GetSegments(state);
    return vSegments.empty() ? BezierPoints(state).front() : PlaceOnLine(vSegments, t).point;
}

CPoint CPathStream::TangentAt(uint32_t t, size_t state) const {
    const auto vSegments = GetSegments(state);
    return vSegments.empty() ? CPoint{} : PlaceOnLine(vSegments, t).tangent;
}

TPathPlace CPathStream::SearchNearPointOnPath(CPoint pt, size_t state) const {
    if (ControlPointCount() == 0) throw internal_error(L"SearchNearPointOnPath: zero anchor");
    const auto vSegments = GetSegments(state);
    if (!vSegments.empty()) return SearchNearOnLine(vSegments, pt);
    const CPoint away = BezierPoints(state).front() - pt;
    return {0, Dot(away, away)};
}

TPathPlace SearchNearOnLine(const std::vector<CBezier>& vSegments, CPoint pt) {
    constexpr uint32_t SAMPLE = BEZIER_T_RESOLUTION / 4;
    const auto tLast = static_cast<int64_t>(vSegments.size()) * BEZIER_T_RESOLUTION;
    const auto distanceAt = [&](int64_t t) {
        const auto [idx, f] = PlaceOf(vSegments.size(), static_cast<uint32_t>(t));
        const CPoint away = vSegments[idx].PointAt(f) - pt;
        return Dot(away, away);
    };
    int64_t tFirst = 0;
    int64_t tAlike = 0; // checked like the first sample: anchors may share a position
    int64_t nNearest = distanceAt(0);
    for (int64_t t = SAMPLE; t <= tLast; t += SAMPLE) {
        const int64_t nDistance = distanceAt(t);
        if (nDistance > nNearest) continue;
        if (nDistance < nNearest) tFirst = t;
        tAlike = t;
        nNearest = nDistance;
    }
    const auto searchFrom = [&](int64_t tBest) {
        int64_t nBest = nNearest;
        const auto offer = [&](int64_t t) {
            const int64_t nDistance = distanceAt(t);
            if (nDistance >= nBest) return;
            nBest = nDistance;
            tBest = t;
        };
        for (int64_t nStep = SAMPLE; nStep > 0; nStep /= 2) {
            const int64_t tCenter = tBest;
            offer(std::max<int64_t>(tCenter - nStep, 0));
            offer(std::min(tCenter + nStep, tLast));
        }
        return TPathPlace{static_cast<uint32_t>(tBest), nBest};
    };
    const TPathPlace first = searchFrom(tFirst);
    if (tAlike == tFirst) return first;
    const TPathPlace other = searchFrom(tAlike);
    return other.nDistanceSquared < first.nDistanceSquared ? other : first;
}

template <class T>
void CPathStreamImpl<T>::Commit() {
    for (const auto& spPoint : m_lstControlPoint) spPoint->Commit();
}

template <class T>
void CPathStreamImpl<T>::Cancel() {
    for (const auto& spPoint : m_lstControlPoint) spPoint->Cancel();
}

template <class T>
boost::shared_ptr<CPathControlPoint> CPathStreamImpl<T>::Divide(uint32_t t) {
    const size_t idx = t / BEZIER_T_RESOLUTION;
    const uint32_t f = t % BEZIER_T_RESOLUTION;
    if (f == 0 || idx >= GetSegments(STATE_COMMITTED).size()) return {};
    ExpectRoom(m_lstControlPoint.size());
    const auto itFrom = std::next(m_lstControlPoint.begin(), static_cast<std::ptrdiff_t>(idx));
    const auto itTo =
        std::next(itFrom) == m_lstControlPoint.end() ? m_lstControlPoint.begin() : std::next(itFrom);
    CDualValue<CPoint> anchor, foreBefore, back, fore, backBehind;
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) {
        const auto [head, tail] = SegmentOf((*itFrom)->At(state), (*itTo)->At(state)).Split(f);
        anchor[state] = head.p3;
        foreBefore[state] = head.p1 - head.p0;
        back[state] = head.p2 - head.p3;
        fore[state] = tail.p1 - tail.p0;
        backBehind[state] = tail.p2 - tail.p3;
    }
    const auto spNew = boost::make_shared<T>();
    spNew->SetAnchor(anchor);
    spNew->SetBack(back);
    spNew->SetFore(fore);
    (*itFrom)->SetFore(foreBefore);
    (*itTo)->SetBack(backBehind);
    m_lstControlPoint.insert(std::next(itFrom), spNew);
    OnInserted(idx + 1, f);
    return spNew;
}

template <class T>
boost::shared_ptr<CPathControlPoint> CPathStreamImpl<T>::AppendControlPoint(CPoint pt) {
    ExpectRoom(m_lstControlPoint.size());
    m_lstControlPoint.push_back(boost::make_shared<T>(pt));
    return m_lstControlPoint.back();
}

template <class T>
boost::shared_ptr<CPathControlPoint> CPathStreamImpl<T>::InsertControlPoint(const CPathControlPoint& before,
                                                                            CPoint pt) {
    const size_t idx = IndexOf(before);
    if (idx == m_lstControlPoint.size()) throw internal_error(L"InsertControlPoint: not anchor point");
    ExpectRoom(m_lstControlPoint.size());
    const auto it = m_lstControlPoint.insert(
        std::next(m_lstControlPoint.begin(), static_cast<std::ptrdiff_t>(idx)), boost::make_shared<T>(pt));
    OnInserted(idx, BEZIER_T_RESOLUTION);
    return *it;
}

template <class T>
void CPathStreamImpl<T>::RemoveControlPoint(const CPathControlPoint& point) {
    const size_t idx = IndexOf(point);
    if (idx == m_lstControlPoint.size()) throw internal_error(L"RemoveControlPoint: not in stream");
    OnRemoving(idx);
    m_lstControlPoint.erase(std::next(m_lstControlPoint.begin(), static_cast<std::ptrdiff_t>(idx)));
}

template <class T>
void CPathStreamImpl<T>::Transform(const boost::function<CPoint(CPoint)>& fnMap) {
    for (const auto& spPoint : m_lstControlPoint) spPoint->Transform(fnMap);
}

template <class T>
void CPathStreamImpl<T>::TransformLive(const boost::function<CPoint(CPoint)>& fnMap, double) {
    for (const auto& spPoint : m_lstControlPoint) spPoint->TransformLive(fnMap);
}

template <class T>
bool CPathStreamImpl<T>::IsStorable() const {
    return std::all_of(m_lstControlPoint.begin(), m_lstControlPoint.end(),
                       [](const auto& spPoint) { return spPoint->IsStorable(); });
}

template <class T>
std::vector<CBezier> CPathStreamImpl<T>::GetSegments(size_t state) const {
    TOutlinePoints vAnchors = GetAnchors(state);
    if (IsClosed() && !vAnchors.empty() && vAnchors.back().anchor != vAnchors.front().anchor)
        vAnchors.push_back(vAnchors.front());
    return SegmentsOf(vAnchors);
}

template <class T>
TPolyBezier CPathStreamImpl<T>::BezierPoints(size_t state) const {
    const TOutlinePoints vAnchors = GetAnchors(state);
    if (vAnchors.empty()) return {};
    if (IsClosed()) return CloseOutline(vAnchors);
    TPolyBezier vCurve{vAnchors.front().anchor};
    for (const CBezier& segment : SegmentsOf(vAnchors))
        vCurve.insert(vCurve.end(), {segment.p1, segment.p2, segment.p3});
    return vCurve;
}

template <class T>
TPathHit CPathStreamImpl<T>::HitAnchors(const TPathPick& pick, bool bAnchor, bool bHandle) const {
    const TPathHit hit = HitPoints(m_lstControlPoint, pick, bAnchor, false);
    return hit ? hit : HitPoints(m_lstControlPoint, pick, false, bHandle);
}

template <class T>
size_t CPathStreamImpl<T>::IndexOf(const CPathControlPoint& point) const {
    const auto it = std::find_if(m_lstControlPoint.begin(), m_lstControlPoint.end(),
                                 [&](const auto& spPoint) { return spPoint.get() == &point; });
    return static_cast<size_t>(std::distance(m_lstControlPoint.begin(), it));
}

template <class T>
TOutlinePoints CPathStreamImpl<T>::GetAnchors(size_t state) const {
    TOutlinePoints vAnchors;
    for (const auto& spPoint : m_lstControlPoint) vAnchors.push_back(spPoint->At(state));
    return vAnchors;
}

template <class T>
CSerializer CPathStreamImpl<T>::SerializePoints() const {
    CSerializer writer;
    writer.SetTag(TAG_ANCHORS, 0);
    writer.WriteInt32(static_cast<int32_t>(m_lstControlPoint.size()));
    for (const auto& spPoint : m_lstControlPoint) writer.WriteChunk(spPoint->Serialize());
    return writer;
}

template <class T>
void CPathStreamImpl<T>::DeserializePoints(CDeserializer& reader) {
    CDeserializer points;
    reader.ReadChunk(points);
    points.ExpectTag(TAG_ANCHORS);
    const auto uCount = static_cast<uint32_t>(points.ReadInt32());
    if (uCount > MAX_ANCHORS) throw deserialize_error();
    // Existing points keep their identity: a snapshot's points are reused.
    TPointList lstPoint;
    auto itKnown = m_lstControlPoint.begin();
    for (uint32_t u = 0; u < uCount; ++u) {
        CDeserializer chunk;
        points.ReadChunk(chunk);
        lstPoint.push_back(itKnown != m_lstControlPoint.end() ? *itKnown++ : boost::make_shared<T>());
        lstPoint.back()->Deserialize(chunk);
    }
    points.ExpectEnd();
    m_lstControlPoint = std::move(lstPoint);
}

template class CPathStreamImpl<CPathControlPoint>;
template class CPathStreamImpl<COpenPathControlPoint>;
