#include "core/RasterMove/SelectShape.h"
#include "tests/support/Planes.h"

namespace {

using TPoints = std::vector<CPoint>;
using TRows = std::vector<std::string>;
constexpr auto RECTANGLE = ESelectShape::Rectangle, ELLIPSE = ESelectShape::Ellipse,
               LASSO = ESelectShape::Polygon;

TSelectPtr Make(ESelectShape shape, const TPoints& vPoints, bool bAntialias = true, CSize sz = {100, 100}) {
    return MakeShapeSelect(shape, vPoints, bAntialias, sz);
}

// The mask's top left part: nothing is '.', everything '#', else the tenths.
TRows Show(const TSelectPtr& spSelect, CSize sz) {
    const auto vMask = ValuesOf<uint8_t>(spSelect->GetMask());
    TRows rows(static_cast<size_t>(sz.cy));
    for (int n = 0; n < sz.cx * sz.cy; ++n) {
        const int u = vMask[static_cast<size_t>(n / sz.cx * spSelect->GetCanvasSize().cx + n % sz.cx)];
        rows[static_cast<size_t>(n / sz.cx)] += u == 0     ? '.'
                                                : u == 255 ? '#'
                                                           : static_cast<char>('0' + u * 10 / 256);
    }
    return rows;
}

// The definition: how many of a pixel's 16 by 16 cells the polygon winds around, in 32nds of a pixel.
int CountCells(const TPoints& vPoints, CPoint pt) {
    int nCount = 0;
    for (int n = 0; n < 256; ++n) {
        const int x = pt.x * 32 + n % 16 * 2 + 1, y = pt.y * 32 + n / 16 * 2 + 1;
        int nWinding = 0;
        for (size_t i = 0; i < vPoints.size(); ++i) {
            const CPoint a = vPoints[i], b = vPoints[(i + 1) % vPoints.size()];
            const int ay = a.y * 32 + 16, by = b.y * 32 + 16;
            if ((ay <= y) == (by <= y)) continue;
            const int nSide = (x - a.x * 32 - 16) * (by - ay) - (b.x - a.x) * 32 * (y - ay);
            if (by > ay ? nSide >= 0 : nSide <= 0) nWinding += by > ay ? 1 : -1;
        }
        nCount += nWinding != 0;
    }
    return std::min(nCount, 255);
}

} // namespace

TEST(SelectShape, ARectangleTakesThePixelsUnderBothCornersAndAClickNone) {
    EXPECT_EQ(Show(Make(RECTANGLE, {{4, 3}, {9, 9}, {1, 1}}), {6, 5}),
              (TRows{"......", ".####.", ".####.", ".####.", "......"}));
    EXPECT_EQ(Show(Make(RECTANGLE, {{1, 0}, {2, 0}, {1, 0}}, false), {3, 1}), TRows{".#."});
    for (const ESelectShape shape : {RECTANGLE, ELLIPSE, LASSO})
        EXPECT_FALSE(Make(shape, {{5, 5}, {5, 5}}) || Make(shape, {{-9, 5}, {-5, 9}, {-2, 5}}));
}

TEST(SelectShape, AnEllipseLiesInTheOuterEdgesAlsoOfALargeCanvas) {
    EXPECT_EQ(Show(Make(ELLIPSE, {{7, 5}, {0, 0}}), {9, 6}),
              (TRows{".379973..", "4######4.", "9######9.", "9######9.", "4######4.", ".379973.."}));
    EXPECT_EQ(Show(Make(ELLIPSE, {{7, 5}, {0, 0}}, false), {9, 3}),
              (TRows{"..####...", ".######..", "########."}));
    const auto vMask =
        ValuesOf<uint8_t>(Make(ELLIPSE, {{0, 0}, {2999, 2999}}, true, {3000, 3000})->GetMask());
    EXPECT_NEAR(std::accumulate(vMask.begin(), vMask.end(), 0.0) / 255, 1500.0 * 1500 * 3.14159265, 300);
}

TEST(SelectShape, ALassoGoesThroughPixelCentresAndKeepsItsLoops) {
    const TPoints vSquare{{0, 0}, {4, 0}, {4, 3}, {0, 3}};
    EXPECT_EQ(Show(Make(LASSO, vSquare), {6, 4}), (TRows{"25552.", "5###5.", "5###5.", "25552."}));
    EXPECT_EQ(Show(Make(LASSO, vSquare, false), {6, 4}), (TRows{".###..", "#####.", "#####.", ".###.."}));
    const auto spEdge = Make(LASSO, {{-9, 0}, {299, 0}, {299, 250}, {-9, 250}}, true, {300, 300});
    for (const auto& [y, u] : {std::pair(0, '5'), {1, '#'}, {250, '5'}, {251, '.'}})
        EXPECT_EQ(Show(spEdge, {300, 252})[static_cast<size_t>(y)][150], u);
    std::mt19937 random(1);
    TPoints vStar; // crosses itself and the canvas's edges
    for (int n = 0; n < 9; ++n)
        vStar.push_back({static_cast<int>(random() % 170) - 20, static_cast<int>(random() % 150) - 20});
    for (const bool bAntialias : {true, false}) {
        const auto vMask = ValuesOf<uint8_t>(Make(LASSO, vStar, bAntialias, {130, 110})->GetMask());
        for (int n = 0; n < 130 * 110; ++n) {
            const int nCells = CountCells(vStar, {n % 130, n / 130});
            ASSERT_EQ(vMask[static_cast<size_t>(n)], bAntialias ? nCells : nCells >= 128 ? 255 : 0) << n;
        }
    }
}

TEST(SelectShape, TilesInsideAreTheOneFullTile) {
    const auto spSelect = Make(LASSO, {{-9, 300}, {500, -20}, {999, 500}, {500, 1200}}, true, {1000, 1000});
    for (const CPoint pt : {CPoint{500, 300}, {500, 999}, {300, 500}})
        EXPECT_EQ(spSelect->GetMaskTile(pt), FullSelectTile().get());
    EXPECT_FALSE(spSelect->GetMaskTile({0, 0}) || spSelect->GetMaskTile({999, 999}));
    EXPECT_LT(spSelect->GetBytes(nullptr), 50u * 96 * 96) << "those along the sides";
}

TEST(SelectShape, CombinesWithTheSelectionAndLeavesNoEmptyOne) {
    const auto spOld = Make(LASSO, {{0, 0}, {3, 0}, {3, 2}, {0, 2}}),
               spNew = Make(LASSO, {{3, 0}, {5, 0}, {5, 2}, {3, 2}});
    const auto combine = [&](const TSelectPtr& sp, EShapeMode mode) {
        return Show(CombineSelect(sp, spNew, mode), {6, 3});
    };
    EXPECT_EQ(combine(spOld, EShapeMode::Add), (TRows{"255252", "5##5#5", "255252"})) << "the larger value";
    EXPECT_EQ(combine(spOld, EShapeMode::Subtract), (TRows{"2551..", "5##2..", "2551.."}));
    for (const auto& [sp, mode] : {std::pair(spOld, EShapeMode::Replace), {TSelectPtr(), EShapeMode::Add}})
        EXPECT_EQ(combine(sp, mode), Show(spNew, {6, 3}));
    EXPECT_EQ(CombineSelect(spOld, spNew, EShapeMode::Replace)->GetBound(), CRect(3, 0, 6, 3));
    EXPECT_FALSE(CombineSelect({}, spNew, EShapeMode::Subtract) ||
                 CombineSelect(spOld, {}, EShapeMode::Replace));
    const auto spAll = boost::make_shared<CSelectBuffer>(CSize{100, 100});
    spAll->SelectAll();
    const auto spCanvas = Make(RECTANGLE, {{0, 0}, {99, 99}});
    EXPECT_TRUE(IsSameSelection(spAll, spCanvas) && !IsSameSelection(spAll, spOld));
    TSelectPtr spRest = spAll;
    for (const CPoint pt : {CPoint{0, 0}, {50, 0}, {0, 50}, {50, 50}}) {
        EXPECT_TRUE(spRest);
        spRest = CombineSelect(spRest, Make(RECTANGLE, {pt, pt + CPoint{49, 49}}), EShapeMode::Subtract);
    }
    EXPECT_FALSE(spRest);
}
