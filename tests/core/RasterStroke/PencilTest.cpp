#include "core/RasterStroke/RasterPencilStroke.h"

#include "session/seam/VirtualClock.h"
#include "system/pictures/ImageCodecs.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/Planes.h"

namespace {

class Pencil : public testing::Test {
protected:
    // A straight line across the middle of one tile; the sum of its coverage in pixels.
    double Draw(const TBrushParam& param, uint32_t uPressure = 1024, uint32_t uAltitude = 90) {
        m_v = Values(param, 0, uPressure, uAltitude);
        return std::accumulate(m_v.begin(), m_v.end(), 0.0) / 65535;
    }
    std::vector<uint16_t> Values(const TBrushParam& param, int nPredict, uint32_t uPressure = 1024,
                                 uint32_t uAltitude = 90) {
        CStrokeRandom random(9);
        TStrokeSetup setup{.szCanvas = {96, 96}, .param = param, .clock = m_clock, .random = random};
        setup.nPredict = nPredict;
        setup.pCodecs = &m_codecs;
        CRasterPencilStroke stroke(setup);
        for (int n = 0; n < 12; ++n) {
            stroke.AddCtlPoint({80 + 50 * n, 384}, uPressure, uAltitude);
            stroke.Update();
        }
        stroke.AddCtlPoint({0, 0}, FINAL_PRESSURE, 90);
        EXPECT_TRUE(stroke.Update());
        return ValuesOf(stroke.GetMain());
    }
    int HalfWidth() const {
        const auto it = std::find_if(m_v.begin(), m_v.end(), [](uint16_t u) { return u != 0; });
        return 48 - static_cast<int>((it - m_v.begin()) / 96);
    }

    CMemoryFiles m_files;
    CImageCodecs m_codecs{m_files};
    CVirtualClock m_clock;
    std::vector<uint16_t> m_v;
};

const TBrushParam SOFT{.BrushRadius = 20, .PressAlpha = true, .PaperRoughness = 4};

} // namespace

TEST_F(Pencil, PressureIsTheNumberOfGrainsAndTiltSpreadsThem) {
    TBrushParam param = SOFT;
    param.PressRadius = false;
    EXPECT_EQ(Draw(param, 0), 0);
    const double dLight = Draw(param, 200);
    EXPECT_EQ(HalfWidth(), 10);
    const double dFull = Draw(param);
    EXPECT_GT(dLight, 1);
    EXPECT_GT(dFull, dLight * 1.5);
    param.AltitParam = 3;
    Draw(param, 600, 35);
    EXPECT_GT(HalfWidth(), 30);
}

TEST_F(Pencil, LinesRepeatAndThePredictionLeavesNoMark) {
    TBrushParam param = SOFT;
    for (const uint8_t uTexture : {0, 2}) {
        param.PencilTexture = uTexture;
        const auto v = Values(param, 0);
        for (const int nPredict : {0, 3}) EXPECT_EQ(v, Values(param, nPredict));
    }
}

TEST_F(Pencil, PaperKeepsGraphiteInItsHollows) {
    TBrushParam param = SOFT;
    param.PaperRoughness = 0; // grains so fine that they follow the paper
    std::set<std::vector<uint16_t>> setPictures;
    for (const int nTexture : {1, 2, 3}) {
        param.PencilTexture = static_cast<uint8_t>(nTexture);
        Draw(param, 500);
        setPictures.insert(m_v);
        const CPencilTexture texture(nTexture, &m_codecs);
        double adSum[2] = {};
        int anCount[2] = {};
        for (int y = 41; y < 55; ++y)
            for (int x = 20; x < 70; ++x) {
                int nMean = 0;
                for (int n = 0; n < 64; ++n) nMean += texture.At(x * 8 + n % 8, y * 8 + n / 8);
                const int nSide = nMean / 64 > 175 ? 0 : nMean / 64 < 85 ? 1 : 2;
                if (nSide < 2) adSum[nSide] += m_v[static_cast<size_t>(y * 96 + x)], ++anCount[nSide];
            }
        ASSERT_GT(std::min(anCount[0], anCount[1]), 10) << nTexture;
        EXPECT_GT(adSum[1] / anCount[1], 1.5 * adSum[0] / anCount[0]) << nTexture;
        for (int n = 0; n < 512; ++n) EXPECT_LT(std::abs(texture.At(512 + n, 0) - texture.At(n, 511)), 100);
    }
    EXPECT_EQ(setPictures.size(), 3u);
}

TEST(PencilSpread, BendsAtItsAngleAndStopsAtBothEnds) {
    EXPECT_EQ(PencilSpread(0, 40), 1.0);
    EXPECT_NEAR(PencilSpread(1, 40), 1.0, 1e-9);
    EXPECT_NEAR(PencilSpread(5, 35), 8.0 - 5.4 * 5 / 10, 1e-9);
    EXPECT_NEAR(PencilSpread(5, 75), 0.4 + 2.2 * 15 / 50, 1e-9);
    EXPECT_TRUE(PencilSpread(3, 90) == PencilSpread(3, 75) && PencilSpread(3, 0) == PencilSpread(3, 35));
}

TEST(PencilGrain, MarksAreTheMeansOfTheCellsUnderEachPixel) {
    for (const int nRoughness : {0, 3, 7}) {
        CPencilGrain grain(nRoughness, 30);
        const int nHalf = grain.GetHalfCells();
        for (const auto& [nVariant, fx, fy] : {std::array{0, 0, 0}, {4, 7, 3}}) {
            const auto vCells = grain.CellsOf(nVariant);
            EXPECT_GT(std::count(vCells.begin(), vCells.end(), 0), nHalf * nHalf);
            const TGrainMark& mark = grain.MarkAt(nVariant, fx, fy);
            for (int y = -4; y < 5; ++y)
                for (int x = -4; x < 5; ++x) {
                    uint32_t uSum = 0;
                    for (int n = 0; n < 64; ++n) {
                        const int j = x * 8 + n % 8 - fx + nHalf, i = y * 8 + n / 8 - fy + nHalf;
                        if (i >= 0 && i < 2 * nHalf && j >= 0 && j < 2 * nHalf)
                            uSum += vCells[static_cast<size_t>(i * 2 * nHalf + j)];
                    }
                    const int i = y - mark.y, j = x - mark.x;
                    const auto nStride = static_cast<int>(mark.nStride);
                    const bool bIn = i >= 0 && i < mark.nHeight && j >= 0 && j < nStride;
                    EXPECT_EQ(bIn ? mark.vCover[static_cast<size_t>(i * nStride + j)] : 0u,
                              (uSum >> 6) * 30 / 100)
                        << x << "," << y;
                }
        }
    }
}
