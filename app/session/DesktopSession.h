// Plays a script in the desktop program, without a display.
#pragma once

#include "session/scripts/Script.h"

#include <filesystem>

class IFileStore;
class IImageCodecs;

/// True when PlayDesktop can write a file of this name, judged by its ending.
bool CanWriteDesktop(const std::string& strName, IImageCodecs& codecs);

/// Opens `pathIn` unless that is empty, plays the script and writes the last active document to `pathOut`, in
/// any format that ExportImage has or as a project file, unless that is empty. Raises std::runtime_error:
/// "FILE:LINE: reason" for the script, or why there is no picture.
void PlayDesktop(const TScript& script, const std::filesystem::path& pathIn,
                 const std::filesystem::path& pathOut, IFileStore& files, IImageCodecs& codecs);
