#include "session/scripts/SessionPump.h"

#include "session/scripts/Player.h"
#include "session/seam/SessionWindows.h"

#include <new>

namespace {

// Handling events generates new ones: layouts, repaints.
constexpr int REAL_ROUNDS = 4;

// Sets a flag for the duration of a scope.
class CInside : boost::noncopyable {
public:
    explicit CInside(bool& b) : m_b(b) { m_b = true; }
    ~CInside() { m_b = false; }

private:
    bool& m_b;
};

} // namespace

// Real windows have a separate queue: input to them is no message of the session.
void CSessionPump::TurnShown() {
    for (int n = 0; m_pShown && n < REAL_ROUNDS; ++n)
        for (TMessage msg; m_pShown->Peek() && m_pShown->Get(msg) == 1;) m_pShown->Dispatch(msg);
}

bool CSessionPump::PumpReady() {
    TurnShown();
    if (m_queue.Peek()) return true;
    m_windows.Paint();
    if (m_queue.Peek()) return true;
    m_windows.PostTimers();
    return m_queue.Peek();
}

bool CSessionPump::Pump(bool bWait) {
    if (m_bInside) return true;
    const CInside inside(m_bInside);
    try {
        m_windows.FreeDead();
        if (!PumpReady() && bWait) {
            m_player.Advance();
            // An empty message makes idle work follow every step, also one that posted nothing.
            m_queue.Post({});
        }
    } catch (const std::bad_alloc&) {
        // Messages that could not be posted are posted by the next call.
    }
    return true;
}
