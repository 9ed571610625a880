// Names and format of the snapshot files in the folder "Recovery" beside the settings.
#pragma once

#include "core/Platform/Snapshots.h"

#include <cstdint>
#include <filesystem>
#include <string>

class ILocations;

namespace SnapshotFiles {

/// A snapshot's files are SESSION-KEY plus one of these endings. Its session holds the lock SESSION.
constexpr char DOCUMENT[] = ".vlm";
constexpr char NOTE[] = ".ini";
constexpr char SECTION[] = "Snapshot"; ///< section of the note

/// Length of a session's name, in hexadecimal digits.
constexpr size_t SESSION_DIGITS = 16;

std::string SessionName(uint64_t uNumber);

/// The folder's path, even if the folder does not exist; empty without a folder for application data.
std::filesystem::path FindRecoveryFolder(ILocations& locations);
/// The same, but creates a missing folder and gives access to the user alone.
std::filesystem::path MakeRecoveryFolder(ILocations& locations);

/// The content of a note, with the present time. `bFileCopy` as in TLeftSnapshot.
std::string NoteText(const TSnapshotNote& note, bool bFileCopy = false);

/// Removes a file if it exists.
void Delete(const std::filesystem::path& path);

} // namespace SnapshotFiles
