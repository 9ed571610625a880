// Command lines of the programs: options with or without a value, then names.
#pragma once

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

/// An invalid command line; what() is the reason.
struct usage_error : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// An option by its whole name, "--help". One of the two functions is set.
struct TOption {
    std::string strName;
    std::function<void()> fnFlag;
    std::function<void(const std::string&)> fnValue; ///< called with the value, which is never empty
};

/// Applies the options in their order and returns the other arguments; all arguments after a "--" are such.
/// Raises usage_error for an unknown option and for a missing value.
std::vector<std::string> ReadCommandLine(const std::vector<std::string>& vArguments,
                                         const std::vector<TOption>& vOptions);

/// An option that sets a flag, or a text or path.
TOption Flag(const char* pszName, bool& bFlag);
TOption Value(const char* pszName, std::string& strValue);
TOption Value(const char* pszName, std::filesystem::path& pathValue);
