// Tells windows that long work is being done.
#pragma once

/// While one is open, Qt handles events in the middle of the application's work: nothing may reach the
/// application, whose documents may be half changed.
class CWorkScope {
public:
    CWorkScope() { ++s_nDepth; }
    ~CWorkScope() { --s_nDepth; }
    CWorkScope(const CWorkScope&) = delete;
    CWorkScope& operator=(const CWorkScope&) = delete;
    static bool IsOpen() { return s_nDepth > 0; }

private:
    static inline int s_nDepth = 0;
};
