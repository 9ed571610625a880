// Progress for tests: it cancels work at a chosen step.
#pragma once

#include "core/Base/Failure.h"
#include "core/Platform/Progress.h"

#include <vector>

/// Cancels at call number `nLeft`, from 0, and counts the steps of each part.
struct CCountedProgress : IProgress {
    explicit CCountedProgress(size_t nCancelAt) : nLeft(nCancelAt) {}
    void Begin(const wchar_t*, uint64_t uSteps) override { vParts.push_back({uSteps, 0}), Advance(0); }
    void Advance(uint64_t uSteps) override {
        vParts.back().second += uSteps;
        if (nLeft-- == 0) throw cancelled_error();
    }
    size_t nLeft;
    std::vector<std::pair<uint64_t, uint64_t>> vParts; ///< announced and done
};
