#include "core/PathObject/PathMark.h"

#include "core/Base/StableMath.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <numbers>

namespace {

// The part of a line on which a mark is dragged; without segments the mark stays.
struct TTrack {
    std::vector<CBezier> vSegments;
    std::pair<uint32_t, uint32_t> range;
};

} // namespace

TPathHit CPathMark::HitMark(const TPathPick& pick) {
    return pick.At(m_position[STATE_LIVE], HIT_ANCHOR, shared_from_this(), m_t[STATE_LIVE]);
}

boost::shared_ptr<CDualValue<CPoint>> CPathMark::DragAnchorPoint(bool) {
    const CDualValue<CPoint> before = m_position;
    // Allocated now: releasing the copy must not fail.
    const auto spTracks = boost::make_shared<std::array<TTrack, 2>>();
    if (const auto spLine = m_wpLine.lock())
        for (const size_t state : {STATE_COMMITTED, STATE_LIVE})
            (*spTracks)[state] = {spLine->GetSegments(state),
                                  spLine->GetMarkRange(GetTag(), m_t[state], state)};
    return MakeDragCopy<CPoint>(
        before, [before, spTracks, spThis = shared_from_this()](const CDualValue<CPoint>& copy) {
            for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) {
                const auto& [vSegments, range] = (*spTracks)[state];
                if (copy[state] == before[state] || vSegments.empty()) continue;
                spThis->m_t[state] =
                    std::clamp(SearchNearOnLine(vSegments, copy[state]).t, range.first, range.second);
            }
        });
}

uint32_t DistanceAlong(CPoint from, CPoint direction, CPoint pt) {
    const int64_t nLength = LengthRound(direction);
    if (nLength == 0) return 0;
    return static_cast<uint32_t>(std::max<int64_t>(Dot(pt - from, direction) / nLength, 0));
}

CPoint PointAlong(CPoint from, CPoint direction, int64_t nDistance) {
    return from + Scale(direction, nDistance);
}

CPoint Turned(CPoint direction, int nDegrees) {
    const TSinCos turn = StableSinCos(nDegrees % 360 * (std::numbers::pi / 180));
    return {static_cast<int32_t>(turn.dCos * direction.x - turn.dSin * direction.y),
            static_cast<int32_t>(turn.dSin * direction.x + turn.dCos * direction.y)};
}

uint32_t AngleBetween(CPoint from, CPoint toward) {
    uint32_t uBest = 90;
    double dBest = 0;
    for (int nAngle = 1; nAngle < 180; ++nAngle) {
        const TSinCos turn = StableSinCos(-nAngle * (std::numbers::pi / 180));
        const double dAlong = (turn.dCos * from.x - turn.dSin * from.y) * toward.x +
                              (turn.dSin * from.x + turn.dCos * from.y) * toward.y;
        if (nAngle > 1 && dAlong <= dBest) continue;
        dBest = dAlong;
        uBest = static_cast<uint32_t>(nAngle);
    }
    return uBest;
}
