// What tools ask of the application around them.
#pragma once

#include <boost/function.hpp>

class CStrokeRandom;
class CIniConfig;
class CPenContact;
class IClock;
class IImageCodecs;
class IKeyState;

/// What a tool tells the panels.
enum class EToolNotice {
    ToolChanged,  ///< the tool or a value that a panel shows has changed
    ColorChanged, ///< the tool's colours have changed
    StrokeBegun,  ///< a stroke is drawn from now on, in the tool's colour
};

/// One record for all tools of a session; what it refers to outlives them.
struct TToolOutside {
    IClock& clock;
    IKeyState& keys;
    CStrokeRandom& random;
    CIniConfig& config; ///< where tools keep their settings
    IImageCodecs& codecs;
    CPenContact& contact;
    boost::function<void(int nId)> fnCommand; ///< gives the main frame a menu command
    boost::function<void(EToolNotice)> fnNotify;
};
