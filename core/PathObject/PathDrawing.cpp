#include "core/PathObject/PathDrawing.h"

#include <algorithm>

namespace {

constexpr size_t MOST_BOXES = 12;

CRect BoxOf(CPoint pt) { return {pt.x, pt.y, pt.x + 1, pt.y + 1}; }

// The box around the points of the curves from `nFirst` to before `nLast`, their ends included.
CRect BoxOf(const TPolyBezier& vCurve, size_t nFirst, size_t nLast) {
    CRect rc;
    for (size_t n = 3 * nFirst; n < std::min(3 * nLast + 1, vCurve.size()); ++n)
        rc = rc.Union(BoxOf(vCurve[n]));
    return rc;
}

size_t CountCurves(const TPolyBezier& v) { return v.empty() ? 0 : (v.size() - 1) / 3; }

bool IsSame(const TPolyBezier& a, size_t nA, const TPolyBezier& b, size_t nB) {
    const auto at = [](const TPolyBezier& v, size_t n) {
        return v.begin() + static_cast<std::ptrdiff_t>(3 * n);
    };
    return std::equal(at(a, nA), at(a, nA) + 4, at(b, nB));
}

// The differing stretches of two lists of consecutive curves.
void AddChanges(const TPolyBezier& a, const TPolyBezier& b, std::vector<CRect>& vBoxes) {
    const size_t nA = CountCurves(a), nB = CountCurves(b);
    if (nA == nB) {
        for (size_t n = 0; n < nA; ++n) {
            if (IsSame(a, n, b, n)) continue;
            const size_t nFirst = n;
            while (n < nA && !IsSame(a, n, b, n)) ++n;
            vBoxes.push_back(BoxOf(a, nFirst, n).Union(BoxOf(b, nFirst, n)));
        }
        return;
    }
    const size_t nLeast = std::min(nA, nB);
    size_t nHead = 0, nTail = 0;
    while (nHead < nLeast && IsSame(a, nHead, b, nHead)) ++nHead;
    while (nTail < nLeast - nHead && IsSame(a, nA - 1 - nTail, b, nB - 1 - nTail)) ++nTail;
    vBoxes.push_back(BoxOf(a, nHead, nA - nTail).Union(BoxOf(b, nHead, nB - nTail)));
}

} // namespace

CRect CPathDrawing::GetBounds() const { return GetDifference({}); }

CRect CPathDrawing::GetDifference(const CPathDrawing& other) const {
    CRect rc;
    for (const CRect& rcBox : ChangedBoxes(m_vCurves, other.m_vCurves)) rc = rc.Union(rcBox);
    const size_t nLines = std::max(m_vLines.size(), other.m_vLines.size());
    const bool bAlike = m_vLines.size() == other.m_vLines.size();
    for (size_t n = 0; n < nLines; ++n) {
        if (bAlike && m_vLines[n] == other.m_vLines[n]) continue;
        for (const auto* pLines : {&m_vLines, &other.m_vLines})
            if (n < pLines->size())
                for (const CPoint pt : (*pLines)[n]) rc = rc.Union(BoxOf(pt));
    }
    return rc;
}

std::vector<CRect> ChangedBoxes(const std::vector<TPolyBezier>& vBefore,
                                const std::vector<TPolyBezier>& vNow) {
    std::vector<CRect> vBoxes;
    const TPolyBezier none;
    for (size_t n = 0; n < std::max(vBefore.size(), vNow.size()); ++n)
        AddChanges(n < vBefore.size() ? vBefore[n] : none, n < vNow.size() ? vNow[n] : none, vBoxes);
    std::erase_if(vBoxes, [](const CRect& rc) { return rc.IsEmpty(); });
    while (vBoxes.size() > MOST_BOXES) {
        vBoxes[vBoxes.size() - 2] = vBoxes[vBoxes.size() - 2].Union(vBoxes.back());
        vBoxes.pop_back();
    }
    return vBoxes;
}
