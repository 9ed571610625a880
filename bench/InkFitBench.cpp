// Fitting a path to drawn lines, beside drawing the same lines as pixels, and opening a drawing of such
// paths.
#include "core/CanvasBuffer/CanvasBuffer.h"
#include "core/ImageFile/ImageFile.h"
#include "core/LayerBuffer/VectorLayerBuffer.h"
#include "core/PathFit/InkCorrection.h"
#include "core/PathFit/InkFit.h"
#include "core/Platform/System.h"
#include "core/RasterStroke/RasterBrushStroke.h"
#include "tests/support/Hands.h"

#include <benchmark/benchmark.h>

namespace {

constexpr double TOLERANCE = 2.8; ///< path units
constexpr CSize SIZE{1000, 400};

// A clock that never advances, so that no time budget expires.
class CStillClock : public IClock {
public:
    uint32_t GetTickCount() override { return 0; }
};

// Ten seconds of a calm contour, as long as the longest of the rough hands.
THand MakeContour() {
    return MakeHand("contour", 2000, 6, 0.12, 30, [](double s) {
        return THandPlace{40 + 800 * s, 200 + 60 * std::sin(s * 19), 0.55 + 0.2 * std::sin(s * 31)};
    });
}

THand HandOf(const std::string& strName) {
    if (strName == "contour") return MakeContour();
    for (THand& hand : AllHands())
        if (hand.strName == strName) return hand;
    return {};
}

void FitLine(benchmark::State& state, const std::string& strName) {
    const THand hand = HandOf(strName);
    const auto vLine = DrawnLine(hand.vPoints, hand.param);
    boost::shared_ptr<COpenPathObject> spPath;
    for (auto _ : state) spPath = FitInkPath(vLine, TOLERANCE);
    state.counters["anchors"] = static_cast<double>(spPath->GetStream().GetControlPoints().size());
    state.counters["marks"] = static_cast<double>(spPath->GetStream().GetWidthPoints().size());
    state.counters["samples"] = static_cast<double>(hand.vPoints.size());
}

void DrawLine(benchmark::State& state, const std::string& strName) {
    const THand hand = HandOf(strName);
    CStillClock clock;
    for (auto _ : state) {
        CStrokeRandom random;
        CRasterBrushStroke stroke({.szCanvas = SIZE, .param = hand.param, .clock = clock, .random = random});
        for (const TCtlPoint& pt : hand.vPoints) stroke.AddCtlPoint({pt.x, pt.y}, pt.pressure, pt.altitude);
        stroke.AddCtlPoint({}, FINAL_PRESSURE, UPRIGHT);
        while (!stroke.Update()) {
        }
    }
}

constexpr int STROKES = 10000;
constexpr CSize SHEET{4000, 4000};

// Strokes of a hand, half a second each: arcs of 30 to 150 pixels with a tremor, pressed harder in the
// middle.
boost::shared_ptr<COpenPathObject> MakeStroke(std::mt19937& random, size_t& nSamples) {
    const double dReach = 120 + random() % 480, dBend = 0.4 + random() % 300 / 100.0,
                 dTurn = random() % 628 / 100.0;
    TInkSamples samples;
    samples.input.bPen = samples.input.bLifted = true;
    for (int n = 0; n <= 100; ++n) {
        const double s = n / 100.0, dAngle = dTurn + dBend * s;
        samples.input.vPoints.push_back(
            {static_cast<int32_t>(dReach * std::sin(dAngle)) + static_cast<int32_t>(random() % 3),
             static_cast<int32_t>(dReach * std::cos(dAngle)) + static_cast<int32_t>(random() % 3),
             static_cast<uint32_t>(80 + 700 * std::sin(s * 3.1)), UPRIGHT});
    }
    nSamples += samples.input.vPoints.size();
    return MakeInk(samples);
}

// The file of a layer of pen strokes, opened and painted whole; counters are bytes in the file.
void OpenDrawing(benchmark::State& state) {
    const auto spCanvas = CreateCanvas(SHEET);
    const auto spLayer = CreateVectorLayer(spCanvas);
    std::mt19937 random(3);
    size_t nSamples = 0;
    for (int n = 0; n < STROKES; ++n) {
        const auto spPath = MakeStroke(random, nSamples);
        const CPoint ptAway{static_cast<int32_t>(random() % 32000), static_cast<int32_t>(random() % 32000)};
        spPath->Transform([&](CPoint pt) { return pt + ptAway; });
        spLayer->InsertPath(spPath);
    }
    spCanvas->GetRoot().AddLayer(spLayer, -1, false);
    const auto saved = [&](EInkSamples samples) {
        CSerializer file;
        CSerializer document = spCanvas->Serialize();
        if (samples == EInkSamples::LeftOut) document.Detach(TInkSamples::CHUNK_TAG);
        file.WriteTop(document);
        return file.GetPayload();
    };
    const auto spBytes = boost::make_shared<TBytes>(saved(EInkSamples::Kept));
    for (auto _ : state) {
        CDeserializer file(spBytes);
        CDeserializer top;
        file.ReadTop(top);
        const auto spOpened = boost::make_shared<CCanvasBuffer>();
        spOpened->Deserialize(top, L"page.vlm");
        spOpened->ComposeAll();
    }
    state.counters["a sample"] = static_cast<double>(spBytes->size()) / static_cast<double>(nSamples);
    state.counters["a stroke without samples"] =
        static_cast<double>(saved(EInkSamples::LeftOut).size()) / STROKES;
}

// The fit uses several threads.
BENCHMARK_CAPTURE(FitLine, tremor, "tremor")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(DrawLine, tremor, "tremor")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FitLine, contour, "contour")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(FitLine, slow, "slow")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(DrawLine, slow, "slow")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FitLine, letters, "letters")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(FitLine, hatching, "hatching")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(OpenDrawing)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
