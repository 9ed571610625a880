// The application's services for document windows.
#pragma once

#include <boost/weak_ptr.hpp>

class CHeldKeys;
class CIniConfig;
class CRecentPictures;
class CRecovery;
class CTools;
struct TGlobalSwitches;
struct TPlatform;

/// One record for all frames of a session; the objects must outlive their windows.
struct TFrameOutside {
    const TPlatform& platform;
    CIniConfig& settings;
    CHeldKeys& keys;
    CRecovery& recovery;
    CRecentPictures& pictures;
    const TGlobalSwitches& switches;
    const boost::weak_ptr<CTools>& wpTool; ///< the active tool
};
