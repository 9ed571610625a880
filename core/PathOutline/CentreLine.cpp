#include "core/PathOutline/CentreLine.h"

#include <algorithm>

void CCentreLine::SetAnchors(const TOutlinePoints& vAnchors) {
    m_vSegments.clear();
    m_vLengths.clear();
    m_memoLength.Begin(vAnchors.size() - 1);
    for (size_t i = 1; i < vAnchors.size(); ++i) {
        TOutlinePoint from = vAnchors[i - 1], to = vAnchors[i];
        to.anchor = CheckedAdd(to.anchor, {-from.anchor.x, -from.anchor.y});
        from.anchor = {};
        const CBezier bez = SegmentOf(from, to);
        const auto isSame = [&](const TLength& before) { return before.bez == bez; };
        const auto make = [&] { return TLength{bez, bez.ArcLength()}; };
        m_vSegments.push_back(bez);
        m_vLengths.push_back(m_memoLength.Get(i - 1, isSame, make).uLength);
    }
}

std::vector<TCentrePiece> CCentreLine::Divide(const std::vector<TOutlineWidth>& vWidths) {
    std::vector<TCentrePiece> vPieces;
    m_memoParts.Begin(m_vSegments.size());
    auto itFirst = vWidths.begin();
    for (size_t i = 0; i < m_vSegments.size(); ++i) {
        const CBezier& bez = m_vSegments[i];
        const auto tBegin = static_cast<uint32_t>(i) * BEZIER_T_RESOLUTION;
        const uint32_t tEnd = tBegin + BEZIER_T_RESOLUTION;
        while (itFirst != vWidths.end() && itFirst->t <= tBegin) ++itFirst;
        auto itLast = itFirst;
        while (itLast != vWidths.end() && itLast->t < tEnd) ++itLast;
        if (itFirst == itLast) {
            vPieces.push_back({tEnd, m_vLengths[i]});
            continue;
        }
        const auto endsAt = [&](const TOutlineWidth& width, const TCentrePiece& piece) {
            return width.t - tBegin == piece.tEnd;
        };
        const auto isSame = [&](const TParts& parts) {
            return parts.bez == bez &&
                   std::equal(itFirst, itLast, parts.vPieces.begin(), parts.vPieces.end() - 1, endsAt);
        };
        const auto make = [&] {
            TParts parts{bez, {}};
            uint32_t fBegin = 0;
            const auto append = [&](uint32_t fEnd) {
                parts.vPieces.push_back({fEnd, PartLength(bez, fBegin, fEnd)});
                fBegin = fEnd;
            };
            for (auto it = itFirst; it != itLast; ++it) append(it->t - tBegin);
            append(BEZIER_T_RESOLUTION);
            return parts;
        };
        for (const TCentrePiece& piece : m_memoParts.Get(i, isSame, make).vPieces)
            vPieces.push_back({tBegin + piece.tEnd, piece.uLength});
    }
    return vPieces;
}
