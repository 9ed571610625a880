#include "core/PathObject/OpenPathTerm.h"

#include "core/Base/Failure.h"
#include "core/Base/StableMath.h"
#include "core/PathObject/PathWidthControlPoint.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <numbers>

namespace {

constexpr uint32_t SAME_PLACE = 10 * OUTLINE_UNIT;
constexpr int64_t GROW_SHOWN_TIMES = 5;

CPoint Half(CPoint pt) { return {pt.x / 2, pt.y / 2}; }

int DegreesOf(uint32_t uAngle) { return static_cast<int16_t>(uAngle); }

} // namespace

void COpenPathTermBase::SetPlace(size_t state, CPoint position, CPoint tangent, uint32_t uLeft,
                                 uint32_t uRight) {
    m_position[state] = position;
    m_tangent[state] = tangent;
    m_aWidth[SIDE_LEFT][state] = uLeft;
    m_aWidth[SIDE_RIGHT][state] = uRight;
}

void COpenPathTermBase::ExpectEmpty(CDeserializer& reader, uint32_t uTag) {
    reader.ExpectTag(uTag);
    reader.ExpectEnd();
}

CPoint COpenPathTermBase::GetNormal(EPathSide side, size_t state) const {
    const CPoint normal = Rot90(m_tangent[state]);
    // The tangent points out of the stroke: against the path's direction at its start.
    return (side == SIDE_LEFT) != m_bBegin ? normal : CPoint{-normal.x, -normal.y};
}

CSerializer COpenPathSharpTerm::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    return writer;
}

CBezier COpenPathSharpTerm::WidthCurve(int32_t nLength, int32_t nWidth, EPathSide, size_t) const {
    return {{0, 0},
            {nLength / 6, nWidth / 3},
            {static_cast<int32_t>(int64_t{nLength} * 2 / 3), nWidth},
            {nLength, nWidth}};
}

TOutlinePoints COpenPathSharpTerm::BuildTip(TOutlinePoint p, TOutlinePoint q, size_t) const {
    if (LengthRound(p.anchor - q.anchor) >= SAME_PLACE) return {p, q};
    p.fore = q.fore;
    return {p};
}

void COpenPathRoundTerm::Draw(IPathDevice& device, const TPathMapper& mapper,
                              const TPathSelection& selection) const {
    DrawHandle(device, mapper(GetPosition(STATE_LIVE)), mapper(GetMarkPosition(STATE_LIVE)), selection,
               HIT_GROW);
}

CSerializer COpenPathRoundTerm::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    writer.WriteInt32(static_cast<int32_t>(m_grow[STATE_COMMITTED]));
    return writer;
}

void COpenPathRoundTerm::Deserialize(CDeserializer& reader) {
    reader.ExpectTag(CHUNK_TAG);
    m_grow.Set(static_cast<uint32_t>(reader.ReadInt32()));
    reader.ExpectEnd();
}

TPathHit COpenPathRoundTerm::HitHandle(const TPathPick& pick) {
    return pick.At(GetMarkPosition(STATE_LIVE), HIT_GROW, shared_from_this());
}

CDualValue<uint32_t> COpenPathRoundTerm::WidthPair(EPathSide side) const {
    return DualOf([&](size_t state) { return GetCachedWidth(side, state); });
}

CBezier COpenPathRoundTerm::WidthCurve(int32_t nLength, int32_t nWidth, EPathSide, size_t) const {
    return {{0, nWidth},
            {nLength / 3, nWidth},
            {static_cast<int32_t>(int64_t{nLength} * 2 / 3), nWidth},
            {nLength, nWidth}};
}

TOutlinePoints COpenPathRoundTerm::BuildTip(TOutlinePoint p, TOutlinePoint q, size_t state) const {
    const CPoint G = Scale(GetTangent(state), ToOutline(GetReach(state)));
    const CPoint tipP = CheckedAdd(p.anchor, G);
    const CPoint tipQ = CheckedAdd(q.anchor, G);
    const CPoint ptApex = Half(CheckedAdd(tipP, tipQ));
    p.fore = Half(tipP - p.anchor);
    q.back = Half(tipQ - q.anchor);
    return {p, {ptApex, Half(tipP - ptApex), Half(tipQ - ptApex)}, q};
}

uint32_t COpenPathRoundTerm::GetBase(size_t state) const {
    return (GetCachedWidth(SIDE_LEFT, state) + GetCachedWidth(SIDE_RIGHT, state)) / 2;
}

uint32_t COpenPathRoundTerm::GetReach(size_t state) const { return WidthOf(m_grow[state], GetBase(state)); }

CPoint COpenPathRoundTerm::GetMarkPosition(size_t state) const {
    return PointAlong(GetPosition(state), GetTangent(state), GROW_SHOWN_TIMES * GetReach(state));
}

void COpenPathRoundTerm::SetReach(size_t state, uint32_t uReach) {
    const uint32_t uBase = GetBase(state);
    if (uBase != 0 && uReach != GetReach(state)) m_grow[state] = MultipleOf(uReach, uBase);
}

boost::shared_ptr<CDualValue<uint32_t>> COpenPathRoundTerm::GrowHandle() {
    const auto reach = DualOf([&](size_t state) { return GetReach(state); });
    const auto spThis = boost::static_pointer_cast<COpenPathRoundTerm>(shared_from_this());
    return MakeDragCopy<uint32_t>(reach, [spThis](const CDualValue<uint32_t>& copy) {
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) spThis->SetReach(state, copy[state]);
    });
}

boost::shared_ptr<CDualValue<CPoint>> COpenPathRoundTerm::DragGrowHandle(bool) {
    const auto mark = DualOf([&](size_t state) { return GetMarkPosition(state); });
    const auto spThis = boost::static_pointer_cast<COpenPathRoundTerm>(shared_from_this());
    return MakeDragCopy<CPoint>(mark, [spThis, mark](const CDualValue<CPoint>& copy) {
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE})
            if (copy[state] != mark[state])
                spThis->SetReach(state,
                                 static_cast<uint32_t>(DistanceAlong(spThis->GetPosition(state),
                                                                     spThis->GetTangent(state), copy[state]) /
                                                       GROW_SHOWN_TIMES));
    });
}

void COpenPathFlatTerm::Draw(IPathDevice& device, const TPathMapper& mapper,
                             const TPathSelection& selection) const {
    for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT})
        DrawHandle(device, mapper(GetPosition(STATE_LIVE)), mapper(GetMarkPosition(side, STATE_LIVE)),
                   selection, side == SIDE_LEFT ? HIT_LEFT : HIT_RIGHT);
}

CSerializer COpenPathFlatTerm::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    for (const auto& multiple : m_aMultiple)
        writer.WriteInt32(static_cast<int32_t>(multiple[STATE_COMMITTED]));
    writer.WriteInt32(static_cast<int32_t>(m_angle[STATE_COMMITTED]));
    return writer;
}

void COpenPathFlatTerm::Deserialize(CDeserializer& reader) {
    reader.ExpectTag(CHUNK_TAG);
    for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT})
        SetMultiple(side, CDualValue<uint32_t>(static_cast<uint32_t>(reader.ReadInt32())));
    m_angle.Set(static_cast<uint32_t>(reader.ReadInt32()));
    reader.ExpectEnd();
}

TPathHit COpenPathFlatTerm::HitHandle(const TPathPick& pick) {
    return Nearer(pick.At(GetMarkPosition(SIDE_LEFT, STATE_LIVE), HIT_LEFT, shared_from_this()),
                  pick.At(GetMarkPosition(SIDE_RIGHT, STATE_LIVE), HIT_RIGHT, shared_from_this()));
}

void COpenPathFlatTerm::Commit() {
    for (auto& multiple : m_aMultiple) multiple.Commit();
    m_angle.Commit();
}

void COpenPathFlatTerm::Cancel() {
    for (auto& multiple : m_aMultiple) multiple.Cancel();
    m_angle.Cancel();
}

void COpenPathFlatTerm::SetMultiple(EPathSide side, const CDualValue<uint32_t>& value) {
    for (const size_t state : {STATE_COMMITTED, STATE_LIVE})
        m_aMultiple[side][state] = std::max(value[state], LEAST_MULTIPLE);
}

uint32_t COpenPathFlatTerm::GetWidth(EPathSide side, size_t state) const {
    return WidthOf(m_aMultiple[side][state], GetCachedWidth(side, state));
}

CDualValue<uint32_t> COpenPathFlatTerm::WidthPair(EPathSide side) const {
    return DualOf([&](size_t state) { return GetWidth(side, state); });
}

CBezier COpenPathFlatTerm::WidthCurve(int32_t nLength, int32_t nWidth, EPathSide side, size_t state) const {
    const auto nEnd = static_cast<int32_t>(ToOutline(GetWidth(side, state)));
    return {{0, nEnd},
            {nLength / 6, (nEnd + 2 * nWidth) / 3},
            {static_cast<int32_t>(int64_t{nLength} * 2 / 3), nWidth},
            {nLength, nWidth}};
}

void COpenPathFlatTerm::AdjustEnd(TOutlinePoint& point, const CBezier& piece, size_t state) const {
    constexpr double LEAST_COSINE = 0.1; // or a cut along the stroke would never end
    const TSinCos turn = StableSinCos((90 - DegreesOf(m_angle[state])) % 360 * (std::numbers::pi / 180));
    const CPoint r = point.anchor - piece.p0;
    const double dCos = std::max(turn.dCos, LEAST_COSINE);
    const CPoint moved{static_cast<int32_t>((turn.dCos * r.x - turn.dSin * r.y) / dCos),
                       static_cast<int32_t>((turn.dSin * r.x + turn.dCos * r.y) / dCos)};
    point.anchor = CheckedAdd(piece.p0, moved);
}

TOutlinePoints COpenPathFlatTerm::BuildTip(TOutlinePoint p, TOutlinePoint q, size_t) const { return {p, q}; }

CPoint COpenPathFlatTerm::GetMarkPosition(EPathSide side, size_t state) const {
    const CPoint direction = Turned(GetNormal(side, state), 90 - DegreesOf(m_angle[state]));
    return PointAlong(GetPosition(state), direction,
                      CPathWidthControlPoint::SHOWN_TIMES * GetWidth(side, state));
}

void COpenPathFlatTerm::SetWidth(EPathSide side, size_t state, uint32_t uWidth) {
    const uint32_t uBase = GetCachedWidth(side, state);
    if (uBase != 0 && uWidth != GetWidth(side, state))
        m_aMultiple[side][state] = std::max(MultipleOf(uWidth, uBase), LEAST_MULTIPLE);
}

boost::shared_ptr<CDualValue<uint32_t>> COpenPathFlatTerm::WidthHandle(EPathSide side) {
    const auto spThis = boost::static_pointer_cast<COpenPathFlatTerm>(shared_from_this());
    return MakeDragCopy<uint32_t>(WidthPair(side), [spThis, side](const CDualValue<uint32_t>& copy) {
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) spThis->SetWidth(side, state, copy[state]);
    });
}

boost::shared_ptr<CDualValue<CPoint>> COpenPathFlatTerm::DragHandleImpl(bool bLeft, bool bBoth) {
    const EPathSide side = bLeft ? SIDE_LEFT : SIDE_RIGHT;
    const auto mark = DualOf([&](size_t state) { return GetMarkPosition(side, state); });
    const auto spThis = boost::static_pointer_cast<COpenPathFlatTerm>(shared_from_this());
    return MakeDragCopy<CPoint>(mark, [spThis, side, bBoth, mark](const CDualValue<CPoint>& copy) {
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) {
            if (copy[state] == mark[state]) continue;
            const CPoint away = copy[state] - spThis->GetPosition(state);
            const uint32_t uWidth = std::max<uint32_t>(
                static_cast<uint32_t>(LengthRound(away) / CPathWidthControlPoint::SHOWN_TIMES),
                LEAST_MULTIPLE);
            // The cut's direction on the right side is the left one's opposite.
            const CPoint toLeft = side == SIDE_LEFT ? away : CPoint{-away.x, -away.y};
            const CPoint along = Turned(spThis->GetNormal(SIDE_LEFT, state), 90);
            spThis->m_angle[state] = AngleBetween(along, toLeft);
            spThis->SetWidth(side, state, uWidth);
            if (bBoth) spThis->SetWidth(side == SIDE_LEFT ? SIDE_RIGHT : SIDE_LEFT, state, uWidth);
        }
    });
}

boost::shared_ptr<COpenPathTermBase> CreateOpenPathTerm(uint32_t uType, bool bBegin) {
    if (uType == TERM_SHARP) return boost::make_shared<COpenPathSharpTerm>(bBegin);
    if (uType == TERM_ROUND) return boost::make_shared<COpenPathRoundTerm>(bBegin);
    if (uType == TERM_FLAT) return boost::make_shared<COpenPathFlatTerm>(bBegin);
    throw deserialize_error();
}
