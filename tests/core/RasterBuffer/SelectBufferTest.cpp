#include "core/RasterBuffer/SelectBuffer.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <tuple>

namespace {

using TUnit = std::tuple<int, int, bool>; // a unit edge: its first corner, whether it is vertical

void Put(CSelectBuffer& select, CPoint pt, uint8_t u) {
    const auto spTile = select.GetMask().GetBlock(pt, true);
    *spTile->GetPixelPtr(pt - spTile->GetPosition()) = u;
}

} // namespace

TEST(SelectBuffer, OutlineSurroundsExactlyTheSelectedPixels) {
    constexpr CSize SIZE{120, 100};
    CSelectBuffer select(SIZE);
    EXPECT_EQ(select.GetBound(), CRect(-1, -1, -1, -1));
    std::mt19937 random(3);
    bool abInside[100][120] = {};
    for (int n = 0; n < 900; ++n) {
        const CPoint pt{static_cast<int32_t>(60 + random() % 60), static_cast<int32_t>(70 + random() % 30)};
        const uint8_t u = static_cast<uint8_t>(random());
        Put(select, pt, u);
        abInside[pt.y][pt.x] = u >= 128;
    }
    select.UpdateOutline();
    std::set<TUnit> setExpected;
    const auto inside = [&](int x, int y) {
        return x >= 0 && y >= 0 && x < SIZE.cx && y < SIZE.cy && abInside[y][x];
    };
    for (int y = 0; y <= SIZE.cy; ++y)
        for (int x = 0; x <= SIZE.cx; ++x) {
            if (inside(x, y) != inside(x - 1, y)) setExpected.insert({x, y, true});
            if (inside(x, y) != inside(x, y - 1)) setExpected.insert({x, y, false});
        }
    std::set<TUnit> setFound;
    size_t nLength = 0;
    for (const TOutlineSegment& s : select.GetOutline()) {
        const bool bVertical = s.x1 == s.x2;
        for (int n = 0; n < s.x2 - s.x1 + s.y2 - s.y1; ++n, ++nLength)
            setFound.insert({s.x1 + (bVertical ? 0 : n), s.y1 + (bVertical ? n : 0), bVertical});
    }
    EXPECT_EQ(setFound, setExpected);
    EXPECT_EQ(nLength, setExpected.size()); // no piece twice
    CSelectBuffer square({200, 200});
    for (int n = 0; n < 400; ++n) Put(square, {90 + n % 20, 90 + n / 20}, 255);
    Put(square, {5, 199}, 1); // below half: inside the bounds, not the outline
    square.UpdateOutline();
    EXPECT_EQ(square.GetOutline().size(), 4u);
    EXPECT_EQ(square.GetBound(), CRect(5, 90, 110, 200));
}
