#include "core/AppModule/ErrorBox.h"
#include "tests/faults/FailingMemory.h"
#include "tests/support/TestPlatform.h"

namespace {

const std::wstring g_strPath = L"/絵/page.vlm";

// A box that needs no memory to be shown and stores its text.
class CBoxes : public IMessageBoxes {
public:
    EBoxAnswer Show(IWindow* pOwner, const std::wstring& strText, const std::wstring& strTitle,
                    EBoxKind kind) override {
        const CUnfailingMemory unfailing;
        m_strText = strText;
        EXPECT_EQ(strTitle, L"Vellumcraft - Error");
        EXPECT_EQ(kind, EBoxKind::Error);
        EXPECT_EQ(pOwner, nullptr); // there is no main frame here
        return EBoxAnswer::Ok;
    }
    std::wstring m_strText;
};

class ErrorBox : public testing::Test {
protected:
    // Shows a report, with or without memory, in a session that has these boxes.
    std::wstring TextOf(bool bMemory, const std::function<void()>& fnReport) {
        CTestPlatform outside;
        outside.m_pBoxes = &m_boxes;
        outside.Run([&](const TPlatform& platform) {
            g_AppModule.SetPlatform(&platform);
            {
                const CFailingMemory memory(bMemory ? 0 : 1, {.bOn = true});
                fnReport();
            }
            g_AppModule.SetPlatform(nullptr);
        });
        return m_boxes.m_strText;
    }
    CBoxes m_boxes;
};

} // namespace

TEST_F(ErrorBox, SaysWhatItCanWhenMemoryIsGone) {
    const internal_error e(L"x");
    const auto report = [&] { ReportException(e); };
    EXPECT_EQ(TextOf(true, report), L"内部エラー\nexception: internal_error('x')");
    EXPECT_EQ(TextOf(false, report), L"メモリが足りないため、例外処理中に例外が投げられました。");
    const auto reportFile = [] {
        ReportFileFailure(g_strFileNotOpened, g_strPath, EFileFailure::ReadOnlyDisk);
    };
    EXPECT_EQ(TextOf(true, reportFile), L"ファイルを開けませんでした。\nFile: '/絵/page.vlm'\n\n"
                                        L"ディスクが読み取り専用です。別の場所に保存してください。");
    EXPECT_EQ(TextOf(false, reportFile), L"ファイルを開けませんでした。");
}
