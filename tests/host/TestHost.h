// The host of the tests: counts every call, checks every rectangle and descriptor, overwrites every
// rectangle that it was given, and breaks its own records on request.
#pragma once

#include "host/PictureHost/PictureHost.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>

/// A picture whose channels all differ and whose alpha, if any, is never 0.
inline THostPicture MakePicture(const CRect& rc, bool bTransparency, size_t nAlphas = 0) {
    const auto makePlane = [&](size_t n) {
        THostPicture::TPlane vPlane;
        for (size_t i = 0, uWidth = rc.Width(); i < uWidth * rc.Height(); ++i)
            vPlane.push_back(static_cast<uint8_t>(1 + (i % uWidth * (n + 3) + i / uWidth * (11 - n)) % 255));
        return vPlane;
    };
    THostPicture picture{rc, makePlane(0), makePlane(1), makePlane(2), {}, {}};
    if (bTransparency) picture.vTransparency = makePlane(3);
    for (size_t i = 0; i < nAlphas; ++i) picture.vAlphas.push_back(makePlane(4 + i));
    return picture;
}

inline bool operator==(const THostPicture& a, const THostPicture& b) {
    return a.rc == b.rc && a.vRed == b.vRed && a.vGreen == b.vGreen && a.vBlue == b.vBlue &&
           a.vTransparency == b.vTransparency && a.vAlphas == b.vAlphas;
}

class CTestHost : public CPictureHost {
public:
    using CPictureHost::CPictureHost;
    using CPictureHost::m_deqChannels;
    using CPictureHost::m_record;

    std::vector<int> m_vCalls;                ///< selectors
    std::vector<int> m_vReads;                ///< channel types in order
    std::vector<int> m_vWrites;               ///< the same
    std::optional<hostabi::SPErr> m_nNoSuite; ///< result to return instead of the suite
    bool m_bNullRecord = false;
    std::function<bool(const hostabi::VRect&)> m_refuseWrite = [](const hostabi::VRect&) { return false; };

protected:
    void Call(hostabi::PluginMainProc pMain, int16_t nSelector, void* pRecord, int16_t& nResult) override {
        m_vCalls.push_back(nSelector);
        CPictureHost::Call(pMain, nSelector, m_bNullRecord ? nullptr : pRecord, nResult);
    }
    hostabi::SPErr AcquireSuite(const char* pszName, int32_t nVersion, const void** ppSuite) override {
        return m_nNoSuite ? *m_nNoSuite : CPictureHost::AcquireSuite(pszName, nVersion, ppSuite);
    }
    hostabi::SPErr Read(TChannel& channel, int32_t nLevel, hostabi::VRect& rc,
                        const hostabi::PixelMemoryDesc& memory) override {
        Check(m_vReads, channel, rc, memory);
        const hostabi::SPErr nError = CPictureHost::Read(channel, nLevel, rc, memory);
        rc = {-1, -2, 30000, 30001};
        return nError;
    }
    hostabi::SPErr Write(TChannel& channel, hostabi::VRect& rc,
                         const hostabi::PixelMemoryDesc& memory) override {
        Check(m_vWrites, channel, rc, memory);
        const hostabi::SPErr nError =
            m_refuseWrite(rc) ? hostabi::errUnknownPort : CPictureHost::Write(channel, rc, memory);
        rc = {-1, -2, 30000, 30001};
        return nError;
    }

private:
    void Check(std::vector<int>& vTypes, const TChannel& channel, const hostabi::VRect& rc,
               const hostabi::PixelMemoryDesc& memory) const {
        vTypes.push_back(channel.desc.channelType);
        const CRect rcTile(rc.left, rc.top, rc.right, rc.bottom);
        EXPECT_EQ(rcTile, CRect(rcTile.TopLeft(), CSize{96, 96}).Intersect(m_picture.rc));
        EXPECT_TRUE((rc.left - m_picture.rc.left) % 96 == 0 && (rc.top - m_picture.rc.top) % 96 == 0);
        EXPECT_TRUE(memory.rowBits == 96 * 8 && memory.colBits == 8 && memory.bitOffset == 0 &&
                    memory.depth == 8);
    }
};
