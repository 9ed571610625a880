#include "core/PathObject/PathObject.h"

#include "core/Base/Failure.h"

#include <boost/numeric/conversion/cast.hpp>

namespace {

[[noreturn]] void Refuse() {
    throw refused_error(L"パスが大きすぎます。\n\n範囲を狭くするか、線を細くしてから操作してください。");
}

// Rebuilds what depends on a path's points.
template <class Build>
void RefuseOverflow(Build build) {
    try {
        build();
    } catch (const boost::numeric::bad_numeric_cast&) {
        Refuse();
    }
}

} // namespace

CPathObject::CPathObject(boost::shared_ptr<CPathStream> spStream)
    : m_spStream(std::move(spStream)), m_spLastGood(m_spStream->CreateSnapshot()) {}

void CPathObject::RasterizePath(CPathFill& fill, CSize szPlane, CAlphaBlock8& tile) const {
    GetStream().RasterizePath(fill, szPlane, tile);
}

void CPathObject::DrawOutline(IPathDevice& device, const TPathMapper& mapper, const TPathSelection& selection,
                              TColor color, bool bOutline) const {
    GetStream().DrawOutline(device, mapper, selection, color, bOutline);
}

void CPathObject::Update() {
    const CRect rcBefore = m_rcBounds;
    try {
        if (!GetStream().IsStorable()) Refuse();
        const auto spGood = CreateSnapshot();
        RefuseOverflow([&] { GetStream().Update(); });
        m_spLastGood = spGood;
    } catch (const refused_error&) {
        GetStream().ApplySnapshot(*m_spLastGood);
        GetStream().Update();
        throw;
    }
    m_rcBounds = GetStream().ControlPointCount() == 0 ? CRect() : GetStream().RectIncludingPath();
    Invalidate(rcBefore);
    Invalidate(m_rcBounds);
}

void CPathObject::UpdateDrag() {
    RefuseOverflow([&] { GetStream().UpdateDrag(); });
}

void CPathObject::Deserialize(CDeserializer& reader) {
    GetStream().Deserialize(reader);
    try {
        Update();
    } catch (const refused_error&) {
        throw deserialize_error();
    }
}

TPathHit CPathObject::HitTestEx(const TPathPick& pick, bool bAnchor, bool bHandle, bool bPath,
                                bool bTerm) const {
    const CPathStream& stream = GetStream();
    if (TPathHit hit = stream.HitControlPoints(pick, bAnchor, bHandle, bTerm)) return hit;
    if (!bPath || stream.ControlPointCount() == 0) return {};
    const TPathPlace place = stream.SearchNearPointOnPath(pick.ptPath, STATE_LIVE);
    if (pick.IsNear(stream.PointAt(place.t, STATE_LIVE))) return {HIT_PATH, {}, place.t};
    return {};
}

void CPathObject::Transform(const boost::function<CPoint(CPoint)>& fnMap) {
    GetStream().Transform(fnMap);
    Update();
}

boost::shared_ptr<CPathControlPoint> CPathObject::AppendControlPoint(CPoint pt) {
    const auto spPoint = GetStream().AppendControlPoint(pt);
    Update();
    return spPoint;
}

boost::shared_ptr<CPathControlPoint> CPathObject::InsertControlPoint(const CPathControlPoint& before,
                                                                     CPoint pt) {
    const auto spPoint = GetStream().InsertControlPoint(before, pt);
    Update();
    return spPoint;
}

void CPathObject::RemoveControlPoint(const CPathControlPoint& point) {
    GetStream().RemoveControlPoint(point);
    Update();
}

void CPathObject::Divide(uint32_t t) {
    GetStream().Divide(t);
    Update();
}

void CPathObject::ApplySnapshot(const TPathSnapshot& snapshot) {
    try {
        GetStream().ApplySnapshot(snapshot);
    } catch (const deserialize_error&) {
        throw internal_error(L"ApplySnapshot: deserialize_error in Deserialize()");
    }
    Update();
}

void CPathObject::Assign(const CPathObject& from) {
    try {
        CDeserializer reader(from.Serialize());
        GetStream().Deserialize(reader);
    } catch (const deserialize_error&) {
        throw internal_error(L"Assign: deserialize_error in Deserialize()");
    }
    Update();
}
