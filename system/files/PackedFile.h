// Compressed files, in which snapshots are kept.
#pragma once

#include "core/Platform/Snapshots.h"

/// Compresses the bytes that `fnFill` passes on. Returns false when `fnWrite` or `fnFill` returned false.
/// Takes about 2 MB of memory, however many bytes there are.
///
/// A packed file is the four letters "VLMZ", then blocks of 1 MiB of the bytes, the last one shorter. A
/// block is its length, its packed length, both 32 bits, big-endian, and a zlib stream; a length of 0 ends
/// the file. Each block is compressed separately, so that reading can start at any position.
bool WritePacked(const TFillBytes& fnFill, const TWriteBytes& fnWrite);

/// Returns a reader of the bytes that were packed into a file, or of the file itself when WritePacked did
/// not write it. Null when the file cannot be read. This and reading raise deserialize_error when the file
/// is damaged or truncated.
std::unique_ptr<IFileReader> OpenPacked(std::unique_ptr<IFileReader> upFile);
