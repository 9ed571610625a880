#include "core/PathObject/ClosedPathStream.h"

#include "core/Base/Failure.h"

#include <boost/make_shared.hpp>

CRect CClosedPathStream::RectIncludingPath(size_t state) const {
    if (m_lstControlPoint.empty()) throw internal_error(L"RectIncludingPath: zero anchor");
    return BezierBounds(BezierPoints(state));
}

void CClosedPathStream::RasterizePath(CPathFill& fill, CSize szPlane, CAlphaBlock8& tile,
                                      size_t state) const {
    if (m_lstControlPoint.empty()) throw internal_error(L"RasterizePath: zero anchor");
    fill.FillTile(BezierPoints(state), {{}, szPlane}, tile);
}

void CClosedPathStream::DrawOutline(IPathDevice& device, const TPathMapper& mapper,
                                    const TPathSelection& selection, TColor color, bool) const {
    TPolyBezier vCurve = BezierPoints(STATE_LIVE);
    for (CPoint& pt : vCurve) pt = mapper(pt);
    device.PolyBezier(vCurve, color);
    for (const auto& spPoint : m_lstControlPoint) spPoint->Draw(device, mapper, selection);
}

TPathHit CClosedPathStream::HitControlPoints(const TPathPick& pick, bool bAnchor, bool bHandle, bool) const {
    return HitAnchors(pick, bAnchor, bHandle);
}

CSerializer CClosedPathStream::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    writer.WriteChunk(SerializePoints());
    return writer;
}

void CClosedPathStream::Deserialize(CDeserializer& reader) {
    reader.ExpectTag(CHUNK_TAG);
    DeserializePoints(reader);
    reader.ExpectEnd();
}

boost::shared_ptr<TPathSnapshot> CClosedPathStream::CreateSnapshot() const {
    const auto spSnapshot = boost::make_shared<TClosePathSnapshot>();
    spSnapshot->chunk = Serialize();
    spSnapshot->lstControlPoint = m_lstControlPoint;
    return spSnapshot;
}

void CClosedPathStream::ApplySnapshot(const TPathSnapshot& snapshot) {
    m_lstControlPoint = dynamic_cast<const TClosePathSnapshot&>(snapshot).lstControlPoint;
    CDeserializer reader(snapshot.chunk);
    Deserialize(reader);
}
