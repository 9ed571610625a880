#include "core/PathFit/InkFit.h"

#include "core/Base/Parallel.h"
#include "core/PathFit/InkCheck.h"
#include "core/PathFit/InkEnds.h"
#include "core/PathFit/InkMarks.h"
#include "core/PathFit/InkMend.h"
#include "core/PathOutline/OutlineBuilder.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <optional>
#include <tuple>

namespace {

constexpr int MOST_ROUNDS = 12;
/// Outlines with more faults than this, as of scribbles, get few rounds and no other tolerances: neither
/// helps them much.
constexpr int FEW_ROUNDS = 3;
constexpr size_t FEW_FAULTS = 24;
/// The length of a sharp end's tip, in tolerances.
constexpr double TIP = 4;
/// So near to a fault, in tolerances, widths get closer, to this part of what they were off by.
constexpr double TIGHT_REACH = 4;
constexpr double TIGHT_SHARE = 0.6;
/// With so many curves, as of a scribble, the first outline has to do unless it is far off.
constexpr size_t MANY_CURVES = 400;
/// An outline that is off by so many tolerances, and by so many path units, has a spike or a hole.
constexpr double GROSS = 1.3;
constexpr double LEAST_GROSS = 5.6;
/// The usual tolerance, in path units, at which such outlines are rarest.
constexpr double USUAL_TOLERANCE = 2.8;

std::vector<TFittedAnchor> AnchorsOf(const std::vector<TCentreCurve>& vCurves) {
    std::vector<TFittedAnchor> vAnchors{{ToPoint(vCurves.front().cubic.p0), {}, {}}};
    for (const TCentreCurve& curve : vCurves) {
        const auto& [p0, p1, p2, p3] = curve.cubic;
        vAnchors.back().ptFore = ToPoint(p1 - p0);
        vAnchors.push_back({ToPoint(p3), ToPoint(p2 - p3), {}});
    }
    return vAnchors;
}

TFittedInk Assemble(const TInkWay& vDrawn, const std::vector<TCentreCurve>& vCurves,
                    const std::vector<TFittedMark>& vWidths, TEaseEnds ends) {
    TFittedInk ink;
    ink.vAnchors = AnchorsOf(vCurves);
    ink.vWidths = vWidths;
    for (const TFittedMark& mark : ink.vWidths) ink.uWidth = std::max(ink.uWidth, mark.uValue);
    const auto outward = [&](bool bBegin) {
        const TInkCubic& cubic = bBegin ? vCurves.front().cubic : vCurves.back().cubic;
        return bBegin ? UnitOf(cubic.p0 - cubic.p1, {-1, 0}) : UnitOf(cubic.p3 - cubic.p2, {1, 0});
    };
    const auto endOf = [&](bool bBegin, bool bSharp) {
        if (bSharp) return TFittedEnd{TERM_SHARP, FIXED_ONE};
        const TWayPoint& disc = bBegin ? vDrawn.front() : vDrawn.back();
        const TInkVector pt = bBegin ? vCurves.front().cubic.p0 : vCurves.back().cubic.p3;
        const uint32_t uWidth = (bBegin ? ink.vWidths.front() : ink.vWidths.back()).uValue;
        return TFittedEnd{TERM_ROUND, GrowOf(disc, pt, outward(bBegin), uWidth)};
    };
    ink.begin = endOf(true, ends.bSharpBegin);
    ink.end = endOf(false, ends.bSharpEnd);
    // Without marks the width stands in the path's middle, where it would divide a turn.
    if (ink.vWidths.size() == 1 && !ends.bSharpBegin && !ends.bSharpEnd &&
        std::ranges::none_of(vCurves, &TCentreCurve::IsTurn))
        ink.vWidths.clear();
    return ink;
}

// Ends that no sharp tip fits become round ones of hardly any width. Their faults are done with.
void GiveUpTips(TEaseEnds& ends, std::vector<size_t>& vFaults, const TInkWay& vWay, double dTolerance) {
    const auto giveUp = [&](bool& bSharp, double dEnd) {
        const auto isAtTip = [&](size_t idx) {
            return std::abs(vWay[idx].dLength - dEnd) < TIP * dTolerance;
        };
        if (bSharp && std::erase_if(vFaults, isAtTip) > 0) bSharp = false;
    };
    giveUp(ends.bSharpBegin, 0);
    giveUp(ends.bSharpEnd, vWay.back().dLength);
}

// Asks for closer widths near the faults.
void Tighten(TInkWay& vWay, const std::vector<size_t>& vFaults, double dTolerance) {
    size_t idxDone = 0;
    for (const size_t idx : vFaults) {
        const auto isBefore = [](const TWayPoint& point, double d) { return point.dLength < d; };
        const double dReach = TIGHT_REACH * dTolerance;
        const auto itFirst = std::lower_bound(vWay.begin() + static_cast<std::ptrdiff_t>(idxDone), vWay.end(),
                                              vWay[idx].dLength - dReach, isBefore);
        const auto itLast = std::lower_bound(itFirst, vWay.end(), vWay[idx].dLength + dReach, isBefore);
        for (auto it = itFirst; it != itLast; ++it) it->dShare *= TIGHT_SHARE;
        idxDone = static_cast<size_t>(itLast - vWay.begin());
    }
}

struct TFit {
    TFittedInk ink;
    boost::shared_ptr<COpenPathObject> spPath; ///< without the opacities; null where none was built
    CInkCheck::TFaults faults;
    boost::shared_ptr<COutlineBuilder> spBuilder; ///< has built the path
};

// `check` gets that of the way.
TFit FitWay(const TInkWay& vDrawn, double dTolerance, std::optional<CInkCheck>& check) {
    TEaseEnds ends{IsTapering(vDrawn, true, dTolerance), IsTapering(vDrawn, false, dTolerance)};
    TInkWay vWay = vDrawn;
    ExtendTapers(vWay, ends.bSharpBegin, ends.bSharpEnd, dTolerance);
    std::vector<TCentreCurve> vCurves;
    const size_t nThreads = vWay.size() < POINTS_FOR_THREADS ? 1 : AvailableThreads();
    ForEachIndex(2, nThreads, [&](size_t n) {
        if (n == 0) {
            MoveToMiddle(vWay);
            vCurves = FitCentre(vWay, dTolerance, nThreads);
        } else
            check.emplace(vDrawn, dTolerance, std::max(GROSS * dTolerance, LEAST_GROSS));
    });
    const size_t nBefore = vWay.size() > vDrawn.size() && ends.bSharpBegin && vWay.front().dHalf == 0 ? 1 : 0;
    TFit best;
    std::vector<TCentreCurve> vBest;
    const auto spBuilder = boost::make_shared<COutlineBuilder>();
    const bool bMany = vCurves.size() > MANY_CURVES;
    CInkWidths widths(vWay, dTolerance);
    widths.Fit(vCurves, ends);
    CInkMend mend(vWay, dTolerance, std::move(vCurves));
    for (int nRound = 0; nRound < MOST_ROUNDS; ++nRound) {
        TFittedInk ink = Assemble(vDrawn, mend.GetCurves(), widths.GetMarks(), ends);
        const auto spPath = MakeInkPath(ink, spBuilder);
        CInkCheck::TFaults faults = check->Find(spPath->GetStream().GetShape(STATE_COMMITTED));
        std::vector<size_t> vFaults = faults.vPoints;
        if (!best.spPath || std::tuple(faults.nGross, vFaults.size()) <
                                std::tuple(best.faults.nGross, best.faults.vPoints.size())) {
            best = {std::move(ink), spPath, std::move(faults), spBuilder};
            vBest = mend.GetCurves();
        }
        for (size_t& idx : vFaults) idx += nBefore;
        if (vFaults.empty() || (bMany && best.faults.nGross == 0)) break;
        if (best.faults.vPoints.size() > FEW_FAULTS && nRound + 1 >= FEW_ROUNDS) break;
        GiveUpTips(ends, vFaults, vWay, dTolerance);
        Tighten(vWay, vFaults, dTolerance);
        const bool bCurves = mend.Change(vFaults);
        if (!widths.Refit(mend.GetCurves(), ends, vFaults, TIGHT_REACH * dTolerance) && !bCurves) break;
    }
    best.ink.vAlphas = FitOpacities(vWay, vBest, dTolerance);
    return best;
}

// Tolerances that are tried in turn after an outline with a spike or a hole, which come by chance: somewhat
// smaller ones, half as large ones, then the usual one and its double.
std::vector<double> OthersThan(double dTolerance) {
    std::vector<double> vOthers{0.85 * dTolerance, 0.7 * dTolerance};
    for (double d = dTolerance / 2; d > USUAL_TOLERANCE; d /= 2) vOthers.push_back(d);
    for (const double d : {USUAL_TOLERANCE, 2 * USUAL_TOLERANCE})
        if (d != dTolerance) vOthers.push_back(d);
    return vOthers;
}

TFit FitLine(std::span<const TInkDisc> vLine, double dTolerance) {
    dTolerance = std::clamp(dTolerance, LEAST_INK_TOLERANCE, MOST_INK_TOLERANCE);
    const TInkWay vDrawn = MakeInkWay(vLine, dTolerance);
    if (vDrawn.empty()) return {};
    if (vDrawn.size() == 1) return {MakeDot(vDrawn.front()), {}, {}, {}};
    std::optional<CInkCheck> check, checkOther;
    TFit best = FitWay(vDrawn, dTolerance, check);
    for (const double dOther : OthersThan(dTolerance)) {
        if (best.faults.nGross == 0 || best.faults.nGross > FEW_FAULTS) break;
        const TInkWay vWay = MakeInkWay(vLine, dOther);
        if (vWay.size() == 1) continue;
        TFit fit = FitWay(vWay, dOther, checkOther);
        fit.faults = check->Find(fit.spPath->GetStream().GetShape(STATE_COMMITTED));
        if (fit.faults.nGross < best.faults.nGross) best = std::move(fit);
    }
    return best;
}

} // namespace

TFittedInk FitInk(std::span<const TInkDisc> vLine, double dTolerance) {
    return FitLine(vLine, dTolerance).ink;
}

boost::shared_ptr<COpenPathObject> FitInkPath(std::span<const TInkDisc> vLine, double dTolerance) {
    const TFit fit = FitLine(vLine, dTolerance);
    if (fit.ink.vAnchors.empty()) return {};
    if (!fit.spPath) return MakeInkPath(fit.ink);
    COpenPathStream& stream = fit.spPath->GetStream();
    if (AddOpacities(stream, fit.ink.vAlphas)) {
        stream.UseBuilder(fit.spBuilder);
        fit.spPath->Update();
    }
    return fit.spPath;
}
