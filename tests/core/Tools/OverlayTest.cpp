#include "core/Tools/Overlay.h"

namespace {

constexpr uint8_t GROUND = 100;
constexpr TColor PEN = 0x0000FF, FILL = 0xFFFFFF;
using TDraw = std::function<void(COverlay&)>;

char Look(const uint8_t* p) {
    if (p[2] == 255) return p[0] == 255 ? 'o' : p[0] == 0 && p[1] == 0 ? '#' : '?';
    return p[0] == GROUND ? '.' : p[0] == 255 - GROUND ? 'i' : '?';
}

std::string Draw(CSize sz, const TDraw& fn, int32_t nDpi = 96, std::optional<CRect> clip = {}) {
    CGDIBuffer target(sz);
    target.FillGrey(CRect({0, 0}, sz), GROUND);
    COverlay overlay(target, clip.value_or(CRect({0, 0}, sz)), nDpi);
    fn(overlay);
    std::string str = "\n";
    for (int32_t y = 0; y < sz.cy; ++y, str += '\n')
        for (int32_t x = 0; x < sz.cx; ++x) str += Look(target.GetPixelPtr({x, y}));
    return str;
}

const TOverlayPen SOLID{.color = PEN}, DASHED{.color = PEN, .bDashed = true}, INVERT{.bInvert = true};

const std::vector<TDraw> SHAPES{
    [](COverlay& o) {
        o.DrawLine({5, 20}, {14, 9}, SOLID);
    },
    [](COverlay& o) {
        o.DrawRect({4, 5, 17, 22}, DASHED);
    },
    [](COverlay& o) {
        o.DrawEllipse({4, 5, 20, 15}, INVERT);
    },
    [](COverlay& o) {
        o.DrawSquare({14, 14}, 3, FILL, SOLID);
    },
    [](COverlay& o) {
        o.DrawCurves(std::vector<CPoint>{{4, 4}, {30, 4}, {-6, 20}, {20, 20}}, SOLID);
    },
};

} // namespace

TEST(Overlay, ShapesLieWhereTheyAreDrawn) {
    EXPECT_EQ(Draw({12, 7},
                   [](COverlay& o) {
                       o.DrawLine({0, 6}, {3, 0}, SOLID);
                       o.DrawSquare({7, 3}, 2, FILL, SOLID);
                       o.DrawPolyline(std::vector<CPoint>{{10, 3}, {11, 3}, {11, 5}, {11, 3}}, INVERT);
                   }),
              R"(
...#........
...#.#####..
..#..#ooo#..
..#..#ooo#ii
.#...#ooo#.i
.#...#####.i
#...........
)") << "what is passed twice is inverted once";
    EXPECT_EQ(Draw({13, 7},
                   [](COverlay& o) {
                       o.DrawEllipse({0, 0, 6, 4}, INVERT);
                       o.DrawPolyline(std::vector<CPoint>{{8, 0}, {12, 0}, {12, 6}, {6, 6}}, DASHED);
                   }),
              R"(
..iii...####.
ii...ii......
i.....i......
ii...ii......
..iii.......#
............#
......#....##
)") << "dashes run on behind the corners";
    EXPECT_EQ(Draw({9, 7},
                   [](COverlay& o) {
                       o.DrawCurves(std::vector<CPoint>{{0, 0}, {0, 8}, {8, 8}, {8, 0}}, SOLID);
                   }),
              R"(
#.......#
#.......#
#.......#
.#.....#.
.#.....#.
..#...#..
...###...
)");
}

TEST(Overlay, WhatIsMeasuredIsWhatIsDrawn) {
    for (const int32_t nDpi : {96, 120, 144, 192, 288})
        for (size_t n = 0; n < SHAPES.size(); ++n) {
            COverlay measured(nDpi);
            SHAPES[n](measured);
            const std::string str = Draw({40, 40}, SHAPES[n], nDpi);
            CRect rc;
            for (int32_t y = 0; y < 40; ++y)
                for (int32_t x = 0; x < 40; ++x)
                    if (str[static_cast<size_t>(1 + y * 41 + x)] != '.')
                        rc = rc.Union(CRect(CPoint{x, y}, CSize{1, 1}));
            EXPECT_EQ(measured.GetBounds(), rc) << n << " at " << nDpi << str;
        }
}
