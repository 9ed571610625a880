#include "system/environment/Locations.h"
#include "system/environment/RecentFiles.h"
#include "system/environment/Variables.h"
#include "system/environment/win32/RegistryStore.h"

#include <windows.h>

#include <shlobj.h>

namespace {

constexpr wchar_t KEY[] = L"Software\\Vellumcraft\\Recent Document List";

class CShellRecent : public IRecentFiles {
public:
    // The shell finds type and application by the file's ending.
    void Add(const std::wstring& strPath) override { SHAddToRecentDocs(SHARD_PATHW, strPath.c_str()); }
    // With another folder for its data the application leaves the user's own list alone.
    IFileStore* GetOwnStore() override {
        return GetVariable(CLocations::APP_DATA_VARIABLE).empty() ? &m_registry : nullptr;
    }

private:
    CRegistryStore m_registry{KEY};
};

} // namespace

std::unique_ptr<IRecentFiles> MakeRecentFiles(IFileStore&) { return std::make_unique<CShellRecent>(); }
