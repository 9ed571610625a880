#include "core/Platform/Progress.h"

#include "core/Base/Failure.h"
#include "core/Platform/Platform.h"
#include "core/Platform/System.h"

#include <algorithm>

namespace {

constexpr uint32_t DELAY_MS = 1000;
constexpr uint32_t STEP_MS = 50; ///< between two updates of the window

class CNoProgress : public IProgress {
public:
    void Begin(const wchar_t*, uint64_t) override {}
    void Advance(uint64_t) override {}
};

} // namespace

IProgress& NoProgress() {
    static CNoProgress progress;
    return progress;
}

CLongWork::CLongWork(const TPlatform& platform, const TLongWork& work)
    : m_window(platform.progress), m_clock(platform.clock), m_uToldTick(m_clock.GetTickCount()),
      m_bCancelled(!m_window.Begin(work)) {}

CLongWork::~CLongWork() { m_window.End(); }

void CLongWork::Begin(const wchar_t* pszText, uint64_t uSteps) {
    m_pszText = pszText;
    m_uSteps = uSteps;
    m_uDone = 0;
    Tell();
}

void CLongWork::Advance(uint64_t uSteps) {
    m_uDone += uSteps;
    Tell();
}

void CLongWork::Tell() {
    const uint32_t uNow = m_clock.GetTickCount();
    if (!m_bCancelled && uNow - m_uToldTick >= (m_bShown ? STEP_MS : DELAY_MS)) {
        m_bShown = true;
        const int nPermille = m_uSteps == 0 ? TProgressState::UNKNOWN
                                            : static_cast<int>(std::min(m_uDone, m_uSteps) * 1000 / m_uSteps);
        m_bCancelled = !m_window.Show({m_pszText, nPermille});
        m_uToldTick = m_clock.GetTickCount(); // showing takes time itself
    }
    if (m_bCancelled) throw cancelled_error();
}
