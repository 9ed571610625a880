// A file's metadata: owner, group, rights, access lists, extended attributes.
#pragma once

#include "system/files/OpenFile.h"

/// Copies the metadata of the old file `path` to the new one of the process's own user, as far as the user
/// may. If owner and group cannot be kept, keeps the group alone; if that fails too, drops the group's
/// rights. Returns false, with LastFileError(), when the old file's status cannot be read or the disk has no
/// room for the attributes. Where the system keeps all that with a file's name it does nothing.
bool KeepRights(const std::filesystem::path& path, const COpenFile& fileNew);
