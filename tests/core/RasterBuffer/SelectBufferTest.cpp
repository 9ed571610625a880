#include "core/RasterBuffer/SelectBuffer.h"
#include "core/Base/Failure.h"
#include "tests/support/Planes.h"

namespace {

using TUnit = std::tuple<int, int, bool>; // a unit edge: its first corner, whether it is vertical

constexpr CSize SIZE{300, 200};

void Put(CSelectBuffer& select, CPoint pt, uint8_t u) {
    const auto spTile = select.GetMask().GetWritableBlock(pt);
    *spTile->GetPixelPtr(pt - spTile->GetPosition()) = u;
}

boost::shared_ptr<CSelectBuffer> MakeSelect(unsigned uSeed) {
    const auto spSelect = boost::make_shared<CSelectBuffer>(SIZE);
    std::mt19937 random(uSeed);
    spSelect->GetMask().ForEachBlock([&](CPoint pt) {
        const unsigned uKind = random() % 4;
        for (int n = 0; uKind != 0 && n < 96 * 96; ++n)
            Put(*spSelect, pt + CPoint{n % 96, n / 96}, static_cast<uint8_t>(uKind == 1 ? 255 : random()));
    });
    return spSelect;
}

int At(const std::vector<uint8_t>& v, CPoint pt) {
    const bool bInside = pt.x >= 0 && pt.y >= 0 && pt.x < SIZE.cx && pt.y < SIZE.cy;
    return bInside ? v[static_cast<size_t>(pt.y * SIZE.cx + pt.x)] : 0;
}

} // namespace

TEST(SelectBuffer, OutlineSurroundsExactlyTheSelectedPixels) {
    for (unsigned uSeed = 1; uSeed <= 8; ++uSeed) {
        const auto spSelect = MakeSelect(uSeed);
        const std::vector<uint8_t> vMask = ValuesOf<uint8_t>(spSelect->GetMask());
        spSelect->UpdateOutline();
        std::set<TUnit> setExpected;
        CRect rcBound;
        const auto inside = [&](int x, int y) { return At(vMask, {x, y}) >= 128; };
        for (int y = 0; y <= SIZE.cy; ++y)
            for (int x = 0; x <= SIZE.cx; ++x) {
                if (inside(x, y) != inside(x - 1, y)) setExpected.insert({x, y, true});
                if (inside(x, y) != inside(x, y - 1)) setExpected.insert({x, y, false});
                if (At(vMask, {x, y})) rcBound = rcBound.Union({x, y, x + 1, y + 1});
            }
        std::set<TUnit> setFound;
        size_t nLength = 0;
        for (const TOutlineSegment& s : spSelect->GetOutline()) {
            const bool bVertical = s.x1 == s.x2;
            for (int n = 0; n < s.x2 - s.x1 + s.y2 - s.y1; ++n, ++nLength)
                setFound.insert({s.x1 + (bVertical ? 0 : n), s.y1 + (bVertical ? n : 0), bVertical});
        }
        EXPECT_EQ(setFound, setExpected) << uSeed;
        EXPECT_EQ(nLength, setExpected.size()) << "no piece twice";
        EXPECT_EQ(spSelect->GetBound(), rcBound);
    }
    CSelectBuffer square({200, 200});
    for (int n = 0; n < 400; ++n) Put(square, {90 + n % 20, 90 + n / 20}, 255);
    Put(square, {5, 199}, 1); // below half: inside the bounds, not the outline
    square.UpdateOutline();
    EXPECT_EQ(square.GetOutline().size(), 4u);
    EXPECT_EQ(square.GetBound(), CRect(5, 90, 110, 200));
    square.Shift({0, 200});
    // At the corner of four pixels two pieces end: none crosses it.
    Put(square, {95, 95}, 128);
    Put(square, {96, 96}, 255);
    square.UpdateOutline();
    EXPECT_EQ(square.GetOutline().size(), 8u);
}

TEST(SelectBuffer, AllIsOneTileUpToTheCanvasesEdge) {
    for (const CSize sz : {CSize{192, 96}, CSize{200, 150}}) {
        CSelectBuffer select(sz);
        select.SelectAll();
        EXPECT_EQ(select.GetMaskTile({0, 0}), select.GetMaskTile({sz.cx - 1, sz.cy - 1}));
        select.UpdateOutline();
        EXPECT_EQ(select.GetBound(), CRect({0, 0}, sz));
        EXPECT_EQ(select.GetOutline().size(), 4u);
        for (const TOutlineSegment& s : select.GetOutline())
            EXPECT_EQ(s.x2 - s.x1 + s.y2 - s.y1, s.y1 == s.y2 ? sz.cx : sz.cy);
        Put(select, {100, 50}, 0);
        EXPECT_EQ(select.GetMask().ExtractBlock({95, 50, 101, 51}, false, nullptr)->GetPixelPtr({0, 0})[5],
                  0);
        EXPECT_EQ(select.GetMaskTile({0, 0})->GetPixelAlpha({4, 50}), 255) << "the tile of others is theirs";
        select.Shift({-1, 0}); // nothing comes in from beyond the canvas
        EXPECT_EQ(ValuesOf<uint8_t>(select.GetMask())[static_cast<size_t>(sz.cx - 1)], 0);
        EXPECT_EQ(ValuesOf<uint8_t>(select.GetMask())[static_cast<size_t>(50 * sz.cx + 99)], 0);
    }
}

TEST(SelectBuffer, CombinesAndShiftsPixelByPixel) {
    for (unsigned uSeed = 1; uSeed <= 6; ++uSeed) {
        const auto spFirst = MakeSelect(uSeed);
        const auto spSecond = MakeSelect(uSeed + 100);
        for (const auto& spSelect : {spFirst, spSecond})
            spSelect->Shift({0, 0}); // whole tiles become the full one
        const auto vD = ValuesOf<uint8_t>(spFirst->GetMask());
        const auto vS = ValuesOf<uint8_t>(spSecond->GetMask());
        for (const ESelectMode mode : {ESelectMode::Add, ESelectMode::Subtract, ESelectMode::Intersect}) {
            CSelectBuffer select(SIZE);
            select.Combine(ESelectMode::Add, *spFirst);
            select.Combine(mode, *spSecond);
            std::vector<uint8_t> vExpected(vD);
            for (size_t i = 0; i < vD.size(); ++i) {
                const int nLeft = vD[i] * (mode == ESelectMode::Intersect ? vS[i] : 255 - vS[i]) / 255;
                vExpected[i] =
                    mode == ESelectMode::Add ? std::max(vD[i], vS[i]) : static_cast<uint8_t>(nLeft);
            }
            EXPECT_EQ(ValuesOf<uint8_t>(select.GetMask()), vExpected) << uSeed;
            EXPECT_EQ(ValuesOf<uint8_t>(spFirst->GetMask()), vD);
        }
        for (const CPoint ptMove : {CPoint{96, -96}, CPoint{-37, 101}}) {
            CSelectBuffer select(SIZE);
            select.Combine(ESelectMode::Add, *spFirst);
            select.Shift(ptMove);
            const auto vMoved = ValuesOf<uint8_t>(select.GetMask());
            for (int n = 0; n < SIZE.cx * SIZE.cy; ++n) {
                const CPoint pt{n % SIZE.cx, n / SIZE.cx};
                ASSERT_EQ(At(vMoved, pt), At(vD, pt - ptMove)) << pt.x << "," << pt.y;
            }
        }
    }
    CSelectBuffer all(SIZE);
    all.SelectAll();
    all.Combine(ESelectMode::Subtract, all);
    EXPECT_FALSE(all.GetMask().HasBlock({0, 0}));
    EXPECT_THROW(all.Combine(ESelectMode::Add, CSelectBuffer({200, 300})), constraint_violation);
}

TEST(SelectBuffer, ClearsPixelsUnderTheMaskAndNoOthers) {
    const auto spPlane = MakePlane<CColorRasterBuffer>(SIZE);
    for (const CPoint pt : {CPoint{0, 0}, CPoint{96, 0}}) spPlane->GetBlock(pt, true)->Fill(0x0000FF, 200);
    const auto spSnapshot = spPlane->ShallowCopy();
    CSelectBuffer select(SIZE);
    select.SelectAll();
    select.Shift({100, 0});
    Put(select, {100, 7}, 100);
    ClearUnder(*spPlane, select);
    EXPECT_EQ(PixelAt(*spPlane, {99, 7}), 200u << 24 | 0x0000FF);
    EXPECT_EQ(PixelAt(*spPlane, {100, 7}) >> 24, 200u * 155 / 255);
    EXPECT_EQ(PixelAt(*spPlane, {101, 7}) >> 24, 0u);
    EXPECT_EQ(PixelAt(*spSnapshot, {101, 7}) >> 24, 200u);
    EXPECT_EQ(spPlane->GetDirty().At(0, 0), 0) << "nothing is selected there";
    select.SelectAll();
    ClearUnder(*spPlane, select);
    EXPECT_FALSE(spPlane->HasBlock({0, 0}));
}
