// The host's own windows during a call.
#pragma once

#include <boost/noncopyable.hpp>

#include <vector>

/// While it lives, the windows that the process showed before take no input, as below a modal dialog: a host
/// on Windows waits in the call, and its windows would change a document that is being edited here. The
/// destructor gives the input back to those that still exist, and the keyboard to the one that had it.
/// Elsewhere the host does this by itself.
class CHostWindowsOff : boost::noncopyable {
public:
    CHostWindowsOff();
    ~CHostWindowsOff();

private:
    std::vector<void*> m_vWindows; ///< those that were enabled
    void* m_pActive = nullptr;
};
