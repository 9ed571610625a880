#include "core/PathToolBase/PathValues.h"

#include "core/Base/Failure.h"

#include <algorithm>

namespace {

constexpr uint32_t SQUARE = 90;

template <class TMarks>
void SortByParameter(TMarks& vMarks) {
    std::stable_sort(vMarks.begin(), vMarks.end(), [](const auto& a, const auto& b) { return a.t < b.t; });
}

CPoint Mix(CPoint a, CPoint b, uint32_t f) {
    const auto mix = [&](int32_t nA, int32_t nB) {
        const int64_t n = int64_t{nA} * BEZIER_T_RESOLUTION + (int64_t{nB} - nA) * f;
        return static_cast<int32_t>((n + BEZIER_T_RESOLUTION / 2) >> 16);
    };
    return {mix(a.x, b.x), mix(a.y, b.y)};
}

// Unlike those of CBezier::Split the points are the nearest ones, so that a level line stays level. The
// arithmetic is finer than the result.
std::pair<CBezier, CBezier> SplitNearest(const CBezier& bez, uint32_t f) {
    const auto finer = [](CPoint pt) { return ToOutline(pt); };
    const auto coarse = [](CPoint pt) {
        const auto divide = [](int32_t n) { return (n + OUTLINE_UNIT / 2) >> 4; };
        return CPoint{divide(pt.x), divide(pt.y)};
    };
    const CPoint p0 = finer(bez.p0), p1 = finer(bez.p1), p2 = finer(bez.p2), p3 = finer(bez.p3);
    const CPoint a = Mix(p0, p1, f), b = Mix(p1, p2, f), c = Mix(p2, p3, f);
    const CPoint ab = Mix(a, b, f), bc = Mix(b, c, f), cut = Mix(ab, bc, f);
    return {{bez.p0, coarse(a), coarse(ab), coarse(cut)}, {coarse(cut), coarse(bc), coarse(c), bez.p3}};
}

} // namespace

TPathStretch::TPathStretch(uint32_t tFirst, uint32_t tLast)
    : nFirst(tFirst / BEZIER_T_RESOLUTION), nLast((tLast - 1) / BEZIER_T_RESOLUTION + 1),
      fFirst(tFirst % BEZIER_T_RESOLUTION), fLast((tLast - 1) % BEZIER_T_RESOLUTION + 1) {}

uint32_t TPathStretch::Map(uint32_t t) const {
    const uint32_t nSegment = std::min(t / BEZIER_T_RESOLUTION, nLast - 1);
    const uint32_t f = t - nSegment * BEZIER_T_RESOLUTION;
    const uint32_t fBegin = nSegment == nFirst ? fFirst : 0;
    const uint32_t fEnd = nSegment + 1 == nLast ? fLast : BEZIER_T_RESOLUTION;
    return (nSegment - nFirst) * BEZIER_T_RESOLUTION +
           static_cast<uint32_t>(MulDiv(f - fBegin, BEZIER_T_RESOLUTION, fEnd - fBegin));
}

TPathValues ValuesOf(const COpenPathStream& stream) {
    TPathValues values;
    for (const auto& spPoint : stream.GetControlPoints())
        values.vAnchors.push_back(spPoint->At(STATE_COMMITTED));
    const uint32_t tEnd = values.GetEnd();
    for (const auto& spMark : stream.GetWidthPoints())
        values.vWidths.push_back({std::min(spMark->GetParameter()[STATE_COMMITTED], tEnd),
                                  {spMark->GetMultiple(SIDE_LEFT)[STATE_COMMITTED],
                                   spMark->GetMultiple(SIDE_RIGHT)[STATE_COMMITTED]}});
    for (const auto& spMark : stream.GetTransPoints())
        values.vCuts.push_back(
            {std::min(spMark->GetParameter()[STATE_COMMITTED], tEnd), spMark->GetAngle()[STATE_COMMITTED]});
    for (const auto& spMark : stream.GetAlphaPoints())
        values.vAlphas.push_back(
            {std::min(spMark->GetParameter()[STATE_COMMITTED], tEnd), spMark->GetAlpha()[STATE_COMMITTED]});
    SortByParameter(values.vWidths);
    SortByParameter(values.vCuts);
    SortByParameter(values.vAlphas);
    // A single last cut hides the rest of the stroke.
    if (values.vCuts.size() % 2 != 0) values.vCuts.push_back({tEnd, SQUARE});
    values.uWidth = stream.GetWidth();
    values.begin.spTerm = stream.GetTerm(true);
    values.end.spTerm = stream.GetTerm(false);
    return values;
}

TPathValues Reversed(TPathValues values) {
    const uint32_t tEnd = values.GetEnd();
    std::reverse(values.vAnchors.begin(), values.vAnchors.end());
    for (TOutlinePoint& anchor : values.vAnchors) std::swap(anchor.back, anchor.fore);
    const auto reverse = [tEnd](auto& vMarks) {
        std::reverse(vMarks.begin(), vMarks.end());
        for (auto& mark : vMarks) mark.t = tEnd - mark.t;
    };
    reverse(values.vWidths);
    reverse(values.vCuts);
    reverse(values.vAlphas);
    for (TWidthMark& mark : values.vWidths)
        std::swap(mark.auMultiple[SIDE_LEFT], mark.auMultiple[SIDE_RIGHT]);
    std::swap(values.begin, values.end);
    for (TTermValue* pTerm : {&values.begin, &values.end}) pTerm->bReversed = !pTerm->bReversed;
    return values;
}

boost::shared_ptr<COpenPathTermBase> CopyTerm(const TTermValue& term, bool bBegin) {
    const auto spCopy = CreateOpenPathTerm(term.spTerm ? term.spTerm->GetType() : TERM_SHARP, bBegin);
    if (!term.spTerm) return spCopy;
    CDeserializer reader(term.spTerm->Serialize());
    spCopy->Deserialize(reader);
    const auto spFlat = boost::dynamic_pointer_cast<COpenPathFlatTerm>(spCopy);
    if (spFlat && term.bReversed) {
        const CDualValue<uint32_t> left = spFlat->GetMultiple(SIDE_LEFT);
        spFlat->SetMultiple(SIDE_LEFT, spFlat->GetMultiple(SIDE_RIGHT));
        spFlat->SetMultiple(SIDE_RIGHT, left);
    }
    return spCopy;
}

void AddAnchors(COpenPathStream& stream, const TOutlinePoints& vAnchors) {
    for (const TOutlinePoint& anchor : vAnchors) {
        const auto spPoint = stream.AppendControlPoint(anchor.anchor);
        spPoint->SetBack(CDualValue<CPoint>(anchor.back));
        spPoint->SetFore(CDualValue<CPoint>(anchor.fore));
    }
}

TOpenPathPtr MakePath(const TPathValues& values, const COpenPathStream& wave) {
    const auto spPath = boost::make_shared<COpenPathObject>();
    COpenPathStream& stream = spPath->GetStream();
    AddAnchors(stream, values.vAnchors);
    stream.SetWidth(values.uWidth);
    for (const TWidthMark& mark : values.vWidths) {
        const auto spMark = stream.AddWidthPoint(mark.t);
        for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT})
            spMark->SetMultiple(side, CDualValue<uint32_t>(mark.auMultiple[side]));
    }
    for (const TCutMark& cut : values.vCuts)
        stream.AddTransPoint(cut.t)->SetAngle(CDualValue<uint32_t>(cut.uAngle));
    for (const TAlphaMark& mark : values.vAlphas)
        stream.AddAlphaPoint(mark.t)->SetAlpha(CDualValue<uint32_t>(mark.uAlpha));
    stream.SetTerm(CopyTerm(values.begin, true));
    stream.SetTerm(CopyTerm(values.end, false));
    stream.SetWave(wave.HasWave(), wave.GetWave());
    spPath->Update();
    return spPath;
}

TPathValues PartOf(const TPathValues& whole, uint32_t tFirst, uint32_t tLast) {
    SELF_CHECK(invalid_argument, tFirst < tLast && tLast <= whole.GetEnd());
    TPathValues part;
    part.uWidth = whole.uWidth;
    const TPathStretch stretch(tFirst, tLast);
    part.vAnchors.assign(whole.vAnchors.begin() + stretch.nFirst, whole.vAnchors.begin() + stretch.nLast + 1);
    // The last segment first: with only one, the first fraction is that of what is left.
    if (stretch.fLast != BEZIER_T_RESOLUTION) {
        TOutlinePoint &from = *(part.vAnchors.end() - 2), &to = part.vAnchors.back();
        const CBezier head = SplitNearest(SegmentOf(from, to), stretch.fLast).first;
        from.fore = head.p1 - head.p0;
        to = {head.p3, head.p2 - head.p3, {}};
    }
    if (stretch.fFirst != 0) {
        TOutlinePoint &from = part.vAnchors[0], &to = part.vAnchors[1];
        const auto f = static_cast<uint32_t>(
            MulDiv(stretch.fFirst, BEZIER_T_RESOLUTION,
                   stretch.nLast - stretch.nFirst == 1 ? stretch.fLast : BEZIER_T_RESOLUTION));
        const CBezier tail = SplitNearest(SegmentOf(from, to), f).second;
        from = {tail.p0, {}, tail.p1 - tail.p0};
        to.back = tail.p2 - tail.p3;
    }
    for (const TWidthMark& mark : whole.vWidths)
        if (mark.t >= tFirst && mark.t <= tLast)
            part.vWidths.push_back({stretch.Map(mark.t), mark.auMultiple});
    for (const TAlphaMark& mark : whole.vAlphas)
        if (mark.t >= tFirst && mark.t <= tLast) part.vAlphas.push_back({stretch.Map(mark.t), mark.uAlpha});
    const auto clipped = [&](const TCutMark& cut) {
        if (cut.t < tFirst) return TCutMark{0, SQUARE};
        if (cut.t > tLast) return TCutMark{part.GetEnd(), SQUARE};
        return TCutMark{stretch.Map(cut.t), cut.uAngle};
    };
    for (size_t i = 0; i < whole.vCuts.size(); i += 2) {
        const TCutMark from = clipped(whole.vCuts[i]);
        const TCutMark to = clipped(whole.vCuts[i + 1]);
        if (from.t < to.t) part.vCuts.insert(part.vCuts.end(), {from, to});
    }
    return part;
}
