#include "core/PathOutline/WidthProfile.h"

#include <boost/numeric/conversion/cast.hpp>

#include <algorithm>

namespace {

// The curve moved along the arc length so that it begins at 0.
CBezier FromZero(const CBezier& width) {
    const CPoint ptBack{-width.p0.x, 0};
    return {width.p0 + ptBack, width.p1 + ptBack, width.p2 + ptBack, width.p3 + ptBack};
}

} // namespace

CBezier SegmentOf(const TOutlinePoint& from, const TOutlinePoint& to) {
    return {from.anchor, CheckedAdd(from.anchor, from.fore), CheckedAdd(to.anchor, to.back), to.anchor};
}

std::vector<CBezier> SegmentsOf(const TOutlinePoints& vAnchors) {
    std::vector<CBezier> vSegments;
    for (size_t i = 1; i < vAnchors.size(); ++i) vSegments.push_back(SegmentOf(vAnchors[i - 1], vAnchors[i]));
    return vSegments;
}

CBezier EaseWidth(CPoint from, int32_t nLength, int32_t nWidth) {
    const auto at = [&](int64_t n) { return CheckedAdd(from, {static_cast<int32_t>(n), 0}).x; };
    return {from, {at(nLength / 3), from.y}, {at(int64_t{nLength} * 2 / 3), nWidth}, {at(nLength), nWidth}};
}

uint32_t FractionAt(const CBezier& width, int32_t nLength) {
    uint32_t fBelow = 0;
    uint32_t fAbove = BEZIER_T_RESOLUTION;
    while (fAbove - fBelow > 1) {
        const uint32_t f = (fBelow + fAbove) / 2;
        (width.PointAt(f).x < nLength ? fBelow : fAbove) = f;
    }
    return width.p0.x < nLength ? fAbove : 0;
}

uint32_t PartLength(const CBezier& bez, uint32_t fFirst, uint32_t fLast) {
    const CBezier rest = bez.Split(fFirst).second;
    return rest.ArcLength(
        static_cast<uint32_t>(MulDiv(fLast - fFirst, BEZIER_T_RESOLUTION, BEZIER_T_RESOLUTION - fFirst)));
}

CPathLengths::CPathLengths(const std::vector<CBezier>& vSegments) : m_vSegments(vSegments), m_vStarts{0} {
    for (const CBezier& segment : vSegments) m_vStarts.push_back(m_vStarts.back() + segment.ArcLength());
}

CPathLengths::CPathLengths(const std::vector<CBezier>& vSegments, const std::vector<uint32_t>& vLengths)
    : m_vSegments(vSegments), m_vStarts{0} {
    for (const uint32_t uLength : vLengths) m_vStarts.push_back(m_vStarts.back() + uLength);
}

int32_t CPathLengths::Between(uint32_t tFirst, uint32_t tLast) const {
    const size_t nSegments = m_vSegments.size();
    const size_t idxFirst = std::min<size_t>(tFirst / BEZIER_T_RESOLUTION, nSegments);
    const size_t idxLast = std::min<size_t>(tLast / BEZIER_T_RESOLUTION, nSegments);
    const uint32_t fFirst = idxFirst < nSegments ? tFirst % BEZIER_T_RESOLUTION : 0;
    const uint32_t fLast = idxLast < nSegments ? tLast % BEZIER_T_RESOLUTION : 0;
    const auto part = [&](size_t idx, uint32_t fFrom, uint32_t fTo) {
        return PartLength(m_vSegments[idx], fFrom, fTo);
    };
    if (idxFirst > idxLast || (idxFirst == idxLast && fFirst >= fLast)) return 0;
    if (idxFirst == idxLast) return boost::numeric_cast<int32_t>(part(idxFirst, fFirst, fLast));
    uint64_t uSum = m_vStarts[idxLast] - m_vStarts[idxFirst];
    if (fFirst != 0) {
        uSum -= m_vStarts[idxFirst + 1] - m_vStarts[idxFirst];
        uSum += part(idxFirst, fFirst, BEZIER_T_RESOLUTION);
    }
    if (fLast != 0) uSum += part(idxLast, 0, fLast);
    return boost::numeric_cast<int32_t>(uSum);
}

std::vector<TWidthPart> WidthParts(const std::vector<TCentrePiece>& vPieces,
                                   const std::vector<std::pair<uint32_t, uint32_t>>& vWidths,
                                   const IOutlineTerm& start, const IOutlineTerm& end, EPathSide side) {
    std::vector<TWidthPart> vParts;
    vParts.reserve(vPieces.size());
    auto itPiece = vPieces.begin();
    // The pieces up to `itLast` share the curve that `curveOver` has over their length.
    const auto append = [&](auto itLast, auto curveOver) {
        if (itPiece == itLast) return;
        uint64_t uLength = 0;
        for (auto it = itPiece; it != itLast; ++it) uLength += it->uLength;
        CBezier rest = curveOver(boost::numeric_cast<int32_t>(uLength));
        for (; itPiece != itLast; ++itPiece) {
            const uint32_t fEnd = (itPiece->tEnd - 1) % BEZIER_T_RESOLUTION + 1;
            if (itPiece + 1 == itLast) {
                vParts.push_back({fEnd, rest});
                continue;
            }
            // At the piece's own length: dividing by parameters would give wrong slopes to segments of
            // uneven length.
            const auto [head, tail] = rest.Split(FractionAt(rest, static_cast<int32_t>(itPiece->uLength)));
            vParts.push_back({fEnd, head});
            rest = FromZero(tail);
        }
    };
    const auto endsBy = [&](uint32_t t) {
        return std::find_if(itPiece, vPieces.end(),
                            [&](const TCentrePiece& piece) { return piece.tEnd > t; });
    };
    const auto widthOf = [](const auto& width) { return static_cast<int32_t>(width.second); };
    append(endsBy(vWidths.front().first),
           [&](int32_t nLength) { return start.WidthCurve(nLength, widthOf(vWidths.front()), side); });
    for (size_t i = 1; i < vWidths.size(); ++i)
        append(endsBy(vWidths[i].first), [&](int32_t nLength) {
            return EaseWidth({0, widthOf(vWidths[i - 1])}, nLength, widthOf(vWidths[i]));
        });
    append(vPieces.end(), [&](int32_t nLength) {
        const CBezier curve = end.WidthCurve(nLength, widthOf(vWidths.back()), side);
        const auto mirrored = [&](CPoint pt) { return CPoint{nLength - pt.x, pt.y}; };
        return CBezier{mirrored(curve.p3), mirrored(curve.p2), mirrored(curve.p1), mirrored(curve.p0)};
    });
    return vParts;
}

uint32_t EasedBetween(const CPathLengths& lengths, std::pair<uint32_t, uint32_t> lower,
                      std::pair<uint32_t, uint32_t> upper, uint32_t t) {
    const int32_t nAll = lengths.Between(lower.first, upper.first);
    if (nAll == 0) return upper.second;
    const int32_t nPart = std::min(lengths.Between(lower.first, t), nAll);
    const CBezier curve =
        EaseWidth({0, static_cast<int32_t>(lower.second)}, nAll, static_cast<int32_t>(upper.second));
    return static_cast<uint32_t>(
        curve.PointAt(static_cast<uint32_t>(MulDiv(nPart, BEZIER_T_RESOLUTION, nAll))).y);
}

uint32_t WidthAt(const CPathLengths& lengths, const std::vector<TOutlineWidth>& vWidths, uint32_t uWidth,
                 uint32_t t, EPathSide side) {
    if (vWidths.empty()) return uWidth;
    return EasedAt(lengths, vWidths, t, [&](const TOutlineWidth& width) { return width.auWidth[side]; });
}

std::vector<TOutlineWidth> WidthsOrMiddle(const TOutlineSource& source) {
    if (!source.vWidths.empty()) return source.vWidths;
    return {{LastParameter(source.vAnchors) / 2, {source.uWidth, source.uWidth}}};
}

std::array<uint32_t, 2> TaperedWidthsAt(const TOutlineSource& source, uint32_t t) {
    const auto vSegments = SegmentsOf(source.vAnchors);
    const auto vWidths = WidthsOrMiddle(source);
    if (vSegments.empty()) return vWidths.front().auWidth;
    const CPathLengths lengths(vSegments);
    const auto toEnd = [&](const IOutlineTerm& term, const TOutlineWidth& width, uint32_t tEnd,
                           EPathSide side) {
        const CBezier curve =
            term.WidthCurve(lengths.Between(std::min(width.t, tEnd), std::max(width.t, tEnd)),
                            static_cast<int32_t>(width.auWidth[side]), side);
        const int32_t nLength = lengths.Between(std::min(t, tEnd), std::max(t, tEnd));
        return static_cast<uint32_t>(std::max(curve.PointAt(FractionAt(curve, nLength)).y, 0));
    };
    std::array<uint32_t, 2> auWidth{};
    for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT})
        if (t < vWidths.front().t)
            auWidth[side] = toEnd(*source.pBegin, vWidths.front(), 0, side);
        else if (t > vWidths.back().t)
            auWidth[side] = toEnd(*source.pEnd, vWidths.back(), LastParameter(source.vAnchors), side);
        else
            auWidth[side] = WidthAt(lengths, vWidths, source.uWidth, t, side);
    return auWidth;
}
