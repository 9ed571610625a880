// Small opaque pictures as PNG files, without Qt.
#pragma once

#include "core/Platform/Tree.h"

#include <string>

/// The bytes of a PNG file of 24 bits a pixel, packed quickly. Raises bad_alloc.
std::string EncodePng(const TPicture& picture);
