// Variables of the process's environment.
#pragma once

#include <string>

/// The variable's value as UTF-8, where the system stores bytes the bytes themselves; empty when it is not
/// set.
std::string GetVariable(const std::string& strName);
/// Sets it for this process, its modules and the programs that it starts later. No other thread may use the
/// environment meanwhile.
void SetVariable(const std::string& strName, const std::string& strValue);
