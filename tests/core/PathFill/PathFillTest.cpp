#include "core/PathFill/PathFill.h"
#include "tests/support/Planes.h"
#include "tests/support/TargetTest.h"

namespace {

using TOutline = std::vector<CPoint>;
using TPixels = std::vector<uint8_t>;
using TPlane = CAlphaBufferImpl<uint8_t>;

struct TLines {
    std::vector<std::array<int64_t, 4>> vLines; ///< x and y of either end
    void AddLines(const int32_t* pX, const int32_t* pY, size_t nLines) {
        for (size_t n = 0; n < nLines; ++n) vLines.push_back({pX[n], pY[n], pX[n + 1], pY[n + 1]});
    }
};

// The lines that cross the row of cells' centres left of each cell's centre, at or beside it.
void WindRow(const TLines& lines, int32_t nRow, std::vector<int>& vWinding) {
    const int64_t y = nRow * 16 + 8;
    for (auto [x0, y0, x1, y1] : lines.vLines) {
        const int nDirection = y0 < y1 ? 1 : -1;
        if (y0 > y1) std::swap(x0, x1), std::swap(y0, y1);
        if (y < y0 || y >= y1) continue;
        for (size_t n = 0; n < vWinding.size(); ++n)
            if ((static_cast<int64_t>(n) * 16 + 8 - x0) * (y1 - y0) >= (x1 - x0) * (y - y0))
                vWinding[n] += nDirection;
    }
}

// The whole plane by the definition, several outlines as one shape.
TPixels Define(const std::vector<TOutline>& vOutlines, CPoint ptOrigin, CSize sz) {
    const CRect rcCells(CPoint{0, 0}, CSize{sz.cx * 16, sz.cy * 16});
    std::vector<TLines> vLines(vOutlines.size());
    for (size_t n = 0; n < vLines.size(); ++n)
        CFlattener<TLines>(rcCells, vLines[n]).Flatten(vOutlines[n], ptOrigin.x, ptOrigin.y);
    std::vector<int> vCounts(static_cast<size_t>(sz.cx * sz.cy));
    for (int32_t nRow = 0; nRow < rcCells.bottom; ++nRow) {
        std::vector<bool> vSet(static_cast<size_t>(rcCells.right));
        for (const TLines& lines : vLines) {
            std::vector<int> vWinding(vSet.size());
            WindRow(lines, nRow, vWinding);
            for (size_t n = 0; n < vSet.size(); ++n) vSet[n] = vSet[n] || vWinding[n] != 0;
        }
        for (size_t n = 0; n < vSet.size(); ++n)
            vCounts[static_cast<size_t>(nRow / 16 * sz.cx) + n / 16] += vSet[n];
    }
    const auto count = [&](int32_t x, int32_t y) {
        return std::min(255, vCounts[static_cast<size_t>(std::clamp(y, 0, sz.cy - 1) * sz.cx + x)]);
    };
    TPixels pixels;
    for (int32_t y = 0; y < sz.cy; ++y)
        for (int32_t x = 0; x < sz.cx; ++x) {
            int v = count(x, y - 1) + count(x, y + 1) + 8 * count(x, y);
            if (x > 0) v += count(x - 1, y);
            if (x < sz.cx - 1) v += count(x + 1, y);
            pixels.push_back(static_cast<uint8_t>((v + 6) / 12));
        }
    return pixels;
}

TPixels Define(const TOutline& outline, CPoint ptOrigin, CSize sz) {
    return Define(std::vector<TOutline>{outline}, ptOrigin, sz);
}

TPixels Fill(const TOutline& outline, CPoint ptOrigin, CSize sz) {
    const auto spPlane = MakePlane<TPlane>(sz);
    CPathFill().FillPlane(outline, ptOrigin, *spPlane);
    return ValuesOf<uint8_t>(*spPlane);
}

TPixels FillByTiles(const TOutline& outline, CPoint ptOrigin, CSize sz) {
    const auto spPlane = MakePlane<TPlane>(sz);
    CPathFill fill;
    spPlane->ForEachBlock([&](CPoint pt) {
        fill.FillTile(outline, {ptOrigin, sz}, static_cast<CAlphaBlock8&>(*spPlane->GetBlock(pt, true)));
    });
    return ValuesOf<uint8_t>(*spPlane);
}

TOutline Polygon(const std::vector<CPoint>& vPixels) {
    TOutline outline{{vPixels[0].x * 8, vPixels[0].y * 8}};
    for (size_t n = 1; n <= vPixels.size(); ++n) {
        const CPoint to = vPixels[n % vPixels.size()];
        outline.insert(outline.end(), {outline.back(), {to.x * 8, to.y * 8}, {to.x * 8, to.y * 8}});
    }
    return outline;
}

// Points between `nFrom` and `nTo` eighths, now and then on whole pixels or where the last one was.
TOutline RandomOutline(std::mt19937& random, int32_t nFrom, int32_t nTo, size_t nSegments = 8) {
    TOutline outline(1 + 3 * (1 + random() % nSegments));
    for (CPoint& pt : outline) {
        const auto draw = [&] { return std::uniform_int_distribution<int32_t>(nFrom, nTo)(random); };
        pt = {draw(), draw()};
        if (random() % 4 == 0) pt.x &= ~7;
        if (random() % 4 == 0) pt.y &= ~7;
        if (random() % 8 == 0 && &pt != outline.data()) pt = (&pt)[-1];
    }
    outline.back() = outline.front();
    return outline;
}

constexpr CSize TWO_TILES{192, 96};

using PathFillForms = CTargetTest;

} // namespace

TEST_P(PathFillForms, EveryPixelIsAsDefined) {
    std::mt19937 random(1);
    const std::pair<int32_t, int32_t> aRanges[] = {{100, 600}, {-300, 1800},          {-20000, 20000},
                                                   {60, 90},   {-(1 << 28), 1 << 28}, {INT32_MIN, INT32_MAX}};
    for (int n = 0; n < 36; ++n) {
        const auto [nFrom, nTo] = aRanges[n % 6];
        TOutline outline = RandomOutline(random, nFrom, nTo);
        const CPoint ptOrigin{n % 5 * 7 - 14, n % 3 * 5 - 5};
        const TPixels pixels = Define(outline, ptOrigin, TWO_TILES);
        ASSERT_EQ(Fill(outline, ptOrigin, TWO_TILES), pixels) << n;
        ASSERT_EQ(FillByTiles(outline, ptOrigin, TWO_TILES), pixels) << n;
        if (n % 6 == 5) continue; // these reach as far as numbers do
        for (CPoint& pt : outline) pt = {pt.x + 8 * 12345, pt.y - 8 * 777};
        std::reverse(outline.begin(), outline.end());
        ASSERT_EQ(Fill(outline, ptOrigin + CPoint{12345, -777}, TWO_TILES), pixels)
            << n << " moved, turned round";
    }
}

TEST_P(PathFillForms, CrowdsAndLongEdgesAreAsDefined) {
    std::mt19937 random(5);
    for (int n = 0; n < 3; ++n) {
        const TOutline outline = RandomOutline(random, n % 2 ? -300 : 300, n % 2 ? 1800 : 500, 250);
        ASSERT_EQ(Fill(outline, {}, TWO_TILES), Define(outline, {}, TWO_TILES)) << n;
    }
    // Bands whose sides lean by up to four pixels a row and come near to one another and to the plane's.
    for (int32_t n = 0; n < 40; n += 3) {
        const int32_t x = n * 5 % 190, nLean = n * 20 % 420 - 210, nWide = 1 + n * n % 60;
        const TOutline outline =
            Polygon({{x, -3}, {x + nWide, -3}, {x + nWide + nLean, 99}, {x + nLean, 99}});
        ASSERT_EQ(Fill(outline, {}, TWO_TILES), Define(outline, {}, TWO_TILES)) << n;
    }
}

TEST_P(PathFillForms, SeveralOutlinesAreOneShape) {
    std::mt19937 random(6);
    for (int n = 0; n < 3; ++n) {
        // The one's holes under the other, edges in common, windings that would cancel.
        std::vector<TOutline> vOutlines{
            RandomOutline(random, 100, 900), Polygon({{9, 9}, {60, 30}, {20, 80}}),
            RandomOutline(random, -300, 1800), Polygon({{9, 9}, {20, 80}, {60, 30}}),
            Polygon({{60, 30}, {20, 80}, {70, 70 + n}})};
        const std::vector<CPathFill::TOutline> vSpans(vOutlines.begin(), vOutlines.end());
        const auto spPlane = MakePlane<TPlane>(TWO_TILES);
        CPathFill fill;
        spPlane->ForEachBlock([&](CPoint pt) {
            fill.FillTile(vSpans, {{}, TWO_TILES}, static_cast<CAlphaBlock8&>(*spPlane->GetBlock(pt, true)));
        });
        ASSERT_EQ(ValuesOf<uint8_t>(*spPlane), Define(vOutlines, {}, TWO_TILES)) << n;
    }
}

ON_EVERY_TARGET(PathFillForms);

TEST(PathFill, TilesMeetWithoutSeams) {
    std::mt19937 random(2);
    for (int n = 0; n < 60; ++n) {
        const CSize sz = n % 3 == 0 ? CSize{2400, 96} : CSize{480, 384};
        const int32_t nReach = n % 2 ? 20000 : 4500;
        const TOutline outline = RandomOutline(random, n % 2 ? -nReach : 0, nReach);
        ASSERT_EQ(FillByTiles(outline, {3, -4}, sz), Fill(outline, {3, -4}, sz)) << n;
    }
}

TEST(PathFill, CoverageNeverFallsAndOnlyThePlaneIsWritten) {
    TPlane plane;
    plane.Create(TWO_TILES, DEFAULT_BLOCKSIZE);
    const auto spOld = boost::static_pointer_cast<CAlphaBlock8>(plane.GetBlock({0, 0}, true));
    std::fill_n(spOld->GetAlpha(), 96 * 96, uint8_t{100});
    CPathFill fill;
    const TOutline outline = Polygon({{10, 10}, {60, 12}, {30, 70}});
    fill.FillPlane(outline, {0, 0}, plane);
    EXPECT_EQ(spOld->GetPixelAlpha({30, 30}), 100); // somebody else's
    TPixels expected = Define(outline, {0, 0}, TWO_TILES);
    for (size_t n = 0; n < expected.size(); ++n)
        if (n % 192 < 96) expected[n] = std::max<uint8_t>(expected[n], 100);
    EXPECT_EQ(ValuesOf<uint8_t>(plane), expected);
    fill.FillPlane(outline, {0, 0}, plane);
    fill.FillPlane(Polygon({{300, 10}, {400, 10}, {350, 90}}), {0, 0}, plane);
    fill.FillPlane(TOutline{{5, 5}}, {0, 0}, plane);
    EXPECT_EQ(ValuesOf<uint8_t>(plane), expected);
    for (const TOutline& open : {TOutline{{0, 0}, {1, 1}}, TOutline{{0, 0}, {1, 1}, {2, 2}, {8, 8}}})
        EXPECT_THROW(fill.FillPlane(open, {0, 0}, plane), constraint_violation);
}

// Every point of the curve has a line within a quarter of a cell.
TEST(PathFill, LinesStayNearTheCurve) {
    std::mt19937 random(4);
    for (int n = 0; n < 60; ++n) {
        TOutline outline = RandomOutline(random, n % 2 ? 0 : -8000, n % 2 ? 400 : 8000);
        outline.resize(4);
        TLines lines;
        CFlattener<TLines>({-20000, -20000, 20000, 20000}, lines).Flatten(outline, 0, 0);
        for (int i = 0; i <= 500; ++i) {
            const double t = i / 500.0, s = 1 - t;
            const double a[] = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
            double x = 0, y = 0, dNearest = 1e9;
            for (size_t k = 0; k < 4; ++k) x += a[k] * outline[k].x * 2, y += a[k] * outline[k].y * 2;
            for (const auto& [x0, y0, x1, y1] : lines.vLines) {
                const double dx = (x1 - x0) / 16.0, dy = (y1 - y0) / 16.0;
                const double px = x - x0 / 16.0, py = y - y0 / 16.0;
                const double dLength2 = std::max(dx * dx + dy * dy, 1e-9);
                const double u = std::clamp((px * dx + py * dy) / dLength2, 0.0, 1.0);
                dNearest = std::min(dNearest, std::hypot(px - u * dx, py - u * dy));
            }
            ASSERT_LT(dNearest, 0.25) << n << ' ' << i;
        }
    }
}
