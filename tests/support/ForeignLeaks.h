// Memory that a library keeps when a test makes it fail.
#pragma once

#include <boost/noncopyable.hpp>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

/// While it lives the leak sanitizer, where the build has it, does not watch what this thread allocates: for
/// a call into a library that is known to leak.
class CForeignLeaks : boost::noncopyable {
public:
#ifdef __SANITIZE_ADDRESS__
    CForeignLeaks() { __lsan_disable(); }
    ~CForeignLeaks() { __lsan_enable(); }
#else
    CForeignLeaks() {} // NOLINT(modernize-use-equals-default): a variable of it counts as used
#endif
};
