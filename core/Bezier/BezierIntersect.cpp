// Crossings of two curves. Each is cut into sixteen pieces and each piece into fifty chords; pairs are
// visited from the junction on, and the first chords that cross are the result. Boxes around pieces, groups
// of chords and chords only exclude pairs that cannot cross, so they do not change it.
#include "core/Bezier/Bezier.h"

#include <algorithm>

namespace {

constexpr uint32_t PIECES = 16;
constexpr uint32_t CHORDS = 50;
constexpr uint32_t PIECE_RANGE = BEZIER_T_RESOLUTION / PIECES;
constexpr uint32_t HALF_CHORD = 40;
constexpr uint32_t GROUP = 10; ///< chords
constexpr uint32_t GROUPS = CHORDS / GROUP;

// The chords of a piece and their boxes.
struct TChords {
    std::array<CPoint, CHORDS + 1> apt;
    std::array<CRect, GROUPS> arcGroup;
    CRect rc;
};

// Right and bottom are inclusive.
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

// CRect::Union would leave out a box that is a line.
CRect BothOf(const CRect& a, const CRect& b) {
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
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

// The weights of a curve's points where its chords begin.
const std::array<TBezierWeights, CHORDS>& ChordWeights() {
    static const auto aWeights = [] {
        std::array<TBezierWeights, CHORDS> aResult;
        for (uint32_t k = 0; k < CHORDS; ++k) aResult[k] = TBezierWeights(k * BEZIER_T_RESOLUTION / CHORDS);
        return aResult;
    }();
    return aWeights;
}

TChords ChordsOf(const CBezier& bez) {
    const auto& aWeights = ChordWeights();
    TChords chords;
    auto& [apt, arcGroup, rc] = chords;
    apt[0] = bez.p0;
    for (uint32_t k = 1; k < CHORDS; ++k) apt[k] = bez.PointAt(aWeights[k]);
    apt[CHORDS] = bez.p3;
    for (uint32_t n = 0; n < GROUPS; ++n) {
        arcGroup[n] = BoxOf(&apt[n * GROUP], &apt[(n + 1) * GROUP] + 1);
        rc = n == 0 ? arcGroup[n] : BothOf(rc, arcGroup[n]);
    }
    return chords;
}

// The pieces of a curve. They are cut off from its start when they are needed, and so are their chords.
class CPieces {
public:
    explicit CPieces(const CBezier& bez) : m_bezRest(bez) { m_auChords.fill(NONE); }

    /// The box of a piece's control points.
    const CRect& BoxAt(uint32_t uPiece) {
        CutTo(uPiece);
        return m_arc[uPiece];
    }
    /// False when the box touches no piece of those that are cut, and all are.
    bool CanTouch(const CRect& rc) const { return m_uCut < PIECES || Touch(m_rcAll, rc); }
    /// Valid until the next call.
    const TChords& ChordsAt(uint32_t uPiece) {
        CutTo(uPiece);
        if (m_auChords[uPiece] == NONE) {
            m_auChords[uPiece] = m_vChords.size();
            m_vChords.push_back(ChordsOf(m_aBez[uPiece]));
        }
        return m_vChords[m_auChords[uPiece]];
    }

private:
    static constexpr size_t NONE = PIECES;

    void CutTo(uint32_t uPiece) {
        for (; m_uCut <= uPiece; ++m_uCut) {
            const auto [head, tail] = m_uCut + 1 < PIECES
                                          ? m_bezRest.Split(BEZIER_T_RESOLUTION / (PIECES - m_uCut))
                                          : std::pair{m_bezRest, m_bezRest};
            m_aBez[m_uCut] = head;
            const CRect rc = m_arc[m_uCut] = BoxOf(&head.p0, &head.p3 + 1);
            m_rcAll = m_uCut == 0 ? rc : BothOf(m_rcAll, rc);
            m_bezRest = tail;
        }
    }

    CBezier m_bezRest;
    uint32_t m_uCut = 0;
    std::array<CBezier, PIECES> m_aBez;
    std::array<CRect, PIECES> m_arc;
    CRect m_rcAll;                         ///< of the pieces that are cut
    std::array<size_t, PIECES> m_auChords; ///< indices in m_vChords
    std::vector<TChords> m_vChords;
};

// True when n lies between 0 and `nEnd`, both inclusive.
bool IsWithin(int64_t n, int64_t nEnd) { return nEnd > 0 ? n >= 0 && n <= nEnd : n <= 0 && n >= nEnd; }

bool DoChordsCross(CPoint a0, CPoint a1, CPoint b0, CPoint b1) {
    const CPoint d1 = a1 - a0;
    const CPoint d2 = b1 - b0;
    const CPoint r = b0 - a0;
    const int64_t den = -Cross(d1, d2);
    return den != 0 && IsWithin(Cross(d2, r), den) && IsWithin(Cross(d1, r), den);
}

// The first of the chords that a chord crosses.
std::optional<uint32_t> FindChord(CPoint from, CPoint to, const TChords& chords) {
    const std::array aptEnds{from, to};
    const CRect rc = BoxOf(aptEnds.data(), aptEnds.data() + aptEnds.size());
    if (!Touch(rc, chords.rc)) return {};
    for (uint32_t nGroup = 0; nGroup < GROUPS; ++nGroup) {
        if (!Touch(rc, chords.arcGroup[nGroup])) continue;
        for (uint32_t n = nGroup * GROUP; n < (nGroup + 1) * GROUP; ++n)
            if (DoChordsCross(from, to, chords.apt[n], chords.apt[n + 1])) return n;
    }
    return {};
}

// The first crossing of two pieces, from the end of `a` and the start of `b`: the chords' numbers.
std::optional<std::pair<uint32_t, uint32_t>> FindChords(const TChords& chordsA, const TChords& chordsB) {
    if (!Touch(chordsA.rc, chordsB.rc)) return {};
    for (uint32_t nGroup = GROUPS; nGroup-- > 0;) {
        if (!Touch(chordsA.arcGroup[nGroup], chordsB.rc)) continue;
        for (uint32_t j = (nGroup + 1) * GROUP; j-- > nGroup * GROUP;)
            if (const auto n = FindChord(chordsA.apt[j], chordsA.apt[j + 1], chordsB))
                return std::pair{j, *n};
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
        const CRect& rc = piecesA.BoxAt(i);
        for (uint32_t m = 0; m < PIECES && piecesB.CanTouch(rc); ++m) {
            if (!Touch(rc, piecesB.BoxAt(m))) continue;
            if (const auto chords = FindChords(piecesA.ChordsAt(i), piecesB.ChordsAt(m)))
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
