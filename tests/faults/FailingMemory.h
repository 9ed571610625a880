// Memory that can run out: the program's own allocation functions.
#pragma once

#include <cstdint>

struct TFailing {
    bool bOwn = false; ///< only the program's own code fails, not Qt's, which does not survive all of it
    bool bOn = false;  ///< all that follow fail too
};

/// Counts the allocations of one thread and lets one of them fail. One at a time.
class CFailingMemory {
public:
    /// Allocation number `uFail` from now on fails, counted from 1; 0 lets none fail.
    explicit CFailingMemory(uint64_t uFail, TFailing failing = {});
    ~CFailingMemory();
    CFailingMemory(const CFailingMemory&) = delete;
    CFailingMemory& operator=(const CFailingMemory&) = delete;

    static uint64_t GetCount();
};

/// For as long as it lives allocations neither count nor fail: those of the test itself, and of what belongs
/// to the outside of the application.
class CUnfailingMemory {
public:
    CUnfailingMemory();
    ~CUnfailingMemory();
    CUnfailingMemory(const CUnfailingMemory&) = delete;
    CUnfailingMemory& operator=(const CUnfailingMemory&) = delete;
};
