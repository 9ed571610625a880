// No single failure between the windows and the application breaks a session or a document.
#include "tests/faults/Apart.h"
#include "tests/faults/ScopeCheck.h"
#include "tests/faults/windows/WindowSession.h"
#include "tests/faults/windows/WindowStart.h"
#include "tests/ui/UiTest.h"
#include "ui/base/QtApplication.h"

TEST(WindowFaults, ASessionSurvivesEveryFailedAllocation) { ExpectSurvival(30, PlayInWindows); }

TEST(WindowFaults, ASessionThatCannotBeginLeavesRoomForTheNext) { ExpectSurvival(40, PlayStartInWindows); }

TEST(WindowFaults, ASessionWithoutMemoryForItsScopeHasNotBegun) {
    CUiSession session;
    ExpectScopeNeedsMemory(session.m_platform.GetPlatform(), {.bOwn = true});
}

int main(int nArguments, char** ppszArguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleMock(&nArguments, ppszArguments);
    return EnsureApplication() ? RUN_ALL_TESTS() : 1;
}
