#include "core/Base/Failure.h"
#include "core/RasterBuffer/MonoRasterBuffer.h"
#include "tests/support/Planes.h"
#include "tests/support/ProjectBytes.h"
#include "tests/support/TargetTest.h"

namespace {

boost::shared_ptr<CRasterBuffer> MakeColor(CSize sz) { return MakePlane<CColorRasterBuffer>(sz); }

void FillBlock(CRasterBuffer& plane, CPoint pt, TColor color, uint8_t uAlpha) {
    plane.GetBlock(pt, true)->Fill(color, uAlpha);
}

constexpr TColor RED = 0x0000FF;
constexpr TColor BLUE = 0xFF0000;

} // namespace

TEST(RasterBuffer, SnapshotsCostNothingAndSurviveWriters) {
    const auto spPlane = MakeColor({200, 100});
    spPlane->SetOpacity(77);
    FillBlock(*spPlane, {0, 0}, RED, 255);
    const auto spSnapshot = spPlane->ShallowCopy();
    EXPECT_EQ(spSnapshot->GetBlock({0, 0}, false), spPlane->GetBlock({0, 0}, false));
    EXPECT_EQ(spSnapshot->GetOpacity(), 255);
    const CRasterBlockBuffer* pShared = spPlane->GetBlock({0, 0}, false).get();
    const CRasterBlockBuffer* pOwn = spPlane->GetWritableBlock({95, 95}).get();
    EXPECT_NE(pOwn, pShared);
    EXPECT_EQ(spSnapshot->GetBlock({0, 0}, false).get(), pShared);
    for (const CRasterBlockBuffer* pTile : {pShared, pOwn}) EXPECT_EQ(pTile->GetOwner(), spPlane.get());
    EXPECT_EQ(spPlane->GetDirty().At(0, 0), 1);
    EXPECT_EQ(spPlane->GetWritableBlock({0, 0}).get(), pOwn) << "nobody else has it now";
    EXPECT_EQ(spPlane->GetBytes(spSnapshot.get()), 4u * 96 * 96);
    FillBlock(*spPlane, {0, 0}, BLUE, 9);
    EXPECT_EQ(PixelAt(*spSnapshot, {5, 5}), 0xFF000000u | RED);
    EXPECT_EQ(PixelAt(*spPlane, {5, 5}), 0x09000000u | BLUE);
    // A tile of another kind empties the block.
    spPlane->SetBlock({0, 0}, boost::make_shared<CMonoRasterBlockBuffer>());
    EXPECT_FALSE(spPlane->GetBlock({0, 0}, false));
}

TEST(RasterBuffer, ExtractAndPasteAcrossTiles) {
    const auto spPlane = MakeColor({200, 200});
    FillBlock(*spPlane, {0, 0}, RED, 200);
    FillBlock(*spPlane, {96, 0}, BLUE, 100);
    const auto spSnapshot = spPlane->ShallowCopy();
    const CRect rc(90, 10, 110, 20);
    const auto spFloat = spPlane->ExtractBlock(rc, true, nullptr);
    EXPECT_EQ(spFloat->GetRect(), rc);
    EXPECT_EQ(spFloat->GetPixelColor({5, 0}), RED);
    EXPECT_EQ(spFloat->GetPixelColor({6, 0}), BLUE);
    EXPECT_EQ(PixelAt(*spPlane, {95, 10}), RED);                 // cut: alpha 0, the colour stays
    EXPECT_EQ(PixelAt(*spPlane, {95, 20}), 200u << 24 | RED);    // outside
    EXPECT_EQ(PixelAt(*spSnapshot, {95, 10}), 200u << 24 | RED); // the snapshot keeps its pixels
    EXPECT_FALSE(spPlane->GetBlock({96, 96}, false));            // no tile was made by looking
    spPlane->GetDirty().Fill(false);
    spPlane->PasteBlock(*spFloat, {-5, 90}); // overhangs at the left
    EXPECT_EQ(PixelAt(*spPlane, {0, 95}), 0xF4000000u | RED)
        << "200 over 200: 200 + 200 - 200 * 200 / 255 = 244";
    EXPECT_EQ(PixelAt(*spPlane, {0, 97}), 200u << 24 | RED);
    EXPECT_EQ(PixelAt(*spPlane, {1, 97}), 100u << 24 | BLUE);
    EXPECT_EQ(spPlane->GetDirty().At(0, 1), 1);
    EXPECT_EQ(spPlane->GetDirty().At(1, 1), 0);
    EXPECT_THROW(spPlane->PasteBlock(CMonoRasterBlockBuffer(), {0, 0}), constraint_violation);
    EXPECT_THROW(spPlane->ExtractBlock({5, 5, 5, 9}, true, nullptr), constraint_violation);
}

TEST(RasterBuffer, NothingComesFromBeyondThePlaneOrGoesThere) {
    const auto spPlane = MakeColor({100, 98});
    for (const CPoint pt : {CPoint{0, 0}, CPoint{96, 0}, CPoint{0, 96}, CPoint{96, 96}})
        FillBlock(*spPlane, pt, RED, 255);
    const auto spFloat = spPlane->ExtractBlock({90, 90, 110, 110}, false, nullptr);
    EXPECT_EQ(spFloat->GetPixelAlpha({9, 7}), 255);
    for (const CPoint pt : {CPoint{10, 0}, CPoint{0, 8}, CPoint{19, 19}}) {
        EXPECT_EQ(spFloat->GetPixelAlpha(pt), 0);
        EXPECT_EQ(spFloat->GetPixelColor(pt), 0u);
    }
    spFloat->Fill(BLUE, 255);
    spPlane->PasteBlock(*spFloat, {90, 90});
    EXPECT_EQ(PixelAt(*spPlane, {99, 97}), 0xFF000000u | BLUE);
    for (const CPoint pt : {CPoint{100, 97}, CPoint{99, 98}}) EXPECT_EQ(PixelAt(*spPlane, pt), 0u);
    spPlane->GetDirty().Fill(false);
    for (const CRect& rc : {CRect(100, 0, 190, 90), CRect(-9, -9, 0, 50), CRect(0, 98, 90, 191)})
        spPlane->MarkDirty(rc);
    spPlane->MarkDirty({96, -5, 500, 96});
    for (size_t i = 0; i < 4; ++i) EXPECT_EQ(spPlane->GetDirty().At(i), i == 1) << i;
}

TEST(RasterBuffer, ASwapLeavesASharedTileToItsOwner) {
    const auto spPlane = MakeColor({200, 100});
    FillBlock(*spPlane, {0, 0}, RED, 255);
    auto spBackup = spPlane->ShallowCopy();
    FillBlock(*spBackup, {96, 0}, BLUE, 255);
    spPlane->Swap(*spBackup);
    EXPECT_EQ(PixelAt(*spPlane, {96, 0}), 0xFF000000u | BLUE);
    for (const CPoint pt : {CPoint{0, 0}, CPoint{96, 0}})
        EXPECT_EQ(spPlane->GetBlock(pt, false)->GetOwner(), spPlane.get());
    spBackup->Swap(*spPlane);
    EXPECT_EQ(spPlane->GetBlock({0, 0}, false)->GetOwner(), spPlane.get());
    EXPECT_EQ(spBackup->GetBlock({96, 0}, false)->GetOwner(), spBackup.get());
    const auto spTile = spBackup->GetBlock({96, 0}, false);
    spBackup.reset();
    EXPECT_EQ(spTile->GetOwner(), nullptr) << "its owner is gone";
}

TEST(RasterBuffer, MasksTakeTheSmallerCoverageAndBlendsRefuseOtherSizesAndKinds) {
    CColorRasterBlockBuffer tile, large;
    tile.Create({4, 1}, {10, 20});
    large.Create({8, 8}, {0, 0});
    tile.Fill(RED, 100);
    CAlphaBlock8 mask, narrow;
    mask.Create({4, 1}, {0, 0});
    narrow.Create({3, 1}, {0, 0});
    const uint8_t aMask[4] = {0, 40, 100, 255}, aExpected[4] = {0, 40, 100, 100};
    std::copy_n(aMask, 4, mask.GetPixelPtr({0, 0}));
    const auto spTaken = tile.CreateBlank({4, 1});
    tile.ExtractTo(*spTaken, {10, 20}, true, &mask);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(static_cast<CColorRasterBlockBuffer&>(*spTaken).GetAlpha()[i], aExpected[i]);
        EXPECT_EQ(tile.GetAlpha()[i], 100 - aExpected[i]);
    }
    CAlphaBlock16 deep;
    deep.Create({4, 1}, {0, 0});
    EXPECT_THROW(tile.BlendWith(large, 255, nullptr), constraint_violation);
    EXPECT_THROW(tile.BlendWith(deep, 255, nullptr), constraint_violation);
    for (const CRasterBlockBuffer* pMask :
         std::initializer_list<const CRasterBlockBuffer*>{&narrow, &deep, &tile})
        EXPECT_THROW(tile.BlendWith(*spTaken, 255, pMask), constraint_violation);
}

TEST(RasterBuffer, BlendsIntoGreyByTheOwnersOpacity) {
    const auto spPlane = MakeColor({10, 10});
    FillBlock(*spPlane, {0, 0}, RED, 255);
    spPlane->SetOpacity(128);
    CMonoRasterBlockBuffer grey;
    grey.Create(DEFAULT_BLOCKSIZE, {0, 0});
    spPlane->BlendBlockInto(grey, nullptr);
    EXPECT_EQ(grey.GetPixelColor({3, 3}), 76 * 0x010101u);
    EXPECT_EQ(grey.GetAlpha()[0], 128);
}

using PlaneWire = CTargetTest;

TEST_P(PlaneWire, PixelsStandWholeAndComeBackAndDamageIsRefused) {
    for (const bool bColor : {true, false}) {
        boost::shared_ptr<CRasterBuffer> spPlane = MakePlane<CMonoRasterBuffer>({200, 97});
        if (bColor) spPlane = MakeColor({200, 97});
        const size_t nPlanes = bColor ? 4 : 2;
        uint8_t u = 0;
        for (const CPoint pt : {CPoint{192, 0}, CPoint{0, 96}}) {
            const auto spTile = spPlane->GetBlock(pt, true);
            for (size_t i = 0; i < spTile->GetPlaneBytes() * nPlanes; ++i)
                spTile->GetPixelPtr({0, 0})[i] = u = static_cast<uint8_t>(u * 5 + 3 + i / 256);
        }
        const TBytes vWhole = FileOf(spPlane->Serialize());
        constexpr size_t TILE = 12 + 16 + 12 + 16 + 4;
        const auto spFirst = spPlane->GetBlock({192, 0}, false);
        for (size_t i = 0; i < spFirst->GetPlaneBytes() * nPlanes; ++i) { // B, G, R, A or level, alpha
            const size_t nPlane = bColor && i % 4 < 3 ? 2 - i % 4 : i % nPlanes;
            ASSERT_EQ(vWhole[TILE + 32 + i],
                      spFirst->GetPixelPtr({0, 0})[nPlane * spFirst->GetPlaneBytes() + i / nPlanes]);
        }
        TBytes vBytes = vWhole;
        const auto load = [&](CDeserializer chunk) {
            auto spBack = spPlane->CreateSized({1, 1}, {1, 1});
            spBack->Deserialize(chunk);
            return spBack;
        };
        const auto loadBytes = [&] { return load(OpenChunk(vBytes)); };
        // From bytes, and from a chunk that never became bytes.
        for (const auto& spBack : {loadBytes(), load(CDeserializer(spPlane->Serialize()))}) {
            EXPECT_EQ(FileOf(spBack->Serialize()), vWhole);
            EXPECT_EQ(spBack->GetBlock({192, 0}, false)->GetOwner(), spBack.get());
            EXPECT_NE(spBack->GetBlock({192, 0}, false), spPlane->GetBlock({192, 0}, false));
        }
        // Index and size are judged before memory is taken; no index comes twice: the second tile's is 3.
        constexpr size_t INDEX = TILE + 3;
        for (const auto& [nField, uByte] : std::vector<std::pair<size_t, int>>{
                 {TILE, 0x7F}, {INDEX, 6}, {INDEX, 3}, {TILE + 16, 0x7F}, {12, 0x7F}}) {
            vBytes = vWhole;
            vBytes[nField] = static_cast<uint8_t>(uByte);
            EXPECT_THROW(loadBytes(), deserialize_error) << nField << " " << uByte;
        }
        vBytes = vWhole;
        vBytes[TILE + 19] = 48, vBytes[TILE + 23] = 192; // as many pixels, but no block of this plane
        EXPECT_THROW(loadBytes(), deserialize_error);
        // A position that disagrees with the index is put right.
        vBytes = vWhole;
        vBytes[TILE + 27] = 9;
        EXPECT_EQ(loadBytes()->GetBlock({192, 0}, false)->GetPosition(), (CPoint{192, 0}));
    }
}

ON_EVERY_TARGET(PlaneWire);
