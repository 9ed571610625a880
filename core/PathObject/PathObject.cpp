#include "core/PathObject/PathObject.h"

#include "core/Base/Failure.h"
#include "core/Base/Parallel.h"
#include "core/PathObject/PathDrawing.h"

#include <boost/numeric/conversion/cast.hpp>

#include <utility>

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

TPathSelection AllHandles() {
    TPathSelection all;
    all.bAllHandles = true;
    return all;
}

CPoint SamePlace(CPoint pt) { return pt; }

} // namespace

// The live shape, and all that is drawn of it.
struct CPathObject::TShown {
    explicit TShown(const CPathStream& stream)
        : vShape(stream.GetShape(STATE_LIVE)), spOpacity(stream.GetOpacity(STATE_LIVE)) {
        stream.DrawOutline(drawing, SamePlace, AllHandles(), 0, true);
    }
    std::vector<TPolyBezier> vShape;
    boost::shared_ptr<const COpacityField> spOpacity;
    CPathDrawing drawing;
};

CRect ReachOf(const CPathControlPointBase& point) {
    CPathDrawing drawing;
    point.Draw(drawing, SamePlace, AllHandles());
    return drawing.GetBounds();
}

CPathObject::CPathObject(boost::shared_ptr<CPathStream> spStream)
    : m_spStream(std::move(spStream)), m_spLastGood(m_spStream->CreateSnapshot()) {}

void CPathObject::RasterizePath(CPathFill& fill, CSize szPlane, CAlphaBlock8& tile, size_t state) const {
    GetStream().RasterizePath(fill, szPlane, tile, state);
}

bool CPathObject::HasInkAt(CPoint pt) const {
    const CPoint ptPixel{pt.x >> 3, pt.y >> 3};
    constexpr int32_t PLANE_LIMIT = 0xFFFF;
    if (ptPixel.x < 0 || ptPixel.y < 0 || ptPixel.x >= PLANE_LIMIT || ptPixel.y >= PLANE_LIMIT) return false;
    if (!RectIncludingPath().Contains(pt)) return false;
    CAlphaBlock8 pixel;
    pixel.Create({1, 1}, ptPixel);
    CPathFill fill;
    RasterizePath(fill, {ptPixel.x + 1, ptPixel.y + 1}, pixel);
    return !pixel.IsAll(0);
}

void CPathObject::DrawOutline(IPathDevice& device, const TPathMapper& mapper, const TPathSelection& selection,
                              TColor color, bool bOutline) const {
    GetStream().DrawOutline(device, mapper, selection, color, bOutline);
}

void CPathObject::TakeBounds() {
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE})
        m_aBounds[state] =
            GetStream().ControlPointCount() == 0 ? CRect() : GetStream().RectIncludingPath(state);
    CPathDrawing drawing;
    GetStream().DrawOutline(drawing, SamePlace, AllHandles(), 0, true);
    m_rcReach = drawing.GetBounds();
}

void CPathObject::Update() {
    const auto aBefore = m_aBounds;
    const CRect rcBefore = m_rcReach;
    m_spShown.reset();
    try {
        if (!GetStream().IsStorable()) Refuse();
        const auto spGood = CreateSnapshot();
        RefuseOverflow([&] { GetStream().Update(); });
        m_spLastGood = spGood;
    } catch (const refused_error&) {
        GetStream().ApplySnapshot(*m_spLastGood);
        GetStream().Update();
        TakeBounds();
        Tell({{aBefore[0], aBefore[1], m_aBounds[0]}, rcBefore.Union(m_rcReach)});
        throw;
    }
    TakeBounds();
    Tell({{aBefore[0], aBefore[1], m_aBounds[0], m_aBounds[1]}, rcBefore.Union(m_rcReach)});
}

void CPathObject::Tell(const TChange& change) const {
    if (const auto spLayer = GetLayer()) spLayer->OnPathChanged(*this, change.vInk, change.rcDrawn);
}

void CPathObject::UpdateDrag() { Tell(RebuildDrag()); }

// Only where the shape differs from the one of the last event is anything painted again, and all of it where
// the opacity does: it moves along the whole line.
CPathObject::TChange CPathObject::RebuildDrag() {
    const CRect rcBefore = m_aBounds[STATE_LIVE];
    const CRect rcReachBefore = m_rcReach;
    const auto spBefore = std::exchange(m_spShown, {});
    RefuseOverflow([&] { GetStream().UpdateDrag(); });
    const auto spShown = boost::make_shared<TShown>(GetStream());
    m_aBounds[STATE_LIVE] =
        GetStream().ControlPointCount() == 0 ? CRect() : GetStream().RectIncludingPath(STATE_LIVE);
    m_rcReach = spShown->drawing.GetBounds();
    TChange change{{rcBefore, m_aBounds[STATE_LIVE]}, rcReachBefore.Union(m_rcReach)};
    if (spBefore && AreSame(spBefore->spOpacity, spShown->spOpacity))
        change = {ChangedBoxes(spBefore->vShape, spShown->vShape),
                  spShown->drawing.GetDifference(spBefore->drawing)};
    m_spShown = spShown;
    return change;
}

void CPathObject::CommitDrag() {
    GetStream().Commit();
    Update();
}

void CPathObject::CancelDrag() {
    GetStream().Cancel();
    UpdateDrag();
    m_spShown.reset();
}

void CPathObject::Read(CDeserializer& reader) { GetStream().Deserialize(reader); }

void CPathObject::FinishRead() {
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
    return pick.At(stream.PointAt(place.t, STATE_LIVE), HIT_PATH, {}, place.t);
}

void CPathObject::Transform(const boost::function<CPoint(CPoint)>& fnMap, double dWidth) {
    GetStream().Transform(fnMap);
    if (dWidth != 1) GetStream().ScaleWidths(dWidth);
    Update();
}

void CPathObject::TransformLive(const std::vector<boost::shared_ptr<CPathObject>>& vPaths,
                                const boost::function<CPoint(CPoint)>& fnMap, double dWidth) {
    std::vector<TChange> vChanges(vPaths.size());
    // The layer is told of every path that has changed, also when another one fails.
    const auto tell = [&] {
        for (size_t n = 0; n < vPaths.size(); ++n) vPaths[n]->Tell(vChanges[n]);
    };
    try {
        ForEachIndex(vPaths.size(), AvailableThreads(), [&](size_t n) {
            vPaths[n]->GetStream().TransformLive(fnMap, dWidth);
            vChanges[n] = vPaths[n]->RebuildDrag();
        });
    } catch (...) {
        tell();
        throw;
    }
    tell();
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

boost::shared_ptr<CPathControlPoint> CPathObject::Divide(uint32_t t) {
    const auto spPoint = GetStream().Divide(t);
    if (spPoint) Update();
    return spPoint;
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
