// A session that runs out of memory while it starts.
#pragma once

#include "tests/faults/Apart.h"
#include "tests/faults/FailingMemory.h"
#include "tests/faults/UnfailingCodecs.h"
#include "tests/support/MemoryFiles.h"
#include "tests/support/NoPlaces.h"
#include "tests/support/Session.h"

#include <gtest/gtest.h>

#include <new>
#include <optional>

/// A session's start on one kind of windows.
class CStart {
public:
    virtual ~CStart() = default;
    /// Allocation number `uFail` fails, counted from 1 to the session's first step; 0 for none.
    TPlayed Play(uint64_t uFail, TFailing failing) {
        const auto spCanvas = CreateCanvas({60, 40});
        spCanvas->GetHistory().SetModified(m_bModified);
        m_fault.emplace(uFail, failing);
        try {
            OnPlatform([&](const TPlatform& platform) {
                CSessionScope scope(platform);
                CreateMainFrame();
                g_pMainFrame->OpenFrame(CreateCanvasFrame(spCanvas));
                scope.Run();
            });
        } catch (const std::exception&) {
            m_played.bTold = true; // the program reports it and exits
        }
        m_fault.reset();
        m_played.bTold = m_played.bTold || HasError();
        if (g_AppModule.HasPlatform() || g_AppModule.GetMessageLoop() || g_AppModule.GetMainWindow() ||
            g_pMainFrame || !g_lstCanvasFrame.empty())
            m_played.strWrong = "something of the session is left\n";
        return m_played;
    }

protected:
    virtual void OnPlatform(const std::function<void(const TPlatform&)>& fn) = 0;
    virtual bool HasError() const = 0;
    virtual std::string Describe() const = 0;
    /// The session's first step.
    void Look() {
        m_played.uCount = CFailingMemory::GetCount();
        m_fault.reset();
        m_played.strEnd = std::to_string(g_lstCanvasFrame.size()) + " frame" + Describe();
    }

    CMemoryFiles m_files;
    CUnfailingCodecs m_codecs{m_files};
    CNoPlaces m_places;
    bool m_bModified = false; ///< the document, about which the user is asked at the end

private:
    std::optional<CFailingMemory> m_fault;
    TPlayed m_played;
};

/// Another session with enough memory follows each one that fails.
template <class Start>
void ExpectStartSurvives(uint64_t uSteps, TFailing failing = {}) {
    ExpectSurvival(uSteps, [=](uint64_t uFail) {
        TPlayed played = Start().Play(uFail, failing);
        const TPlayed next = Start().Play(0, failing);
        if (next.bTold || !next.strEnd.starts_with("1 frame"))
            played.strWrong += "the next one: " + next.strEnd + "\n" + next.strWrong;
        return played;
    });
}

/// Makes one allocation of a scope fail after the other until the scope starts: no scope with a failure
/// must have started, and the application must never look as if a session were left.
inline void ExpectScopeNeedsMemory(const TPlatform& platform, TFailing failing = {}) {
    uint64_t u = 0;
    for (bool bBegun = false; !bBegun;) {
        try {
            const CFailingMemory memory(++u, failing);
            const CSessionScope scope(platform);
            bBegun = g_AppModule.GetMessageLoop() != nullptr;
        } catch (const std::bad_alloc&) {
        }
        ASSERT_FALSE(g_AppModule.HasPlatform()) << u;
    }
    EXPECT_GT(u, 2u) << "nothing could fail";
}
