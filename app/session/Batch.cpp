#include "app/session/Batch.h"

#include "app/common/RemoveFolder.h"
#include "app/session/BatchReport.h"
#include "app/session/Interrupt.h"
#include "app/session/Pattern.h"
#include "app/session/Worker.h"
#include "core/Base/Text.h"
#include "system/environment/Modules.h"
#include "system/environment/Variables.h"
#include "system/files/FilePath.h"
#include "system/files/FileStatus.h"
#include "system/files/PrivateFolder.h"

#include <boost/noncopyable.hpp>

#include <algorithm>
#include <map>
#include <set>
#include <thread>

namespace fs = std::filesystem;

namespace {

/// A folder for the output and temporary files of the workers, including killed ones.
class CWorkFolder : boost::noncopyable {
public:
    CWorkFolder() {
        // Each system has its own.
        for (const char* pszName : {"TMPDIR", "TMP", "TEMP"}) SetVariable(pszName, Utf8Of(m_path));
    }
    ~CWorkFolder() { RemoveFolder(m_path); }
    const fs::path& GetPath() const { return m_path; }

private:
    const fs::path m_path = MakeTempFolder("vellumcraft-batch-");
};

std::vector<std::string> MakeCommand(const TArguments& arguments, const TPage& page) {
    std::vector<std::string> vCommand{ToUtf8(CModules().GetProgram().strPath), "--in", Utf8Of(page.pathIn),
                                      "--out", Utf8Of(page.pathOut)};
    if (!arguments.pathModule.empty())
        vCommand.insert(vCommand.end(), {"--module", Utf8Of(arguments.pathModule)});
    if (arguments.bDesktop) vCommand.emplace_back("--desktop");
    if (!arguments.pathScript.empty()) vCommand.insert(vCommand.end(), {"--", Utf8Of(arguments.pathScript)});
    return vCommand;
}

} // namespace

std::vector<TPage> FindPages(const TArguments& arguments) {
    const std::vector<fs::path> vPaths = FindFiles(arguments.strEach);
    if (vPaths.empty()) throw usage_error(arguments.strEach + ": there are no such pictures");
    std::vector<TPage> vPages;
    std::set<fs::path> setNames;
    for (const fs::path& path : vPaths) {
        fs::path name = path.filename();
        if (!arguments.strFormat.empty()) name.replace_extension(PathOf(arguments.strFormat));
        if (!setNames.insert(FoldName(name)).second)
            throw usage_error("two results have the name " + Utf8Of(name));
        vPages.push_back({path, arguments.pathOutDir / name});
    }
    std::map<TFileId, fs::path> mapFiles;
    for (const fs::path& path : vPaths)
        if (const auto file = FileIdOf(path)) mapFiles[*file] = path;
    for (const TPage& page : vPages) {
        const auto file = FileIdOf(page.pathOut);
        if (file && mapFiles.contains(*file))
            throw usage_error("a result would overwrite " + Utf8Of(mapFiles[*file]));
    }
    return vPages;
}

bool RunBatch(const TArguments& arguments) {
    const std::vector<TPage> vPages = FindPages(arguments);
    fs::create_directories(arguments.pathOutDir);
    const unsigned uCores = std::max(1u, std::thread::hardware_concurrency());
    const size_t nJobs = std::min<size_t>(arguments.uJobs ? arguments.uJobs : uCores, vPages.size());
    // The workers share the processors; their results do not depend on the number of threads.
    if (GetVariable("OMP_NUM_THREADS").empty())
        SetVariable("OMP_NUM_THREADS", std::to_string(std::max<size_t>(1, uCores / nJobs)));

    const CWorkFolder folder;
    CBatchReport report(vPages.size());
    std::map<TProcessId, size_t> mapRunning;
    // The terminal's interrupt also reaches the workers and ends them; the batch then only counts them and
    // cleans up.
    CatchInterrupts();
    const auto begins = [&](size_t idx) { return idx < vPages.size() && !IsInterrupted(); };
    for (size_t idxNext = 0; begins(idxNext) || !mapRunning.empty();) {
        const auto fileOf = [&](size_t idx) { return folder.GetPath() / std::to_string(idx); };
        if (begins(idxNext) && mapRunning.size() < nJobs) {
            mapRunning[StartWorker(MakeCommand(arguments, vPages[idxNext]), fileOf(idxNext))] = idxNext;
            ++idxNext;
            continue;
        }
        const TEnded ended = WaitForWorker();
        const size_t idx = mapRunning.at(ended.id);
        mapRunning.erase(ended.id);
        report.Tell(Utf8Of(vPages[idx].pathIn), DescribeEnd(ended, fileOf(idx)));
    }
    return report.Finish();
}
