// Pen tablets that the system reports by an interface of its own, beside Qt's events.
#pragma once

#include "system/pen/PenUnits.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

class QWidget;

/// The reports, in the units that were asked for. The functions may be called whenever Qt handles
/// events, and throw nothing.
struct TNativePenEvents {
    TPenUnits units;
    std::function<void(std::span<const TPenPacket>)> packets; ///< for the picture
    std::function<void(bool bEnter)> proximity;
};

/// One for each session. Without a tablet nothing is reported, and nothing is refused.
class INativePen {
public:
    virtual ~INativePen() = default;
    /// The window that pens draw in, null for none.
    virtual void SetWindow(QWidget* pWindow) = 0;
    /// Whether positions are those of the system's cursor or the tablet's own. The first call for a window
    /// decides.
    virtual void SetMouseCoord(bool bMouseCoord) = 0;
    /// Switches packets on or off, so that the pen can move the pointer elsewhere.
    virtual void Enable(bool bEnable) = 0;
    /// The tablet; nullopt while none reports.
    virtual std::optional<TPenDevice> GetDevice() = 0;
    /// Called for every event of a pen that Qt reports for the picture; true when it must be ignored, because
    /// the same pen is reported here.
    virtual bool TakesOver() = 0;
    /// The same for events without a position.
    virtual bool IsInCharge() const = 0;
};

/// Null on a system that reports pens to Qt only.
std::unique_ptr<INativePen> MakeNativePen(TNativePenEvents events);
using TNativePenMaker = std::function<std::unique_ptr<INativePen>(TNativePenEvents)>;

/// The name of the system that reports pens to Qt.
std::wstring GetPenSystem();
