// A file's metadata: owner, group, rights, access lists, extended attributes.
#pragma once

#include <filesystem>

struct stat;

/// Gives the open file `fdNew`, of the process's own user, all that `path` has, of which `status` is known,
/// as far as the user may. The group is kept alone where owner and group cannot; where not even that, its
/// rights are dropped rather than given to another group. False, with errno, when the disk has no room for
/// the attributes.
bool KeepRights(const std::filesystem::path& path, const struct stat& status, int fdNew);
