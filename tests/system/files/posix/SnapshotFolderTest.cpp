#include "system/environment/Locations.h"
#include "system/files/SnapshotStore.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

TEST(SnapshotFolder, IsForTheUserAloneAndMissedWhenItIsGone) {
    const CTestSettings folder;
    CLocations locations;
    CSnapshotStore store(locations);
    const auto fill = [](const TWriteBytes& fnWrite) { return fnWrite("drawn"); };
    store.Write(1, fill, {});
    EXPECT_TRUE(store.Finish(1));
    EXPECT_EQ(std::filesystem::status(folder.File("Vellumcraft/Recovery")).permissions(),
              std::filesystem::perms{0700});
    std::filesystem::remove_all(folder.File("Vellumcraft/Recovery"));
    store.Write(1, fill, {});
    EXPECT_FALSE(store.Finish(1));
    EXPECT_TRUE(store.TakeFailure() && !store.TakeFailure() && !CSnapshotStore(locations).TakeFailure());
}
