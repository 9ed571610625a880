// The descriptor of an open file.
#pragma once

#include "system/files/OpenFile.h"

inline int DescriptorOf(const COpenFile& file) { return static_cast<int>(file.GetHandle()); }
