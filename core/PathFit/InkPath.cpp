#include "core/PathFit/InkFit.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace {

boost::shared_ptr<COpenPathTermBase> MakeEnd(const TFittedEnd& end, bool bBegin) {
    if (end.type != TERM_ROUND) return CreateOpenPathTerm(end.type, bBegin);
    const auto spRound = boost::make_shared<COpenPathRoundTerm>(bBegin);
    spRound->SetGrow(CDualValue<uint32_t>(end.uGrow));
    return spRound;
}

} // namespace

bool AddOpacities(COpenPathStream& stream, const std::vector<TFittedMark>& vAlphas) {
    const auto isOpaque = [](const TFittedMark& mark) {
        return mark.uValue >= CPathAlphaControlPoint::FULL_ALPHA;
    };
    if (std::ranges::all_of(vAlphas, isOpaque)) return false;
    for (const TFittedMark& mark : vAlphas)
        stream.AddAlphaPoint(mark.t)->SetAlpha(CDualValue<uint32_t>(mark.uValue));
    return true;
}

boost::shared_ptr<COpenPathObject> MakeInkPath(const TFittedInk& ink,
                                               const boost::shared_ptr<COutlineBuilder>& spBuilder) {
    const auto spPath = boost::make_shared<COpenPathObject>();
    if (ink.vAnchors.empty()) return spPath;
    COpenPathStream& stream = spPath->GetStream();
    for (const TFittedAnchor& anchor : ink.vAnchors) {
        const auto spPoint = stream.AppendControlPoint(anchor.pt);
        spPoint->SetBack(CDualValue<CPoint>(anchor.ptBack));
        spPoint->SetFore(CDualValue<CPoint>(anchor.ptFore));
    }
    stream.SetWidth(ink.uWidth);
    COpenPathStream::TWidthPoints vWidths;
    for (const TFittedMark& mark : ink.vWidths) {
        const auto spWidth = boost::make_shared<CPathWidthControlPoint>(
            stream.weak_from_this(), CDualValue<uint32_t>(mark.t), ink.uWidth);
        for (const EPathSide side : {SIDE_LEFT, SIDE_RIGHT})
            spWidth->SetMultiple(side, CDualValue<uint32_t>(MultipleOf(mark.uValue, ink.uWidth)));
        vWidths.push_back(spWidth);
    }
    stream.SetWidthPoints(vWidths);
    AddOpacities(stream, ink.vAlphas);
    stream.SetTerm(MakeEnd(ink.begin, true));
    stream.SetTerm(MakeEnd(ink.end, false));
    stream.UseBuilder(spBuilder);
    spPath->Update();
    return spPath;
}
