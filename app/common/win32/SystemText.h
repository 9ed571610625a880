// Texts of the system for its error numbers.
#pragma once

#include <string>

#include <windows.h>

/// The system's text for an error, in the user's language, and its number. UTF-8, one line.
std::string DescribeSystemError(DWORD uError);
