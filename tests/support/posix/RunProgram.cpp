#include "tests/support/RunProgram.h"

#include "system/files/FilePath.h"
#include "system/files/FileStore.h"

#include <cstdlib>

#include <sys/wait.h>

int RunInFolder(const std::filesystem::path& folder, const std::string& strProgram,
                const std::string& strArguments, std::string& strSaid) {
    const std::string strCommand = "cd " + folder.native() +
                                   " && mkdir -p .tmp && TMPDIR=$PWD/.tmp XDG_CONFIG_HOME=$PWD/.config "
                                   "env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM '" +
                                   strProgram + "' " + strArguments + " >.said 2>&1";
    const int nStatus = std::system(strCommand.c_str());
    strSaid = CFileStore().Read(TextOf(folder / ".said")).value_or("");
    return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
}
