// A session that has no memory for its scope.
#pragma once

#include "core/AppModule/AppModule.h"
#include "core/MainFrame/SessionScope.h"
#include "tests/faults/FailingMemory.h"

#include <gtest/gtest.h>

#include <new>

/// Makes one allocation of a scope fail after the other until the scope starts: no scope with a failure
/// must have started, and the application must never look as if a session were left.
inline void ExpectScopeNeedsMemory(const TPlatform& platform, TFailing failing = {}) {
    uint64_t u = 0;
    for (bool bBegun = false; !bBegun;) {
        try {
            const CFailingMemory memory(++u, failing);
            const CSessionScope scope(platform);
            bBegun = g_AppModule.GetMessageLoop() != nullptr;
        } catch (const std::bad_alloc&) {
        }
        ASSERT_FALSE(g_AppModule.HasPlatform()) << u;
    }
    EXPECT_GT(u, 2u) << "nothing could fail";
}
