#include "core/PathOutline/OutlineRibs.h"

#include <algorithm>

namespace {

constexpr uint32_t RIB_STEP = 8 * OUTLINE_UNIT; ///< a canvas pixel
constexpr size_t LEAST_STEPS = 8;               ///< of a piece, which may turn
constexpr size_t MOST_STEPS = 1024;             ///< the same
constexpr size_t MOST_RIBS = 1 << 18;           ///< unless pieces are too many

struct TPlacedRib {
    TOutlineRib rib;
    uint32_t t;
    uint64_t uLength; ///< along the centre line up to here
};

uint64_t PolygonLength(const CBezier& bez) {
    return uint64_t{LengthDown(bez.p1 - bez.p0)} + LengthDown(bez.p2 - bez.p1) + LengthDown(bez.p3 - bez.p2);
}

class CRibBuilder {
public:
    explicit CRibBuilder(size_t nPieces)
        : m_nMost(std::clamp<size_t>(MOST_RIBS / (nPieces + 1), LEAST_STEPS, MOST_STEPS)) {}

    // A piece of one side or, where both have it, of both, seen in the path's direction.
    void AddPiece(const TSidePiece* pLeft, const TSidePiece* pRight) {
        const TSidePiece& piece = pLeft ? *pLeft : *pRight;
        const CBezier bez = pLeft ? piece.pPiece->bez : piece.pPiece->bez.Reverse();
        const auto nSteps = static_cast<uint32_t>(
            std::clamp<uint64_t>(PolygonLength(bez) / RIB_STEP + 1, LEAST_STEPS, m_nMost));
        for (uint32_t n = 0; n <= nSteps; ++n) {
            const auto f = static_cast<uint32_t>(MulDiv(n, BEZIER_T_RESOLUTION, nSteps));
            const CPoint ptCentre = CheckedAdd(bez.PointAt(f), piece.ptOrigin);
            const CPoint ptLeft = pLeft ? EdgeOf(*pLeft, f, ptCentre) : ptCentre;
            const CPoint ptRight = pRight ? EdgeOf(*pRight, BEZIER_T_RESOLUTION - f, ptCentre) : ptCentre;
            const auto tIn = static_cast<uint32_t>(MulDiv(piece.tEnd - piece.tBegin, f, BEZIER_T_RESOLUTION));
            Add({ptLeft, ptRight, ptCentre, 0}, piece.tBegin + tIn);
        }
    }

    std::vector<TPlacedRib> Take() { return std::move(m_vRibs); }

private:
    // `f` is in the side's direction.
    static CPoint EdgeOf(const TSidePiece& piece, uint32_t f, CPoint ptCentre) {
        const auto point = OffsetPoint(piece.pPiece->bez, piece.pPiece->width, f);
        return point ? CheckedAdd(point->anchor, piece.ptOrigin) : ptCentre;
    }
    // A piece begins where the one before ends; only at a corner of the line are its ends others.
    void Add(const TOutlineRib& rib, uint32_t t) {
        if (m_vRibs.empty()) {
            m_vRibs.push_back({rib, t, 0});
            return;
        }
        const TPlacedRib& last = m_vRibs.back();
        if (last.rib == rib) return;
        m_vRibs.push_back({rib, t, last.uLength + LengthRound(rib.centre - last.rib.centre)});
    }

    size_t m_nMost;
    std::vector<TPlacedRib> m_vRibs;
};

// Both sides have the same pieces but for those without a direction.
std::vector<TPlacedRib> PlaceRibs(const TSide& left, const TSide& right) {
    CRibBuilder builder(std::max(left.vPieces.size(), right.vPieces.size()));
    auto itLeft = left.vPieces.begin();
    auto itRight = right.vPieces.rbegin();
    while (itLeft != left.vPieces.end() || itRight != right.vPieces.rend()) {
        const bool bRightOver = itRight == right.vPieces.rend();
        const bool bLeft = itLeft != left.vPieces.end() && (bRightOver || itLeft->tBegin <= itRight->tBegin);
        const bool bRight = !bRightOver && (!bLeft || itRight->tBegin == itLeft->tBegin);
        builder.AddPiece(bLeft ? &*itLeft : nullptr, bRight ? &*itRight : nullptr);
        if (bLeft) ++itLeft;
        if (bRight) ++itRight;
    }
    return builder.Take();
}

uint64_t LengthTo(const std::vector<TPlacedRib>& vRibs, uint32_t t) {
    const auto it = std::ranges::lower_bound(vRibs, t, {}, &TPlacedRib::t);
    if (it == vRibs.end()) return vRibs.back().uLength;
    if (it == vRibs.begin() || it->t == t) return it->uLength;
    const auto itBefore = it - 1;
    return itBefore->uLength + (it->uLength - itBefore->uLength) * (t - itBefore->t) / (it->t - itBefore->t);
}

} // namespace

std::vector<TOutlineRib> BuildRibs(const TSide& left, const TSide& right,
                                   const std::vector<TOutlineAlpha>& vAlphas) {
    std::vector<TPlacedRib> vPlaced = PlaceRibs(left, right);
    // A stroke without a direction is a dot.
    if (vPlaced.empty()) vPlaced.push_back({});
    std::vector<uint64_t> vLengths;
    for (const TOutlineAlpha& alpha : vAlphas) vLengths.push_back(LengthTo(vPlaced, alpha.t));
    std::vector<TOutlineRib> vRibs;
    vRibs.reserve(vPlaced.size());
    size_t idx = 0; // of the first mark behind the rib
    for (const TPlacedRib& placed : vPlaced) {
        while (idx < vAlphas.size() && vLengths[idx] <= placed.uLength) ++idx;
        const uint32_t uBefore = vAlphas[idx == 0 ? 0 : idx - 1].uAlpha * TOutlineRib::ALPHA_UNIT;
        uint32_t uAlpha = uBefore;
        if (idx != 0 && idx < vAlphas.size()) {
            const auto f = static_cast<uint32_t>((placed.uLength - vLengths[idx - 1]) * BEZIER_T_RESOLUTION /
                                                 (vLengths[idx] - vLengths[idx - 1]));
            const CBezier curve =
                EaseWidth({0, static_cast<int32_t>(uBefore)}, BEZIER_T_RESOLUTION,
                          static_cast<int32_t>(vAlphas[idx].uAlpha * TOutlineRib::ALPHA_UNIT));
            uAlpha = static_cast<uint32_t>(std::max(curve.PointAt(f).y, 0));
        }
        vRibs.push_back(placed.rib);
        vRibs.back().uAlpha = uAlpha;
    }
    return vRibs;
}
