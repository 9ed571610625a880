// Counts operations that could fail, and makes one of them fail.
#pragma once

#include <cstdint>

struct TFailing {
    bool bOwn = false; ///< only the program's own code fails, not Qt's, which does not survive all
    bool bOn = false;  ///< all later operations fail too
};

/// The operations of one kind that could fail in a thread. One object at a time.
template <class Kind>
class CFailing {
public:
    /// Makes operation number `uFail` from now on fail, counted from 1; 0 for none.
    explicit CFailing(uint64_t uFail, TFailing failing = {}) {
        t_uCount = 0;
        t_uFail = uFail;
        t_failing = failing;
        t_bCounts = true;
    }
    ~CFailing() { t_bCounts = false; }
    CFailing(const CFailing&) = delete;
    CFailing& operator=(const CFailing&) = delete;

    /// While it lives nothing is counted or fails: for the test's own code and for the platform of the
    /// application.
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
    /// Counts one operation; true when it must fail.
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
