// Nothing that fails once breaks a session or a document.
#include "tests/faults/FaultedSession.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr unsigned MOST_SECONDS = 60; ///< a session that takes longer hangs

// Plays a session in a process of its own, which may crash. Answers what is wrong.
std::string PlayApart(const TFault& fault, const TPlayed& whole) {
    int aPipe[2];
    if (pipe(aPipe) != 0) return "no pipe";
    const pid_t id = fork();
    if (id == 0) {
        alarm(MOST_SECONDS);
        TPlayed played = PlayFaulted(fault);
        if (!played.bTold && played.strEnd != whole.strEnd)
            played.strWrong += "nobody is told why the end is " + played.strEnd + "\n";
        const bool bTold = write(aPipe[1], played.strWrong.data(), played.strWrong.size()) >= 0;
        _exit(bTold ? 0 : 1);
    }
    close(aPipe[1]);
    std::string strWrong;
    char ach[4096];
    for (ssize_t n = 0; (n = read(aPipe[0], ach, sizeof ach)) > 0;)
        strWrong.append(ach, static_cast<size_t>(n));
    close(aPipe[0]);
    int nStatus = 0;
    waitpid(id, &nStatus, 0);
    if (nStatus != 0) strWrong += "it ends with status " + std::to_string(nStatus) + "\n";
    return strWrong;
}

// How many steps a test makes: VELLUM_FAULTS=all for every one, "7" for the seventh alone.
struct TSteps {
    uint64_t uFirst = 1;
    uint64_t uStride;
    uint64_t uLast;

    TSteps(uint64_t uCount, uint64_t uSteps)
        : uStride(std::max<uint64_t>(1, uCount / uSteps)), uLast(uCount) {
        const char* pszFaults = std::getenv("VELLUM_FAULTS");
        if (!pszFaults) return;
        uStride = 1;
        if (const uint64_t uOnly = std::strtoull(pszFaults, nullptr, 10)) uFirst = uLast = uOnly;
    }
};

} // namespace

TEST(Faults, ASessionSurvivesEveryFailedAllocation) {
    const TPlayed whole = PlayFaulted({});
    ASSERT_EQ(whole.strWrong, "");
    const TSteps steps(whole.uAllocations, 80);
    for (uint64_t u = steps.uFirst; u <= steps.uLast; u += steps.uStride)
        EXPECT_EQ(PlayApart({.uAllocation = u}, whole), "")
            << "allocation " << u << " of " << whole.uAllocations;
}

TEST(Faults, ASessionSurvivesEveryFailedFileOperation) {
    const TPlayed whole = PlayFaulted({});
    const TSteps steps(whole.uFileOperations, 100);
    for (uint64_t u = steps.uFirst; u <= steps.uLast; u += steps.uStride)
        EXPECT_EQ(PlayApart({.uFileOperation = u}, whole), "")
            << "operation " << u << " of " << whole.uFileOperations;
}
