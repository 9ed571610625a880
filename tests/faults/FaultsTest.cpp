// No single failure breaks a session or a document.
#include "session/scripts/SessionPlatform.h"
#include "tests/faults/Apart.h"
#include "tests/faults/FaultedSession.h"
#include "tests/faults/FaultedStart.h"
#include "tests/faults/ScopeCheck.h"
#include "tests/faults/UnfailingCodecs.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/NoPlaces.h"

#include <gtest/gtest.h>

TEST(Faults, ASessionSurvivesEveryFailedAllocation) { ExpectSurvival(80, PlayWithFailingMemory); }

TEST(Faults, ASessionThatCannotBeginLeavesRoomForTheNext) { ExpectSurvival(80, PlayWithFailingStart); }

TEST(Faults, ASessionWithoutMemoryForItsScopeHasNotBegun) {
    CMemoryFiles files;
    CNoPlaces places;
    CUnfailingCodecs codecs(files);
    CSessionPlatform session({files, places, places, codecs}, {});
    ExpectScopeNeedsMemory(session.GetPlatform());
}

TEST(Faults, ASessionSurvivesEveryFailureOfTheDisk) { ExpectSurvival(80, PlayOnFailingDisk); }
