// The exchange against a host that is nothing but bytes, one a pixel and channel.
#include "host/Exchange.h"
#include "core/AppModule/AppModule.h"
#include "core/Base/Failure.h"
#include "core/RasterBuffer/ColorRasterBuffer.h"
#include "core/RasterBuffer/MonoRasterBuffer.h"
#include "tests/support/TestPlatform.h"

#include <gtest/gtest.h>

namespace {

constexpr CPoint CORNER{1000, 2000};

/// Channel n reads as 10 * n + x; what is written is kept for the first pixel of each rectangle.
class CByteHost : public IHostImage {
public:
    CRect GetRect() override { return {}; }
    std::vector<THostChannel> GetChannels() override { return {}; }
    bool Open() override { return true; }
    void Read(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory) override {
        m_vRects.push_back(rc);
        for (int y = 0; y < rc.Height(); ++y)
            for (int x = 0; x < rc.Width(); ++x)
                *At(memory, x, y) =
                    static_cast<uint8_t>(10 * channel.uId + static_cast<size_t>(rc.left + x - CORNER.x));
    }
    void Write(const THostChannel& channel, const CRect& rc, const TPixelMemory& memory) override {
        m_vRects.push_back(rc);
        m_mapWritten[channel.uId].push_back(*At(memory, 0, 0));
    }

    std::vector<CRect> m_vRects;
    std::map<size_t, std::vector<int>> m_mapWritten;

private:
    static uint8_t* At(const TPixelMemory& memory, int x, int y) {
        EXPECT_EQ(memory.nDepth, 8);
        return memory.pData + (memory.nBitOffset + y * memory.nRowBits + x * memory.nColBits) / 8;
    }
};

class CExchange : public testing::Test {
protected:
    template <class Plane>
    void Make(Plane& plane, CSize sz) {
        plane.Create(sz, DEFAULT_BLOCKSIZE);
    }
    void Read(CRasterBuffer& plane, const std::vector<THostChannel>& v) {
        InSession([&] { ReadHostChannels(plane, v, m_host, CORNER.x, CORNER.y); });
    }
    void Write(CRasterBuffer& plane, const std::vector<THostChannel>& v) {
        InSession([&] { WriteHostChannels(v, plane, m_host, CORNER.x, CORNER.y); });
    }
    /// Lends the platform to the application; an exception's text is kept.
    void InSession(const std::function<void()>& fn) {
        m_platform.Run([&](const TPlatform& platform) {
            g_AppModule.SetPlatform(&platform);
            try {
                fn();
            } catch (const internal_error& e) {
                m_strError = e.message;
            }
            g_AppModule.SetPlatform(nullptr);
        });
    }

    std::wstring m_strError;
    CTestPlatform m_platform;
    CByteHost m_host;
};

const std::vector<THostChannel> RGB{{ctRed, 1}, {ctGreen, 2}, {ctBlue, 3}};
const std::vector<CRect> TILES_OF_100_BY_97{
    {1000, 2000, 1096, 2096}, {1096, 2000, 1100, 2096}, {1000, 2096, 1096, 2097}, {1096, 2096, 1100, 2097}};

TEST_F(CExchange, ColourTilesAreOpaqueUpToTheirRim) {
    CColorRasterBuffer plane;
    Make(plane, {100, 97});
    Read(plane, {{ctGreen, 2}});
    EXPECT_EQ(m_host.m_vRects, TILES_OF_100_BY_97);
    const auto spTile = boost::static_pointer_cast<CColorRasterBlockBuffer>(plane.GetBlock({96, 96}, false));
    EXPECT_EQ(spTile->GetPlane(1)[3], 20 + 99);
    EXPECT_EQ(spTile->GetPlane(1)[4], 0); // beyond the plane
    EXPECT_EQ(std::count(spTile->GetAlpha(), spTile->GetAlpha() + 96 * 96, 255), 96 * 96);
}

TEST_F(CExchange, UnknownTypesFollowTheChannelBefore) {
    CColorRasterBuffer plane;
    Make(plane, {2, 1});
    const std::vector<THostChannel> vChannels{{20, 9}, {ctRed, 1}, {0, 5}, {ctTransparency, 4}};
    Read(plane, vChannels);
    const auto spTile = boost::static_pointer_cast<CColorRasterBlockBuffer>(plane.GetBlock({0, 0}, false));
    EXPECT_EQ(m_host.m_vRects.size(), 3u); // the first has no place
    EXPECT_EQ(spTile->GetPlane(0)[1], 51);
    EXPECT_EQ(spTile->GetPlane(2)[1], 0);
    EXPECT_EQ(spTile->GetAlpha()[1], 41);
    Write(plane, vChannels);
    EXPECT_EQ(m_host.m_mapWritten, (std::map<size_t, std::vector<int>>{{1, {50}}, {4, {40}}, {5, {50}}}));
}

TEST_F(CExchange, SharedTilesAreReplacedNotChanged) {
    CColorRasterBuffer plane;
    Make(plane, {97, 1});
    plane.GetBlock({0, 0}, true)->Fill(MakeColor(7, 7, 7), 7);
    const auto spSnapshot = plane.ShallowCopy();
    plane.GetDirty().Fill(false);
    Read(plane, RGB);
    EXPECT_EQ(spSnapshot->GetBlock({0, 0}, false)->GetPixelColor({0, 0}), MakeColor(7, 7, 7));
    EXPECT_EQ(plane.GetBlock({0, 0}, false)->GetPixelColor({0, 0}), MakeColor(10, 20, 30));
    EXPECT_TRUE(plane.GetDirty().At(0, 0) && plane.GetDirty().At(1, 0));
}

TEST_F(CExchange, GreyPlanesGoThroughABitmap) {
    CMonoRasterBuffer plane;
    Make(plane, {100, 97});
    Read(plane, {{20, 9}, {ctRed, 1}, {ctGreen, 2}, {ctBlue, 3}, {ctTransparency, 4}});
    EXPECT_EQ(m_host.m_vRects.size(), TILES_OF_100_BY_97.size() * 4);
    const auto spTile = boost::static_pointer_cast<CMonoRasterBlockBuffer>(plane.GetBlock({96, 96}, false));
    EXPECT_EQ(spTile->GetPlane(0)[2], GreyOf(108, 118, 128));
    EXPECT_EQ(spTile->GetAlpha()[2], 138);

    Write(plane, {{ctBlue, 3}, {0, 5}, {ctTransparency, 4}});
    const int nGrey0 = GreyOf(10, 20, 30);
    const int nGrey96 = GreyOf(106, 116, 126);
    const std::vector<int> vGrey{nGrey0, nGrey96, nGrey0, nGrey96};
    EXPECT_EQ(m_host.m_mapWritten[3], vGrey);
    EXPECT_EQ(m_host.m_mapWritten[5], vGrey);
    EXPECT_EQ(m_host.m_mapWritten[4], (std::vector<int>{40, 136, 40, 136}));
}

TEST_F(CExchange, MissingBitmapsAreToldByTheirCall) {
    CMonoRasterBuffer plane;
    Make(plane, {10, 10});
    m_platform.m_bFailLocks = true;
    Read(plane, RGB);
    EXPECT_EQ(m_strError, L"Gdiplus::LockBits() failed.");
    m_platform.m_bNoBitmaps = true;
    Read(plane, RGB);
    EXPECT_EQ(m_strError, L"Gdiplus::Bitmap() failed.");
}

} // namespace
