#include "core/PathToolBase/PathCombine.h"

#include "core/Base/Failure.h"

#include <algorithm>

namespace {

constexpr uint32_t SQUARE = 90;
/// The distance of a made width point from an anchor that two paths share.
constexpr uint32_t ASIDE = BEZIER_T_RESOLUTION / 16;

struct TWidthMark {
    uint32_t t;
    std::array<uint32_t, 2> auMultiple; ///< of the base width, by side
};

struct TCutMark {
    uint32_t t;
    uint32_t uAngle;
};

struct TAlphaMark {
    uint32_t t;
    uint32_t uAlpha;
};

struct TTerm {
    boost::shared_ptr<const COpenPathTermBase> spTerm; ///< of a given path
    bool bReversed = false;
};

// The committed values of an open path.
struct TPathValues {
    TOutlinePoints vAnchors;
    std::vector<TWidthMark> vWidths; ///< sorted
    std::vector<TCutMark> vCuts;     ///< sorted, in pairs
    std::vector<TAlphaMark> vAlphas; ///< sorted
    uint32_t uWidth = 0;
    TTerm begin;
    TTerm end;

    uint32_t GetEnd() const { return static_cast<uint32_t>(vAnchors.size() - 1) * BEZIER_T_RESOLUTION; }
};

template <class TMarks>
void SortByParameter(TMarks& vMarks) {
    std::stable_sort(vMarks.begin(), vMarks.end(), [](const auto& a, const auto& b) { return a.t < b.t; });
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

// The same stroke in the other direction. A cut's angle is that of its line, which stays.
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
    for (TTerm* pTerm : {&values.begin, &values.end}) pTerm->bReversed = !pTerm->bReversed;
    return values;
}

// A new end of the same shape.
boost::shared_ptr<COpenPathTermBase> CopyTerm(const TTerm& term, bool bBegin) {
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

// A path of these values, with another one's wave; an end without a shape is sharp.
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

// Gives the base width another value and keeps the absolute widths.
void Rebase(TPathValues& values, uint32_t uWidth) {
    if (values.uWidth == uWidth) return;
    for (TWidthMark& mark : values.vWidths)
        for (uint32_t& uMultiple : mark.auMultiple)
            uMultiple = MultipleOf(WidthOf(uMultiple, values.uWidth), uWidth);
    values.uWidth = uWidth;
}

// A path without marks gets a plain one near the other path, `uAside` from their joint, so that the other
// path's values end there.
template <class TMark>
void MarkBoth(std::vector<TMark>& vFirst, uint32_t tJoin, std::vector<TMark>& vSecond, uint32_t tSecondEnd,
              uint32_t uAside, const TMark& plain) {
    const auto add = [&](std::vector<TMark>& vMarks, uint32_t t) {
        if (!vMarks.empty()) return;
        vMarks.push_back(plain);
        vMarks.back().t = t;
    };
    add(vFirst, tJoin - std::min(uAside, tJoin));
    add(vSecond, std::min(uAside, tSecondEnd));
}

// Of two marks at one place only one would count.
template <class TMark, class TValue>
void PartMarks(const std::vector<TMark>& vFirst, uint32_t tJoin, std::vector<TMark>& vSecond,
               TValue TMark::*pValue) {
    if (vFirst.empty() || vSecond.empty() || vFirst.back().t != tJoin || vSecond.front().t != 0) return;
    if (vFirst.back().*pValue == vSecond.front().*pValue)
        vSecond.erase(vSecond.begin());
    else
        vSecond.front().t = 1;
}

// Appends the marks of a second path, whose start comes to `tShift`.
template <class TMark>
void AppendMarks(std::vector<TMark>& vFirst, const std::vector<TMark>& vSecond, uint32_t tShift) {
    for (TMark mark : vSecond) {
        mark.t += tShift;
        vFirst.push_back(mark);
    }
}

// One path of two, the second behind the first; with `bShared` the inner ends are one anchor, at the place of
// the second's or (bFirstPlace) the first's.
TPathValues Combined(TPathValues first, TPathValues second, uint32_t uWidth, bool bShared, bool bFirstPlace) {
    const uint32_t uAside = bShared ? ASIDE : 0;
    const uint32_t tJoin = first.GetEnd();
    const auto markBoth = [&](auto& vFirst, auto& vSecond, const auto& plain) {
        MarkBoth(vFirst, tJoin, vSecond, second.GetEnd(), uAside, plain);
    };
    if (first.uWidth != second.uWidth || first.vWidths.empty() != second.vWidths.empty())
        markBoth(first.vWidths, second.vWidths, TWidthMark{0, {FIXED_ONE, FIXED_ONE}});
    if (first.vAlphas.empty() != second.vAlphas.empty())
        markBoth(first.vAlphas, second.vAlphas, TAlphaMark{0, CPathAlphaControlPoint::FULL_ALPHA});
    Rebase(first, uWidth);
    Rebase(second, uWidth);
    if (bShared) {
        const TOutlinePoint last = first.vAnchors.back();
        first.vAnchors.pop_back();
        TOutlinePoint& shared = second.vAnchors.front();
        shared.back = last.back;
        if (bFirstPlace) shared.anchor = last.anchor;
        PartMarks(first.vWidths, tJoin, second.vWidths, &TWidthMark::auMultiple);
        PartMarks(first.vAlphas, tJoin, second.vAlphas, &TAlphaMark::uAlpha);
        // Two pairs that meet are one.
        if (!first.vCuts.empty() && !second.vCuts.empty() && first.vCuts.back().t == tJoin &&
            second.vCuts.front().t == 0) {
            first.vCuts.pop_back();
            second.vCuts.erase(second.vCuts.begin());
        }
    }
    const uint32_t tShift = tJoin + (bShared ? 0 : BEZIER_T_RESOLUTION);
    first.vAnchors.insert(first.vAnchors.end(), second.vAnchors.begin(), second.vAnchors.end());
    AppendMarks(first.vWidths, second.vWidths, tShift);
    AppendMarks(first.vCuts, second.vCuts, tShift);
    AppendMarks(first.vAlphas, second.vAlphas, tShift);
    first.end = second.end;
    return first;
}

// The base width of a combined path: marks have no multiple of a width of 0.
uint32_t CombinedWidth(const COpenPathStream& main, const COpenPathStream& other) {
    return main.GetWidth() != 0 ? main.GetWidth() : other.GetWidth();
}

// The stretch from one parameter to another, both at anchors.
TPathValues PartOf(const TPathValues& whole, uint32_t tFirst, uint32_t tLast) {
    TPathValues part;
    part.uWidth = whole.uWidth;
    part.vAnchors.assign(whole.vAnchors.begin() + tFirst / BEZIER_T_RESOLUTION,
                         whole.vAnchors.begin() + tLast / BEZIER_T_RESOLUTION + 1);
    const auto takeInside = [&](const auto& vMarks, auto& vInside) {
        for (auto mark : vMarks) {
            if (mark.t < tFirst || mark.t > tLast) continue;
            mark.t -= tFirst;
            vInside.push_back(mark);
        }
    };
    takeInside(whole.vWidths, part.vWidths);
    takeInside(whole.vAlphas, part.vAlphas);
    const auto clipped = [&](const TCutMark& cut) {
        if (cut.t < tFirst) return TCutMark{0, SQUARE};
        if (cut.t > tLast) return TCutMark{tLast - tFirst, SQUARE};
        return TCutMark{cut.t - tFirst, cut.uAngle};
    };
    for (size_t i = 0; i < whole.vCuts.size(); i += 2) {
        const TCutMark from = clipped(whole.vCuts[i]);
        const TCutMark to = clipped(whole.vCuts[i + 1]);
        if (from.t < to.t) part.vCuts.insert(part.vCuts.end(), {from, to});
    }
    return part;
}

} // namespace

TOpenPathPtr ConnectPaths(const COpenPathObject& drawn, const TPathEnd& other) {
    const COpenPathStream& stream = drawn.GetStream();
    const TPathValues values = ValuesOf(other.spPath->GetStream());
    return MakePath(Combined(ValuesOf(stream), other.bFirst ? values : Reversed(values),
                             CombinedWidth(stream, other.spPath->GetStream()), false, false),
                    stream);
}

TOpenPathPtr JoinPaths(const TPathEnd& dragged, const TPathEnd& target) {
    const COpenPathStream& stream = dragged.spPath->GetStream();
    const TPathValues values = ValuesOf(stream);
    const TPathValues other = ValuesOf(target.spPath->GetStream());
    const TPathValues turned = dragged.bFirst == target.bFirst ? Reversed(other) : other;
    const uint32_t uWidth = CombinedWidth(stream, target.spPath->GetStream());
    return MakePath(dragged.bFirst ? Combined(turned, values, uWidth, true, true)
                                   : Combined(values, turned, uWidth, true, false),
                    stream);
}

std::pair<TOpenPathPtr, TOpenPathPtr> DividePath(const COpenPathObject& path, size_t idx) {
    const COpenPathStream& stream = path.GetStream();
    SELF_CHECK(invalid_argument, idx > 0 && idx + 1 < stream.ControlPointCount());
    const TPathValues whole = ValuesOf(stream);
    const uint32_t tCut = static_cast<uint32_t>(idx) * BEZIER_T_RESOLUTION;
    TPathValues head = PartOf(whole, 0, tCut);
    TPathValues tail = PartOf(whole, tCut, whole.GetEnd());
    head.begin = whole.begin;
    tail.end = whole.end;
    const auto keepWidth = [&](TPathValues& half, uint32_t t) {
        if (whole.vWidths.empty() || !half.vWidths.empty() || whole.uWidth == 0) return;
        const auto auWidth = stream.GetWidthsAt(tCut, STATE_COMMITTED);
        half.vWidths = {
            {t,
             {MultipleOf(auWidth[SIDE_LEFT], whole.uWidth), MultipleOf(auWidth[SIDE_RIGHT], whole.uWidth)}}};
    };
    const auto keepAlpha = [&](TPathValues& half, uint32_t t) {
        if (!whole.vAlphas.empty() && half.vAlphas.empty())
            half.vAlphas = {{t, stream.GetAlphaAt(tCut, STATE_COMMITTED)}};
    };
    for (const auto& [pHalf, t] : {std::pair{&head, tCut}, std::pair{&tail, 0u}}) {
        keepWidth(*pHalf, t);
        keepAlpha(*pHalf, t);
    }
    return {MakePath(head, stream), MakePath(tail, stream)};
}

TOpenPathPtr OpenClosedPath(const CClosedPathObject& path, size_t idx, const TPathParam& param) {
    TOutlinePoints vAnchors;
    for (const auto& spPoint : path.GetStream().GetControlPoints())
        vAnchors.push_back(spPoint->At(STATE_COMMITTED));
    SELF_CHECK(invalid_argument, idx < vAnchors.size());
    // A last anchor at the first one's place has no curve back to it: both are one.
    if (vAnchors.size() > 1 && vAnchors.back().anchor == vAnchors.front().anchor) {
        vAnchors.front().back = vAnchors.back().back;
        vAnchors.pop_back();
        idx %= vAnchors.size();
    }
    std::rotate(vAnchors.begin(), vAnchors.begin() + static_cast<std::ptrdiff_t>(idx), vAnchors.end());
    vAnchors.push_back(vAnchors.front());
    const auto spPath = boost::make_shared<COpenPathObject>();
    param.ApplyTo(spPath->GetStream());
    AddAnchors(spPath->GetStream(), vAnchors);
    spPath->Update();
    return spPath;
}
