// Nothing that fails once between the windows and the application breaks a session or a document.
#include "tests/faults/Apart.h"
#include "tests/faults/windows/WindowSession.h"
#include "tests/faults/windows/WindowStart.h"
#include "ui/QtApplication.h"

#include <QByteArray>
#include <gmock/gmock.h>

TEST(WindowFaults, ASessionSurvivesEveryFailedAllocation) { ExpectSurvival(30, PlayInWindows); }

TEST(WindowFaults, ASessionThatCannotBeginLeavesRoomForTheNext) { ExpectSurvival(40, PlayStartInWindows); }

TEST(WindowFaults, ASessionWithoutMemoryForItsScopeHasNotBegun) {
    uint64_t u = 1;
    for (bool bLeft = false; !BeginInWindows(u, bLeft); ++u) ASSERT_FALSE(bLeft) << u;
    EXPECT_GT(u, 3u) << "nothing could fail";
}

int main(int nArguments, char** ppszArguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleMock(&nArguments, ppszArguments);
    return EnsureApplication() ? RUN_ALL_TESTS() : 1;
}
