// Questions about files and folders that the systems answer in different ways.
#pragma once

#include "core/Base/FileFailure.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <utility>

enum class EFileKind {
    Missing,
    Plain,
    Other, ///< a folder, a device, a pipe
};

/// The kind of what a path names, through links; nullopt with LastFileError() when the system does not tell.
std::optional<EFileKind> KindOf(const std::filesystem::path& path);

/// The reason why this user may not overwrite an existing plain file; nullopt when the user may.
std::optional<EFileFailure> WhyProtected(const std::filesystem::path& path);

/// True for an existing folder in which this user may create files.
bool IsOpenFolder(const std::filesystem::path& pathFolder);

/// Follows links to the file that a path means; the file need not exist.
std::filesystem::path ResolveLinks(std::filesystem::path path);

/// Identifies an existing file, whatever name it is reached by; nullopt when there is none.
using TFileId = std::pair<uint64_t, uint64_t>;
std::optional<TFileId> FileIdOf(const std::filesystem::path& path);
