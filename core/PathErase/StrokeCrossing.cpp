#include "core/PathErase/StrokeCrossing.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

namespace {

constexpr size_t CHORDS_OF_PART = 8; ///< of the stroke, that are compared with what lies near them
constexpr size_t MOST_LINES = 20000;
constexpr double PASS_REACHES = 4; ///< reaches on either side, after which a passing stroke must be gone

using TBox = std::array<double, 4>;

double BoxDistance(const TBox& box, const TChord& chord) {
    const auto apart = [](double dLow, double dHigh, double a, double b) {
        return std::max({dLow - std::max(a, b), std::min(a, b) - dHigh, 0.0});
    };
    return std::max(apart(box[0], box[2], chord.from.x, chord.to.x),
                    apart(box[1], box[3], chord.from.y, chord.to.y));
}

// Calls a function with the number of each chord of a line in whose box's reach the chord lies.
template <class TVisit>
void ForChordsNear(const CStrokeLine& line, const TChord& chord, double dReach, TVisit visit) {
    const auto& vBoxes = line.GetBoxes();
    const size_t nChords = line.GetPoints().size() - 1;
    for (size_t nBox = 0; nBox < vBoxes.size(); ++nBox) {
        if (BoxDistance(vBoxes[nBox], chord) > dReach) continue;
        const size_t nFirst = nBox * CStrokeLine::CHORDS_OF_BOX;
        for (size_t n = nFirst; n < std::min(nFirst + CStrokeLine::CHORDS_OF_BOX, nChords); ++n) visit(n);
    }
}

uint32_t ParameterOn(const CStrokeLine& line, size_t nChord, double f) {
    const auto& vPoints = line.GetPoints();
    const uint32_t tFrom = vPoints[nChord].t, tTo = vPoints[nChord + 1].t;
    return tFrom + static_cast<uint32_t>((tTo - tFrom) * f + 0.5);
}

// The end of a line, with the paint beyond it: a disc that moves along an axis.
struct TLineEnd {
    TChord axis; ///< from the line's end on
    TVector out; ///< direction out of the line
    double dRadius;
    double dLength; ///< of the line up to here
};

TLineEnd EndOf(const CStrokeLine& line, bool bBegin) {
    const size_t nChords = line.GetPoints().size() - 1;
    const TChord chord = ChordOf(line, bBegin ? 0 : nChords - 1);
    const TVector way = bBegin ? chord.from - chord.to : chord.to - chord.from;
    const TVector out = Length(way) > 0 ? way * (1 / Length(way)) : way;
    const TVector end = bBegin ? chord.from : chord.to;
    const double dReach = line.GetEndReach(bBegin);
    const double dRadius = std::min(dReach, line.WidthAt(bBegin ? 0 : line.GetLast()));
    return {{end, end + out * (dReach - dRadius)}, out, dRadius, bBegin ? 0 : line.GetLength()};
}

// The crossings of a part of a stroke with one line, which may be its own.
class CCrossings {
public:
    CCrossings(const CStrokeLine& line, size_t nFirst, size_t nEnd)
        : m_line(line), m_nFirst(nFirst), m_nEnd(nEnd) {}

    void Find(const CStrokeLine& other, bool bOpen) {
        const size_t nBefore = m_vFound.size();
        FindThrough(other);
        if (!bOpen) return;
        // An end that stands out by a little belongs to the crossing.
        const size_t nThrough = m_vFound.size();
        FindEnds(other);
        const auto isThrough = [&](const TStrokeCrossing& crossing) {
            for (size_t n = nBefore; n < nThrough; ++n)
                if (std::abs(m_vFound[n].dLength - crossing.dLength) <= ReachTo(other)) return true;
            return false;
        };
        m_vFound.erase(std::remove_if(m_vFound.begin() + static_cast<std::ptrdiff_t>(nThrough),
                                      m_vFound.end(), isThrough),
                       m_vFound.end());
        if (m_vFound.size() == nBefore && &other != &m_line) FindPassing(other);
    }
    const std::vector<TStrokeCrossing>& GetFound() const { return m_vFound; }

private:
    double ReachTo(const CStrokeLine& other) const {
        return CROSSING_GAP + m_line.GetMaxWidth() + other.GetMaxWidth();
    }
    void Add(size_t nChord, double f, TVector direction, double dHalfWidth, bool bThrough) {
        const uint32_t t = ParameterOn(m_line, nChord, f);
        m_vFound.push_back({t, m_line.At(t).dLength, direction, dHalfWidth, bThrough});
    }

    void FindThrough(const CStrokeLine& other) {
        for (size_t n = m_nFirst; n < m_nEnd; ++n) {
            const TChord chord = ChordOf(m_line, n);
            ForChordsNear(other, chord, 0, [&](size_t nOther) {
                if (&other == &m_line && IsNeighbour(n, nOther)) return;
                const TChord chordOther = ChordOf(other, nOther);
                const auto crossing = CrossingOf(chord, chordOther);
                if (!crossing) return;
                const double dHalf = other.WidthAt(ParameterOn(other, nOther, (*crossing)[1]));
                Add(n, (*crossing)[0], chordOther.to - chordOther.from, dHalf, true);
            });
        }
    }

    // Chords of the line itself that meet because one follows the other.
    bool IsNeighbour(size_t n, size_t nOther) const {
        const auto& vPoints = m_line.GetPoints();
        const size_t nLow = std::min(n, nOther), nHigh = std::max(n, nOther);
        return nLow + 1 >= nHigh || vPoints[nHigh].dLength - vPoints[nLow + 1].dLength < 1;
    }

    void FindEnds(const CStrokeLine& other) {
        for (const bool bBegin : {true, false}) {
            const TLineEnd end = EndOf(other, bBegin);
            const double dFurther = end.dRadius + 2 * (CROSSING_GAP + m_line.GetMaxWidth());
            const TChord prolonged{end.axis.from, end.axis.to + end.out * dFurther};
            size_t nBest = 0;
            TNearest best{0, 0, HUGE_VAL}, hit{0, 0, HUGE_VAL};
            size_t nHit = 0;
            ForChordsNear(m_line, prolonged, CROSSING_GAP + m_line.GetMaxWidth() + end.dRadius,
                          [&](size_t n) {
                              if (&other == &m_line && IsBeside(n, end)) return;
                              const TChord chord = ChordOf(m_line, n);
                              const TNearest nearest = NearestOf(chord, end.axis);
                              if (nearest.dDistance < best.dDistance) best = nearest, nBest = n;
                              const auto crossing = CrossingOf(chord, prolonged);
                              if (crossing && (*crossing)[1] < hit.dDistance)
                                  hit = {(*crossing)[0], 0, (*crossing)[1]}, nHit = n;
                          });
            if (best.dDistance == HUGE_VAL) continue;
            const double dGap =
                best.dDistance - end.dRadius - m_line.WidthAt(ParameterOn(m_line, nBest, best.fFirst));
            const bool bMeets = dGap > 0 && dGap <= CROSSING_GAP && hit.dDistance != HUGE_VAL;
            if (dGap <= 0 && IsInPart(nBest))
                Add(nBest, best.fFirst, end.out, 0, false);
            else if (bMeets && IsInPart(nHit))
                Add(nHit, hit.fFirst, end.out, 0, false);
        }
    }
    bool IsInPart(size_t nChord) const { return nChord >= m_nFirst && nChord < m_nEnd; }
    // A line is always near its own end.
    bool IsBeside(size_t nChord, const TLineEnd& end) const {
        const double dLength = m_line.GetPoints()[nChord].dLength;
        return std::abs(dLength - end.dLength) < 4 * (CROSSING_GAP + m_line.GetMaxWidth()) + end.dRadius;
    }

    // The gap of the paint between a chord and another line as far as it matters.
    struct TGap {
        double dGap = HUGE_VAL;
        double fOwn = 0;
        size_t nOther = 0;
        double fOther = 0;
    };
    TGap GapAt(size_t nChord, const CStrokeLine& other) const {
        TGap gap;
        const TChord chord = ChordOf(m_line, nChord);
        const double dReach = ReachTo(other);
        double dNearest = dReach;
        ForChordsNear(other, chord, dReach, [&](size_t nOther) {
            const TNearest nearest = NearestOf(chord, ChordOf(other, nOther));
            if (nearest.dDistance > dNearest) return;
            dNearest = nearest.dDistance;
            gap = {nearest.dDistance, nearest.fFirst, nOther, nearest.fSecond};
        });
        if (gap.dGap != HUGE_VAL)
            gap.dGap -= m_line.WidthAt(ParameterOn(m_line, nChord, gap.fOwn)) +
                        other.WidthAt(ParameterOn(other, gap.nOther, gap.fOther));
        return gap;
    }
    void FindPassing(const CStrokeLine& other) {
        const size_t nOthers = other.GetPoints().size() - 1;
        for (size_t n = m_nFirst; n < m_nEnd; ++n) {
            const TGap gap = GapAt(n, other);
            if (gap.dGap > CROSSING_GAP) continue;
            // The ends have rules of their own.
            const double dOther = gap.fOther + static_cast<double>(gap.nOther);
            if (dOther <= 0 || dOther >= static_cast<double>(nOthers)) continue;
            if (IsNearest(n, gap.dGap, other, true) && IsNearest(n, gap.dGap, other, false)) {
                const TChord chord = ChordOf(other, gap.nOther);
                Add(n, gap.fOwn, chord.to - chord.from,
                    other.WidthAt(ParameterOn(other, gap.nOther, gap.fOther)), false);
            }
        }
    }
    // Going on along the stroke the other one only goes away, beyond the gap.
    bool IsNearest(size_t nChord, double dGap, const CStrokeLine& other, bool bForward) const {
        const auto& vPoints = m_line.GetPoints();
        const double dFar = PASS_REACHES * ReachTo(other);
        for (size_t n = nChord;;) {
            if (bForward ? n + 2 >= vPoints.size() : n == 0) return false;
            n = bForward ? n + 1 : n - 1;
            const double dNext = GapAt(n, other).dGap;
            if (dNext > CROSSING_GAP) return true;
            if (bForward ? dNext <= dGap : dNext < dGap) return false;
            if (std::abs(vPoints[n].dLength - vPoints[nChord].dLength) > dFar) return false;
        }
    }

    const CStrokeLine& m_line;
    size_t m_nFirst;
    size_t m_nEnd;
    std::vector<TStrokeCrossing> m_vFound;
};

// Chords of a line, and how far anything that counts as crossing them may be.
CRect ReachOf(const CStrokeLine& line, size_t nFirst, size_t nEnd) {
    TEraserWay all{{}, CROSSING_GAP + line.GetMaxWidth() + 1};
    CRect rc;
    for (size_t n = nFirst; n < nEnd; ++n) {
        all.way = ChordOf(line, n);
        rc = rc.Union(all.GetBox());
    }
    return rc;
}

} // namespace

boost::shared_ptr<const CStrokeLine> CStrokeLines::Get(const boost::shared_ptr<CPathObject>& spPath) {
    const auto it = m_mapLines.find(spPath.get());
    if (it != m_mapLines.end()) return it->second.spLine;
    if (m_mapLines.size() >= MOST_LINES) m_mapLines.clear();
    boost::shared_ptr<const CStrokeLine> spLine;
    const auto spOpen = boost::dynamic_pointer_cast<COpenPathObject>(spPath);
    const auto vSegments = spPath->GetStream().GetSegments(STATE_COMMITTED);
    if (spOpen && spOpen->GetStream().ControlPointCount() != 0)
        spLine = boost::make_shared<CStrokeLine>(spOpen->GetStream());
    else if (!vSegments.empty())
        spLine = boost::make_shared<CStrokeLine>(vSegments);
    m_mapLines[spPath.get()] = {spPath, spLine};
    return spLine;
}

std::optional<TStrokeCrossing> FindNextCrossing(const CVectorLayerBuffer& layer, CStrokeLines& lines,
                                                const boost::shared_ptr<CPathObject>& spPath, uint32_t tFrom,
                                                bool bForward) {
    const auto spLine = lines.Get(spPath);
    if (!spLine) return {};
    const auto& vPoints = spLine->GetPoints();
    const size_t nChords = vPoints.size() - 1;
    const auto itNext = std::ranges::upper_bound(vPoints, tFrom, {}, &TLinePoint::t);
    const auto nNext = static_cast<size_t>(itNext - vPoints.begin());
    size_t nAt = std::min(nNext == 0 ? 0 : nNext - 1, nChords - 1);
    for (;;) {
        const size_t nFirst = bForward ? nAt : nAt + 1 - std::min(nAt + 1, CHORDS_OF_PART);
        const size_t nEnd = bForward ? std::min(nAt + CHORDS_OF_PART, nChords) : nAt + 1;
        CCrossings crossings(*spLine, nFirst, nEnd);
        const CRect rcReach = ReachOf(*spLine, nFirst, nEnd);
        for (const auto& spOther : layer.FindPaths(rcReach)) {
            if (spOther->RectIncludingPath().Intersect(rcReach).IsEmpty()) continue;
            if (const auto spOtherLine = lines.Get(spOther))
                crossings.Find(*spOtherLine, dynamic_cast<const COpenPathObject*>(spOther.get()) != nullptr);
        }
        std::optional<TStrokeCrossing> best;
        for (const TStrokeCrossing& crossing : crossings.GetFound()) {
            if (bForward ? crossing.t <= tFrom : crossing.t >= tFrom) continue;
            const double dLeft = bForward ? spLine->GetLength() - crossing.dLength : crossing.dLength;
            if (dLeft <= crossing.dHalfWidth + CROSSING_GAP) continue;
            if (!best || (bForward ? crossing.t < best->t : crossing.t > best->t)) best = crossing;
        }
        if (best) return best;
        if (bForward ? nEnd == nChords : nFirst == 0) return {};
        nAt = bForward ? nEnd : nFirst - 1;
    }
}
