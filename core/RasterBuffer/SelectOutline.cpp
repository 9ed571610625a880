// The mask is processed as bits, 32 pixels of a row in a word: bit i of a word is the word's i-th pixel
// from the left, set where it lies inside. A row of words and the one above it give the outline's edges
// above the row and between its pixels, also as bits; single pixels are handled only where a piece begins
// or ends.
#include "core/RasterBuffer/SelectOutline.h"

#include <boost/endian/conversion.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <vector>

namespace {

constexpr int32_t SIDE = DEFAULT_BLOCKSIZE.cx;
constexpr int32_t WORD = 32;
constexpr int32_t WORDS = SIDE / WORD; ///< in a tile's row
static_assert(DEFAULT_BLOCKSIZE.cy == SIDE && SIDE % WORD == 0);

using TRowBits = std::array<uint32_t, WORDS>;
using TTileBits = std::array<TRowBits, SIDE>;

constexpr TTileBits AllBits(uint32_t uWord) {
    TTileBits bits{};
    for (TRowBits& row : bits) row.fill(uWord);
    return bits;
}

constexpr TTileBits OUTSIDE = AllBits(0);
constexpr TTileBits INSIDE = AllBits(0xFFFFFFFF);

bool IsUniform(const TTileBits* pBits) { return pBits == &OUTSIDE || pBits == &INSIDE; }

// Eight pixels, the first in the lowest byte.
uint64_t EightAt(const uint8_t* p) { return boost::endian::load_little_u64(p); }

// The highest bits of the eight bytes, the first byte's lowest: set for at least half coverage.
uint32_t HalfCovered(uint64_t u) {
    return static_cast<uint32_t>((u >> 7 & 0x0101010101010101) * 0x0102040810204080 >> 56);
}

// Converts the part `sz` of a tile to bits, zeros beyond it. Returns the bounds, in the tile, of the pixels
// that are not 0.
CRect ReadTile(const uint8_t* pAlpha, CSize sz, TTileBits& bits) {
    constexpr size_t EIGHTS = SIDE / 8;
    std::array<uint64_t, EIGHTS> auColumns{}; // all rows combined
    CRect rc{0, SIDE, 0, 0};
    bits = OUTSIDE;
    for (int32_t y = 0; y < sz.cy; ++y, pAlpha += SIDE) {
        uint64_t uAny = 0;
        TRowBits& row = bits[static_cast<size_t>(y)];
        for (size_t n = 0; n < EIGHTS; ++n) {
            uint64_t u = EightAt(pAlpha + n * 8);
            const int32_t nIn = sz.cx - static_cast<int32_t>(n) * 8;
            if (nIn < 8) u = nIn <= 0 ? 0 : u & ((uint64_t{1} << nIn * 8) - 1);
            auColumns[n] |= u;
            uAny |= u;
            row[n / 4] |= HalfCovered(u) << n % 4 * 8;
        }
        if (!uAny) continue;
        rc.top = std::min(rc.top, y);
        rc.bottom = y + 1;
    }
    const auto isSet = [](uint64_t u) { return u != 0; };
    const auto first = std::find_if(auColumns.begin(), auColumns.end(), isSet);
    if (first == auColumns.end()) return {};
    const auto last = std::find_if(auColumns.rbegin(), auColumns.rend(), isSet);
    rc.left = static_cast<int32_t>(first - auColumns.begin()) * 8 + std::countr_zero(*first) / 8;
    rc.right = static_cast<int32_t>(auColumns.rend() - last) * 8 - std::countl_zero(*last) / 8;
    return rc;
}

// Processes the block rows from the top. One column and one row of blocks outside the mask, on the right
// and below, close the outline at its edge.
class COutlineTracer {
public:
    COutlineTracer(const CAlphaBufferImpl<uint8_t>& mask, TOutlineList& lstOutline)
        : m_mask(mask), m_lstOutline(lstOutline), m_nColumns(mask.GetBufferSize().cx + 1),
          m_vBegin(static_cast<size_t>(m_nColumns) * SIDE) {
        for (TBlockRow* pRow : {&m_above, &m_here}) pRow->vpTiles.assign(CountOf(m_nColumns), &OUTSIDE);
    }

    CRect Trace() {
        for (int32_t nRow = 0; nRow <= m_mask.GetBufferSize().cy; ++nRow) {
            std::swap(m_above, m_here);
            ReadRow(nRow);
            if (!m_above.bAny && !m_here.bAny) continue;
            const int32_t nRows = m_here.nOwn == 0 ? 1 : SIDE; // uniform tiles change only in their first row
            for (int32_t n = 0; n < nRows; ++n) TraceRow(nRow * SIDE, n);
        }
        Flush();
        return m_rcBound;
    }

private:
    struct TBlockRow {
        std::vector<const TTileBits*> vpTiles;        ///< by column
        std::vector<std::unique_ptr<TTileBits>> vOwn; ///< storage for tiles that are not uniform
        size_t nOwn = 0;                              ///< number of used entries
        bool bAny = false;                            ///< true when there are tiles
    };

    static size_t CountOf(int32_t n) { return static_cast<size_t>(n); }

    void ReadRow(int32_t nRow) {
        m_here.nOwn = 0;
        m_here.bAny = false;
        std::fill(m_here.vpTiles.begin(), m_here.vpTiles.end(), &OUTSIDE);
        if (nRow == m_mask.GetBufferSize().cy) return;
        for (int32_t nColumn = 0; nColumn + 1 < m_nColumns; ++nColumn) {
            const CPoint pt = m_mask.BlockCorner(nColumn, nRow);
            if (const CAlphaBlock8* pTile = m_mask.FindBlock(pt))
                m_here.vpTiles[CountOf(nColumn)] = BitsOf(*pTile, pt);
        }
    }

    const TTileBits* BitsOf(const CAlphaBlock8& tile, CPoint pt) {
        m_here.bAny = true;
        const CRect rc = CRect(pt, DEFAULT_BLOCKSIZE).Intersect(m_mask.GetRect());
        const bool bFull = &tile == FullSelectTile().get() || tile.IsAll(255);
        if (bFull && rc.Size() == DEFAULT_BLOCKSIZE) {
            m_rcBound = m_rcBound.Union(rc);
            return &INSIDE;
        }
        if (m_here.nOwn == m_here.vOwn.size()) m_here.vOwn.push_back(std::make_unique<TTileBits>());
        TTileBits& bits = *m_here.vOwn[m_here.nOwn++];
        const CRect rcSet = ReadTile(tile.GetAlpha(), rc.Size(), bits);
        if (!rcSet.IsEmpty()) m_rcBound = m_rcBound.Union(CRect(pt + rcSet.TopLeft(), rcSet.Size()));
        return &bits;
    }

    // Traces the pieces along and between the pixels of row `n` of the block row that begins at `nTop`. In
    // the first row of a tile everything can change, in the others only the tiles that are not uniform or
    // right of one.
    void TraceRow(int32_t nTop, int32_t n) {
        const std::vector<const TTileBits*>& vpAbove = n == 0 ? m_above.vpTiles : m_here.vpTiles;
        const size_t nAbove = CountOf(n == 0 ? SIDE - 1 : n - 1);
        uint32_t uAboveLeft = 0; // the last pixels of the previous column
        uint32_t uHereLeft = 0;
        bool bLeft = false;
        for (size_t nColumn = 0; nColumn < CountOf(m_nColumns); ++nColumn) {
            const TTileBits* pAbove = vpAbove[nColumn];
            const TTileBits* pHere = m_here.vpTiles[nColumn];
            const bool bHere = n == 0 ? pAbove != &OUTSIDE || pHere != &OUTSIDE : !IsUniform(pHere);
            const TRowBits& above = (*pAbove)[nAbove];
            const TRowBits& here = (*pHere)[CountOf(n)];
            if (bHere || bLeft) {
                const int32_t x = static_cast<int32_t>(nColumn) * SIDE;
                for (size_t w = 0; w < WORDS; ++w) {
                    TraceWord({x + static_cast<int32_t>(w) * WORD, nTop + n}, above[w], uAboveLeft, here[w],
                              uHereLeft);
                    uAboveLeft = above[w] >> (WORD - 1);
                    uHereLeft = here[w] >> (WORD - 1);
                }
            }
            uAboveLeft = above[WORDS - 1] >> (WORD - 1);
            uHereLeft = here[WORDS - 1] >> (WORD - 1);
            bLeft = bHere;
        }
    }

    void TraceWord(CPoint pt, uint32_t uAbove, uint32_t uAboveLeft, uint32_t uHere, uint32_t uHereLeft) {
        // Every pixel's left neighbour.
        const uint32_t uAboveBefore = uAbove << 1 | uAboveLeft;
        const uint32_t uHereBefore = uHere << 1 | uHereLeft;
        const uint32_t uEdge = uAbove ^ uHere; // above each pixel
        const uint32_t uEdgeBefore = uAboveBefore ^ uHereBefore;
        const uint32_t uSide = uHere ^ uHereBefore; // left of each pixel
        const uint32_t uSideAbove = uAbove ^ uAboveBefore;
        // A piece ends where inside and outside change sides, so that it never crosses a corner.
        const uint32_t uRunsOn = uEdge & uEdgeBefore & ~uSide;
        const uint32_t uFallsOn = uSide & uSideAbove & ~uEdge;
        EmitRuns(pt, uEdge & ~uRunsOn, uEdgeBefore & ~uRunsOn);
        for (uint32_t u = uSideAbove & ~uFallsOn; u; u &= u - 1) {
            const int32_t x = pt.x + std::countr_zero(u);
            Append({x, m_vBegin[CountOf(x)], x, pt.y});
        }
        for (uint32_t u = uSide & ~uFallsOn; u; u &= u - 1)
            m_vBegin[CountOf(pt.x + std::countr_zero(u))] = pt.y;
    }

    // Appends horizontal pieces from the bits where they begin and end, which alternate.
    void EmitRuns(CPoint pt, uint32_t uBegins, uint32_t uEnds) {
        for (; uEnds; uEnds &= uEnds - 1) {
            if (m_nRun < 0) {
                m_nRun = pt.x + std::countr_zero(uBegins);
                uBegins &= uBegins - 1;
            }
            Append({m_nRun, pt.y, pt.x + std::countr_zero(uEnds), pt.y});
            m_nRun = -1;
        }
        if (uBegins) m_nRun = pt.x + std::countr_zero(uBegins);
    }

    // Noise has millions of pieces: the list takes many at a time.
    void Append(const TOutlineSegment& piece) {
        if (m_nPieces == m_aPieces.size()) Flush();
        m_aPieces[m_nPieces++] = piece;
    }
    void Flush() {
        m_lstOutline.insert(m_lstOutline.end(), m_aPieces.begin(),
                            m_aPieces.begin() + static_cast<ptrdiff_t>(m_nPieces));
        m_nPieces = 0;
    }

    const CAlphaBufferImpl<uint8_t>& m_mask;
    TOutlineList& m_lstOutline;
    std::array<TOutlineSegment, 512> m_aPieces; ///< not yet in the list
    size_t m_nPieces = 0;
    int32_t m_nColumns; ///< includes the one outside
    TBlockRow m_above;
    TBlockRow m_here;
    std::vector<int32_t> m_vBegin; ///< start of the vertical piece left of each column
    int32_t m_nRun = -1;           ///< start of the current horizontal piece
    CRect m_rcBound;
};

} // namespace

CRect TraceOutline(const CAlphaBufferImpl<uint8_t>& mask, TOutlineList& lstOutline) {
    return COutlineTracer(mask, lstOutline).Trace();
}
