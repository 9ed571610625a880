// Scopes in which Qt may handle events although the application cannot.
#pragma once

#include <boost/noncopyable.hpp>

/// Open while an object of it lives.
template <class Tag>
class CQtScope : boost::noncopyable {
public:
    CQtScope() { ++s_nDepth; }
    ~CQtScope() { --s_nDepth; }
    static bool IsOpen() { return s_nDepth > 0; }

private:
    static inline int s_nDepth = 0;
};

/// Painting is in progress: Qt cannot run a modal window.
using CPaintScope = CQtScope<struct TPainting>;
/// Long work is in progress: nothing may reach the application, whose documents may be half changed.
using CWorkScope = CQtScope<struct TWorking>;
