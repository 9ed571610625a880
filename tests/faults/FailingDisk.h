// A disk that can fail: the program's own calls to the operating system.
#pragma once

#include <cstdint>

/// Counts one thread's calls that open, read, write, flush, name and own files, and lets one of them fail as
/// a full or broken disk does. One at a time.
class CFailingDisk {
public:
    /// Call number `uFail` from now on fails, counted from 1; 0 lets none fail.
    explicit CFailingDisk(uint64_t uFail);
    ~CFailingDisk();
    CFailingDisk(const CFailingDisk&) = delete;
    CFailingDisk& operator=(const CFailingDisk&) = delete;

    static uint64_t GetCount();
};

/// For as long as it lives calls neither count nor fail: those of the test itself.
class CUnfailingDisk {
public:
    CUnfailingDisk();
    ~CUnfailingDisk();
    CUnfailingDisk(const CUnfailingDisk&) = delete;
    CUnfailingDisk& operator=(const CUnfailingDisk&) = delete;
};
