#include "tests/support/Strokes.h"

namespace {

void AddAlpha(COpenPathStream& stream, uint32_t t, uint32_t uAlpha) {
    stream.AddAlphaPoint(t)->SetAlpha(CDualValue<uint32_t>(uAlpha));
}

int Scaled(int nCoverage, uint32_t uAlpha) { return (nCoverage * static_cast<int>(uAlpha) * 2 + 255) / 510; }

// Two legs that cross at pixel (110, 110), half-width 10 pixels: from parameter 0 to 0x10000, and from
// 0x20000 on.
boost::shared_ptr<COpenPathObject> MakeCrossing() {
    const auto spPath = boost::make_shared<COpenPathObject>();
    for (const CPoint pt : {CPoint{160, 160}, {1600, 1600}, {1600, 160}, {160, 1600}})
        AddAnchor(spPath->GetStream(), pt);
    spPath->GetStream().SetWidth(80);
    for (const bool b : {true, false}) spPath->GetStream().SetTerm(CreateOpenPathTerm(TERM_ROUND, b));
    return spPath;
}

} // namespace

TEST(OpacityField, OneOpacityScalesEveryPixelAlike) {
    std::mt19937 random(4);
    int nWithin = 0;
    for (int nStroke = 0; nStroke < 24; ++nStroke) {
        const auto spPath = nStroke == 0 ? MakeCrossing() : MakePath(HandKnots(random, 2 + nStroke % 9), 40);
        COpenPathStream& stream = spPath->GetStream();
        const uint32_t tLast = static_cast<uint32_t>(stream.ControlPointCount() - 1) << 16;
        if (nStroke % 2) AddWidth(stream, tLast / 2, 0x8000, 0x30000);
        if (nStroke % 3 == 1) stream.SetWave(true, {30, 20});
        if (nStroke % 4 == 1)
            for (const uint32_t t : {tLast / 4, tLast / 3}) stream.AddTransPoint(t);
        for (const bool b : {true, false})
            stream.SetTerm(CreateOpenPathTerm(1 + static_cast<uint32_t>(nStroke + b) % 3, b));
        spPath->Update();
        const auto vPlain = CoverageOf(*spPath);
        AddAlpha(stream, tLast / 5, 128);
        AddAlpha(stream, tLast / 2, 128);
        spPath->Update();
        const auto vScaled = CoverageOf(*spPath);
        for (size_t n = 0; n < vPlain.size(); ++n)
            ASSERT_EQ(vScaled[n], Scaled(vPlain[n], 128)) << nStroke << ' ' << n % 288 << ' ' << n / 288;
        nWithin += static_cast<int>(std::ranges::count(vScaled, 128));
    }
    EXPECT_GT(nWithin, 10000);
}

TEST(OpacityField, TheHigherOneCountsWhereAStrokeCrossesItself) {
    const auto spPath = MakeCrossing();
    COpenPathStream& stream = spPath->GetStream();
    for (const uint32_t t : {0x0u, 0x10000u, 0x20000u, 0x30000u}) AddAlpha(stream, t, t < 0x20000 ? 200 : 60);
    spPath->Update();
    EXPECT_EQ(At(CoverageOf(*spPath), 110, 110), 200);
    for (const auto& spMark : stream.GetAlphaPoints())
        spMark->SetAlpha(CDualValue<uint32_t>(260u - spMark->GetAlpha()[STATE_COMMITTED]));
    spPath->Update();
    const auto vPixels = CoverageOf(*spPath);
    for (const auto& [x, y, nValue] : {std::tuple{110, 110, 200},
                                       {60, 60, 60},
                                       {150, 150, 60},
                                       {60, 160, 200},
                                       {103, 110, 200},
                                       {110, 122, 200},
                                       {124, 124, 60},
                                       {14, 16, 60},
                                       {14, 206, 200},
                                       {100, 60, 0}})
        EXPECT_EQ(At(vPixels, x, y), nValue) << x << ' ' << y;
    // Up the third leg the opacity rises; its corner has that of the anchor.
    EXPECT_NEAR(At(vPixels, 200, 110), 129, 1);
    EXPECT_NEAR(At(vPixels, 208, 110), 129, 1);
    EXPECT_EQ(At(vPixels, 206, 206), 60);
    EXPECT_FALSE(spPath->HasInkAt({800, 480}));
    EXPECT_TRUE(spPath->HasInkAt({480, 480}));
    for (const auto& spMark : stream.GetAlphaPoints()) spMark->SetAlpha(CDualValue<uint32_t>(0));
    spPath->Update();
    EXPECT_FALSE(spPath->HasInkAt({480, 480}));
}

TEST(OpacityField, PixelsBetweenMarksAreEased) {
    std::mt19937 random(9);
    for (int nStroke = 0; nStroke < 6; ++nStroke) {
        const auto spPath = MakePath(HandKnots(random, 5), 60);
        COpenPathStream& stream = spPath->GetStream();
        for (const bool b : {true, false}) stream.SetTerm(CreateOpenPathTerm(TERM_FLAT, b));
        if (nStroke == 0) stream.SetWave(true, {40, 10});
        spPath->Update();
        const auto vPlain = CoverageOf(*spPath);
        AddAlpha(stream, 0x34000, 250);
        AddAlpha(stream, 0x8000, 20);
        AddAlpha(stream, 0x18000, 240);
        spPath->Update();
        const auto vPixels = CoverageOf(*spPath);
        for (uint32_t t = 0x1000; t < 0x40000; t += 0x800) {
            // The middle of the pixel may lie half a pixel off, which slopes turn into some levels.
            const CPoint pt = stream.PointAt(t, STATE_COMMITTED);
            if (At(vPlain, pt.x >> 3, pt.y >> 3) != 255) continue;
            const auto now = static_cast<int>(stream.GetAlphaAt(t, STATE_COMMITTED));
            const auto aside = static_cast<int>(stream.GetAlphaAt(t + 0x400, STATE_COMMITTED));
            EXPECT_NEAR(At(vPixels, pt.x >> 3, pt.y >> 3), now, 1 + 2 * std::abs(aside - now))
                << nStroke << ' ' << t;
        }
    }
    // On a level stroke each column has one value, whose edges have their share of it.
    const auto spLevel = MakeLevelStroke(2);
    for (const bool b : {true, false}) spLevel->GetStream().SetTerm(CreateOpenPathTerm(TERM_ROUND, b));
    spLevel->Transform([](CPoint pt) { return pt + CPoint{400, 404}; });
    const auto vPlain = CoverageOf(*spLevel);
    AddAlpha(spLevel->GetStream(), 0, 0);
    AddAlpha(spLevel->GetStream(), 0x10000, 255);
    spLevel->Update();
    const auto vPixels = CoverageOf(*spLevel);
    for (int x = 50; x < 150; ++x) {
        const double dPart = (x + 0.5 - 50) / 100;
        const double dAlpha = 255 * (3 - 2 * dPart) * dPart * dPart;
        EXPECT_NEAR(At(vPixels, x, 50), dAlpha, 1) << x;
        for (int y = 40; y < 62; ++y)
            EXPECT_NEAR(At(vPixels, x, y), At(vPlain, x, y) * dAlpha / 255, 1) << x << ' ' << y;
    }
    EXPECT_EQ(At(vPixels, 153, 50), 255) << "in the cap";
    EXPECT_EQ(At(vPixels, 47, 50), 0);
}

TEST(OpacityField, APixelDependsOnNoTile) {
    std::mt19937 random(2);
    for (int nStroke = 0; nStroke < 4; ++nStroke) {
        const auto spPath = MakePath(HandKnots(random, 12), 70);
        for (uint32_t n = 0; n < 12; ++n) AddAlpha(spPath->GetStream(), n << 16, random() % 256);
        for (const bool b : {true, false}) spPath->GetStream().SetTerm(CreateOpenPathTerm(TERM_ROUND, b));
        spPath->Update();
        const auto vPixels = CoverageOf(*spPath);
        CPathFill fill;
        for (int n = 0; n < 300; ++n) {
            const CPoint pt{static_cast<int32_t>(random() % 280), static_cast<int32_t>(random() % 280)};
            CAlphaBlock8 tile;
            tile.Create({1 + static_cast<int32_t>(random() % 8), 1 + static_cast<int32_t>(random() % 8)}, pt);
            spPath->RasterizePath(fill, PLANE, tile);
            const CRect rc = tile.GetRect();
            for (int y = rc.top; y < rc.bottom; ++y)
                for (int x = rc.left; x < rc.right; ++x)
                    ASSERT_EQ(tile.GetAlpha()[(y - rc.top) * rc.Width() + x - rc.left], At(vPixels, x, y));
        }
        // Coverage that the tile holds already is not lowered.
        CAlphaBlock8 full;
        full.Create({96, 96}, {96, 96});
        std::fill_n(full.GetAlpha(), 96 * 96, uint8_t{99});
        spPath->RasterizePath(fill, PLANE, full);
        for (int n = 0; n < 96 * 96; ++n)
            ASSERT_EQ(full.GetAlpha()[n], std::max(99, At(vPixels, 96 + n % 96, 96 + n / 96)));
    }
}
