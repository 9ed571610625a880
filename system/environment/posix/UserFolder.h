// Folders of the user as the environment names them.
#pragma once

#include <string>

/// The folder in the variable `pszVariable` when it holds an absolute path, else `pszInHome` (with its slash)
/// in $HOME or in the home folder of the user database; empty without one. No slash follows it.
std::wstring FindUserFolder(const char* pszVariable, const char* pszInHome);
