// The files of a snapshot in the folder "Recovery" beside the settings, as all that write them agree on.
#pragma once

#include "core/Platform/Snapshots.h"

#include <cstdint>
#include <filesystem>
#include <string>

class ILocations;

namespace SnapshotFiles {

/// A snapshot is SESSION-KEY and these endings. Its session holds the lock of the name SESSION.
constexpr char DOCUMENT[] = ".vlm";
constexpr char NOTE[] = ".ini";
constexpr char SECTION[] = "Snapshot"; ///< of the note

/// Characters of a session's name, hexadecimal digits.
constexpr size_t SESSION_DIGITS = 16;

std::string SessionName(uint64_t uNumber);

/// The folder's path whether it is there or not; empty without a folder for application data.
std::filesystem::path FindRecoveryFolder(ILocations& locations);
/// The same, made where it is missing; it is the user's alone afterwards.
std::filesystem::path MakeRecoveryFolder(ILocations& locations);

/// A note's bytes, with the present time. `bFileCopy` as in TLeftSnapshot.
std::string NoteText(const TSnapshotNote& note, bool bFileCopy = false);

/// Removes a file; a missing one is none to be removed.
void Delete(const std::filesystem::path& path);

} // namespace SnapshotFiles
