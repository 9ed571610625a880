#include "core/PathObject/PathAlphaControlPoint.h"

#include <algorithm>

namespace {

/// The handle's distance from the path in path units: of no opacity, and more for each level.
constexpr int64_t SHOWN_LEAST = 80;
constexpr int64_t SHOWN_PER_LEVEL = 1;

} // namespace

void CPathAlphaControlPoint::Draw(IPathDevice& device, const TPathMapper& mapper,
                                  const TPathSelection& selection) const {
    const CPoint ptWindow = mapper(GetPosition(STATE_LIVE));
    DrawHandle(device, ptWindow, mapper(GetMarkPosition(STATE_LIVE)), selection, HIT_LEFT);
    const TColor color = GetColor(selection, HIT_ANCHOR);
    device.Square(ptWindow, MARK_HALF - (selection.Hovers(*this, HIT_ANCHOR) ? 0 : 1), color, color);
}

CSerializer CPathAlphaControlPoint::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    writer.WriteInt32(static_cast<int32_t>(m_t[STATE_COMMITTED]));
    writer.WriteByte(static_cast<uint8_t>(m_alpha[STATE_COMMITTED]));
    return writer;
}

void CPathAlphaControlPoint::Deserialize(CDeserializer& reader) {
    reader.ExpectTag(CHUNK_TAG);
    m_t.Set(static_cast<uint32_t>(reader.ReadInt32()));
    m_alpha.Set(reader.ReadByte());
    reader.ExpectEnd();
}

TPathHit CPathAlphaControlPoint::HitHandle(const TPathPick& pick) {
    return pick.At(GetMarkPosition(STATE_LIVE), HIT_LEFT, shared_from_this(), m_t[STATE_LIVE]);
}

void CPathAlphaControlPoint::Commit() {
    CPathMark::Commit();
    m_alpha.Commit();
}

void CPathAlphaControlPoint::Cancel() {
    CPathMark::Cancel();
    m_alpha.Cancel();
}

void CPathAlphaControlPoint::SetAlpha(const CDualValue<uint32_t>& value) {
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE})
        m_alpha[state] = std::min(value[state], FULL_ALPHA);
}

CPoint CPathAlphaControlPoint::GetMarkPosition(size_t state) const {
    return PointAlong(GetPosition(state), GetDirection(state),
                      SHOWN_LEAST + SHOWN_PER_LEVEL * m_alpha[state]);
}

boost::shared_ptr<CDualValue<CPoint>> CPathAlphaControlPoint::DragHandleImpl() {
    const auto mark = DualOf([&](size_t state) { return GetMarkPosition(state); });
    const auto spThis = boost::static_pointer_cast<CPathAlphaControlPoint>(shared_from_this());
    return MakeDragCopy<CPoint>(mark, [spThis, mark](const CDualValue<CPoint>& copy) {
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) {
            if (copy[state] == mark[state]) continue;
            const int64_t nAway =
                DistanceAlong(spThis->GetPosition(state), spThis->GetDirection(state), copy[state]);
            spThis->m_alpha[state] = static_cast<uint32_t>(
                std::clamp<int64_t>((nAway - SHOWN_LEAST) / SHOWN_PER_LEVEL, 0, FULL_ALPHA));
        }
    });
}
