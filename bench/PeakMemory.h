// Memory that the program allocates through operator new.
#pragma once

#include <cstddef>

/// The peak of memory use since construction, in bytes, beyond that at construction. One at a time.
class CPeakMemory {
public:
    CPeakMemory();
    size_t Get() const;

private:
    size_t m_nBefore;
};
