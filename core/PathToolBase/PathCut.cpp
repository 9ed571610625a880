#include "core/PathToolBase/PathCut.h"

#include "core/PathToolBase/PathValues.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace {

constexpr double TOLERANCE = 1.5; ///< of half-widths; their rounding is part of it
constexpr double ALPHA_TOLERANCE = 2;
constexpr uint32_t LEAST_SPAN = 256; ///< of parameters that are divided further
constexpr uint32_t CHECKS = 8;       ///< of a span

using TWidths = std::array<double, 2>;

double Difference(const TWidths& a, const TWidths& b) {
    return std::max(std::abs(a[SIDE_LEFT] - b[SIDE_LEFT]), std::abs(a[SIDE_RIGHT] - b[SIDE_RIGHT]));
}

// Adds marks until the way from one to the next, eased as it will be, is the stroke's.
template <class TIsEased, class TAdd>
void AddMarks(uint32_t tFirst, uint32_t tLast, TIsEased isEased, TAdd add) {
    while (tLast - tFirst > LEAST_SPAN && !isEased(tFirst, tLast)) {
        // As far as one way goes.
        uint32_t tNear = tFirst + LEAST_SPAN, tFar = tLast;
        while (tFar - tNear > LEAST_SPAN) {
            const uint32_t t = tNear + (tFar - tNear) / 2;
            (isEased(tFirst, t) ? tNear : tFar) = t;
        }
        add(tNear);
        tFirst = tNear;
    }
}

// True when `isNear` is at places between two parameters, for each with its share of the length between them.
template <class TIsNear>
bool AreNear(const CStrokeLine& line, uint32_t tFirst, uint32_t tLast, TIsNear isNear) {
    const double dFirst = line.At(tFirst).dLength;
    const double dLength = line.At(tLast).dLength - dFirst;
    if (dLength <= 0) return true;
    for (uint32_t n = 1; n < CHECKS; ++n) {
        const uint32_t t = tFirst + static_cast<uint32_t>(uint64_t{tLast - tFirst} * n / CHECKS);
        if (!isNear(t, (line.At(t).dLength - dFirst) / dLength)) return false;
    }
    return true;
}

double Eased(double dFrom, double dTo, double f) { return dFrom + (dTo - dFrom) * f * f * (3 - 2 * f); }

// Opacity marks of a stretch.
std::vector<TAlphaMark> AlphasOf(const TPathValues& whole, const CStrokeLine& line,
                                 const TKeptStretch& stretch) {
    const std::vector<TAlphaMark>& vAlphas = whole.vAlphas;
    if (vAlphas.empty()) return {};
    const auto alphaAt = [&](uint32_t t) -> double {
        const auto itNext = std::ranges::upper_bound(vAlphas, t, {}, &TAlphaMark::t);
        if (itNext == vAlphas.begin()) return itNext->uAlpha;
        const TAlphaMark& before = *std::prev(itNext);
        if (itNext == vAlphas.end()) return before.uAlpha;
        const double dFirst = line.At(before.t).dLength, dLength = line.At(itNext->t).dLength - dFirst;
        return dLength > 0 ? Eased(before.uAlpha, itNext->uAlpha, (line.At(t).dLength - dFirst) / dLength)
                           : before.uAlpha;
    };
    std::map<uint32_t, uint32_t> mapMarks;
    const auto add = [&](uint32_t t) { mapMarks.try_emplace(t, static_cast<uint32_t>(alphaAt(t) + 0.5)); };
    for (const TAlphaMark& mark : vAlphas)
        if (mark.t >= stretch.tFirst && mark.t <= stretch.tLast) mapMarks[mark.t] = mark.uAlpha;
    if (stretch.begin) add(stretch.tFirst);
    if (stretch.end) add(stretch.tLast);
    const auto isEased = [&](uint32_t tFirst, uint32_t tLast) {
        const double dFrom = alphaAt(tFirst), dTo = alphaAt(tLast);
        return AreNear(line, tFirst, tLast, [&](uint32_t t, double f) {
            return std::abs(Eased(dFrom, dTo, f) - alphaAt(t)) <= ALPHA_TOLERANCE;
        });
    };
    std::vector<uint32_t> vPlaces;
    for (const auto& [t, uAlpha] : mapMarks) vPlaces.push_back(t);
    for (size_t n = 1; n < vPlaces.size(); ++n) AddMarks(vPlaces[n - 1], vPlaces[n], isEased, add);
    const TPathStretch map(stretch.tFirst, stretch.tLast);
    std::vector<TAlphaMark> vMarks;
    for (const auto& [t, uAlpha] : mapMarks) vMarks.push_back({map.Map(t), uAlpha});
    return vMarks;
}

// Width points of a stretch, by parameters of the whole stroke.
class CMarkFit {
public:
    CMarkFit(const TPathValues& whole, const CStrokeLine& line) : m_whole(whole), m_line(line) {}

    TWidths WidthsAt(uint32_t t) const {
        TWidths adWidth = m_line.WidthsAt(t);
        for (double& d : adWidth) d = std::floor(d + 0.5);
        return adWidth;
    }
    void Keep(const TWidthMark& mark) { m_mapMarks[mark.t] = mark.auMultiple; }
    void Add(uint32_t t) {
        const TWidths adWidth = WidthsAt(t);
        const auto multiple = [&](EPathSide side) {
            return MultipleOf(static_cast<uint32_t>(adWidth[side]), m_whole.uWidth);
        };
        m_mapMarks.try_emplace(t, std::array{multiple(SIDE_LEFT), multiple(SIDE_RIGHT)});
    }
    // Adds points between two.
    void Ease(uint32_t tFirst, uint32_t tLast) {
        const auto isEased = [&](uint32_t tFrom, uint32_t tTo) { return IsEased(tFrom, tTo); };
        AddMarks(tFirst, tLast, isEased, [&](uint32_t t) { Add(t); });
    }
    // The way from an end of its own to the cut, which comes before the stroke's nearest width point.
    void Taper(const TTermValue& term, bool bBegin, uint32_t tEnd, uint32_t tCut) {
        uint32_t t = tCut;
        for (;;) {
            const uint32_t tLow = std::min(tEnd, t), tHigh = std::max(tEnd, t);
            const auto spTerm = EndOf(term, bBegin, t);
            const TWidths width = WidthsAt(t);
            const auto nLength =
                static_cast<int32_t>((m_line.At(tHigh).dLength - m_line.At(tLow).dLength) * OUTLINE_UNIT);
            const auto tapered = [&](double f) {
                TWidths adWidth{};
                for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT}) {
                    const CBezier curve = spTerm->WidthCurve(
                        nLength, static_cast<int32_t>(width[side]) * OUTLINE_UNIT, side, STATE_COMMITTED);
                    const auto nAt = static_cast<int32_t>(nLength * (bBegin ? f : 1 - f));
                    adWidth[side] = double(curve.PointAt(FractionAt(curve, nAt)).y) / OUTLINE_UNIT;
                }
                return adWidth;
            };
            if (tHigh - tLow < LEAST_SPAN || IsNear(tLow, tHigh, tapered)) break;
            t = tEnd > t ? tEnd - (tEnd - t) / 2 : tEnd + (t - tEnd) / 2;
        }
        Add(t);
        if (t != tCut) Ease(std::min(t, tCut), std::max(t, tCut));
    }
    // The end's shape with the width point nearest to it at `t`: a flat one is as wide as before.
    boost::shared_ptr<COpenPathTermBase> EndOf(const TTermValue& term, bool bBegin, uint32_t t) const {
        const auto spTerm = CopyTerm(term, bBegin);
        const TWidths width = WidthsAt(t);
        const auto spFlat = boost::dynamic_pointer_cast<COpenPathFlatTerm>(spTerm);
        const uint32_t tNearest = bBegin ? m_whole.vWidths.front().t : m_whole.vWidths.back().t;
        const TWidths end = WidthsAt(bBegin ? 0 : m_line.GetLast());
        for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT})
            if (spFlat && t != tNearest && width[side] > 0)
                spFlat->SetMultiple(side,
                                    CDualValue<uint32_t>(MultipleOf(static_cast<uint32_t>(end[side]),
                                                                    static_cast<uint32_t>(width[side]))));
        spTerm->SetPlace(STATE_COMMITTED, {}, {}, static_cast<uint32_t>(width[SIDE_LEFT]),
                         static_cast<uint32_t>(width[SIDE_RIGHT]));
        return spTerm;
    }
    const std::map<uint32_t, std::array<uint32_t, 2>>& GetMarks() const { return m_mapMarks; }

private:
    bool IsEased(uint32_t tFirst, uint32_t tLast) const {
        const TWidths from = WidthsAt(tFirst), to = WidthsAt(tLast);
        return IsNear(tFirst, tLast, [&](double f) {
            return TWidths{Eased(from[0], to[0], f), Eased(from[1], to[1], f)};
        });
    }
    template <class TShape>
    bool IsNear(uint32_t tFirst, uint32_t tLast, TShape shapeAt) const {
        return AreNear(m_line, tFirst, tLast, [&](uint32_t t, double f) {
            return Difference(m_line.WidthsAt(t), shapeAt(f)) <= TOLERANCE;
        });
    }

    const TPathValues& m_whole;
    const CStrokeLine& m_line;
    std::map<uint32_t, std::array<uint32_t, 2>> m_mapMarks;
};

TTermValue MakeEnd(const TCutEnd& end, bool bBegin) {
    const auto spTerm = CreateOpenPathTerm(end.type, bBegin);
    if (const auto spFlat = boost::dynamic_pointer_cast<COpenPathFlatTerm>(spTerm))
        spFlat->SetAngle(CDualValue<uint32_t>(end.uAngle));
    return {spTerm};
}

// An end that is as wide as the width point nearest to it.
bool IsEven(const TTermValue& term) {
    const auto pFlat = dynamic_cast<const COpenPathFlatTerm*>(term.spTerm.get());
    const auto isOne = [&](EPathSide side) { return pFlat->GetMultiple(side)[STATE_COMMITTED] == FIXED_ONE; };
    return pFlat ? isOne(SIDE_LEFT) && isOne(SIDE_RIGHT) : term.spTerm->GetType() == TERM_ROUND;
}

} // namespace

TOpenPathPtr CutPath(const COpenPathObject& path, const CStrokeLine& line, const TKeptStretch& stretch) {
    const COpenPathStream& stream = path.GetStream();
    TPathValues whole = ValuesOf(stream);
    TPathValues part = PartOf(whole, stretch.tFirst, stretch.tLast);
    if (stretch.begin) part.begin = MakeEnd(*stretch.begin, true);
    if (stretch.end) part.end = MakeEnd(*stretch.end, false);
    if (!stretch.begin) part.begin = whole.begin;
    if (!stretch.end) part.end = whole.end;
    part.vAlphas = AlphasOf(whole, line, stretch);
    if (whole.uWidth == 0) return MakePath(part, stream);
    if (whole.vWidths.empty()) whole.vWidths = {{whole.GetEnd() / 2, {FIXED_ONE, FIXED_ONE}}};

    CMarkFit fit(whole, line);
    for (const TWidthMark& mark : whole.vWidths)
        if (mark.t >= stretch.tFirst && mark.t <= stretch.tLast) fit.Keep(mark);
    const bool bMarks = !fit.GetMarks().empty();
    const uint32_t tFirstMark = bMarks ? fit.GetMarks().begin()->first : 0;
    const uint32_t tLastMark = bMarks ? fit.GetMarks().rbegin()->first : 0;
    if (stretch.begin && stretch.end && !bMarks) {
        fit.Add(stretch.tFirst);
        fit.Add(stretch.tLast);
        fit.Ease(stretch.tFirst, stretch.tLast);
    } else if (!bMarks && stretch.begin) {
        fit.Add(stretch.tFirst);
        fit.Taper(whole.end, false, stretch.tLast, stretch.tFirst);
    } else if (!bMarks) {
        fit.Add(stretch.tLast);
        fit.Taper(whole.begin, true, stretch.tFirst, stretch.tLast);
    } else {
        if (stretch.begin) {
            fit.Add(stretch.tFirst);
            fit.Ease(stretch.tFirst, tFirstMark);
        }
        if (stretch.end) {
            fit.Add(stretch.tLast);
            fit.Ease(tLastMark, stretch.tLast);
        }
    }
    if (!stretch.begin) part.begin = {fit.EndOf(whole.begin, true, fit.GetMarks().begin()->first)};
    if (!stretch.end) part.end = {fit.EndOf(whole.end, false, fit.GetMarks().rbegin()->first)};
    const TPathStretch map(stretch.tFirst, stretch.tLast);
    part.vWidths.clear();
    for (const auto& [t, auMultiple] : fit.GetMarks()) part.vWidths.push_back({map.Map(t), auMultiple});
    // Constant widths need no points.
    const auto isPlain = [](const TWidthMark& mark) {
        return mark.auMultiple == std::array{FIXED_ONE, FIXED_ONE};
    };
    if (stream.GetWidthPoints().empty() && IsEven(part.begin) && IsEven(part.end) &&
        std::ranges::all_of(part.vWidths, isPlain))
        part.vWidths.clear();
    return MakePath(part, stream);
}
