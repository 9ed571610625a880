// How much memory the program takes through operator new.
#pragma once

#include <cstddef>

/// The most memory in use since this was made, in bytes, beyond what was in use then. One at a time.
class CPeakMemory {
public:
    CPeakMemory();
    size_t Get() const;

private:
    size_t m_nBefore;
};
