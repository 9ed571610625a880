#include "tests/ui/UiTest.h"

#define WIN32_LEAN_AND_MEAN // the rest has an IMessageFilter too
#include <windows.h>

namespace {

class CCopyDataTest : public CUiTest {
protected:
    CCopyDataTest() {
        m_main.m_fnHandle = [this](const TMessage& msg) {
            if (msg.id == EMessage::CopyData) m_vTaken.emplace_back(msg.wParam, msg.strText);
            return false;
        };
    }
    /// Sends as another program does; true when the window answers that it took the data.
    bool Send(const wchar_t* pText, DWORD uBytes, ULONG_PTR uId = 0) {
        COPYDATASTRUCT data{uId, uBytes, const_cast<wchar_t*>(pText)};
        return SendMessageW(m_hWnd, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data)) == TRUE;
    }

    HWND m_hWnd = reinterpret_cast<HWND>(GetWidget().winId());
    std::vector<std::pair<int64_t, std::wstring>> m_vTaken;
};

} // namespace

TEST_F(CCopyDataTest, ATextThatAnotherProgramSendsIsPostedToTheMainFrame) {
    ASSERT_TRUE(IsWindow(m_hWnd));
    EXPECT_TRUE(Send(L"C:\\絵\\𠮷.vlm\0", 24));
    EXPECT_TRUE(Send(L"b\0c\0", 8));
    EXPECT_TRUE(m_vTaken.empty()) << "while the other program waits";
    Turn();
    using TTaken = decltype(m_vTaken);
    EXPECT_EQ(m_vTaken, (TTaken{{0, L"C:\\絵\\𠮷.vlm"}, {0, L"b"}}));
}

TEST_F(CCopyDataTest, OtherDataIsRefused) {
    EXPECT_FALSE(Send(L"ab\0", 7)) << "an odd number of bytes";
    EXPECT_FALSE(Send(L"ab", 4)) << "no final zero";
    EXPECT_FALSE(Send(L"ab", 6, 1)) << "another kind";
    EXPECT_FALSE(Send(L"ab", 0) || Send(nullptr, 6) || Send(L"", 2)) << "no text";
    EXPECT_EQ(SendMessageW(m_hWnd, WM_COPYDATA, 0, 0), FALSE);
    QWidget other;
    const HWND hMain = std::exchange(m_hWnd, reinterpret_cast<HWND>(other.winId()));
    EXPECT_FALSE(Send(L"ab", 6)) << "another window";
    m_hWnd = hMain;
    Turn();
    EXPECT_TRUE(m_vTaken.empty());
    m_pMain->Destroy();
    EXPECT_FALSE(Send(L"ab", 6)) << "a window that is being destroyed";
}
