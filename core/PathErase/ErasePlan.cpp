#include "core/PathErase/ErasePlan.h"

#include <boost/pointer_cast.hpp>

namespace {

constexpr double LEAST_PIECE = 4; ///< half a pixel; shorter ones do not stay
/// A cut along another stroke is no more slanted, or its corners would stand out far.
constexpr uint32_t LEAST_ANGLE = 35;
constexpr double DIRECTION_SCALE = 4096;

CPoint ToWhole(TVector v) {
    const double dLength = Length(v);
    if (dLength == 0) return {};
    const auto whole = [&](double d) {
        return static_cast<int32_t>(std::floor(d / dLength * DIRECTION_SCALE + 0.5));
    };
    return {whole(v.x), whole(v.y)};
}

TVector DirectionAt(const CStrokeLine& line, uint32_t t) {
    const auto& vPoints = line.GetPoints();
    const auto it = std::ranges::upper_bound(vPoints, t, {}, &TLinePoint::t);
    const size_t nNext = std::clamp<size_t>(static_cast<size_t>(it - vPoints.begin()), 1, vPoints.size() - 1);
    const TChord chord = ChordOf(line, nNext - 1);
    return chord.to - chord.from;
}

// Along the stroke that is crossed, so that its paint hides the cut; round where that one only ends.
TCutEnd EndAt(const CStrokeLine& line, const TStrokeCrossing& crossing) {
    if (!crossing.bThrough) return {TERM_ROUND};
    const TVector along = DirectionAt(line, crossing.t);
    const TVector other = Cross(along, crossing.direction) > 0 ? crossing.direction * -1 : crossing.direction;
    const uint32_t uAngle = AngleBetween(ToWhole(along), ToWhole(other));
    return {TERM_FLAT, std::clamp(uAngle, LEAST_ANGLE, 180 - LEAST_ANGLE)};
}

// The stretch goes on to the nearest crossings, over ends and hidden stretches it ends.
TErasedStretch ToCrossings(const CVectorLayerBuffer& layer, CStrokeLines& lines,
                           const boost::shared_ptr<CPathObject>& spPath, const CStrokeLine& line,
                           const TLineStretch& touched) {
    TErasedStretch erased{{0, line.GetLast()}, {}, {}};
    if (const auto crossing = FindNextCrossing(layer, lines, spPath, touched.tFirst, false)) {
        erased.stretch.tFirst = crossing->t;
        erased.before = EndAt(line, *crossing);
    }
    if (const auto crossing = FindNextCrossing(layer, lines, spPath, touched.tLast, true)) {
        erased.stretch.tLast = crossing->t;
        erased.behind = EndAt(line, *crossing);
    }
    // The piece beyond a hidden stretch ends as its cut did.
    for (const THiddenStretch& hidden : line.GetHidden()) {
        if (hidden.tLast <= touched.tFirst && hidden.tLast > erased.stretch.tFirst) {
            erased.stretch.tFirst = hidden.tFirst;
            erased.before = {TERM_FLAT, hidden.uFirstAngle};
        }
        if (hidden.tFirst >= touched.tLast && hidden.tFirst < erased.stretch.tLast) {
            erased.stretch.tLast = hidden.tLast;
            erased.behind = {TERM_FLAT, hidden.uLastAngle};
        }
    }
    return erased;
}

void Append(std::vector<TErasedStretch>& vStretches, const TErasedStretch& erased) {
    if (vStretches.empty() || erased.stretch.tFirst > vStretches.back().stretch.tLast) {
        vStretches.push_back(erased);
    } else if (erased.stretch.tLast > vStretches.back().stretch.tLast) {
        vStretches.back().stretch.tLast = erased.stretch.tLast;
        vStretches.back().behind = erased.behind;
    }
}

// A filled shape is touched at its edge and inside.
bool TouchesShape(const CPathObject& path, const CStrokeLine& line, const TEraserWay& eraser) {
    const auto rounded = [](double d) { return static_cast<int32_t>(std::floor(d + 0.5)); };
    const TVector end = eraser.way.to;
    return !FindTouched(line, eraser).empty() || path.HasInkAt({rounded(end.x), rounded(end.y)});
}

bool IsHidden(const CStrokeLine& line, uint32_t tFirst, uint32_t tLast) {
    return std::ranges::any_of(line.GetHidden(), [&](const THiddenStretch& hidden) {
        return hidden.tFirst <= tFirst && hidden.tLast >= tLast;
    });
}

// Calls a function with what stays: from, to, and the erased stretches before and behind, null for none.
template <class TVisit>
void ForRest(const TErasedPath& erased, TVisit visit) {
    const CStrokeLine& line = *erased.spLine;
    const TErasedStretch* pBefore = nullptr;
    const auto offer = [&](uint32_t tTo, const TErasedStretch* pBehind) {
        const uint32_t tFrom = pBefore ? pBefore->stretch.tLast : 0;
        const bool bLong = tFrom < tTo && line.At(tTo).dLength - line.At(tFrom).dLength >= LEAST_PIECE;
        if (bLong && !IsHidden(line, tFrom, tTo)) visit(tFrom, tTo, pBefore, pBehind);
    };
    for (const TErasedStretch& stretch : erased.vStretches) {
        offer(stretch.stretch.tFirst, &stretch);
        pBefore = &stretch;
    }
    offer(line.GetLast(), nullptr);
}

} // namespace

std::vector<TErasedPath> PlanErase(const CVectorLayerBuffer& layer, CStrokeLines& lines,
                                   const TEraserWay& eraser, EEraseMode mode) {
    std::vector<TErasedPath> vErased;
    const CRect rcEraser = eraser.GetBox();
    for (const auto& spPath : layer.FindPaths(rcEraser)) {
        if (spPath->RectIncludingPath().Intersect(rcEraser).IsEmpty()) continue;
        const auto spLine = lines.Get(spPath);
        if (!spLine) continue;
        TErasedPath erased{spPath, spLine, false, {}};
        const bool bOpen = dynamic_cast<const COpenPathObject*>(spPath.get()) != nullptr;
        if (!bOpen && (mode != ERASE_WHOLE || !TouchesShape(*spPath, *spLine, eraser))) continue;
        const std::vector<TLineStretch> vTouched =
            bOpen ? FindTouched(*spLine, eraser) : std::vector<TLineStretch>();
        if (bOpen && vTouched.empty()) continue;
        for (const TLineStretch& touched : vTouched) {
            if (mode == ERASE_TO_CROSSING)
                Append(erased.vStretches, ToCrossings(layer, lines, spPath, *spLine, touched));
            else
                Append(erased.vStretches, {touched, {}, {}});
        }
        erased.bWhole = mode == ERASE_WHOLE;
        if (!erased.bWhole) {
            erased.bWhole = true;
            ForRest(erased, [&](auto&&...) { erased.bWhole = false; });
        }
        if (erased.bWhole) erased.vStretches = {{{0, spLine->GetLast()}, {}, {}}};
        vErased.push_back(std::move(erased));
    }
    return vErased;
}

std::vector<boost::shared_ptr<CPathObject>> MakeRest(const TErasedPath& erased) {
    std::vector<boost::shared_ptr<CPathObject>> vRest;
    if (erased.bWhole) return vRest;
    const auto spOpen = boost::dynamic_pointer_cast<COpenPathObject>(erased.spPath);
    ForRest(erased,
            [&](uint32_t tFrom, uint32_t tTo, const TErasedStretch* pBefore, const TErasedStretch* pBehind) {
                TKeptStretch kept{tFrom, tTo, {}, {}};
                if (pBefore) kept.begin = pBefore->behind;
                if (pBehind) kept.end = pBehind->before;
                vRest.push_back(CutPath(*spOpen, *erased.spLine, kept));
            });
    return vRest;
}
