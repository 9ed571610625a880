// The desktop's clipboard.
#pragma once

#include "core/Platform/System.h"

#include <memory>

class IImageCodecs;

/// Shares texts and pictures with other programs; `codecs` outlive it. What was copied stays on the clipboard
/// afterwards. One thread, which handles the window system's events.
std::unique_ptr<IClipboard> MakeClipboard(IImageCodecs& codecs);
