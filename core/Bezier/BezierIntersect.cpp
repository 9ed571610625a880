// Crossings of two curves. Each is cut into sixteen pieces and each piece into fifty chords; pairs are
// visited from the junction on, and the first chords that cross are the result. Boxes only exclude pairs
// that cannot cross, so they do not change it.
#include "core/Bezier/Bezier.h"

#include <algorithm>

namespace {

constexpr uint32_t PIECES = 16;
constexpr uint32_t CHORDS = 50;
constexpr uint32_t PIECE_RANGE = BEZIER_T_RESOLUTION / PIECES;
constexpr uint32_t HALF_CHORD = 40;

// A piece, the box of its control points, and its chords, computed when needed.
struct TPiece {
    CBezier bez;
    CRect rc; ///< right and bottom plus 1
    std::optional<std::array<CPoint, CHORDS + 1>> aptChord;
    CRect rcChord; ///< of the chords' ends, right and bottom inclusive
};

CRect BoxOf(const CPoint* ptBegin, const CPoint* ptEnd) {
    CRect rc{ptBegin->x, ptBegin->y, ptBegin->x, ptBegin->y};
    for (const CPoint* p = ptBegin; p != ptEnd; ++p) {
        rc.left = std::min(rc.left, p->x);
        rc.top = std::min(rc.top, p->y);
        rc.right = std::max(rc.right, p->x);
        rc.bottom = std::max(rc.bottom, p->y);
    }
    return rc;
}

// Inclusive boxes that have a point in common.
bool Touch(const CRect& a, const CRect& b) {
    return a.left <= b.right && b.left <= a.right && a.top <= b.bottom && b.top <= a.bottom;
}

// True when the curves' control points are so far apart that no pieces can touch. A piece stays inside its
// curve's control points, except for rounding at each split, less than two units.
bool AreApart(const CBezier& a, const CBezier& b) {
    constexpr int64_t ROUNDING = 4 * PIECES;
    const CRect rcA = BoxOf(&a.p0, &a.p3 + 1);
    const CRect rcB = BoxOf(&b.p0, &b.p3 + 1);
    const auto apart = [](int32_t nEnd, int32_t nBegin) { return int64_t{nBegin} - nEnd > ROUNDING; };
    return apart(rcA.right, rcB.left) || apart(rcB.right, rcA.left) || apart(rcA.bottom, rcB.top) ||
           apart(rcB.bottom, rcA.top);
}

// The pieces of a curve, which are cut off from its start when they are needed.
class CPieces {
public:
    explicit CPieces(const CBezier& bez) : m_bezRest(bez) {}

    TPiece& operator[](uint32_t uPiece) {
        for (; m_uCut <= uPiece; ++m_uCut) {
            const auto [head, tail] = m_uCut + 1 < PIECES
                                          ? m_bezRest.Split(BEZIER_T_RESOLUTION / (PIECES - m_uCut))
                                          : std::pair{m_bezRest, m_bezRest};
            TPiece& piece = m_aPieces[m_uCut];
            piece.bez = head;
            piece.rc = BoxOf(&head.p0, &head.p3 + 1);
            ++piece.rc.right;
            ++piece.rc.bottom;
            m_bezRest = tail;
        }
        return m_aPieces[uPiece];
    }

private:
    CBezier m_bezRest;
    uint32_t m_uCut = 0;
    std::array<TPiece, PIECES> m_aPieces;
};

void Sample(TPiece& piece) {
    if (piece.aptChord) return;
    auto& aptChord = piece.aptChord.emplace();
    for (uint32_t k = 0; k <= CHORDS; ++k) aptChord[k] = piece.bez.PointAt(k * BEZIER_T_RESOLUTION / CHORDS);
    piece.rcChord = BoxOf(aptChord.data(), aptChord.data() + aptChord.size());
}

// True when n lies between 0 and `nEnd`, both inclusive.
bool IsWithin(int64_t n, int64_t nEnd) { return nEnd > 0 ? n >= 0 && n <= nEnd : n <= 0 && n >= nEnd; }

bool DoChordsCross(CPoint a0, CPoint a1, CPoint b0, CPoint b1) {
    const CPoint d1 = a1 - a0;
    const CPoint d2 = b1 - b0;
    const CPoint r = b0 - a0;
    const int64_t den = -Cross(d1, d2);
    return den != 0 && IsWithin(Cross(d2, r), den) && IsWithin(Cross(d1, r), den);
}

// The first crossing of two pieces, from the end of `a` and the start of `b`: the chords' numbers.
std::optional<std::pair<uint32_t, uint32_t>> FindChords(TPiece& a, TPiece& b) {
    Sample(a);
    Sample(b);
    if (!Touch(a.rcChord, b.rcChord)) return {};
    const auto& aptA = *a.aptChord;
    const auto& aptB = *b.aptChord;
    for (uint32_t j = CHORDS; j-- > 0;) {
        const CRect rcA = BoxOf(&aptA[j], &aptA[j] + 2);
        if (!Touch(rcA, b.rcChord)) continue;
        for (uint32_t n = 0; n < CHORDS; ++n)
            if (DoChordsCross(aptA[j], aptA[j + 1], aptB[n], aptB[n + 1])) return std::pair{j, n};
    }
    return {};
}

} // namespace

std::optional<TCrossing> FindCrossing(const CBezier& a, const CBezier& b) {
    if (AreApart(a, b)) return {};
    CPieces piecesA(a);
    CPieces piecesB(b);
    const auto fractionOf = [](uint32_t uPiece, uint32_t uChord) {
        return uPiece * PIECE_RANGE + uChord * PIECE_RANGE / CHORDS + HALF_CHORD;
    };
    for (uint32_t i = PIECES; i-- > 0;) {
        for (uint32_t m = 0; m < PIECES; ++m) {
            if (piecesA[i].rc.Intersect(piecesB[m].rc).IsEmpty()) continue;
            if (const auto chords = FindChords(piecesA[i], piecesB[m]))
                return TCrossing{fractionOf(i, chords->first), fractionOf(m, chords->second)};
        }
    }
    return {};
}

std::optional<std::pair<CBezier, CBezier>> Intersect(const CBezier& a, const CBezier& b) {
    const auto crossing = FindCrossing(a, b);
    if (!crossing) return {};
    return std::pair{a.Split(crossing->uFirst).first, b.Split(crossing->uSecond).second};
}
