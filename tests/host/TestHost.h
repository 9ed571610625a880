// The host of the tests: counts every call, checks every rectangle and descriptor, and spoils what it is told
// to spoil.
#pragma once

#include "host/PictureHost/PictureHost.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

/// A picture whose channels all differ and whose alpha, if any, is never 0.
inline THostPicture MakePicture(const CRect& rc, bool bTransparency, size_t nAlphas = 0) {
    THostPicture picture{rc, {}, {}, {}, {}, std::vector<THostPicture::TPlane>(nAlphas)};
    for (int y = 0; y < rc.Height(); ++y)
        for (int x = 0; x < rc.Width(); ++x) {
            picture.vRed.push_back(static_cast<uint8_t>(x * 7 + y));
            picture.vGreen.push_back(static_cast<uint8_t>(x + y * 5 + 90));
            picture.vBlue.push_back(static_cast<uint8_t>(x * 3 ^ y));
            if (bTransparency)
                picture.vTransparency.push_back(static_cast<uint8_t>(1 + (x * 11 + y * 13) % 255));
            for (size_t i = 0; i < nAlphas; ++i)
                picture.vAlphas[i].push_back(static_cast<uint8_t>(200 + i - static_cast<size_t>(x + y)));
        }
    return picture;
}

inline bool operator==(const THostPicture& a, const THostPicture& b) {
    return a.rc == b.rc && a.vRed == b.vRed && a.vGreen == b.vGreen && a.vBlue == b.vBlue &&
           a.vTransparency == b.vTransparency && a.vAlphas == b.vAlphas;
}

class CTestHost : public CPictureHost {
public:
    using CPictureHost::CPictureHost;
    using CPictureHost::m_basicSuite;
    using CPictureHost::m_deqChannels;
    using CPictureHost::m_document;
    using CPictureHost::m_record;

    /// Every pixel of the picture is asked for once by each channel.
    int CountTiles() const {
        return ((m_picture.rc.Width() + 95) / 96) * ((m_picture.rc.Height() + 95) / 96);
    }

    std::vector<int> m_vCalls; ///< selectors
    std::vector<int> m_vReads; ///< channel types in order
    std::vector<int> m_vWrites;
    int m_nAcquired = 0;
    hostabi::SPErr m_nSuiteError = 0;
    bool m_bNullSuite = false;
    bool m_bNullRecord = false;
    bool m_bSpoilRects = false; ///< leave nonsense in the caller's rectangle
    std::function<bool(const hostabi::VRect&)> m_refuseWrite;

protected:
    void Call(hostabi::PluginMainProc pMain, int16_t nSelector, void* pRecord, int16_t& nResult) override {
        m_vCalls.push_back(nSelector);
        CPictureHost::Call(pMain, nSelector, m_bNullRecord ? nullptr : pRecord, nResult);
    }
    hostabi::SPErr AcquireSuite(const char* pszName, int32_t nVersion, const void** ppSuite) override {
        ++m_nAcquired;
        if (m_nSuiteError) return m_nSuiteError;
        return m_bNullSuite ? 0 : CPictureHost::AcquireSuite(pszName, nVersion, ppSuite);
    }
    hostabi::SPErr Read(TChannel& channel, int32_t nLevel, hostabi::VRect& rc,
                        const hostabi::PixelMemoryDesc& memory) override {
        m_vReads.push_back(channel.desc.channelType);
        EXPECT_EQ(nLevel, 0);
        Check(rc, memory);
        const hostabi::SPErr nError = CPictureHost::Read(channel, nLevel, rc, memory);
        if (m_bSpoilRects) rc = {-1, -2, 30000, 30001};
        return nError;
    }
    hostabi::SPErr Write(TChannel& channel, hostabi::VRect& rc,
                         const hostabi::PixelMemoryDesc& memory) override {
        m_vWrites.push_back(channel.desc.channelType);
        Check(rc, memory);
        if (m_refuseWrite && m_refuseWrite(rc)) return hostabi::errUnknownPort;
        const hostabi::SPErr nError = CPictureHost::Write(channel, rc, memory);
        if (m_bSpoilRects) rc = {-1, -2, 30000, 30001};
        return nError;
    }

private:
    void Check(const hostabi::VRect& rc, const hostabi::PixelMemoryDesc& memory) const {
        const CRect& rcAll = m_picture.rc;
        const int x = rc.left - rcAll.left;
        const int y = rc.top - rcAll.top;
        EXPECT_TRUE(x >= 0 && x % 96 == 0 && y >= 0 && y % 96 == 0) << x << ' ' << y;
        EXPECT_EQ(rc.right - rc.left, std::min(96, rcAll.Width() - x));
        EXPECT_EQ(rc.bottom - rc.top, std::min(96, rcAll.Height() - y));
        EXPECT_EQ(memory.rowBits, 96 * 8);
        EXPECT_EQ(memory.colBits, 8);
        EXPECT_EQ(memory.bitOffset, 0);
        EXPECT_EQ(memory.depth, 8);
        EXPECT_NE(memory.data, nullptr);
    }
};
