#include "system/environment/DesktopRecent.h"

#include <windows.h>

#include <shlobj.h>

// The desktop keeps the list itself and finds type and application by the file's ending.
void CDesktopRecent::Add(const std::wstring& strPath) { SHAddToRecentDocs(SHARD_PATHW, strPath.c_str()); }

std::wstring CDesktopRecent::FindFile() { return {}; }
