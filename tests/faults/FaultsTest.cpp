// Nothing that fails once breaks a session or a document.
#include "tests/faults/Apart.h"
#include "tests/faults/FaultedSession.h"

#include <gtest/gtest.h>

TEST(Faults, ASessionSurvivesEveryFailedAllocation) {
    const TPlayed whole = PlayFaulted({});
    ExpectSurvival(whole.uAllocations, 80, whole,
                   [](uint64_t uFault) { return PlayFaulted({.uAllocation = uFault}); });
}

TEST(Faults, ASessionSurvivesEveryFailedFileOperation) {
    const TPlayed whole = PlayFaulted({});
    ExpectSurvival(whole.uFileOperations, 100, whole,
                   [](uint64_t uFault) { return PlayFaulted({.uFileOperation = uFault}); });
}
