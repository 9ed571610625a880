// Level correction compared with GraphicsMagick's, and hue, saturation and brightness compared with OpenCV's
// conversion to HSV and back, on 16 million pixels. One thread. The pictures: a drawing of lines with soft
// edges, and a coloured gradient with noise in all channels.
#include "core/RasterKernel/HsbKernel.h"
#include "core/RasterKernel/KernelChoice.h"
#include "core/RasterKernel/LevelKernel.h"

#include <magick/api.h>
#include <opencv2/imgproc.hpp>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr size_t SIDE = 4000;
constexpr size_t PIXELS = SIDE * SIDE;

enum EPicture { Drawing, Photo };

// The planes R, G and B and a soft mask.
struct TPicture {
    std::vector<uint8_t> av[3], vMask;

    explicit TPicture(int nKind) : vMask(PIXELS) {
        std::mt19937 random(1);
        for (auto& v : av) v.resize(PIXELS);
        for (size_t i = 0; i < PIXELS; ++i) {
            const size_t x = i % SIDE, y = i / SIDE;
            vMask[i] = static_cast<uint8_t>(std::clamp<size_t>((x + y / 2) / 16, 60, 315) - 60);
            // Lines lie in steps of 64 pixels, 4 wide; a drawing is white between them.
            const size_t nAcross = (x + y / 3) % 64;
            const uint8_t auLine[] = {128, 0, 20, 200};
            for (size_t n = 0; n < 3; ++n) {
                const size_t nGradient = (n == 0   ? x
                                          : n == 1 ? y
                                                   : x + SIDE - y) *
                                         180 / SIDE / (n == 2 ? 2 : 1);
                av[n][i] = nKind == Photo ? static_cast<uint8_t>(nGradient + random() % 76)
                           : nAcross < 4  ? auLine[nAcross]
                                          : uint8_t{255};
            }
        }
    }
    TConstColorPixels Pixels() const { return {av[0].data(), av[1].data(), av[2].data(), nullptr}; }
    std::vector<uint8_t> Packed() const {
        std::vector<uint8_t> v(PIXELS * 3);
        for (size_t i = 0; i < PIXELS; ++i)
            for (size_t n = 0; n < 3; ++n) v[i * 3 + n] = av[n][i];
        return v;
    }
};

const TPicture& Picture(int nKind) {
    static const TPicture drawing(Drawing), photo(Photo);
    return nKind == Photo ? photo : drawing;
}

struct TPlanes {
    std::vector<uint8_t> av[3];
    TPlanes() {
        for (auto& v : av) v.resize(PIXELS);
    }
    TColorPixels Pixels() { return {av[0].data(), av[1].data(), av[2].data(), nullptr}; }
};

// In place, as GraphicsMagick works, row by row; the time does not depend on the levels.
void Levels(benchmark::State& state, bool bVector) {
    TPicture picture = Picture(static_cast<int>(state.range(0)));
    const uint8_t* pMask = state.range(1) ? picture.vMask.data() : nullptr;
    const TLevelTable table = MakeLevelTable({30, 220, 1.3F});
    UseVectorKernels(bVector);
    for (auto _ : state)
        for (size_t i = 0; i < PIXELS; i += SIDE)
            for (auto& v : picture.av)
                ApplyLevels(v.data() + i, v.data() + i, pMask ? pMask + i : nullptr, table, SIDE);
    UseVectorKernels(true);
}

void Histogram(benchmark::State& state) {
    const TPicture& picture = Picture(static_cast<int>(state.range(0)));
    const std::vector<uint8_t> vAlpha(PIXELS, 255);
    const uint8_t* const apPlanes[] = {picture.av[0].data(), picture.av[1].data(), picture.av[2].data()};
    const uint8_t* pMask = state.range(1) ? picture.vMask.data() : nullptr;
    for (auto _ : state) {
        TLevelCounts aCounts{};
        CountLevels(aCounts, apPlanes, 3, vAlpha.data(), pMask, PIXELS);
        benchmark::DoNotOptimize(aCounts);
    }
}

// Works in place, so that each run starts with the picture anew.
void MagickLevels(benchmark::State& state) {
    const std::vector<uint8_t> vPacked = Picture(static_cast<int>(state.range(0))).Packed();
    ExceptionInfo exception;
    GetExceptionInfo(&exception);
    for (auto _ : state) {
        state.PauseTiming();
        Image* pImage = ConstituteImage(SIDE, SIDE, "RGB", CharPixel, vPacked.data(), &exception);
        state.ResumeTiming();
        if (LevelImage(pImage, "7710,1.3,56540") != MagickPass) state.SkipWithError("level");
        state.PauseTiming();
        DestroyImage(pImage);
        state.ResumeTiming();
    }
    DestroyExceptionInfo(&exception);
}

void Hsb(benchmark::State& state, bool bVector) {
    const TPicture& picture = Picture(static_cast<int>(state.range(0)));
    const uint8_t* pMask = state.range(1) ? picture.vMask.data() : nullptr;
    const THsbTables tables = MakeHsbTables({30, 0.5F, 0.2F, {0.1F, 0, 0}, 0.1F, {0, 0.1F, -0.1F}});
    TPlanes dest;
    UseVectorKernels(bVector);
    for (auto _ : state) AdjustHsb(dest.Pixels(), picture.Pixels(), pMask, tables, PIXELS);
    UseVectorKernels(true);
}

void HsvRoundTrip(benchmark::State& state) {
    std::vector<uint8_t> vPacked = Picture(static_cast<int>(state.range(0))).Packed();
    const cv::Mat source(SIDE, SIDE, CV_8UC3, vPacked.data());
    cv::Mat hsv, dest;
    for (auto _ : state) {
        cv::cvtColor(source, hsv, cv::COLOR_BGR2HSV);
        cv::cvtColor(hsv, dest, cv::COLOR_HSV2BGR);
    }
}

} // namespace

int main(int argc, char** argv) {
    InitializeMagick(nullptr);
    SetMagickResourceLimit(ThreadsResource, 1);
    cv::setNumThreads(1);
    for (const auto& [strForm, bVector] : {std::pair<std::string, bool>{"ours", true}, {"plain", false}}) {
        for (const auto& [strName, pRun] :
             {std::pair<std::string, decltype(&Levels)>{"levels/", Levels}, {"hsb/", Hsb}})
            benchmark::RegisterBenchmark((strName + strForm).c_str(), pRun, bVector)
                ->ArgNames({"photo", "mask"})
                ->ArgsProduct({{Drawing, Photo}, {0, 1}})
                ->Unit(benchmark::kMillisecond);
    }
    const auto add = [](const char* pszName, void (*pRun)(benchmark::State&)) {
        benchmark::RegisterBenchmark(pszName, pRun)
            ->ArgNames({"photo"})
            ->Arg(Drawing)
            ->Arg(Photo)
            ->Unit(benchmark::kMillisecond);
    };
    add("levels/GraphicsMagick", MagickLevels);
    add("hsb/OpenCV HSV and back", HsvRoundTrip);
    benchmark::RegisterBenchmark("histogram", Histogram)
        ->ArgNames({"photo", "mask"})
        ->ArgsProduct({{Drawing, Photo}, {0, 1}})
        ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
