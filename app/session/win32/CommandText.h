// Command lines as the system passes them to programs.
#pragma once

#include <string>
#include <vector>

/// The text from which a program reads these arguments, the first being its own name.
std::wstring CommandText(const std::vector<std::string>& vCommand);
