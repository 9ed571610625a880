#include "core/PathObject/InkSamples.h"

#include "core/Base/Failure.h"
#include "core/PathObject/PathControlPointBase.h"
#include "core/RasterStroke/PressureCurve.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <type_traits>

namespace {

constexpr uint32_t SAMPLE_BYTES = 12;
constexpr uint32_t PERCENT = 100;
constexpr uint32_t ANY_BYTE = 255;

// Calls `fn(field, smallest value, largest value)` for the numbers in front of the samples.
template <class Samples, class Function>
void ForEachField(Samples& samples, Function fn) {
    auto& param = samples.param;
    fn(param.CurveStrength, 0, ANY_BYTE);
    fn(param.BrushRadius, 0, MAX_BRUSH_RADIUS);
    fn(param.BrushAlpha, 0, ANY_BYTE);
    fn(param.PressRadius, 0, 1);
    fn(param.PressAlpha, 0, 1);
    for (auto* p : {&param.AvailInput, &param.AvailAlpha, &param.MinRadiusRate, &param.MinAlphaRate})
        fn(*p, 0, PERCENT);
    for (auto* p : {&param.PressCurve1x, &param.PressCurve1y, &param.PressCurve2x, &param.PressCurve2y})
        fn(*p, 0, PERCENT);
    fn(samples.uTolerance, 1, 10 * PERCENT);
    fn(samples.uFittedWidth, 1, PATH_WIDTH_LIMIT);
    fn(samples.uShape, 0, UINT32_MAX);
    fn(samples.input.uEntry, 0, UINT32_MAX);
    for (auto* p : {&samples.input.bPen, &samples.input.bLifted, &samples.input.bTap}) fn(*p, 0, 1);
}

void Read(TInkSamples& samples, CDeserializer& reader) {
    ForEachField(samples, [&](auto& field, uint32_t uMin, uint32_t uMax) {
        const auto u = std::clamp(static_cast<uint32_t>(reader.ReadInt32()), uMin, uMax);
        field = static_cast<std::remove_reference_t<decltype(field)>>(u);
    });
    const auto uCount = static_cast<uint32_t>(reader.ReadInt32());
    if (uCount > reader.GetRest() / SAMPLE_BYTES) throw deserialize_error();
    for (uint32_t u = 0; u < uCount; ++u) {
        const auto place = [&] {
            return std::clamp(reader.ReadInt32(), -PATH_COORDINATE_LIMIT, PATH_COORDINATE_LIMIT);
        };
        const int32_t x = place(), y = place();
        const auto uPressure = std::min(static_cast<uint32_t>(reader.ReadInt32()), FULL_PRESSURE);
        samples.input.vPoints.push_back({x, y, uPressure, UPRIGHT});
    }
    reader.ExpectEnd();
}

} // namespace

CSerializer TInkSamples::Serialize() const {
    CSerializer writer;
    writer.SetTag(CHUNK_TAG, 0);
    ForEachField(*this, [&](const auto& field, uint32_t, uint32_t) {
        writer.WriteInt32(static_cast<int32_t>(field));
    });
    writer.WriteInt32(static_cast<int32_t>(input.vPoints.size()));
    for (const TCtlPoint& point : input.vPoints)
        for (const int32_t n : {point.x, point.y, static_cast<int32_t>(point.pressure)}) writer.WriteInt32(n);
    return writer;
}

boost::shared_ptr<const TInkSamples> TInkSamples::Deserialize(CDeserializer& reader) {
    const auto spSamples = boost::make_shared<TInkSamples>();
    try {
        Read(*spSamples, reader);
    } catch (const deserialize_error&) {
        return {};
    }
    return spSamples;
}

TInkSamples TInkSamples::Mapped(const boost::function<CPoint(CPoint)>& fnMap) const {
    TInkSamples mapped = *this;
    for (TCtlPoint& point : mapped.input.vPoints) {
        const CPoint pt = fnMap({point.x, point.y});
        point.x = pt.x;
        point.y = pt.y;
    }
    return mapped;
}
