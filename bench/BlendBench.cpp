// The blending kernels compared with pixman (premultiplied) and QPainter (straight alpha), over the pixels
// of one tile at a time, as the compositor works. One thread; time is per pixel.
#include "core/RasterKernel/Kernels.h"

#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>
#include <pixman.h>

#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int SIDE = 96;
constexpr size_t PIXELS = SIDE * SIDE;

// Source, destination and mask of one tile, as planes and as packed pixels.
struct TTile {
    std::vector<uint8_t> avSource[4], avDest[4], vMask, vScreen = std::vector<uint8_t>(PIXELS * 4);
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

// Times one blend of a tile; reports the time per pixel and the bytes of the tile read and written.
template <class Blend>
void Time(benchmark::State& state, size_t nBytes, Blend blend) {
    for (auto _ : state) {
        blend();
        benchmark::ClobberMemory();
    }
    state.counters["time/pixel"] = benchmark::Counter(PIXELS, benchmark::Counter::kIsIterationInvariantRate |
                                                                  benchmark::Counter::kInvert);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * PIXELS * nBytes));
}

using TKernelCall = std::function<void(const TBlendKernels&, TTile&)>;

struct TKernelCase {
    const char* pszName;
    size_t nBytes; ///< read and written per pixel
    TKernelCall call;
};

TGreyPixels GreyDest(TTile& tile) { return {tile.avDest[0].data(), tile.avDest[3].data()}; }
TConstGreyPixels GreySource(TTile& tile) { return {tile.avSource[0].data(), tile.avSource[3].data()}; }

const TKernelCase g_aCases[] = {
    {"fast colour", 12, [](auto& k, TTile& t) { k.pFastColor(t.Dest(), t.Source(), PIXELS); }},
    {"fast grey", 6, [](auto& k, TTile& t) { k.pFastGrey(GreyDest(t), GreySource(t), PIXELS); }},
    {"general colour on colour", 13,
     [](auto& k, TTile& t) { k.pGeneralColorOnColor(t.Dest(), t.Source(), 200, t.vMask.data(), PIXELS); }},
    {"general colour on grey", 9,
     [](auto& k, TTile& t) { k.pGeneralColorOnGrey(GreyDest(t), t.Source(), 200, t.vMask.data(), PIXELS); }},
    {"general grey on grey", 7,
     [](auto& k, TTile& t) {
         k.pGeneralGreyOnGrey(GreyDest(t), GreySource(t), 200, t.vMask.data(), PIXELS);
     }},
    {"ink on colour", 9,
     [](auto& k, TTile& t) {
         k.pInkOnColor(t.Dest(), {9, 99, 199}, t.vMask.data(), nullptr, PIXELS);
     }},
    {"ink on grey", 5,
     [](auto& k, TTile& t) { k.pInkOnGrey(GreyDest(t), 99, t.vMask.data(), nullptr, PIXELS); }},
    {"erase", 3, [](auto& k, TTile& t) { k.pErase(t.avDest[3].data(), t.vMask.data(), nullptr, PIXELS); }},
    {"cover", 3, [](auto& k, TTile& t) { k.pCover(t.avDest[3].data(), t.vMask.data(), nullptr, PIXELS); }},
    {"resolve colour", 8, [](auto& k, TTile& t) { k.pResolveColor(t.vScreen.data(), t.Source(), PIXELS); }},
    {"resolve grey", 6, [](auto& k, TTile& t) { k.pResolveGrey(t.vScreen.data(), GreySource(t), PIXELS); }},
};

void Kernel(benchmark::State& state, const TKernelCase& kernelCase, const TBlendKernels& kernels) {
    TTile tile;
    Time(state, kernelCase.nBytes, [&] { kernelCase.call(kernels, tile); });
}

// The same work on premultiplied pixels: a tile, a tile through a mask, or one colour through a mask.
enum class EPeer { Over, OverMasked, Ink };

void Pixman(benchmark::State& state, EPeer peer) {
    TTile tile;
    const auto image = [](pixman_format_code_t format, void* p, int nStride) {
        return pixman_image_create_bits(format, SIDE, SIDE, static_cast<uint32_t*>(p), nStride);
    };
    const pixman_color_t ink{0x0909, 0x6363, 0xC7C7, 0xFFFF};
    pixman_image_t* pSource = peer == EPeer::Ink
                                  ? pixman_image_create_solid_fill(&ink)
                                  : image(PIXMAN_a8r8g8b8, tile.vPackedSource.data(), SIDE * 4);
    pixman_image_t* pDest = image(PIXMAN_a8r8g8b8, tile.vPackedDest.data(), SIDE * 4);
    pixman_image_t* pMask = peer == EPeer::Over ? nullptr : image(PIXMAN_a8, tile.vMask.data(), SIDE);
    Time(state,
         peer == EPeer::Over         ? 12
         : peer == EPeer::OverMasked ? 13
                                     : 9,
         [&] {
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
    Time(state, 12, [&] { painter.drawImage(0, 0, source); });
}

void Copy(benchmark::State& state) {
    TTile tile;
    Time(state, 8, [&] { std::memcpy(tile.vPackedDest.data(), tile.vPackedSource.data(), PIXELS * 4); });
}

} // namespace

int main(int argc, char** argv) {
    for (const TKernelCase& kernelCase : g_aCases) {
        const std::string strName = kernelCase.pszName;
        benchmark::RegisterBenchmark((strName + "/plain").c_str(), Kernel, kernelCase, PlainKernels());
        benchmark::RegisterBenchmark((strName + "/vector").c_str(), Kernel, kernelCase, VectorKernels());
    }
    benchmark::RegisterBenchmark("peer/pixman OVER", Pixman, EPeer::Over);
    benchmark::RegisterBenchmark("peer/pixman OVER masked", Pixman, EPeer::OverMasked);
    benchmark::RegisterBenchmark("peer/pixman solid OVER masked", Pixman, EPeer::Ink);
    // QPainter distributes its work to other threads, whose time counts too.
    benchmark::RegisterBenchmark("peer/QPainter straight", StraightPainter)->MeasureProcessCPUTime();
    benchmark::RegisterBenchmark("memcpy of 4 bytes", Copy);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
