#include "core/PathObject/OpacityField.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace {

constexpr int32_t PIXEL = 8 * OUTLINE_UNIT; ///< outline units to a canvas pixel
constexpr int PIXEL_BITS = 7;
static_assert(PIXEL == 1 << PIXEL_BITS);
constexpr size_t GROUP = 32; ///< cross-sections in a group
constexpr size_t WIDE = 16;  ///< groups in a wide one
constexpr uint32_t FULL = 255 * TOutlineRib::ALPHA_UNIT;

CRect BoxOf(CPoint pt) { return {pt.x, pt.y, pt.x + 1, pt.y + 1}; }

CPoint MiddleOf(int32_t x, int32_t y) { return {x * PIXEL + PIXEL / 2, y * PIXEL + PIXEL / 2}; }

// The pixels whose middles may lie in a box of outline units.
CRect PixelsOf(const CRect& rc) {
    return {rc.left >> PIXEL_BITS, rc.top >> PIXEL_BITS, (rc.right >> PIXEL_BITS) + 1,
            (rc.bottom >> PIXEL_BITS) + 1};
}

int64_t DistanceTo(const CRect& rc, CPoint pt) {
    const int64_t x = std::max({rc.left - pt.x, pt.x - (rc.right - 1), 0});
    const int64_t y = std::max({rc.top - pt.y, pt.y - (rc.bottom - 1), 0});
    return x * x + y * y;
}

int64_t FloorOf(int64_t n, int64_t nBy) { return n / nBy - (n % nBy < 0); }

// The places at which a quadrilateral's edges meet a row, from the first crossing to the last one.
struct TSpan {
    int64_t nFirst = std::numeric_limits<int64_t>::max();
    int64_t nLast = std::numeric_limits<int64_t>::min();

    void Add(CPoint a, CPoint b, int32_t y) {
        if (a.y > b.y) std::swap(a, b); // neighbours share the edge with its rounding
        if (y < a.y || y > b.y) return;
        if (a.y == b.y) return Take(std::min(a.x, b.x), std::max(a.x, b.x));
        const int64_t nWay = int64_t{y - a.y} * (int64_t{b.x} - a.x);
        const int64_t nHeight = int64_t{b.y} - a.y;
        const int64_t nFloor = FloorOf(nWay, nHeight);
        Take(a.x + nFloor, a.x + nFloor + (nFloor * nHeight != nWay));
    }
    void Take(int64_t nFrom, int64_t nTo) {
        nFirst = std::min(nFirst, nFrom);
        nLast = std::max(nLast, nTo);
    }
};

} // namespace

// The pixels of a tile that has the coverage, and the opacity of each.
class COpacityField::CPixels {
public:
    explicit CPixels(CAlphaBlock8& tile)
        : m_rc(tile.GetRect()), m_pCoverage(tile.GetAlpha()), m_vAlphas(Area(), NONE) {}

    // Between two neighbouring cross-sections with ends `a` and `b`.
    void AddQuad(const std::array<CPoint, 2>& a, uint32_t uA, const std::array<CPoint, 2>& b, uint32_t uB) {
        const CRect rcQuad = BoxOf(a[0]).Union(BoxOf(a[1])).Union(BoxOf(b[0])).Union(BoxOf(b[1]));
        const CRect rc = PixelsOf(rcQuad).Intersect(m_rc);
        if (rc.IsEmpty()) return;
        for (int32_t y = rc.top; y < rc.bottom; ++y) {
            const int32_t yMiddle = MiddleOf(0, y).y;
            TSpan span;
            span.Add(a[0], b[0], yMiddle);
            span.Add(a[1], b[1], yMiddle);
            span.Add(a[0], a[1], yMiddle);
            span.Add(b[0], b[1], yMiddle);
            if (span.nFirst > span.nLast) continue;
            const auto xFirst = static_cast<int32_t>((span.nFirst + PIXEL / 2 - 1) >> PIXEL_BITS);
            const auto xLast = static_cast<int32_t>((span.nLast - PIXEL / 2) >> PIXEL_BITS);
            for (int32_t x = std::max(xFirst, rc.left); x <= std::min(xLast, rc.right - 1); ++x) {
                if (m_pCoverage[IndexOf(x, y)] == 0) continue;
                int32_t& nAlpha = m_vAlphas[IndexOf(x, y)];
                if (nAlpha >= static_cast<int32_t>(std::max(uA, uB))) continue;
                nAlpha = std::max(nAlpha, Between(a, uA, b, uB, MiddleOf(x, y)));
            }
        }
    }

    // Multiplies the coverage; `fnNearest` returns the opacity of a pixel that no quadrilateral reaches.
    template <class Nearest>
    void Multiply(Nearest fnNearest) {
        for (int32_t y = m_rc.top; y < m_rc.bottom; ++y)
            for (int32_t x = m_rc.left; x < m_rc.right; ++x) {
                uint8_t& uCoverage = m_pCoverage[IndexOf(x, y)];
                if (uCoverage == 0) continue;
                const int32_t nAlpha = m_vAlphas[IndexOf(x, y)];
                const uint32_t uAlpha =
                    nAlpha != NONE ? static_cast<uint32_t>(nAlpha) : fnNearest(MiddleOf(x, y));
                uCoverage = static_cast<uint8_t>((uCoverage * uAlpha + FULL / 2) / FULL);
            }
    }

private:
    static constexpr int32_t NONE = -1;

    size_t Area() const { return static_cast<size_t>(m_rc.Width()) * static_cast<size_t>(m_rc.Height()); }
    size_t IndexOf(int32_t x, int32_t y) const {
        return static_cast<size_t>(y - m_rc.top) * static_cast<size_t>(m_rc.Width()) +
               static_cast<size_t>(x - m_rc.left);
    }

    // By the distances from the two cross-sections.
    static int32_t Between(const std::array<CPoint, 2>& a, uint32_t uA, const std::array<CPoint, 2>& b,
                           uint32_t uB, CPoint pt) {
        constexpr int MOST_BITS = 40; // a product with an opacity stays in 64 bits
        if (uA == uB) return static_cast<int32_t>(uA);
        const auto away = [&](const std::array<CPoint, 2>& ends) {
            const int64_t n = Cross(ends[1] - ends[0], pt - ends[0]);
            return static_cast<uint64_t>(n < 0 ? -n : n);
        };
        uint64_t uFromA = away(a), uFromB = away(b);
        const int nShift = std::max(0, static_cast<int>(std::bit_width(uFromA | uFromB)) - MOST_BITS);
        uFromA >>= nShift;
        uFromB >>= nShift;
        if (uFromA + uFromB == 0) return static_cast<int32_t>(std::max(uA, uB));
        return static_cast<int32_t>((uFromB * uA + uFromA * uB) / (uFromA + uFromB));
    }

    CRect m_rc;
    uint8_t* m_pCoverage;
    std::vector<int32_t> m_vAlphas; ///< in TOutlineRib::ALPHA_UNIT, NONE where nothing reaches
};

COpacityField::COpacityField(std::vector<TOutlineRib> vRibs) : m_vRibs(std::move(vRibs)) {
    Extend();
    for (size_t nFirst = 0; nFirst < m_vRibs.size(); nFirst += GROUP) {
        TGroup group{nFirst, std::min(nFirst + GROUP, m_vRibs.size()), {}, {}};
        for (size_t n = nFirst; n < std::min(group.nEnd + 1, m_vRibs.size()); ++n) {
            group.rcReach = group.rcReach.Union(BoxOf(m_vEnds[n][0])).Union(BoxOf(m_vEnds[n][1]));
            group.rcCentre = group.rcCentre.Union(BoxOf(m_vRibs[n].centre));
        }
        if (m_vGroups.size() % WIDE == 0) m_vWide.emplace_back();
        m_vWide.back() = m_vWide.back().Union(group.rcCentre);
        m_vGroups.push_back(group);
    }
}

// A cross-section without a length is extended across the centre line.
void COpacityField::Extend() {
    for (size_t n = 0; n < m_vRibs.size(); ++n) {
        const TOutlineRib& rib = m_vRibs[n];
        CPoint across = rib.left - rib.right;
        if (LengthDown(across) < PIXEL) {
            const CPoint along =
                m_vRibs[std::min(n + 1, m_vRibs.size() - 1)].centre - m_vRibs[n == 0 ? 0 : n - 1].centre;
            if (!IsZero(along)) across = Rot90(along);
        }
        const int64_t nLength = LengthRound(across);
        const auto part = [&](int32_t nWay) {
            return nLength == 0 ? 0 : static_cast<int32_t>(int64_t{nWay} * PIXEL / nLength);
        };
        const CPoint more{part(across.x), part(across.y)};
        m_vEnds.push_back({rib.left + more, rib.right - more});
    }
}

size_t COpacityField::FindNearest(CPoint pt, size_t nGuess) const {
    const auto distanceTo = [&](size_t n) {
        const CPoint away = m_vRibs[n].centre - pt;
        return Dot(away, away);
    };
    size_t nBest = nGuess;
    int64_t nNearest = distanceTo(nGuess);
    const auto visit = [&](const TGroup& group) {
        for (size_t n = group.nFirst; n < group.nEnd; ++n) {
            const int64_t nDistance = distanceTo(n);
            const bool bHigher = m_vRibs[n].uAlpha > m_vRibs[nBest].uAlpha;
            if (nDistance > nNearest || (nDistance == nNearest && !bHigher)) continue;
            nBest = n;
            nNearest = nDistance;
        }
    };
    visit(m_vGroups[nGuess / GROUP]); // a near one leaves few others in question
    for (size_t nWide = 0; nWide < m_vWide.size(); ++nWide) {
        if (DistanceTo(m_vWide[nWide], pt) > nNearest) continue;
        for (size_t n = nWide * WIDE; n < std::min((nWide + 1) * WIDE, m_vGroups.size()); ++n)
            if (DistanceTo(m_vGroups[n].rcCentre, pt) <= nNearest) visit(m_vGroups[n]);
    }
    return nBest;
}

void COpacityField::Multiply(CAlphaBlock8& tile) const {
    CPixels pixels(tile);
    for (const TGroup& group : m_vGroups) {
        if (PixelsOf(group.rcReach).Intersect(tile.GetRect()).IsEmpty()) continue;
        for (size_t n = group.nFirst; n < std::min(group.nEnd, m_vRibs.size() - 1); ++n)
            pixels.AddQuad(m_vEnds[n], m_vRibs[n].uAlpha, m_vEnds[n + 1], m_vRibs[n + 1].uAlpha);
    }
    size_t nNearest = 0;
    pixels.Multiply([&](CPoint pt) {
        nNearest = FindNearest(pt, nNearest);
        return m_vRibs[nNearest].uAlpha;
    });
}

void COpacityField::Raise(CAlphaBlock8& tile, const CRect& rcPath,
                          const boost::function<void(CAlphaBlock8&)>& fnFill) const {
    constexpr int UNIT_BITS = 3;
    const CRect rcReach{(rcPath.left >> UNIT_BITS) - 2, (rcPath.top >> UNIT_BITS) - 2,
                        (rcPath.right >> UNIT_BITS) + 3, (rcPath.bottom >> UNIT_BITS) + 3};
    const CRect rcTile = tile.GetRect();
    const CRect rc = rcReach.Intersect(rcTile);
    if (rcPath.IsEmpty() || rc.IsEmpty()) return;
    CAlphaBlock8 own;
    own.Create(rc.Size(), rc.TopLeft());
    fnFill(own);
    Multiply(own);
    for (int32_t y = rc.top; y < rc.bottom; ++y) {
        const uint8_t* pFrom = own.GetAlpha() + ptrdiff_t{y - rc.top} * rc.Width();
        uint8_t* pTo = tile.GetAlpha() + ptrdiff_t{y - rcTile.top} * rcTile.Width() + rc.left - rcTile.left;
        for (int32_t n = 0; n < rc.Width(); ++n) pTo[n] = std::max(pTo[n], pFrom[n]);
    }
}

uint32_t COpacityField::GetMean() const {
    constexpr uint64_t UNIT = 2 * TOutlineRib::ALPHA_UNIT;
    uint64_t uSum = 0, uLength = 0;
    for (size_t n = 1; n < m_vRibs.size(); ++n) {
        const uint64_t uWay = LengthRound(m_vRibs[n].centre - m_vRibs[n - 1].centre);
        uSum += uWay * (m_vRibs[n].uAlpha + m_vRibs[n - 1].uAlpha);
        uLength += uWay;
    }
    if (uLength == 0) return m_vRibs.front().uAlpha / TOutlineRib::ALPHA_UNIT;
    return static_cast<uint32_t>((uSum + UNIT * uLength / 2) / (UNIT * uLength));
}

bool AreSame(const boost::shared_ptr<const COpacityField>& spA,
             const boost::shared_ptr<const COpacityField>& spB) {
    return spA == spB || (spA && spB && *spA == *spB);
}
