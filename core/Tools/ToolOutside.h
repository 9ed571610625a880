// The application's services for tools.
#pragma once

#include <boost/function.hpp>

class CStrokeRandom;
class CIniConfig;
class CPenContact;
class IClock;
class IImageCodecs;
class IKeyState;
class IPictureExchange;
struct TGlobalSwitches;

/// Notifications from a tool to the panels.
enum class EToolNotice {
    ToolChanged,  ///< the tool or a value that a panel shows has changed
    ColorChanged, ///< the tool's colours have changed
    StrokeBegun,  ///< a stroke begins, in the tool's colour
};

/// One record for all tools of a session; the objects that it refers to must outlive the tools.
struct TToolOutside {
    IClock& clock;
    IKeyState& keys;
    CStrokeRandom& random;
    CIniConfig& config; ///< where tools keep their settings
    const TGlobalSwitches& switches;
    IImageCodecs& codecs;
    CPenContact& contact;
    IPictureExchange& exchange;
    boost::function<void(int nId)> fnCommand; ///< sends the main frame a menu command
    boost::function<void(EToolNotice)> fnNotify;
};
