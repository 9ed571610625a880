#include "core/PathToolBase/PathCombine.h"

#include "core/Base/Failure.h"
#include "core/PathToolBase/PathValues.h"

#include <algorithm>

namespace {

/// The distance of a made width point from an anchor that two paths share.
constexpr uint32_t ASIDE = BEZIER_T_RESOLUTION / 16;

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
