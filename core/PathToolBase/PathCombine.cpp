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

struct TTerm {
    boost::shared_ptr<const COpenPathTermBase> spTerm; ///< of a given path
    bool bReversed = false;
};

// The committed values of an open path.
struct TPathValues {
    TOutlinePoints vAnchors;
    std::vector<TWidthMark> vWidths; ///< sorted
    std::vector<TCutMark> vCuts;     ///< sorted, in pairs
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
    SortByParameter(values.vWidths);
    SortByParameter(values.vCuts);
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
    std::reverse(values.vWidths.begin(), values.vWidths.end());
    for (TWidthMark& mark : values.vWidths) {
        mark.t = tEnd - mark.t;
        std::swap(mark.auMultiple[SIDE_LEFT], mark.auMultiple[SIDE_RIGHT]);
    }
    std::reverse(values.vCuts.begin(), values.vCuts.end());
    for (TCutMark& cut : values.vCuts) cut.t = tEnd - cut.t;
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

// The stretch from one parameter to another, both at anchors.
TPathValues PartOf(const TPathValues& whole, uint32_t tFirst, uint32_t tLast) {
    TPathValues part;
    part.uWidth = whole.uWidth;
    part.vAnchors.assign(whole.vAnchors.begin() + tFirst / BEZIER_T_RESOLUTION,
                         whole.vAnchors.begin() + tLast / BEZIER_T_RESOLUTION + 1);
    for (const TWidthMark& mark : whole.vWidths)
        if (mark.t >= tFirst && mark.t <= tLast) part.vWidths.push_back({mark.t - tFirst, mark.auMultiple});
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
