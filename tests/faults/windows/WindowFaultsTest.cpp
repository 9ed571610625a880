// Nothing that fails once between the windows and the application breaks a session or a document.
#include "tests/faults/Apart.h"
#include "tests/faults/windows/WindowSession.h"
#include "ui/QtApplication.h"

#include <QByteArray>
#include <gmock/gmock.h>

TEST(WindowFaults, ASessionSurvivesEveryFailedAllocation) {
    const TPlayed whole = PlayApart([] { return PlayInWindows(0); });
    EXPECT_FALSE(whole.bTold);
    ExpectSurvival(whole.uAllocations, 30, whole, PlayInWindows);
}

int main(int nArguments, char** ppszArguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleMock(&nArguments, ppszArguments);
    return EnsureApplication() ? RUN_ALL_TESTS() : 1;
}
