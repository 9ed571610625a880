#include "core/PathObject/PathTransControlPoint.h"

#include <algorithm>

namespace {

constexpr int64_t SHOWN_TIMES = 10;
constexpr int64_t SHOWN_LEAST = 80; ///< minimum distance from the path to the mark in path units

int DegreesOf(uint32_t uAngle) { return static_cast<int16_t>(uAngle); }

} // namespace

void CPathTransControlPoint::Draw(IPathDevice& device, const TPathMapper& mapper,
                                  const TPathSelection& selection) const {
    const CPoint ptWindow = mapper(GetPosition(STATE_LIVE));
    for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT})
        DrawHandle(device, ptWindow, mapper(GetMarkPosition(side, STATE_LIVE)), selection,
                   side == SIDE_LEFT ? HIT_LEFT : HIT_RIGHT);
    DrawDottedMark(device, ptWindow, selection);
}

CSerializer CPathTransControlPoint::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    writer.WriteInt32(static_cast<int32_t>(m_t[STATE_COMMITTED]));
    writer.WriteInt32(static_cast<int32_t>(m_angle[STATE_COMMITTED]));
    return writer;
}

void CPathTransControlPoint::Deserialize(CDeserializer& reader) {
    reader.ExpectTag(CHUNK_TAG);
    m_t.Set(static_cast<uint32_t>(reader.ReadInt32()));
    m_angle.Set(static_cast<uint32_t>(reader.ReadInt32()));
    reader.ExpectEnd();
}

TPathHit CPathTransControlPoint::HitHandle(const TPathPick& pick) {
    TPathHit hit;
    for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT})
        hit = Nearer(hit, pick.At(GetMarkPosition(side, STATE_LIVE), side == SIDE_LEFT ? HIT_LEFT : HIT_RIGHT,
                                  shared_from_this(), m_t[STATE_LIVE]));
    return hit;
}

void CPathTransControlPoint::Commit() {
    CPathMark::Commit();
    m_angle.Commit();
}

void CPathTransControlPoint::Cancel() {
    CPathMark::Cancel();
    m_angle.Cancel();
}

void CPathTransControlPoint::SetWidths(size_t state, uint32_t uLeft, uint32_t uRight) {
    m_aWidth[SIDE_LEFT][state] = uLeft;
    m_aWidth[SIDE_RIGHT][state] = uRight;
}

TOutlineCut CPathTransControlPoint::At(size_t state) const { return {m_t[state], DegreesOf(m_angle[state])}; }

CPoint CPathTransControlPoint::GetMarkPosition(EPathSide side, size_t state) const {
    const CPoint toLeft = Turned(GetTangent(state), -DegreesOf(m_angle[state]));
    return PointAlong(GetPosition(state), side == SIDE_LEFT ? toLeft : CPoint{-toLeft.x, -toLeft.y},
                      std::max(SHOWN_LEAST, SHOWN_TIMES * m_aWidth[side][state]));
}

boost::shared_ptr<CDualValue<CPoint>> CPathTransControlPoint::DragHandleImpl(bool bLeft) {
    const EPathSide side = bLeft ? SIDE_LEFT : SIDE_RIGHT;
    const auto mark = DualOf([&](size_t state) { return GetMarkPosition(side, state); });
    const auto spThis = boost::static_pointer_cast<CPathTransControlPoint>(shared_from_this());
    return MakeDragCopy<CPoint>(mark, [spThis, side, mark](const CDualValue<CPoint>& copy) {
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) {
            if (copy[state] == mark[state]) continue;
            const CPoint away = copy[state] - spThis->GetPosition(state);
            const CPoint toLeft = side == SIDE_LEFT ? away : CPoint{-away.x, -away.y};
            spThis->m_angle[state] = AngleBetween(spThis->GetTangent(state), toLeft);
        }
    });
}
