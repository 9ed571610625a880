#include "core/PathErase/EraserTouch.h"

namespace {

// How far the disc is from the paint at a place of the line; 0 or less where it touches.
class CTouch {
public:
    CTouch(const CStrokeLine& line, const TEraserWay& eraser) : m_line(line), m_eraser(eraser) {}

    // The chord gives the direction.
    double At(uint32_t t, const TChord& chord) const {
        const TLinePoint place = m_line.At(t);
        const TVector point{place.x, place.y};
        const TVector away = m_eraser.way.At(NearestOn(m_eraser.way, point)) - point;
        const auto adWidth = m_line.WidthsAt(t);
        const bool bRight = Cross(chord.to - chord.from, away) > 0;
        return Length(away) - m_eraser.dRadius - adWidth[bRight ? SIDE_RIGHT : SIDE_LEFT];
    }
    // The last parameter from a touched one on towards another that is touched too.
    uint32_t Edge(uint32_t tTouched, uint32_t tFree, const TChord& chord) const {
        if (At(tFree, chord) <= 0) return tFree;
        while (tTouched + 1 < tFree || tFree + 1 < tTouched) {
            const uint32_t t =
                std::min(tTouched, tFree) + (std::max(tTouched, tFree) - std::min(tTouched, tFree)) / 2;
            (At(t, chord) <= 0 ? tTouched : tFree) = t;
        }
        return tTouched;
    }

private:
    const CStrokeLine& m_line;
    const TEraserWay& m_eraser;
};

void Append(std::vector<TLineStretch>& vStretches, const TLineStretch& stretch) {
    if (!vStretches.empty() && stretch.tFirst <= vStretches.back().tLast + 1)
        vStretches.back().tLast = std::max(vStretches.back().tLast, stretch.tLast);
    else
        vStretches.push_back(stretch);
}

// The paint of an end that stands out beyond the line.
bool TouchesEnd(const CStrokeLine& line, const TEraserWay& eraser, bool bBegin) {
    const size_t nChords = line.GetPoints().size() - 1;
    const TChord chord = ChordOf(line, bBegin ? 0 : nChords - 1);
    const TVector out = bBegin ? chord.from - chord.to : chord.to - chord.from;
    const TVector end = bBegin ? chord.from : chord.to;
    const double dWidth = line.WidthAt(bBegin ? 0 : line.GetLast());
    const double dBeyond = line.GetEndReach(bBegin) - dWidth;
    if (dBeyond <= 0 || Length(out) == 0) return false;
    const TChord axis{end, end + out * (dBeyond / Length(out))};
    return NearestOf(axis, eraser.way).dDistance <= eraser.dRadius + dWidth;
}

std::vector<TLineStretch> WithoutHidden(const std::vector<TLineStretch>& vTouched, const CStrokeLine& line) {
    std::vector<TLineStretch> vVisible;
    for (TLineStretch stretch : vTouched) {
        bool bLeft = true;
        for (const THiddenStretch& hidden : line.GetHidden()) {
            if (hidden.tLast < stretch.tFirst || hidden.tFirst > stretch.tLast) continue;
            if (hidden.tFirst > stretch.tFirst) vVisible.push_back({stretch.tFirst, hidden.tFirst});
            bLeft = hidden.tLast < stretch.tLast;
            stretch.tFirst = hidden.tLast;
            if (!bLeft) break;
        }
        if (bLeft) vVisible.push_back(stretch);
    }
    return vVisible;
}

} // namespace

CRect TEraserWay::GetBox() const {
    const auto down = [&](double a, double b) {
        return static_cast<int32_t>(std::floor(std::min(a, b) - dRadius));
    };
    const auto up = [&](double a, double b) {
        return static_cast<int32_t>(std::ceil(std::max(a, b) + dRadius)) + 1;
    };
    return {down(way.from.x, way.to.x), down(way.from.y, way.to.y), up(way.from.x, way.to.x),
            up(way.from.y, way.to.y)};
}

TChord ChordOf(const CStrokeLine& line, size_t idx) {
    const TLinePoint &a = line.GetPoints()[idx], &b = line.GetPoints()[idx + 1];
    return {{a.x, a.y}, {b.x, b.y}};
}

std::vector<TLineStretch> FindTouched(const CStrokeLine& line, const TEraserWay& eraser) {
    std::vector<TLineStretch> vTouched;
    const CTouch touch(line, eraser);
    const auto& vPoints = line.GetPoints();
    const double dReach = eraser.dRadius + line.GetMaxWidth();
    const auto& vBoxes = line.GetBoxes();
    const auto [dLeft, dRight] = std::minmax(eraser.way.from.x, eraser.way.to.x);
    const auto [dTop, dBottom] = std::minmax(eraser.way.from.y, eraser.way.to.y);
    if (TouchesEnd(line, eraser, true)) vTouched.push_back({0, 0});
    for (size_t nBox = 0; nBox < vBoxes.size(); ++nBox) {
        const auto& box = vBoxes[nBox];
        if (box[0] > dRight + dReach || box[2] < dLeft - dReach || box[1] > dBottom + dReach ||
            box[3] < dTop - dReach)
            continue;
        const size_t nFirst = nBox * CStrokeLine::CHORDS_OF_BOX;
        for (size_t n = nFirst; n < std::min(nFirst + CStrokeLine::CHORDS_OF_BOX, vPoints.size() - 1); ++n) {
            const TChord chord = ChordOf(line, n);
            const TNearest nearest = NearestOf(chord, eraser.way);
            if (nearest.dDistance > dReach) continue;
            const uint32_t tFrom = vPoints[n].t, tTo = vPoints[n + 1].t;
            // Of the nearest place and the ends, which may be wider, one at least is touched if any is.
            for (const uint32_t t :
                 {tFrom + static_cast<uint32_t>((tTo - tFrom) * nearest.fFirst), tFrom, tTo}) {
                if (touch.At(t, chord) > 0) continue;
                Append(vTouched, {touch.Edge(t, tFrom, chord), touch.Edge(t, tTo, chord)});
                break;
            }
        }
    }
    if (TouchesEnd(line, eraser, false)) Append(vTouched, {line.GetLast(), line.GetLast()});
    return line.GetHidden().empty() ? vTouched : WithoutHidden(vTouched, line);
}
