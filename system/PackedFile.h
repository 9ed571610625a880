// Bytes that are packed on their way to the disk: what snapshots are kept as.
#pragma once

#include "core/Platform/Snapshots.h"

/// Writes packed what `fnFill` hands on; false when `fnWrite` or `fnFill` answered false. Takes about 2 MB,
/// however much there is.
///
/// A packed file is the four letters "VLMZ", then blocks of 1 MiB of the bytes, the last one shorter. A block
/// is its length, its packed length, both 32 bits, big-endian, and a zlib stream; a length of 0 ends the
/// file. Each block stands for itself, so that any place can be read without what lies before it.
bool WritePacked(const TFillBytes& fnFill, const TWriteBytes& fnWrite);

/// The bytes that were packed into a file; those of the file itself when it is none of WritePacked's. Null
/// when the file cannot be read. This and reading raise deserialize_error when it is damaged or cut short.
std::unique_ptr<IFileReader> OpenPacked(std::unique_ptr<IFileReader> upFile);
