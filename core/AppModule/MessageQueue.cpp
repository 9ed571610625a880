#include "core/AppModule/MessageQueue.h"

#include "core/Platform/Window.h"

#include <utility>

bool CMessageQueue::Peek() {
    if (m_deqMessages.empty() && !m_bQuit && m_pPump) m_pPump->Pump(false);
    return !m_deqMessages.empty() || m_bQuit;
}

int CMessageQueue::Get(TMessage& msg) {
    while (m_deqMessages.empty()) {
        if (m_bQuit) {
            // The end is reported once: the next session of this thread starts with a fresh queue state.
            m_bQuit = false;
            return 0;
        }
        if (!m_pPump || !m_pPump->Pump(true)) return -1;
    }
    msg = std::move(m_deqMessages.front());
    m_deqMessages.pop_front();
    return 1;
}

void CMessageQueue::Dispatch(const TMessage& msg) { SendMessage(msg); }

void CMessageQueue::Forget(const IWindow* pWindow) {
    std::erase_if(m_deqMessages, [&](const TMessage& msg) { return msg.pWindow == pWindow; });
}

void SendMessage(const TMessage& msg) {
    if (msg.pWindow && !msg.pWindow->GetClient().OnMessage(msg)) msg.pWindow->DefaultMessage(msg);
}
