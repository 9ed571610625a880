// The manual's window.
#pragma once

#include "core/Base/Geometry.h"

#include <cstdint>
#include <functional>
#include <string>

class IWindow;

/// State that the window keeps from one time to the next.
struct TManualLook {
    CSize sz;            ///< device-independent pixels; empty for a first size
    int32_t nZoom = 100; ///< size of the text in percent
};

/// Setup of the window. Its functions are called until the window closes, on the session's thread.
struct TManualSetup {
    TManualLook look;
    /// Completes a page's HTML, in UTF-8.
    std::function<std::string(std::string strHtml)> fnComplete;
    /// Called when the window closes.
    std::function<void(const TManualLook& look)> fnKeep;
};

class IManual {
public:
    virtual ~IManual() = default;
    /// Opens the window beside its owner, which may be used meanwhile; brings a window that is open to the
    /// front. False when the manual is not installed.
    virtual bool Show(IWindow& owner, const TManualSetup& setup) = 0;
    /// Closes the window, if it is open.
    virtual void Close() = 0;
};
