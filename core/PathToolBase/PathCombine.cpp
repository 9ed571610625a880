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

// One path of two, the second behind the first; with `bShared` the inner ends are one anchor, at the place of
// the second's or (bFirstPlace) the first's.
TPathValues Combined(TPathValues first, TPathValues second, uint32_t uWidth, bool bShared, bool bFirstPlace) {
    const uint32_t uAside = bShared ? ASIDE : 0;
    const uint32_t tJoin = first.GetEnd();
    const bool bMark = first.uWidth != second.uWidth || first.vWidths.empty() != second.vWidths.empty();
    const std::array<uint32_t, 2> auPlain{FIXED_ONE, FIXED_ONE};
    if (bMark && first.vWidths.empty()) first.vWidths = {{tJoin - std::min(uAside, tJoin), auPlain}};
    if (bMark && second.vWidths.empty()) second.vWidths = {{std::min(uAside, second.GetEnd()), auPlain}};
    Rebase(first, uWidth);
    Rebase(second, uWidth);
    if (bShared) {
        const TOutlinePoint last = first.vAnchors.back();
        first.vAnchors.pop_back();
        TOutlinePoint& shared = second.vAnchors.front();
        shared.back = last.back;
        if (bFirstPlace) shared.anchor = last.anchor;
        // Of two marks at one place only one would count.
        if (!first.vWidths.empty() && first.vWidths.back().t == tJoin && second.vWidths.front().t == 0) {
            if (first.vWidths.back().auMultiple == second.vWidths.front().auMultiple)
                second.vWidths.erase(second.vWidths.begin());
            else
                second.vWidths.front().t = 1;
        }
        // Two pairs that meet are one.
        if (!first.vCuts.empty() && !second.vCuts.empty() && first.vCuts.back().t == tJoin &&
            second.vCuts.front().t == 0) {
            first.vCuts.pop_back();
            second.vCuts.erase(second.vCuts.begin());
        }
    }
    const uint32_t tShift = tJoin + (bShared ? 0 : BEZIER_T_RESOLUTION);
    first.vAnchors.insert(first.vAnchors.end(), second.vAnchors.begin(), second.vAnchors.end());
    for (const TWidthMark& mark : second.vWidths) first.vWidths.push_back({mark.t + tShift, mark.auMultiple});
    for (const TCutMark& cut : second.vCuts) first.vCuts.push_back({cut.t + tShift, cut.uAngle});
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
    keepWidth(head, tCut);
    keepWidth(tail, 0);
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
