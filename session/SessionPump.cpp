#include "session/SessionPump.h"

#include "session/Player.h"
#include "session/SessionWindows.h"

#include <new>

namespace {

// Handling events makes new ones: layouts, repaints.
constexpr int REAL_ROUNDS = 4;

// True for as long as a scope runs.
class CInside : boost::noncopyable {
public:
    explicit CInside(bool& b) : m_b(b) { m_b = true; }
    ~CInside() { m_b = false; }

private:
    bool& m_b;
};

} // namespace

// Real windows have a queue of their own: what is done to them is no message of the session.
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
            // A message for nobody: idle work follows every step, also one that said nothing.
            m_queue.Post({});
        }
    } catch (const std::bad_alloc&) {
        // What could not be posted comes with the next call.
    }
    return true;
}
