#include "core/PathFit/InkCorrection.h"

#include "core/PathFit/InkFit.h"
#include "core/PathFit/InkLine.h"

#include <algorithm>
#include <new>

namespace {

std::vector<TInkDisc> LineOf(const TInkSamples& samples) {
    return DrawnLine(ControlPointsOf(samples.input, samples.param.CurveStrength), samples.param);
}

boost::shared_ptr<COpenPathObject> WithSamples(const boost::shared_ptr<COpenPathObject>& spPath,
                                               TInkSamples samples) {
    if (!spPath) return {};
    samples.uFittedWidth = std::max(spPath->GetStream().GetWidth(), 1U);
    spPath->GetStream().SetSamples(std::move(samples));
    return spPath;
}

} // namespace

boost::shared_ptr<COpenPathObject> MakeInk(const TInkSamples& samples) {
    return WithSamples(FitInkPath(LineOf(samples), samples.uTolerance * UNITS_OF_HUNDREDTH), samples);
}

boost::shared_ptr<COpenPathObject> MakeInkOrRough(const TInkSamples& samples) {
    try {
        return MakeInk(samples);
    } catch (const std::bad_alloc&) {
        // Nothing of the fit holds memory any more.
        return WithSamples(MakeRoughInkPath(LineOf(samples)), samples);
    }
}

void CorrectInk(COpenPathStream& stream, const TInkCorrection& correction) {
    const auto spSamples = stream.GetSamples();
    if (!spSamples) return;
    TInkSamples samples = *spSamples;
    samples.param.CurveStrength = correction.uSmoothing.value_or(samples.param.CurveStrength);
    samples.uTolerance = correction.uTolerance.value_or(samples.uTolerance);
    if (samples.param.CurveStrength == spSamples->param.CurveStrength &&
        samples.uTolerance == spSamples->uTolerance)
        return;
    const auto spMade = MakeInk(samples);
    if (!spMade) return;
    COpenPathStream& made = spMade->GetStream();
    made.SetWave(stream.HasWave(), stream.GetWave());
    const uint64_t uFitted = spSamples->uFittedWidth;
    const uint64_t uWidth = (uint64_t{made.GetWidth()} * stream.GetWidth() + uFitted / 2) / uFitted;
    made.SetWidth(static_cast<uint32_t>(std::clamp<uint64_t>(uWidth, 1, PATH_WIDTH_LIMIT)));
    for (const bool bBegin : {true, false})
        if (stream.GetTerm(bBegin)->GetType() == TERM_FLAT) made.SetTerm(stream.GetTerm(bBegin));
    CDeserializer reader(made.Serialize());
    stream.Deserialize(reader);
}
