#include "core/PathObject/StrokeLine.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace {

constexpr double TOLERANCE = 0.5; ///< between chord and curve
constexpr double LONGEST = 64;    ///< chord
constexpr double FEWEST = 4;      ///< chords of a segment
constexpr double MOST = 1024;
constexpr int TAPER_STEPS = 12; ///< halvings

// Rounded alike everywhere.
double Length(double x, double y) { return std::sqrt(x * x + y * y); }

double Distance(CPoint a, CPoint b) { return Length(double(a.x) - b.x, double(a.y) - b.y); }

double Mix(double a, double b, double f) { return a + (b - a) * f; }

double CubicAt(double p0, double p1, double p2, double p3, double f) {
    const double g = 1 - f;
    return g * g * g * p0 + 3 * g * g * f * p1 + 3 * g * f * f * p2 + f * f * f * p3;
}

size_t CountChords(const CBezier& bez) {
    const auto bend = [](CPoint a, CPoint b, CPoint c) {
        return Length(a.x - 2.0 * b.x + c.x, a.y - 2.0 * b.y + c.y);
    };
    const double dBend = std::max(bend(bez.p0, bez.p1, bez.p2), bend(bez.p1, bez.p2, bez.p3));
    const double dLength = Distance(bez.p0, bez.p1) + Distance(bez.p1, bez.p2) + Distance(bez.p2, bez.p3);
    return static_cast<size_t>(std::clamp(
        std::ceil(std::max(std::sqrt(0.75 * dBend / TOLERANCE), dLength / LONGEST)), FEWEST, MOST));
}

} // namespace

CStrokeLine::CStrokeLine(const COpenPathStream& stream) {
    AddPoints(stream.GetSegments(STATE_COMMITTED));
    if (m_vPoints.empty()) {
        const CPoint pt = stream.GetControlPoint(0)->GetAnchor()[STATE_COMMITTED];
        m_vPoints.assign(2, {double(pt.x), double(pt.y), 0, 0});
    }
    AddBoxes();
    AddMarks(stream);
    AddEnds(stream);
    AddHidden(stream);
}

CStrokeLine::CStrokeLine(const std::vector<CBezier>& vSegments) {
    AddPoints(vSegments);
    AddBoxes();
}

void CStrokeLine::AddPoints(const std::vector<CBezier>& vSegments) {
    if (vSegments.empty()) return;
    m_vPoints.push_back({double(vSegments[0].p0.x), double(vSegments[0].p0.y), 0, 0});
    for (size_t idx = 0; idx < vSegments.size(); ++idx) {
        const CBezier& bez = vSegments[idx];
        const size_t nChords = CountChords(bez);
        for (size_t n = 1; n <= nChords; ++n) {
            const auto uFraction = static_cast<uint32_t>(n * BEZIER_T_RESOLUTION / nChords);
            const double f = double(uFraction) / BEZIER_T_RESOLUTION;
            TLinePoint point{CubicAt(bez.p0.x, bez.p1.x, bez.p2.x, bez.p3.x, f),
                             CubicAt(bez.p0.y, bez.p1.y, bez.p2.y, bez.p3.y, f), 0,
                             static_cast<uint32_t>(idx) * BEZIER_T_RESOLUTION + uFraction};
            const TLinePoint& last = m_vPoints.back();
            point.dLength = last.dLength + Length(point.x - last.x, point.y - last.y);
            m_vPoints.push_back(point);
        }
    }
}

void CStrokeLine::AddBoxes() {
    for (size_t n = 0; n + 1 < m_vPoints.size(); n += CHORDS_OF_BOX) {
        std::array<double, 4> box{m_vPoints[n].x, m_vPoints[n].y, m_vPoints[n].x, m_vPoints[n].y};
        for (size_t i = n; i <= std::min(n + CHORDS_OF_BOX, m_vPoints.size() - 1); ++i) {
            box[0] = std::min(box[0], m_vPoints[i].x);
            box[1] = std::min(box[1], m_vPoints[i].y);
            box[2] = std::max(box[2], m_vPoints[i].x);
            box[3] = std::max(box[3], m_vPoints[i].y);
        }
        m_vBoxes.push_back(box);
    }
}

void CStrokeLine::AddMarks(const COpenPathStream& stream) {
    std::map<uint32_t, std::array<double, 2>> mapMarks;
    for (const auto& spMark : stream.GetWidthPoints())
        mapMarks[std::min(spMark->GetParameter()[STATE_COMMITTED], GetLast())] = {
            double(spMark->GetWidth(SIDE_LEFT, STATE_COMMITTED)),
            double(spMark->GetWidth(SIDE_RIGHT, STATE_COMMITTED))};
    if (mapMarks.empty()) mapMarks[GetLast() / 2] = {double(stream.GetWidth()), double(stream.GetWidth())};
    for (const auto& [t, adWidth] : mapMarks) {
        m_vMarks.push_back({At(t).dLength, t, adWidth});
        m_dMaxWidth = std::max({m_dMaxWidth, adWidth[SIDE_LEFT], adWidth[SIDE_RIGHT]});
    }
}

void CStrokeLine::AddEnds(const COpenPathStream& stream) {
    for (const bool bBegin : {true, false}) {
        const COpenPathTermBase& term = *stream.GetTerm(bBegin);
        const size_t nEnd = bBegin ? 0 : 1;
        const TMark& mark = bBegin ? m_vMarks.front() : m_vMarks.back();
        const double dLength = bBegin ? mark.dLength : GetLength() - mark.dLength;
        const auto nLength = static_cast<int32_t>(std::min(dLength * OUTLINE_UNIT, double(INT32_MAX / 4)));
        for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT}) {
            const auto nWidth = static_cast<int32_t>(mark.adWidth[side]) * OUTLINE_UNIT;
            const CBezier curve = term.WidthCurve(nLength, nWidth, side, STATE_COMMITTED);
            auto& adPoints = m_aTapers[nEnd][side].adPoints;
            const CPoint aptCurve[] = {curve.p0, curve.p1, curve.p2, curve.p3};
            for (size_t n = 0; n < adPoints.size(); ++n)
                adPoints[n] = {double(aptCurve[n].x) / OUTLINE_UNIT, double(aptCurve[n].y) / OUTLINE_UNIT};
            m_dMaxWidth = std::max(m_dMaxWidth, adPoints[0][1]);
        }
        if (const auto pRound = dynamic_cast<const COpenPathRoundTerm*>(&term))
            m_adEndReach[nEnd] = (mark.adWidth[SIDE_LEFT] + mark.adWidth[SIDE_RIGHT]) / 2 *
                                 pRound->GetGrow()[STATE_COMMITTED] / FIXED_ONE;
    }
}

void CStrokeLine::AddHidden(const COpenPathStream& stream) {
    const auto vCuts = SortedByParameter(stream.GetTransPoints(), STATE_COMMITTED);
    for (size_t n = 0; n < vCuts.size(); n += 2) {
        const bool bPair = n + 1 < vCuts.size(); // a single last cut hides the rest of the stroke
        const auto tAt = [&](size_t idx) {
            return std::min(vCuts[idx]->GetParameter()[STATE_COMMITTED], GetLast());
        };
        m_vHidden.push_back({tAt(n), bPair ? tAt(n + 1) : GetLast(), vCuts[n]->GetAngle()[STATE_COMMITTED],
                             bPair ? vCuts[n + 1]->GetAngle()[STATE_COMMITTED] : 90});
    }
}

TLinePoint CStrokeLine::At(uint32_t t) const {
    const auto itNext = std::ranges::upper_bound(m_vPoints, t, {}, &TLinePoint::t);
    if (itNext == m_vPoints.end()) return m_vPoints.back();
    if (itNext == m_vPoints.begin()) return m_vPoints.front();
    const TLinePoint &a = *std::prev(itNext), &b = *itNext;
    const double f = double(t - a.t) / (b.t - a.t);
    return {Mix(a.x, b.x, f), Mix(a.y, b.y, f), Mix(a.dLength, b.dLength, f), t};
}

double CStrokeLine::WidthAt(uint32_t t) const {
    const auto adWidth = WidthsAt(t);
    return std::max(adWidth[SIDE_LEFT], adWidth[SIDE_RIGHT]);
}

std::array<double, 2> CStrokeLine::WidthsAt(uint32_t t) const {
    if (m_vMarks.empty()) return {};
    const double dLength = At(t).dLength;
    const auto tapered = [&](size_t nEnd, double dFromEnd) {
        std::array<double, 2> adWidth{};
        for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT}) {
            const auto& p = m_aTapers[nEnd][side].adPoints;
            double dBelow = 0, dAbove = 1;
            for (int n = 0; n < TAPER_STEPS; ++n) {
                const double f = (dBelow + dAbove) / 2;
                (CubicAt(p[0][0], p[1][0], p[2][0], p[3][0], f) < dFromEnd ? dBelow : dAbove) = f;
            }
            adWidth[side] = std::max(CubicAt(p[0][1], p[1][1], p[2][1], p[3][1], dAbove), 0.0);
        }
        return adWidth;
    };
    const auto itNext = std::ranges::lower_bound(m_vMarks, t, {}, &TMark::t);
    if (itNext != m_vMarks.end() && itNext->t == t) return itNext->adWidth;
    if (itNext == m_vMarks.begin()) return tapered(0, dLength);
    if (itNext == m_vMarks.end()) return tapered(1, GetLength() - dLength);
    const TMark &a = *std::prev(itNext), &b = *itNext;
    const double dAll = b.dLength - a.dLength;
    const double f = dAll > 0 ? std::clamp((dLength - a.dLength) / dAll, 0.0, 1.0) : 1;
    const double dEased = f * f * (3 - 2 * f);
    return {Mix(a.adWidth[SIDE_LEFT], b.adWidth[SIDE_LEFT], dEased),
            Mix(a.adWidth[SIDE_RIGHT], b.adWidth[SIDE_RIGHT], dEased)};
}
