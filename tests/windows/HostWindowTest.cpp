#include "tests/windows/WindowsHost.h"

namespace {

/// A host with a window, which notes whether it takes input.
class CWindowedHost : public CPictureHost {
public:
    CWindowedHost() : CPictureHost(WhitePicture()) {}
    ~CWindowedHost() override { DestroyWindow(m_hWindow); }
    bool IsEnabled() const { return IsWindowEnabled(m_hWindow); }
    const bool& WasEnabled() const { return m_bEnabledInSession; }

protected:
    hostabi::SPErr Write(TChannel& channel, hostabi::VRect& rc,
                         const hostabi::PixelMemoryDesc& memory) override {
        m_bEnabledInSession = IsEnabled();
        return CPictureHost::Write(channel, rc, memory);
    }

private:
    const HWND m_hWindow = CreateWindowW(L"STATIC", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200, 100,
                                         nullptr, nullptr, nullptr, nullptr);
    bool m_bEnabledInSession = true;
};

TEST_F(CWindowsHost, WindowsOfTheHostTakeNoInputDuringACall) {
    CFileStore files;
    const CScriptSettings settings(WriteScript(DRAW), true, files);
    const auto pMain = MainOf(Load());
    for (int n = 0; n < 2; ++n) {
        CWindowedHost host;
        ASSERT_TRUE(host.IsEnabled());
        EXPECT_EQ(host.Run(pMain), 0);
        EXPECT_EQ(settings.GetFailure(), "");
        EXPECT_FALSE(host.WasEnabled());
        EXPECT_TRUE(host.IsEnabled());
    }
}

} // namespace
