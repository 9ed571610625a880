#include "tests/faults/Apart.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr unsigned MOST_SECONDS = 60; ///< a session that takes longer counts as hanging

// Plays in a separate process; strWrong includes how it ended.
TPlayed PlayApart(const std::function<TPlayed(uint64_t)>& fnPlay, uint64_t uFault) {
    TPlayed played;
    int aPipe[2];
    if (pipe(aPipe) != 0) return {"no pipe", {}};
    const pid_t id = fork();
    if (id == 0) {
        alarm(MOST_SECONDS);
        played = fnPlay(uFault);
        const std::string str = std::to_string(played.bTold) + " " + std::to_string(played.uCount) + " " +
                                played.strEnd + "\n" + played.strWrong;
        _exit(write(aPipe[1], str.data(), str.size()) >= 0 ? 0 : 1);
    }
    close(aPipe[1]);
    std::stringstream told;
    char ach[4096];
    for (ssize_t n = 0; (n = read(aPipe[0], ach, sizeof ach)) > 0;) told.write(ach, n);
    close(aPipe[0]);
    told >> played.bTold >> played.uCount >> std::ws;
    std::getline(told, played.strEnd);
    std::getline(told, played.strWrong, '\0');
    int nStatus = 0;
    waitpid(id, &nStatus, 0);
    if (nStatus != 0) played.strWrong += "it ends with status " + std::to_string(nStatus) + "\n";
    return played;
}

} // namespace

void ExpectSurvival(uint64_t uSteps, const std::function<TPlayed(uint64_t)>& fnPlay) {
    const TPlayed whole = PlayApart(fnPlay, 0);
    ASSERT_EQ(whole.strWrong, "");
    ASSERT_FALSE(whole.bTold || whole.strEnd.empty() || whole.uCount == 0);
    const char* pszFaults = std::getenv("VELLUM_FAULTS");
    const uint64_t uOnly = pszFaults ? std::strtoull(pszFaults, nullptr, 10) : 0;
    const uint64_t uStride = pszFaults ? 1 : std::max<uint64_t>(1, whole.uCount / uSteps);
    for (uint64_t u = uOnly ? uOnly : 1; u <= (uOnly ? uOnly : whole.uCount); u += uStride) {
        const TPlayed played = PlayApart(fnPlay, u);
        EXPECT_EQ(played.strWrong, "") << "fault " << u << " of " << whole.uCount;
        EXPECT_TRUE(played.bTold || played.strEnd == whole.strEnd)
            << "nobody was told of fault " << u << " of " << whole.uCount << ", which ended with "
            << played.strEnd << " instead of " << whole.strEnd;
    }
}
