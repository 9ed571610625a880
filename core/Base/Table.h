// Text tables: one row a line, fields separated by tabs, "#" begins a comment line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Parses the rows of a table; empty lines and comments are skipped, blanks at the end of a line are removed.
/// Raises deserialize_error for a row with another number of fields.
std::vector<std::vector<std::string>> ParseTable(std::string_view strText, size_t nFields);
