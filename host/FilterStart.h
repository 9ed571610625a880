// One session: the host's picture becomes a canvas with one raster layer, the application runs on the
// calling thread until its main frame closes, and the flattened canvas is written back.
#pragma once

#include <cstdint>

class IHostImage;
struct TPlatform;

/// Runs a session and returns the host's result: 0 when the session has ended, also by an exception (which
/// is reported to the user, and nothing is written); errPlugInHostInsufficient when the host lacks what the
/// exchange needs; paramErr for an empty picture; userCanceledErr while another session runs. The session
/// cannot be cancelled: the user ends it by closing the canvas or the main frame.
int16_t FilterStart(IHostImage& host, const TPlatform& platform);
