// A file's metadata: owner, group, rights, access lists, extended attributes.
#pragma once

#include <filesystem>

struct stat;

/// Copies the metadata of `path`, whose `status` is known, to the open file `fdNew` of the process's own
/// user, as far as the user may. If owner and group cannot be kept, keeps the group alone; if that fails
/// too, drops the group's rights. Returns false, with errno, when the disk has no room for the attributes.
bool KeepRights(const std::filesystem::path& path, const struct stat& status, int fdNew);
