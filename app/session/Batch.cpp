#include "app/session/Batch.h"

#include "app/session/BatchReport.h"
#include "app/session/Worker.h"
#include "core/Base/Text.h"
#include "system/environment/Modules.h"

#include <boost/noncopyable.hpp>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <map>
#include <optional>
#include <set>
#include <thread>
#include <utility>

#include <glob.h>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> Expand(const std::string& strPattern) {
    glob_t found{};
    std::vector<fs::path> vPaths;
    if (glob(strPattern.c_str(), 0, nullptr, &found) == 0)
        vPaths.assign(found.gl_pathv, found.gl_pathv + found.gl_pathc);
    globfree(&found);
    return vPaths;
}

/// Identifies a file through links; nullopt when there is none.
std::optional<std::pair<dev_t, ino_t>> FileOf(const fs::path& path) {
    struct stat file {};
    if (stat(path.c_str(), &file) != 0) return std::nullopt;
    return std::pair(file.st_dev, file.st_ino);
}

/// A folder for the output and temporary files of the workers, including killed ones.
class CWorkFolder : boost::noncopyable {
public:
    CWorkFolder() {
        std::string strFolder = (fs::temp_directory_path() / "vellumcraft-batch-XXXXXX").native();
        if (!mkdtemp(strFolder.data())) throw std::runtime_error(strFolder + ": no folder for the batch");
        m_path = strFolder;
        setenv("TMPDIR", strFolder.c_str(), 1);
    }
    ~CWorkFolder() {
        std::error_code error;
        fs::remove_all(m_path, error);
    }
    const fs::path& GetPath() const { return m_path; }

private:
    fs::path m_path;
};

volatile std::sig_atomic_t g_bInterrupted = 0;

// The terminal's signal also reaches the workers and ends them; the batch then only counts them and cleans
// up.
void StopOnInterrupt() {
    struct sigaction action {};
    action.sa_handler = [](int) { g_bInterrupted = 1; };
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

std::vector<std::string> MakeCommand(const TArguments& arguments, const TPage& page) {
    std::vector<std::string> vCommand{ToUtf8(CModules().GetProgram().strPath), "--in", page.pathIn.native(),
                                      "--out", page.pathOut.native()};
    if (!arguments.pathModule.empty())
        vCommand.insert(vCommand.end(), {"--module", arguments.pathModule.native()});
    if (arguments.bDesktop) vCommand.emplace_back("--desktop");
    if (!arguments.pathScript.empty()) vCommand.insert(vCommand.end(), {"--", arguments.pathScript.native()});
    return vCommand;
}

} // namespace

std::vector<TPage> FindPages(const TArguments& arguments) {
    const std::vector<fs::path> vPaths = Expand(arguments.strEach);
    if (vPaths.empty()) throw usage_error(arguments.strEach + ": there are no such pictures");
    std::vector<TPage> vPages;
    std::set<fs::path> setNames;
    for (const fs::path& path : vPaths) {
        fs::path name = path.filename();
        if (!arguments.strFormat.empty()) name.replace_extension(arguments.strFormat);
        if (!setNames.insert(name).second) throw usage_error("two results have the name " + name.native());
        vPages.push_back({path, arguments.pathOutDir / name});
    }
    std::map<std::pair<dev_t, ino_t>, fs::path> mapFiles;
    for (const fs::path& path : vPaths)
        if (const auto file = FileOf(path)) mapFiles[*file] = path;
    for (const TPage& page : vPages) {
        const auto file = FileOf(page.pathOut);
        if (file && mapFiles.contains(*file))
            throw usage_error("a result would overwrite " + mapFiles[*file].native());
    }
    return vPages;
}

bool RunBatch(const TArguments& arguments) {
    const std::vector<TPage> vPages = FindPages(arguments);
    fs::create_directories(arguments.pathOutDir);
    const unsigned uCores = std::max(1u, std::thread::hardware_concurrency());
    const size_t nJobs = std::min<size_t>(arguments.uJobs ? arguments.uJobs : uCores, vPages.size());
    // The workers share the processors; their results do not depend on the number of threads.
    setenv("OMP_NUM_THREADS", std::to_string(std::max<size_t>(1, uCores / nJobs)).c_str(), 0);

    const CWorkFolder folder;
    CBatchReport report(vPages.size());
    std::map<pid_t, size_t> mapRunning;
    StopOnInterrupt();
    const auto begins = [&](size_t idx) { return idx < vPages.size() && !g_bInterrupted; };
    for (size_t idxNext = 0; begins(idxNext) || !mapRunning.empty();) {
        const auto fileOf = [&](size_t idx) { return folder.GetPath() / std::to_string(idx); };
        if (begins(idxNext) && mapRunning.size() < nJobs) {
            mapRunning[StartWorker(MakeCommand(arguments, vPages[idxNext]), fileOf(idxNext))] = idxNext;
            ++idxNext;
            continue;
        }
        const TEnded ended = WaitForWorker();
        const size_t idx = mapRunning.at(ended.pid);
        mapRunning.erase(ended.pid);
        report.Tell(vPages[idx].pathIn.native(), DescribeEnd(ended, fileOf(idx)));
    }
    return report.Finish();
}
