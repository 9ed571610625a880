// The blending kernels beside pixman (premultiplied) and QPainter (straight alpha), over the pixels of one
// tile at a time, as the compositor works. One thread; time is per pixel.
#include "core/RasterKernel/Kernels.h"

#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>
#include <pixman.h>

#include <cstring>
#include <random>
#include <vector>

namespace {

constexpr int SIDE = 96;
constexpr size_t PIXELS = SIDE * SIDE;

// Source, destination and mask of one tile, as planes and as packed pixels.
struct TTile {
    std::vector<uint8_t> avSource[4], avDest[4], vMask;
    std::vector<uint32_t> vPackedSource, vPackedDest;

    TTile() {
        std::mt19937 random(1);
        const auto fill = [&](std::vector<uint8_t>& v) {
            v.resize(PIXELS);
            for (uint8_t& u : v) u = static_cast<uint8_t>(random());
        };
        for (int n = 0; n < 4; ++n) fill(avSource[n]), fill(avDest[n]);
        fill(vMask);
        const auto pack = [](const std::vector<uint8_t>* av, std::vector<uint32_t>& v) {
            v.resize(PIXELS);
            for (size_t i = 0; i < PIXELS; ++i) {
                const uint32_t a = av[3][i];
                v[i] = a << 24 | av[0][i] * a / 255 << 16 | av[1][i] * a / 255 << 8 | av[2][i] * a / 255;
            }
        };
        pack(avSource, vPackedSource);
        pack(avDest, vPackedDest);
    }
    TConstColorPixels Source() const {
        return {avSource[0].data(), avSource[1].data(), avSource[2].data(), avSource[3].data()};
    }
    TColorPixels Dest() { return {avDest[0].data(), avDest[1].data(), avDest[2].data(), avDest[3].data()}; }
};

// Times one blend of a tile and tells it a pixel.
template <class Blend>
void Time(benchmark::State& state, Blend blend) {
    for (auto _ : state) {
        blend();
        benchmark::ClobberMemory();
    }
    state.counters["time/pixel"] = benchmark::Counter(PIXELS, benchmark::Counter::kIsIterationInvariantRate |
                                                                  benchmark::Counter::kInvert);
}

void Fast(benchmark::State& state, const TBlendKernels& kernels) {
    TTile tile;
    Time(state, [&] { kernels.pFastColor(tile.Dest(), tile.Source(), PIXELS); });
}

void General(benchmark::State& state, const TBlendKernels& kernels) {
    TTile tile;
    Time(state,
         [&] { kernels.pGeneralColorOnColor(tile.Dest(), tile.Source(), 200, tile.vMask.data(), PIXELS); });
}

void Pixman(benchmark::State& state, bool bMask) {
    TTile tile;
    const auto image = [](pixman_format_code_t format, void* p, int nStride) {
        return pixman_image_create_bits(format, SIDE, SIDE, static_cast<uint32_t*>(p), nStride);
    };
    pixman_image_t* pSource = image(PIXMAN_a8r8g8b8, tile.vPackedSource.data(), SIDE * 4);
    pixman_image_t* pDest = image(PIXMAN_a8r8g8b8, tile.vPackedDest.data(), SIDE * 4);
    pixman_image_t* pMask = bMask ? image(PIXMAN_a8, tile.vMask.data(), SIDE) : nullptr;
    Time(state, [&] {
        pixman_image_composite32(PIXMAN_OP_OVER, pSource, pMask, pDest, 0, 0, 0, 0, 0, 0, SIDE, SIDE);
    });
    for (pixman_image_t* p : {pSource, pDest, pMask})
        if (p) pixman_image_unref(p);
}

void StraightPainter(benchmark::State& state) {
    TTile tile;
    const auto image = [](std::vector<uint32_t>& v) {
        return QImage(reinterpret_cast<uchar*>(v.data()), SIDE, SIDE, QImage::Format_ARGB32);
    };
    const QImage source = image(tile.vPackedSource);
    QImage dest = image(tile.vPackedDest);
    QPainter painter(&dest);
    Time(state, [&] { painter.drawImage(0, 0, source); });
}

void Copy(benchmark::State& state) {
    TTile tile;
    Time(state, [&] { std::memcpy(tile.vPackedDest.data(), tile.vPackedSource.data(), PIXELS * 4); });
}

} // namespace

int main(int argc, char** argv) {
    benchmark::RegisterBenchmark("fast/plain", Fast, PlainKernels());
    benchmark::RegisterBenchmark("fast/vector", Fast, VectorKernels());
    benchmark::RegisterBenchmark("fast/pixman OVER", Pixman, false);
    benchmark::RegisterBenchmark("fast/QPainter straight", StraightPainter);
    benchmark::RegisterBenchmark("general/plain", General, PlainKernels());
    benchmark::RegisterBenchmark("general/vector", General, VectorKernels());
    benchmark::RegisterBenchmark("general/pixman OVER masked", Pixman, true);
    benchmark::RegisterBenchmark("memcpy of 4 bytes", Copy);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
