// Progress for tests: cancels at a chosen step, and a window that notes what it is asked to show.
#pragma once

#include "core/Base/Failure.h"
#include "core/Platform/Progress.h"

#include <string>
#include <vector>

/// Cancels work at its call number `nCancelAt` and counts the steps of each part.
struct CCountedProgress : IProgress {
    explicit CCountedProgress(size_t nCancelAt = SIZE_MAX) : nLeft(nCancelAt) {}
    void Begin(const wchar_t*, uint64_t uSteps) override {
        vParts.push_back({uSteps, 0});
        Count();
    }
    void Advance(uint64_t uSteps) override {
        vParts.back().second += uSteps;
        Count();
    }
    void Count() {
        if (nLeft-- == 0) throw cancelled_error();
    }
    size_t nLeft;
    std::vector<std::pair<uint64_t, uint64_t>> vParts; ///< announced and done
};

/// A window that shows itself at once in a text: `{` begin, `}` end, and each state's permille.
struct CNotingWindow : IProgressWindow {
    bool Begin(const TLongWork& work) override {
        strSeen += work.bCancel ? "{" : "{!";
        return true;
    }
    bool Show(const TProgressState& state) override {
        strSeen += " " + std::to_string(state.nPermille);
        return nGoesOn-- > 0;
    }
    void End() override { strSeen += " }"; }
    std::string strSeen;
    int nGoesOn = INT32_MAX;
};
