#include "core/PathObject/PathWidthControlPoint.h"

#include <algorithm>
#include <limits>

namespace {

constexpr uint32_t ABSENT = 0xFFFFFFFF;

} // namespace

uint32_t MultipleOf(uint32_t uWidth, uint32_t uBaseWidth) {
    const uint64_t u = ((uint64_t{uWidth} << 16) + uBaseWidth / 2) / uBaseWidth;
    return static_cast<uint32_t>(std::min<uint64_t>(u, ABSENT - 1));
}

uint32_t WidthOf(uint32_t uMultiple, uint32_t uBaseWidth) {
    return static_cast<uint32_t>(
        std::min<uint64_t>((uint64_t{uMultiple} * uBaseWidth + 0x8000) >> 16, PATH_WIDTH_LIMIT));
}

void CPathWidthControlPoint::Draw(IPathDevice& device, const TPathMapper& mapper,
                                  const TPathSelection& selection) const {
    const CPoint ptWindow = mapper(GetPosition(STATE_LIVE));
    for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT})
        if (HasSide(side))
            DrawHandle(device, ptWindow, mapper(GetMarkPosition(side, STATE_LIVE)), selection,
                       side == SIDE_LEFT ? HIT_LEFT : HIT_RIGHT);
    DrawDottedMark(device, ptWindow, selection);
}

CSerializer CPathWidthControlPoint::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    writer.WriteInt32(static_cast<int32_t>(m_t[STATE_COMMITTED]));
    for (const TSide& side : m_aSides)
        writer.WriteInt32(static_cast<int32_t>(side.bHas ? side.value[STATE_COMMITTED] : ABSENT));
    return writer;
}

void CPathWidthControlPoint::Deserialize(CDeserializer& reader) {
    reader.ExpectTag(CHUNK_TAG);
    m_t.Set(static_cast<uint32_t>(reader.ReadInt32()));
    for (TSide& side : m_aSides) {
        const auto uMultiple = static_cast<uint32_t>(reader.ReadInt32());
        side.bHas = uMultiple != ABSENT;
        side.value.Set(side.bHas ? uMultiple : 0);
    }
    reader.ExpectEnd();
}

TPathHit CPathWidthControlPoint::HitHandle(const TPathPick& pick) {
    TPathHit hit;
    for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT})
        if (HasSide(side))
            hit = Nearer(hit,
                         pick.At(GetMarkPosition(side, STATE_LIVE), side == SIDE_LEFT ? HIT_LEFT : HIT_RIGHT,
                                 shared_from_this(), m_t[STATE_LIVE]));
    return hit;
}

void CPathWidthControlPoint::Commit() {
    CPathMark::Commit();
    for (TSide& side : m_aSides) side.value.Commit();
}

void CPathWidthControlPoint::Cancel() {
    CPathMark::Cancel();
    for (TSide& side : m_aSides) side.value.Cancel();
}

CDualValue<uint32_t> CPathWidthControlPoint::GetMultiple(EPathSide side) const {
    return HasSide(side) ? m_aSides[side].value : CDualValue<uint32_t>(0);
}

uint32_t CPathWidthControlPoint::GetWidth(EPathSide side, size_t state) const {
    return WidthOf(GetMultiple(side)[state], m_baseWidth[state]);
}

void CPathWidthControlPoint::SetWidth(EPathSide side, size_t state, uint32_t uWidth) {
    MakeSide(side);
    if (m_baseWidth[state] != 0 && uWidth != GetWidth(side, state))
        m_aSides[side].value[state] = MultipleOf(uWidth, m_baseWidth[state]);
}

void CPathWidthControlPoint::MakeSide(EPathSide side) {
    if (!HasSide(side)) m_aSides[side] = {true, CDualValue<uint32_t>(0)};
}

boost::shared_ptr<CDualValue<uint32_t>> CPathWidthControlPoint::WidthHandle(EPathSide side) {
    const auto width = DualOf([&](size_t state) { return GetWidth(side, state); });
    const auto spThis = boost::static_pointer_cast<CPathWidthControlPoint>(shared_from_this());
    auto spCopy = MakeDragCopy<uint32_t>(width, [spThis, side](const CDualValue<uint32_t>& copy) {
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) spThis->SetWidth(side, state, copy[state]);
    });
    MakeSide(side);
    return spCopy;
}

CPoint CPathWidthControlPoint::GetDirection(EPathSide side, size_t state) const {
    const CPoint normal = Rot90(GetTangent(state));
    return side == SIDE_LEFT ? normal : CPoint{-normal.x, -normal.y};
}

CPoint CPathWidthControlPoint::GetMarkPosition(EPathSide side, size_t state) const {
    return PointAlong(GetPosition(state), GetDirection(side, state), SHOWN_TIMES * GetWidth(side, state));
}

boost::shared_ptr<CDualValue<CPoint>> CPathWidthControlPoint::DragHandleImpl(bool bLeft, bool bBoth) {
    const EPathSide side = bLeft ? SIDE_LEFT : SIDE_RIGHT;
    const auto mark = DualOf([&](size_t state) { return GetMarkPosition(side, state); });
    const auto spThis = boost::static_pointer_cast<CPathWidthControlPoint>(shared_from_this());
    return MakeDragCopy<CPoint>(mark, [spThis, side, bBoth, mark](const CDualValue<CPoint>& copy) {
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) {
            if (copy[state] == mark[state]) continue;
            const uint32_t uWidth =
                DistanceAlong(spThis->GetPosition(state), spThis->GetDirection(side, state), copy[state]) /
                SHOWN_TIMES;
            spThis->SetWidth(side, state, uWidth);
            if (bBoth) spThis->SetWidth(side == SIDE_LEFT ? SIDE_RIGHT : SIDE_LEFT, state, uWidth);
        }
    });
}
