#include "core/PathObject/PathMark.h"

#include "core/Base/StableMath.h"

#include <algorithm>
#include <numbers>

boost::shared_ptr<CDualValue<CPoint>> CPathMark::DragAnchorPoint(bool) {
    const CDualValue<CPoint> before = m_position;
    return MakeDragCopy<CPoint>(
        before, [before, spThis = shared_from_this()](const CDualValue<CPoint>& copy) {
            const auto spLine = spThis->GetLine();
            if (!spLine) return;
            for (const size_t state : {STATE_COMMITTED, STATE_LIVE}) {
                if (copy[state] == before[state]) continue;
                const uint32_t t = spLine->SearchNearPointOnPath(copy[state], state).t;
                spThis->m_t[state] = spThis->Bounded(*spLine, t, state);
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
