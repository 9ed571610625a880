// Counts what could fail, and lets one of it fail.
#pragma once

#include <cstdint>

struct TFailing {
    bool bOwn = false; ///< only the program's own code fails, not Qt's, which does not survive all of it
    bool bOn = false;  ///< all that follow fail too
};

/// What of one kind could fail in a thread. One at a time.
template <class Kind>
class CFailing {
public:
    /// Number `uFail` from now on fails, counted from 1; 0 lets none fail.
    explicit CFailing(uint64_t uFail, TFailing failing = {}) {
        t_uCount = 0;
        t_uFail = uFail;
        t_failing = failing;
        t_bCounts = true;
    }
    ~CFailing() { t_bCounts = false; }
    CFailing(const CFailing&) = delete;
    CFailing& operator=(const CFailing&) = delete;

    /// For as long as it lives nothing counts or fails: what the test itself does, and what belongs to the
    /// outside of the application.
    class CPause {
    public:
        CPause() { ++t_nPaused; }
        ~CPause() { --t_nPaused; }
        CPause(const CPause&) = delete;
        CPause& operator=(const CPause&) = delete;
    };

    static uint64_t GetCount() { return t_uCount; }
    static bool IsCounting() { return t_bCounts && t_nPaused == 0; }
    static TFailing GetFailing() { return t_failing; }
    /// Counts one more; true when it is to fail.
    static bool CountOne() {
        if (!IsCounting()) return false;
        ++t_uCount;
        return t_uCount == t_uFail || (t_failing.bOn && t_uFail != 0 && t_uCount > t_uFail);
    }

private:
    static inline thread_local bool t_bCounts = false;
    static inline thread_local int t_nPaused = 0;
    static inline thread_local uint64_t t_uCount = 0;
    static inline thread_local uint64_t t_uFail = 0;
    static inline thread_local TFailing t_failing{};
};
