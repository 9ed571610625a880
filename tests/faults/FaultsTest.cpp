// Nothing that fails once breaks a session or a document.
#include "tests/faults/Apart.h"
#include "tests/faults/FaultedSession.h"
#include "tests/faults/FaultedStart.h"

#include <gtest/gtest.h>

TEST(Faults, ASessionSurvivesEveryFailedAllocation) { ExpectSurvival(80, PlayWithFailingMemory); }

TEST(Faults, ASessionThatCannotBeginLeavesRoomForTheNext) { ExpectSurvival(80, PlayWithFailingStart); }

TEST(Faults, ASessionWithoutMemoryForItsScopeHasNotBegun) {
    uint64_t u = 1;
    for (bool bLeft = false; !BeginWithFailingMemory(u, bLeft); ++u) ASSERT_FALSE(bLeft) << u;
    EXPECT_GT(u, 3u) << "nothing could fail";
}

TEST(Faults, ASessionSurvivesEveryFailureOfTheDisk) { ExpectSurvival(80, PlayOnFailingDisk); }
