// Nothing that fails once breaks a session or a document.
#include "tests/faults/Apart.h"
#include "tests/faults/FaultedSession.h"
#include "tests/faults/FaultedStart.h"

#include <gtest/gtest.h>

TEST(Faults, ASessionSurvivesEveryFailedAllocation) { ExpectSurvival(80, PlayWithFailingMemory); }

TEST(Faults, ASessionThatCannotBeginLeavesRoomForTheNext) { ExpectSurvival(400, PlayWithFailingStart); }

TEST(Faults, ASessionSurvivesEveryFailureOfTheDisk) { ExpectSurvival(80, PlayOnFailingDisk); }
