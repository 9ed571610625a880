// The filter as a procedure of GIMP: its entry in menus and the procedure database, and the values of a call.
#pragma once

#include <cstdint>
#include <string>

/// A call of the procedure by GIMP.
struct TGimpCall {
    int32_t nDrawable = 0;
    bool bWindows = false;    ///< the session runs in real windows
    bool bShowsImage = false; ///< GIMP shows the image to a user
    std::string strScript;    ///< path of the session script that takes the user's place; empty for none
};

/// Registers the procedure and its entry in GIMP's menu. GIMP starts the plug-in for that once.
void InstallProcedure();

struct _GimpParam;
/// Reads a call's values: run mode, image, drawable and, in calls by scripts, the path of a session script. A
/// call "with the last values" plays the script of the last call in this run of GIMP, and opens windows when
/// that had none. Raises refused_error for other values.
TGimpCall ReadCall(int32_t nParams, const _GimpParam* pParams);

/// Lets the session live on when GIMP ends: libgimp watches the connection in GLib's main loop, which Qt's
/// windows run too, and would end the process.
void OutliveGimp();

/// False when GIMP has closed its end of the connection, by its descriptor for reading. libgimp ends the
/// process at the next call then.
bool IsConnected(int nDescriptor);
