// One session: the host's picture becomes a canvas with one raster layer, the whole application runs on the
// calling thread until its main frame closes, and the flattened canvas goes back.
#pragma once

#include <cstdint>

class IHostImage;
struct TPlatform;

/// Runs a session and returns the host's result: 0 when the session has ended, also by an exception (which
/// the user has been told, and then nothing is written); errPlugInHostInsufficient when the host lacks what
/// the exchange needs; paramErr for a picture without pixels; userCanceledErr while another session runs.
/// There is no cancel: the user ends the session by closing the canvas or the main frame.
int16_t FilterStart(IHostImage& host, const TPlatform& platform);
