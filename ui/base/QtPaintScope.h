// Tells message boxes that a window is being painted.
#pragma once

/// Marks that painting is in progress: Qt cannot run a modal window then.
class CPaintScope {
public:
    CPaintScope() { ++s_nDepth; }
    ~CPaintScope() { --s_nDepth; }
    CPaintScope(const CPaintScope&) = delete;
    CPaintScope& operator=(const CPaintScope&) = delete;
    static bool IsOpen() { return s_nDepth > 0; }

private:
    static inline int s_nDepth = 0;
};
