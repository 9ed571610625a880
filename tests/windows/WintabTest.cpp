#include "system/pen/win32/WintabContext.h"
#include "tests/windows/FakeDriver.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <vector>

namespace {

class Wintab : public testing::Test {
protected:
    /// Any value: the driver only keeps it.
    static HWND AnyWindow() { return reinterpret_cast<HWND>(0x1234); }
    /// Opens a context on another tablet; with `bMouseCoord` positions are pixels.
    bool Open(const TFakeTablet& tablet, bool bMouseCoord = false) {
        m_context.Close();
        m_driver.Reset(tablet);
        return m_context.Open(AnyWindow(), bMouseCoord);
    }
    wintab::TLogContext OpenedWith(const TFakeTablet& tablet, bool bMouseCoord = false) {
        EXPECT_TRUE(Open(tablet, bMouseCoord));
        return m_driver.GetState().context;
    }
    std::vector<TPenPacket> Read(size_t nMax = 1000) {
        std::vector<TPenPacket> vPackets(nMax);
        vPackets.resize(m_context.Read(vPackets.data(), nMax));
        return vPackets;
    }

    CFakeDriver m_driver;
    CWintabContext m_context{CWintabLibrary::Load(m_driver.GetPath())};
};

} // namespace

TEST_F(Wintab, ALibraryThatIsMissingOrLacksAFunctionIsNoDriver) {
    EXPECT_FALSE(CWintabLibrary::Load(L"Z:\\none\\WINTAB32.dll"));
    EXPECT_FALSE(CWintabLibrary::Load(L"C:\\windows\\system32\\version.dll"));
    EXPECT_TRUE(CWintabLibrary::Load(m_driver.GetPath()));
    // The system's own folder has no tablet here, if it has a library at all; the fake one is not found
    // there.
    if (const auto spSystem = CWintabLibrary::Load()) {
        EXPECT_FALSE(CWintabContext(spSystem).Open(AnyWindow(), true));
    }
}

TEST_F(Wintab, TheContextAsksForWhatTheFramesNeed) {
    const wintab::TLogContext fine = OpenedWith({});
    EXPECT_STREQ(fine.szName, L"Vellumcraft");
    EXPECT_EQ(fine.uOptions, wintab::CXO_MESSAGES);
    EXPECT_EQ(fine.uPktData, 0x15E2u);
    EXPECT_EQ(fine.uMoveMask, 0x15E2u);
    EXPECT_EQ(fine.uPktMode, 0x40u);
    EXPECT_EQ(fine.uMsgBase, 0x7FF0u);
    EXPECT_EQ(m_context.GetUnitsPerPixel(), 23); // 44160 / 1920 and 27600 / 1200
    EXPECT_TRUE(fine.nOutExtX == 44160 && fine.nOutExtY == -27600);
    const TFakeState state = m_driver.GetState();
    EXPECT_TRUE(state.hWnd == AnyWindow() && state.nQueue == 128 && state.bEnabled && state.nOverlaps == 1);

    const wintab::TLogContext pixels = OpenedWith({}, true);
    EXPECT_EQ(pixels.uOptions, wintab::CXO_MESSAGES | wintab::CXO_SYSTEM);
    EXPECT_EQ(m_context.GetUnitsPerPixel(), 1);
    EXPECT_TRUE(pixels.nOutExtX == 1920 && pixels.nOutExtY == -1200);

    // The smaller ratio counts; a second screen has its origin in the same units.
    const wintab::TLogContext second =
        OpenedWith({.nWidth = 46000, .nScreenX = 100, .nScreenY = -50, .nScreenWidth = 1000});
    EXPECT_EQ(m_context.GetUnitsPerPixel(), 22); // 46000 / 900, and 27600 / 1250
    EXPECT_TRUE(second.nOutOrgX == 2200 && second.nOutOrgY == -1100 && second.nOutExtX == 22000);
    OpenedWith({.nScreenX = 1920}); // the screen beside the first
    EXPECT_EQ(m_context.GetUnitsPerPixel(), 23);
    for (const TFakeTablet& tablet : {TFakeTablet{.nWidth = 0},
                                      {.nScreenWidth = 0},
                                      {.nHeight = 0, .nScreenHeight = 0},
                                      {.nWidth = 700}}) {
        OpenedWith(tablet);
        EXPECT_EQ(m_context.GetUnitsPerPixel(), 1);
    }
}

TEST_F(Wintab, PacketsKeepTheirPlaceButtonsAndEnd) {
    ASSERT_TRUE(Open({}));
    // 50 pixels and 7 units from the left edge, 100 pixels below the upper one.
    m_driver.Play({.uCursor = 1,
                   .x = 1157,
                   .y = 25300,
                   .uPressure = 700,
                   .nAzimuth = 1350,
                   .nAltitude = 600,
                   .nTwist = 20});
    m_driver.Play({.uCursor = 1, .uButtons = 0x20000});
    m_driver.Play({.uCursor = 4, .uButtons = 0x10001});
    m_driver.Play({.uCursor = 2});
    m_driver.Play({.uCursor = 5});
    m_driver.Play({.uStatus = wintab::TPS_INVERT, .uCursor = 1});
    m_driver.Play({.uCursor = 1, .nAltitude = -600});
    const std::vector<TPenPacket> vPackets = Read();
    ASSERT_EQ(vPackets.size(), 7u);
    const TPenPacket& first = vPackets[0];
    EXPECT_TRUE(first.x == 1157 && first.y == 2300 && first.uPressure == 700);
    EXPECT_TRUE(first.nAzimuth == 1350 && first.nAltitude == 600 && first.nTwist == 20);
    EXPECT_TRUE(vPackets[1].uButtons == 0x20000 && vPackets[2].uButtons == 0x10001);
    for (size_t n = 0; n < vPackets.size(); ++n) EXPECT_EQ(vPackets[n].uCursor, n < 3 ? 1u : 2u) << n;

    ASSERT_TRUE(Open({}, true));
    m_driver.Play({.x = 1157, .y = 25300});
    const std::vector<TPenPacket> vPixels = Read();
    ASSERT_EQ(vPixels.size(), 1u);
    EXPECT_TRUE(vPixels[0].x == 50 && vPixels[0].y == 100);
}

TEST_F(Wintab, AQueueThatOverflowsLosesTheOldest) {
    ASSERT_TRUE(Open({}));
    for (uint32_t n = 0; n < 200; ++n) m_driver.Play({.uPressure = n});
    std::vector<TPenPacket> vPackets = Read(100);
    ASSERT_EQ(vPackets.size(), 100u);
    EXPECT_EQ(vPackets[0].uPressure, 72u);
    vPackets = Read();
    ASSERT_EQ(vPackets.size(), 28u);
    EXPECT_EQ(vPackets[27].uPressure, 199u);
    EXPECT_TRUE(Read().empty());
    ASSERT_TRUE(Open({.nMostPackets = 50}));
    EXPECT_EQ(m_driver.GetState().nQueue, 32);
    EXPECT_FALSE(Open({.nMostPackets = 7}));
    EXPECT_EQ(m_driver.GetState().nContexts, 0);
}

TEST_F(Wintab, AContextIsSwitchedOnceAndClosesItself) {
    ASSERT_TRUE(Open({}));
    m_context.Enable(true);
    EXPECT_EQ(m_driver.GetState().nOverlaps, 1);
    m_context.Enable(false);
    m_context.Raise();
    m_driver.Play({});
    EXPECT_TRUE(Read().empty());
    EXPECT_EQ(m_driver.GetState().nOverlaps, 1);
    EXPECT_FALSE(m_driver.GetState().bEnabled);
    m_context.Enable(true);
    m_context.Raise();
    EXPECT_EQ(m_driver.GetState().nOverlaps, 3);
    EXPECT_TRUE(m_driver.GetState().bEnabled);
    const auto uContext = reinterpret_cast<uintptr_t>(m_driver.GetState().hContext);
    EXPECT_TRUE(m_context.Is(uContext) && !m_context.Is(uContext + 1));
    ASSERT_TRUE(m_context.Open(AnyWindow(), true));
    EXPECT_EQ(m_driver.GetState().nContexts, 1);
    m_context.Close();
    EXPECT_EQ(m_driver.GetState().nContexts, 0);
    EXPECT_FALSE(m_context.Is(uContext) || m_context.Is(0));
    {
        CWintabContext other(CWintabLibrary::Load(m_driver.GetPath()));
        ASSERT_TRUE(other.Open(AnyWindow(), true));
        other.Drop(); // the driver has closed it
        EXPECT_FALSE(other.IsOpen());
        ASSERT_TRUE(other.Open(AnyWindow(), true));
        EXPECT_EQ(m_driver.GetState().nOverlaps, 6);
        m_driver.Reset({});
        ASSERT_TRUE(other.Open(AnyWindow(), true));
    }
    EXPECT_EQ(m_driver.GetState().nContexts, 0);
}

TEST_F(Wintab, WithoutAUsableTabletNothingOpens) {
    for (const TFakeTablet& tablet :
         {TFakeTablet{.bAnswers = false}, {.bOpens = false}, {.pressure = {0, 0}}}) {
        EXPECT_FALSE(Open(tablet));
        EXPECT_FALSE(m_context.IsOpen());
        m_context.Enable(true);
        EXPECT_TRUE(Read().empty());
    }
    // A tablet that is pulled out.
    ASSERT_TRUE(Open({}));
    m_driver.Play({});
    m_driver.Unplug();
    EXPECT_TRUE(Read().empty());
    m_context.Enable(false);
    EXPECT_EQ(m_context.GetDevice().strName, L"");
    EXPECT_FALSE(m_context.Open(AnyWindow(), false));
}

TEST_F(Wintab, TheDeviceAndItsAxesAreDescribed) {
    ASSERT_TRUE(Open({.pszName = L"A tablet with a name", .pressure = {100, 1123}, .nAltitudeMax = 640}));
    TPenDevice device = m_context.GetDevice();
    EXPECT_EQ(device.strName, L"A tablet with a name");
    EXPECT_EQ(device.strSystem, L"WinTab");
    EXPECT_TRUE(device.bPressure && device.bTilt && !device.bTwist);
    EXPECT_TRUE(m_context.GetPressureAxis().nMin == 100 && m_context.GetPressureAxis().nMax == 1123);
    EXPECT_EQ(m_context.GetAltitudeAxis().nMax, 640);
    ASSERT_TRUE(Open({.bTilts = false}));
    EXPECT_FALSE(m_context.GetDevice().bTilt);
    EXPECT_EQ(m_context.GetAltitudeAxis().nMax, 0);
}
