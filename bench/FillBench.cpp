// Filled outlines compared with Cairo's image surface and FreeType's smooth rasterizer: the same outlines
// on allocated 8-bit planes. One thread. Ours counts 256 cells a pixel and filters; the others do not.
#include "core/PathFill/PathFill.h"

#include <benchmark/benchmark.h>
#include <cairo/cairo.h>
#include <ft2build.h>
#include FT_OUTLINE_H

#include <cmath>
#include <functional>
#include <numbers>
#include <random>

namespace {

constexpr int32_t SIDE = 2112; // whole tiles
constexpr double PI = std::numbers::pi;

using TOutline = std::vector<CPoint>;

struct TPlace {
    double x, y;
};

// A closed curve through places along a track, with the handles of a Catmull-Rom spline.
TOutline Through(const std::vector<TPlace>& vPlaces) {
    const size_t nCount = vPlaces.size();
    const auto at = [&](size_t n) { return vPlaces[n % nCount]; };
    const auto point = [](double x, double y) {
        return CPoint{static_cast<int32_t>(std::lround(x * 8)), static_cast<int32_t>(std::lround(y * 8))};
    };
    TOutline outline{point(at(0).x, at(0).y)};
    for (size_t n = 0; n < nCount; ++n) {
        const TPlace a = at(n + nCount - 1), b = at(n), c = at(n + 1), d = at(n + 2);
        outline.push_back(point(b.x + (c.x - a.x) / 6, b.y + (c.y - a.y) / 6));
        outline.push_back(point(c.x - (d.x - b.x) / 6, c.y - (d.y - b.y) / 6));
        outline.push_back(point(c.x, c.y));
    }
    return outline;
}

// A ribbon of about 2000 pixels, 8 to 20 wide: down one side and up the other, a hundred segments each.
std::vector<TOutline> Stroke() {
    constexpr int COUNT = 100;
    std::vector<TPlace> vLeft, vRight;
    const auto track = [](double t) {
        return TPlace{200 + 1500 * t, 1000 + 260 * std::sin(t * 9) + 30 * std::sin(t * 41)};
    };
    for (int n = 0; n <= COUNT; ++n) {
        const double t = static_cast<double>(n) / COUNT;
        const TPlace a = track(t - 1e-4), b = track(t + 1e-4);
        const double dLength = std::hypot(b.x - a.x, b.y - a.y);
        const double dHalf = 7 + 3 * std::sin(t * 23);
        const TPlace middle = track(t);
        const TPlace across{-(b.y - a.y) / dLength * dHalf, (b.x - a.x) / dLength * dHalf};
        vLeft.push_back({middle.x + across.x, middle.y + across.y});
        vRight.push_back({middle.x - across.x, middle.y - across.y});
    }
    vLeft.insert(vLeft.end(), vRight.rbegin(), vRight.rend());
    return {Through(vLeft)};
}

std::vector<TPlace> Blob(double x, double y, double dRadius, int nCount, double dPhase) {
    std::vector<TPlace> vPlaces;
    for (int n = 0; n < nCount; ++n) {
        const double t = 2 * PI * n / nCount;
        const double r = dRadius * (0.85 + 0.15 * std::sin(3 * t + dPhase));
        vPlaces.push_back({x + r * std::cos(t), y + r * std::sin(t)});
    }
    return vPlaces;
}

std::vector<TOutline> Shape() { return {Through(Blob(1000, 1000, 780, 24, 0.4))}; }

std::vector<TOutline> SmallShapes() {
    std::vector<TOutline> vOutlines;
    for (int n = 0; n < 1000; ++n)
        vOutlines.push_back(Through(Blob(40 + n % 40 * 50.3, 40 + n / 40 * 80.7, 15, 8, n * 0.37)));
    return vOutlines;
}

// Segments in random directions: about a thousand cross each row of a strip.
std::vector<TOutline> Crowd() {
    std::mt19937 random(1);
    TOutline outline(3 * 3000 + 1);
    for (CPoint& pt : outline)
        pt = {static_cast<int32_t>(random() % (96 * 8)), static_cast<int32_t>(random() % (SIDE * 8))};
    outline.back() = outline.front();
    return {outline};
}

using TMake = std::vector<TOutline> (*)();

void Ours(benchmark::State& state, TMake pMake) {
    const auto vOutlines = pMake();
    CAlphaBufferImpl<uint8_t> plane;
    plane.Create({SIDE, SIDE}, DEFAULT_BLOCKSIZE);
    plane.ForEachBlock([&](CPoint pt) { plane.GetBlock(pt, true); });
    CPathFill fill;
    for (auto _ : state)
        for (const TOutline& outline : vOutlines) fill.FillPlane(outline, {0, 0}, plane);
}

// The same on one tile as large as the plane, with rows as in the other libraries.
void OursFlat(benchmark::State& state, TMake pMake) {
    const auto vOutlines = pMake();
    CAlphaBlock8 tile;
    tile.Create({SIDE, SIDE}, {0, 0});
    CPathFill fill;
    for (auto _ : state)
        for (const TOutline& outline : vOutlines) fill.FillTile(outline, {{0, 0}, {SIDE, SIDE}}, tile);
}

// Tile by tile, as a layer is repainted.
void OursTiled(benchmark::State& state, TMake pMake) {
    const auto vOutlines = pMake();
    CAlphaBufferImpl<uint8_t> plane;
    plane.Create({SIDE, SIDE}, DEFAULT_BLOCKSIZE);
    plane.ForEachBlock([&](CPoint pt) { plane.GetBlock(pt, true); });
    CPathFill fill;
    for (auto _ : state)
        for (const TOutline& outline : vOutlines)
            plane.ForEachBlock([&](CPoint pt) {
                auto& tile = static_cast<CAlphaBlock8&>(*plane.GetBlock(pt, false));
                fill.FillTile(outline, {{0, 0}, {SIDE, SIDE}}, tile);
            });
}

void FreeType(benchmark::State& state, TMake pMake) {
    FT_Library library;
    FT_Init_FreeType(&library);
    struct TGlyph {
        std::vector<FT_Vector> vPoints;
        std::vector<char> vTags;
        short nEnd;
        FT_Outline outline;
    };
    std::vector<TGlyph> vGlyphs;
    for (const TOutline& outline : pMake()) {
        TGlyph& glyph = vGlyphs.emplace_back();
        // The last point repeats the first; y grows upwards in FreeType.
        for (size_t n = 0; n + 1 < outline.size(); ++n) {
            glyph.vPoints.push_back({outline[n].x * 8L, (SIDE * 8L - outline[n].y) * 8L});
            glyph.vTags.push_back(n % 3 == 0 ? FT_CURVE_TAG_ON : FT_CURVE_TAG_CUBIC);
        }
        glyph.nEnd = static_cast<short>(glyph.vPoints.size() - 1);
    }
    for (TGlyph& glyph : vGlyphs)
        glyph.outline = {1,
                         static_cast<short>(glyph.vPoints.size()),
                         glyph.vPoints.data(),
                         glyph.vTags.data(),
                         &glyph.nEnd,
                         0};
    std::vector<uint8_t> vPixels(size_t{SIDE} * SIDE);
    FT_Bitmap bitmap{};
    bitmap.rows = bitmap.width = SIDE;
    bitmap.pitch = SIDE;
    bitmap.buffer = vPixels.data();
    bitmap.num_grays = 256;
    bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
    for (auto _ : state)
        for (TGlyph& glyph : vGlyphs)
            if (FT_Outline_Get_Bitmap(library, &glyph.outline, &bitmap)) state.SkipWithError("not drawn");
    FT_Done_FreeType(library);
}

void Cairo(benchmark::State& state, TMake pMake) {
    const auto vOutlines = pMake();
    cairo_surface_t* pSurface = cairo_image_surface_create(CAIRO_FORMAT_A8, SIDE, SIDE);
    cairo_t* pCairo = cairo_create(pSurface);
    cairo_set_antialias(pCairo, CAIRO_ANTIALIAS_BEST);
    cairo_set_fill_rule(pCairo, CAIRO_FILL_RULE_WINDING);
    for (auto _ : state)
        for (const TOutline& outline : vOutlines) {
            const auto v = [](int32_t n) { return n / 8.0; };
            cairo_move_to(pCairo, v(outline[0].x), v(outline[0].y));
            for (size_t n = 1; n < outline.size(); n += 3)
                cairo_curve_to(pCairo, v(outline[n].x), v(outline[n].y), v(outline[n + 1].x),
                               v(outline[n + 1].y), v(outline[n + 2].x), v(outline[n + 2].y));
            cairo_close_path(pCairo);
            cairo_fill(pCairo);
        }
    cairo_surface_flush(pSurface);
    cairo_destroy(pCairo);
    cairo_surface_destroy(pSurface);
}

} // namespace

int main(int argc, char** argv) {
    const std::pair<const char*, TMake> aScenes[] = {{"stroke of 2000 pixels", Stroke},
                                                     {"shape of 1500 by 1500", Shape},
                                                     {"1000 small shapes", SmallShapes},
                                                     {"3000 segments in a strip", Crowd}};
    const std::pair<const char*, void (*)(benchmark::State&, TMake)> aFillers[] = {
        {"ours", Ours},
        {"ours on one tile", OursFlat},
        {"ours tile by tile", OursTiled},
        {"freetype", FreeType},
        {"cairo", Cairo}};
    for (const auto& [pszScene, pMake] : aScenes)
        for (const auto& [pszFiller, pFiller] : aFillers)
            benchmark::RegisterBenchmark((std::string(pszScene) + "/" + pszFiller).c_str(), pFiller, pMake)
                ->Unit(benchmark::kMicrosecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
