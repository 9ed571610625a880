#include "core/Base/Failure.h"
#include "core/RasterBuffer/MonoRasterBuffer.h"
#include "tests/support/Planes.h"

namespace {

constexpr CSize BLOCK{4, 4};
constexpr TColor RED = 0x0000FF;

template <class T>
boost::shared_ptr<CAlphaBufferImpl<T>> MakeInk(CSize sz, TColor color = RED) {
    const auto spPlane = MakePlane<CAlphaBufferImpl<T>>(sz, BLOCK);
    spPlane->SetColor(color);
    return spPlane;
}

template <class T>
CAlphaBlockBufferImpl<T>& TileAt(CRasterBuffer& plane, CPoint pt) {
    return static_cast<CAlphaBlockBufferImpl<T>&>(*plane.GetBlock(pt, true));
}

} // namespace

TEST(AlphaBuffer, InkPaintsAndErases) {
    const auto spPlane = MakeInk<uint8_t>({4, 4});
    EXPECT_EQ(spPlane->GetGrey(), 76);
    auto& tile = TileAt<uint8_t>(*spPlane, {0, 0});
    tile.GetAlpha()[0] = 255;
    tile.GetAlpha()[1] = 100;
    CColorRasterBlockBuffer dest;
    dest.Create(BLOCK, {0, 0});
    dest.Fill(0xFF0000, 0);
    dest.GetAlpha()[1] = 200;
    spPlane->BlendBlockInto(dest, nullptr);
    EXPECT_EQ(dest.GetPixelColor({0, 0}), RED);
    EXPECT_EQ(dest.GetAlpha()[0], 255);
    EXPECT_EQ(dest.GetAlpha()[1], 221); // 100 + 200 * 155 / 255
    EXPECT_EQ(dest.GetPixelColor({1, 0}), MakeColor(115, 0, 139));
    EXPECT_EQ(dest.GetPixelColor({2, 0}), 0u); // nothing on nothing has no colour
    spPlane->SetErase(true);
    spPlane->BlendBlockInto(dest, nullptr);
    EXPECT_EQ(dest.GetAlpha()[0], 0);
    EXPECT_EQ(dest.GetPixelColor({0, 0}), RED); // the colour is left alone
    EXPECT_EQ(dest.GetAlpha()[1], 134);
}

TEST(AlphaBuffer, SixteenBitsMeetPixelsByTheirUpperByteAndNoMask) {
    const auto spPlane = MakeInk<uint16_t>({4, 4});
    auto& tile = TileAt<uint16_t>(*spPlane, {0, 0});
    tile.GetAlpha()[0] = 0x80FF;
    CMonoRasterBlockBuffer grey;
    grey.Create(BLOCK, {0, 0});
    spPlane->BlendBlockInto(grey, nullptr);
    EXPECT_EQ(grey.GetAlpha()[0], 0x80);
    EXPECT_EQ(grey.GetPixelColor({0, 0}), 76 * 0x010101u);
    const auto spMask = MakeInk<uint8_t>({4, 4});
    auto& mask = TileAt<uint8_t>(*spMask, {0, 0});
    spPlane->BlendBlockInto(mask, nullptr);
    EXPECT_EQ(mask.GetAlpha()[0], 0);
    spMask->SetErase(true);
    const auto spSum = spMask->CreateBlock({0, 0});
    mask.GetAlpha()[0] = 90;
    spSum->GetPixelPtr({0, 0})[0] = 100;
    spMask->BlendBlockInto(*spSum, nullptr);
    EXPECT_EQ(spSum->GetPixelPtr({0, 0})[0], 154); // 90 + 100 * 165 / 255
}

TEST(AlphaBuffer, CopiesKeepTheInkAndRowsMoveWhole) {
    const auto spPlane = MakeInk<uint16_t>({8, 4}, 0x00FF00);
    spPlane->SetErase(true);
    for (int i = 0; i < 16; ++i)
        TileAt<uint16_t>(*spPlane, {0, 0}).GetAlpha()[i] = static_cast<uint16_t>(1000 + i);
    for (const auto& spCopy : {spPlane->ShallowCopy(), spPlane->DeepCopy()}) {
        const auto& copy = static_cast<const CAlphaBufferBase&>(*spCopy);
        EXPECT_EQ(copy.GetColor(), 0x00FF00u);
        EXPECT_EQ(copy.GetGrey(), 149);
        EXPECT_FALSE(copy.IsErase());
    }
    // A plane paints with its own ink also where another plane owns the tiles.
    const auto spBlue = boost::static_pointer_cast<CAlphaBufferImpl<uint16_t>>(spPlane->ShallowCopy());
    spBlue->SetColor(0xFF0000);
    CColorRasterBlockBuffer dest;
    dest.Create(BLOCK, {0, 0});
    spBlue->BlendBlockInto(dest, nullptr);
    EXPECT_EQ(dest.GetPixelColor({0, 0}), 0xFF0000u);
    const auto spFloat = spPlane->ExtractBlock({2, 1, 6, 3}, true, nullptr);
    const auto* pFloat = static_cast<CAlphaBlock16&>(*spFloat).GetAlpha();
    EXPECT_EQ(pFloat[0], 1006);
    EXPECT_EQ(pFloat[2], 0); // no tile there
    EXPECT_EQ(TileAt<uint16_t>(*spPlane, {0, 0}).GetAlpha()[6], 0);
    EXPECT_EQ(TileAt<uint16_t>(*spPlane, {0, 0}).GetAlpha()[5], 1005);
    spPlane->PasteBlock(*spFloat, {3, 0});
    EXPECT_EQ(TileAt<uint16_t>(*spPlane, {4, 0}).GetAlpha()[0], 1007);
    EXPECT_TRUE(spPlane->Serialize().GetPayload().empty());
    EXPECT_THROW(spPlane->GetOpacity(), constraint_violation_as<defect_logic>);
}

TEST(DoubleAlphaBuffer, ReducesByTheBinomialWindowAcrossTiles) {
    CDoubleAlphaBuffer plane;
    plane.Create({8, 8}, BLOCK);
    plane.SetColor(RED);
    EXPECT_EQ(plane.CreateLike()->GetSize(), plane.GetSize());
    std::mt19937 random(1);
    uint16_t aaFine[18][18] = {}; // with the zeros beyond the grid
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x) {
            if (x >= 8 && y < 8) continue; // one tile is absent
            auto& tile = TileAt<uint16_t>(plane, {x, y});
            aaFine[y][x] = tile.GetAlpha()[y % 8 * 8 + x % 8] =
                static_cast<uint16_t>(random() % 3 ? random() : 0xFFFF);
        }
    for (const CPoint ptBlock : {CPoint{0, 0}, CPoint{4, 0}, CPoint{0, 4}, CPoint{4, 4}}) {
        CMonoRasterBlockBuffer dest;
        dest.Create(BLOCK, ptBlock);
        plane.BlendBlockInto(dest, nullptr);
        for (int j = 0; j < 4; ++j)
            for (int i = 0; i < 4; ++i) {
                uint32_t uSum = 0;
                for (int v = 0; v < 3; ++v)
                    for (int u = 0; u < 3; ++u)
                        uSum += (u == 1 ? 2u : 1u) * (v == 1 ? 2u : 1u) *
                                aaFine[2 * (ptBlock.y + j) + v][2 * (ptBlock.x + i) + u];
                EXPECT_EQ(dest.GetAlpha()[j * 4 + i], (uSum >> 4) >> 8)
                    << ptBlock.x + i << "," << ptBlock.y + j;
            }
    }
}
