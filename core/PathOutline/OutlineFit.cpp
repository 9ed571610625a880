#include "core/PathOutline/OutlineFit.h"

#include <algorithm>

namespace {

/// The direction of a shorter tangent changes by whole degrees when a point of the curve is rounded.
constexpr uint32_t SURE_TANGENT = 4 * OUTLINE_UNIT;
constexpr uint32_t SHORTEST_TANGENT = 4;
constexpr uint32_t SHORTEST_HANDLE = 2 * OUTLINE_UNIT;
constexpr int32_t MITRE_REACH = 400 * OUTLINE_UNIT;

// A point that moves along the centre line while the width grows leaves that line by the angle of the width
// over the arc length.
CPoint SideDirection(CPoint tangent, CPoint widthTangent) {
    const int64_t nLength = LengthRound(widthTangent);
    return {static_cast<int32_t>(Dot(tangent, widthTangent) / nLength),
            static_cast<int32_t>(Cross(widthTangent, tangent) / nLength)};
}

// The direction with the length `nLength` by its truncated length, which is not zero.
CPoint ScaleDown(CPoint pt, int32_t nLength) {
    const uint32_t uLength = LengthDown(pt);
    return {MulDiv(pt.x, nLength, uLength), MulDiv(pt.y, nLength, uLength)};
}

CPoint Negated(CPoint pt) { return {-pt.x, -pt.y}; }

// The cross product, 0 if it may be due to rounding alone: otherwise a straight side's handles would get
// arbitrary lengths.
int64_t SafeCross(CPoint a, CPoint b) {
    const int64_t n = Cross(a, b);
    const int64_t nRounding = int64_t{LengthRound(a)} + LengthRound(b);
    return n > nRounding || n < -nRounding ? n : 0;
}

// The vector times numerator / divisor, which must agree in sign for the curve to lead forward.
uint32_t WantedLength(CPoint direction, int64_t nNumerator, int64_t nDivisor) {
    return LengthRound(
        {MulDiv(direction.x, nNumerator, nDivisor), MulDiv(direction.y, nNumerator, nDivisor)});
}

// `uHandle` is the centre's own handle there, `uWidth` the half-width.
CPoint FitHandle(CPoint direction, int64_t nNumerator, int64_t nDivisor, uint32_t uHandle, uint32_t uWidth) {
    if (nDivisor == 0) return {};
    if ((0 < nNumerator) != (0 < nDivisor)) nNumerator = 0;
    const uint64_t h = uHandle;
    const uint64_t w = uWidth;
    uint64_t uLength = std::min<uint64_t>(WantedLength(direction, nNumerator, nDivisor), h * 6 / 5 + w);
    if (2 * w / 3 + uLength < 4 * h / 5) uLength = 4 * h / 5 - 2 * w / 3;
    if (uLength < SHORTEST_HANDLE) uLength = 0;
    return Scale(direction, static_cast<int64_t>(uLength));
}

// Components of a vector in 64 bits: sums of several points times small factors.
struct TWide {
    int64_t x;
    int64_t y;
};
int64_t Cross(TWide a, CPoint b) { return a.x * b.y - a.y * b.x; }

} // namespace

CPoint DirectionAt(const CBezier& bez, uint32_t f) {
    constexpr uint32_t STEP = 0x400;
    const CPoint own = bez.TangentAt(f);
    if (LengthDown(own) >= SURE_TANGENT) return own;
    for (uint32_t uAway = STEP; uAway <= BEZIER_T_RESOLUTION; uAway += STEP) {
        if (uAway <= f)
            if (const CPoint before = bez.TangentAt(f - uAway); LengthDown(before) >= SURE_TANGENT)
                return before;
        if (uAway <= BEZIER_T_RESOLUTION - f)
            if (const CPoint behind = bez.TangentAt(f + uAway); LengthDown(behind) >= SURE_TANGENT)
                return behind;
    }
    return LengthDown(own) >= SHORTEST_TANGENT ? own : CPoint{};
}

std::optional<TOutlinePoint> OffsetPoint(const CBezier& piece, const CBezier& width, uint32_t f) {
    const CPoint tangent = DirectionAt(piece, f);
    const CPoint widthTangent = DirectionAt(width, f);
    if (IsZero(tangent) || IsZero(widthTangent)) return {};
    const CPoint direction = SideDirection(tangent, widthTangent);
    return TOutlinePoint{CheckedAdd(piece.PointAt(f), ScaleDown(Rot90(tangent), width.PointAt(f).y)),
                         Negated(direction), direction};
}

void FitHandles(TOutlinePoint& a, TOutlinePoint& b, const CBezier& centre, const CBezier& width) {
    const CPoint F = a.fore;
    const CPoint K = b.back;
    if (IsZero(F) || IsZero(K)) return;
    constexpr std::array<uint32_t, 3> FRACTIONS{0x5555, 0x8000, 0xAAAA};
    std::array<CPoint, 3> aptTangent;
    std::array<CPoint, 3> aptWidthTangent;
    for (size_t n = 0; n < FRACTIONS.size(); ++n) {
        aptTangent[n] = centre.TangentAt(FRACTIONS[n]);
        aptWidthTangent[n] = width.TangentAt(FRACTIONS[n]);
        if (IsZero(aptTangent[n]) || IsZero(aptWidthTangent[n])) {
            a.fore = b.back = {};
            return;
        }
    }
    const auto sideAt = [&](size_t n) {
        return CheckedAdd(centre.PointAt(FRACTIONS[n]),
                          Scale(Rot90(aptTangent[n]), width.PointAt(FRACTIONS[n]).y));
    };
    const CPoint O2 = sideAt(1);
    const CPoint T2 = SideDirection(aptTangent[1], aptWidthTangent[1]);
    int64_t nForeNumerator = 0, nForeDivisor = 0, nBackNumerator = 0, nBackDivisor = 0;
    // K points backwards: without an inflection both ends have the middle direction on the same side.
    if ((0 < Cross(F, T2)) == (0 < Cross(K, T2))) {
        // One cubic through the side's middle: (A + B) / 2 + 3/8 (fore + back) = O2.
        const TWide V{(8 * int64_t{O2.x} - 4 * (int64_t{a.anchor.x} + b.anchor.x)) / 3,
                      (8 * int64_t{O2.y} - 4 * (int64_t{a.anchor.y} + b.anchor.y)) / 3};
        nForeDivisor = nBackDivisor = SafeCross(F, K);
        nForeNumerator = Cross(V, K);
        nBackNumerator = -Cross(V, F);
    } else {
        // Each end is fitted by the third of the side nearer to it.
        const CPoint O1 = sideAt(0);
        const CPoint O3 = sideAt(2);
        const TWide X{(27 * int64_t{O1.x} - 7 * int64_t{a.anchor.x} - 20 * int64_t{O2.x}) / 6,
                      (27 * int64_t{O1.y} - 7 * int64_t{a.anchor.y} - 20 * int64_t{O2.y}) / 6};
        const TWide Y{(27 * int64_t{O3.x} - 7 * int64_t{b.anchor.x} - 20 * int64_t{O2.x}) / 6,
                      (27 * int64_t{O3.y} - 7 * int64_t{b.anchor.y} - 20 * int64_t{O2.y}) / 6};
        nForeNumerator = 2 * Cross(X, T2);
        nBackNumerator = -2 * Cross(Y, T2);
        nForeDivisor = SafeCross(F, T2);
        nBackDivisor = SafeCross(T2, K);
    }
    a.fore = FitHandle(F, nForeNumerator, nForeDivisor, LengthRound(centre.p1 - centre.p0),
                       static_cast<uint32_t>(width.p0.y));
    b.back = FitHandle(K, nBackNumerator, nBackDivisor, LengthRound(centre.p2 - centre.p3),
                       static_cast<uint32_t>(width.p3.y));
}

TCorner JoinCorner(const CBezier& before, const CBezier& behind) {
    if (const auto inner = Intersect(before, behind)) {
        const auto& [head, tail] = *inner;
        return {head.p1 - head.p0, {{head.p3, head.p2 - head.p3, tail.p1 - tail.p0}}, tail.p2 - tail.p3};
    }
    TCorner corner{before.p1 - before.p0, {{before.p3, before.p2 - before.p3, {}}}, behind.p2 - behind.p3};
    const CPoint D1 = before.TangentAt(BEZIER_T_RESOLUTION);
    const CPoint D2 = behind.TangentAt(0);
    if (!IsZero(D1) && !IsZero(D2)) {
        const auto mitre =
            Intersect(CBezier::Line(before.p3, CheckedAdd(before.p3, Scale(D1, MITRE_REACH))),
                      CBezier::Line(CheckedAdd(behind.p0, Negated(Scale(D2, MITRE_REACH))), behind.p0));
        if (mitre) {
            const CPoint ptSum = CheckedAdd(mitre->first.p3, mitre->second.p0);
            corner.vPoints.push_back({{ptSum.x / 2, ptSum.y / 2}, {}, {}});
        }
    }
    corner.vPoints.push_back({behind.p0, {}, behind.p1 - behind.p0});
    return corner;
}
