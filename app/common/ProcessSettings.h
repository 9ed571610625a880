// Settings of the whole process that the application changes.
#pragma once

#include <boost/noncopyable.hpp>

/// Sets the user's own locale where file names and texts depend on it; the number format stays as the process
/// has it. On Windows the locale stays the host's, and the clock has a resolution of 1 ms while this lives.
class CProcessSettings : boost::noncopyable {
public:
    CProcessSettings();
    ~CProcessSettings();
};
