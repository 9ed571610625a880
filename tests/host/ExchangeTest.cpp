// The exchange against a host that is nothing but bytes, one a pixel and channel.
#include "host/Exchange.h"
#include "core/AppModule/AppModule.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterBuffer/MonoRasterBuffer.h"
#include "tests/support/TestPlatform.h"

namespace {

/// Channel n reads as 10 * n + x; of what is written the first byte of each rectangle is kept.
class CExchange : public testing::Test, protected IHostImage {
protected:
    std::map<size_t, std::vector<int>> m_mapWritten;

private:
    static uint8_t& At(const TPixelMemory& memory, int x, int y) {
        return memory.pData[(memory.nBitOffset + y * memory.nRowBits + x * memory.nColBits) / 8];
    }
    CRect GetRect() override { return {}; }
    std::vector<THostChannel> GetChannels() override { return {}; }
    bool Open() override { return true; }
    void Read(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory) override {
        for (int y = 0; y < rc.Height(); ++y)
            for (int x = 0; x < rc.Width(); ++x)
                At(memory, x, y) =
                    static_cast<uint8_t>(static_cast<int>(channel.uId) * 10 + rc.left + x - 1000);
    }
    void Write(const THostChannel& channel, const CRect&, const TPixelMemory& memory) override {
        m_mapWritten[channel.uId].push_back(At(memory, 0, 0));
    }
};

TEST_F(CExchange, SharedTilesAreReplacedNotChanged) {
    CColorRasterBuffer plane;
    plane.Create({2, 1}, DEFAULT_BLOCKSIZE);
    plane.GetBlock({0, 0}, true)->Fill(MakeColor(7, 7, 7), 7);
    const auto spSnapshot = plane.ShallowCopy();
    plane.GetDirty().Fill(false);
    ReadHostChannels(plane, {{20, 9}, {ctRed, 1}}, *this, 1000, 2000); // channel 9 has no place
    EXPECT_EQ(plane.GetBlock({0, 0}, false)->GetPixelColor({1, 0}), MakeColor(11, 7, 7));
    EXPECT_EQ(spSnapshot->GetBlock({0, 0}, false)->GetPixelColor({1, 0}), MakeColor(7, 7, 7));
    EXPECT_TRUE(plane.GetDirty().At(0, 0));
}

TEST_F(CExchange, GreyPlanesGoThroughABitmap) {
    CMonoRasterBuffer plane;
    plane.Create({100, 97}, DEFAULT_BLOCKSIZE);
    const std::vector<THostChannel> vRead{
        {20, 9}, {ctRed, 1}, {ctGreen, 2}, {ctBlue, 3}, {ctTransparency, 4}};
    const std::vector<THostChannel> vWritten{{ctBlue, 3}, {0, 5}, {ctTransparency, 4}};
    CTestPlatform().Run([&](const TPlatform& platform) {
        g_AppModule.SetPlatform(&platform);
        ReadHostChannels(plane, vRead, *this, 1000, 2000);
        WriteHostChannels(vWritten, plane, *this, 1000, 2000);
        g_AppModule.SetPlatform(nullptr);
    });
    const auto spTile = boost::static_pointer_cast<CMonoRasterBlockBuffer>(plane.GetBlock({96, 96}, false));
    EXPECT_EQ(spTile->GetPlane(0)[2], GreyOf(108, 118, 128));
    EXPECT_EQ(spTile->GetAlpha()[2], 138);
    const int nGrey0 = GreyOf(10, 20, 30), nGrey96 = GreyOf(106, 116, 126);
    for (const size_t uId : {3, 5})
        EXPECT_EQ(m_mapWritten[uId], (std::vector<int>{nGrey0, nGrey96, nGrey0, nGrey96}));
    EXPECT_EQ(m_mapWritten[4], (std::vector<int>{40, 136, 40, 136}));
}

} // namespace
