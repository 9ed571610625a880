#include "core/Bezier/BezierRun.h"

#include <algorithm>

CBezierRun::CBezierRun(std::vector<CBezier> vCurves) : m_vCurves(std::move(vCurves)), m_vStarts{0} {
    for (const CBezier& curve : m_vCurves) m_vStarts.push_back(m_vStarts.back() + curve.ArcLength());
}

uint64_t CBezierRun::LengthTo(uint32_t t) const {
    const size_t idx = t / BEZIER_T_RESOLUTION;
    if (idx >= m_vCurves.size()) return m_vStarts.back();
    return m_vStarts[idx] + m_vCurves[idx].ArcLength(t % BEZIER_T_RESOLUTION);
}

uint32_t CBezierRun::ParameterAt(uint64_t uLength) const {
    if (uLength == 0) return 0;
    uint32_t tBelow = 0;
    uint32_t tAbove = GetLast();
    while (tAbove - tBelow > 1) {
        const uint32_t t = tBelow + (tAbove - tBelow) / 2;
        (LengthTo(t) < uLength ? tBelow : tAbove) = t;
    }
    return tAbove;
}

TPolyBezier CBezierRun::Part(uint32_t tFirst, uint32_t tLast) const {
    TPolyBezier vPart;
    tLast = std::min(tLast, GetLast());
    while (tFirst < tLast) {
        const uint32_t tStart = tFirst / BEZIER_T_RESOLUTION * BEZIER_T_RESOLUTION;
        const uint32_t fEnd = std::min(tLast - tStart, BEZIER_T_RESOLUTION);
        const CBezier head = m_vCurves[tFirst / BEZIER_T_RESOLUTION].Split(fEnd).first;
        const CBezier part =
            head.Split(static_cast<uint32_t>(MulDiv(tFirst - tStart, BEZIER_T_RESOLUTION, fEnd))).second;
        if (vPart.empty()) vPart.push_back(part.p0);
        vPart.insert(vPart.end(), {part.p1, part.p2, part.p3});
        tFirst = tStart + fEnd;
    }
    return vPart;
}
