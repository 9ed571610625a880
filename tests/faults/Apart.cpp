#include "tests/faults/Apart.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr unsigned MOST_SECONDS = 60; ///< a session that takes longer counts as hanging

// The number of steps of a test.
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

std::string Pack(const TPlayed& played) {
    return std::to_string(played.bTold) + " " + std::to_string(played.uCount) + " " + played.strEnd + "\n" +
           played.strWrong;
}

TPlayed Unpack(const std::string& str) {
    TPlayed played;
    std::istringstream in(str);
    in >> played.bTold >> played.uCount >> std::ws;
    std::getline(in, played.strEnd);
    std::getline(in, played.strWrong, '\0');
    return played;
}

// Plays in a separate process; strWrong includes how it ended.
TPlayed PlayApart(const std::function<TPlayed()>& fnPlay) {
    TPlayed played;
    int aPipe[2];
    if (pipe(aPipe) != 0) {
        played.strWrong = "no pipe";
        return played;
    }
    const pid_t id = fork();
    if (id == 0) {
        alarm(MOST_SECONDS);
        const std::string str = Pack(fnPlay());
        const bool bTold = write(aPipe[1], str.data(), str.size()) >= 0;
        _exit(bTold ? 0 : 1);
    }
    close(aPipe[1]);
    std::string strTold;
    char ach[4096];
    for (ssize_t n = 0; (n = read(aPipe[0], ach, sizeof ach)) > 0;)
        strTold.append(ach, static_cast<size_t>(n));
    close(aPipe[0]);
    played = Unpack(strTold);
    int nStatus = 0;
    waitpid(id, &nStatus, 0);
    if (nStatus != 0) played.strWrong += "it ends with status " + std::to_string(nStatus) + "\n";
    return played;
}

} // namespace

void ExpectSurvival(uint64_t uSteps, const std::function<TPlayed(uint64_t)>& fnPlay) {
    const TPlayed whole = PlayApart([&] { return fnPlay(0); });
    ASSERT_EQ(whole.strWrong, "");
    ASSERT_FALSE(whole.bTold || whole.strEnd.empty() || whole.uCount == 0);
    const TSteps steps(whole.uCount, uSteps);
    for (uint64_t u = steps.uFirst; u <= steps.uLast; u += steps.uStride) {
        const TPlayed played = PlayApart([&] { return fnPlay(u); });
        EXPECT_EQ(played.strWrong, "") << "fault " << u << " of " << whole.uCount;
        EXPECT_TRUE(played.bTold || played.strEnd == whole.strEnd)
            << "nobody was told of fault " << u << " of " << whole.uCount;
    }
}
