#include "core/ImageFile/ImageFile.h"
#include "session/seam/SessionRecent.h"
#include "tests/support/TestPlatform.h"

#include <gmock/gmock.h>

namespace {

TEST(RecentDesktop, OpenedAndSavedDocumentsAreEnteredInTheDesktopsList) {
    CTestPlatform platform;
    CSessionRecent recent;
    platform.m_pRecent = &recent;
    SaveDocument(*CreateCanvas({30, 20}), L"/a.vlm", platform.m_files);
    const auto send = [&](EMessage id, int64_t wParam, const wchar_t* pszText) {
        platform.AddStep([=](CPlayer&) { SendMessage({g_pMainFrame->GetWindow(), id, wParam, 0, pszText}); });
    };
    send(EMessage::DropFiles, 0, L"/a.vlm");
    send(EMessage::CopyData, 0, L"/a.vlm");
    send(WM_ADD_RECENT, 0, L"/saved.vlm");
    send(EMessage::Command, ID_FILE_MRU_FIRST + 1, L"");
    platform.AddStep([](CPlayer& player) {
        player.GetStage().dialogs.Push({.kind = TAnswer::EKind::File, .strPath = L"/a.vlm"});
    });
    send(EMessage::Command, ID_FILE_OPEN, L"");
    platform.Play([] {});
    EXPECT_THAT(recent.m_vAdded,
                testing::ElementsAre(L"/a.vlm", L"/a.vlm", L"/saved.vlm", L"/a.vlm", L"/a.vlm"));
}

} // namespace
