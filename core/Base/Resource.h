// The files under resources/, embedded in the program.
#pragma once

#include <string_view>

/// Bytes of a resource by its path under resources/ ("menus.tsv"); empty when there is none. The bytes live
/// as long as the program.
std::string_view FindResource(std::string_view strName);
