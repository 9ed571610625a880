#include "tests/support/RunProgram.h"

#include "app/session/Worker.h"
#include "system/environment/Locations.h"
#include "system/environment/Variables.h"
#include "system/files/FilePath.h"
#include "system/files/FileStore.h"

#include <algorithm>
#include <map>

namespace {

std::vector<std::string> Split(const std::string& strArguments) {
    std::vector<std::string> vArguments;
    bool bInside = false, bQuoted = false; // in an argument, in quotes
    for (const char ch : strArguments) {
        if (ch == ' ' && !bQuoted) {
            bInside = false;
            continue;
        }
        if (!std::exchange(bInside, true)) vArguments.emplace_back();
        if (ch == '\'')
            bQuoted = !bQuoted;
        else
            vArguments.back() += ch;
    }
    return vArguments;
}

} // namespace

int RunInFolder(const std::filesystem::path& folder, const std::string& strProgram,
                const std::string& strArguments, std::string& strSaid) {
    std::vector<std::string> vCommand = Split(strArguments);
    vCommand.insert(vCommand.begin(), strProgram);
    static int s_nRun = 0;
    // Each run has its own file: the one before may still be closing it.
    const auto pathSaid = folder / (".said" + std::to_string(++s_nRun));
    const auto pathTemp = folder / ".tmp", pathBefore = std::filesystem::current_path();
    std::filesystem::create_directories(pathTemp);
    std::map<std::string, std::string> mapVariables{
        {"TMP", Utf8Of(pathTemp)},
        {"TEMP", Utf8Of(pathTemp)},
        {CLocations::APP_DATA_VARIABLE, Utf8Of(folder / ".config")}};
    // The process inherits variables and folder of this one.
    const auto exchange = [&] {
        for (auto& [strName, strValue] : mapVariables) {
            std::string strOther = GetVariable(strName);
            SetVariable(strName, strValue);
            strValue = std::move(strOther);
        }
    };
    exchange();
    std::filesystem::current_path(folder);
    StartWorker(vCommand, pathSaid);
    std::filesystem::current_path(pathBefore);
    exchange();
    const TEnded ended = WaitForWorker();
    strSaid = CFileStore().Read(TextOf(pathSaid)).value_or("");
    std::erase(strSaid, '\r'); // before line ends
    return ended.strCrashed.empty() ? ended.nCode : -1;
}
