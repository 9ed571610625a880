#include "core/AppModule/MessageLoop.h"

#include "core/AppModule/ErrorBox.h"

#include <algorithm>

void CMessageLoop::AddMessageFilter(IMessageFilter* pFilter) { m_vFilters.push_back(pFilter); }
void CMessageLoop::RemoveMessageFilter(IMessageFilter* pFilter) { std::erase(m_vFilters, pFilter); }
void CMessageLoop::AddIdleHandler(IIdleHandler* pHandler) { m_vIdleHandlers.push_back(pHandler); }
void CMessageLoop::RemoveIdleHandler(IIdleHandler* pHandler) { std::erase(m_vIdleHandlers, pHandler); }

bool CMessageLoop::PreTranslateMessage(const TMessage& msg) {
    // A filter may remove itself (or others) while it is called: walk a copy, skip who has left.
    const std::vector<IMessageFilter*> vFilters = m_vFilters;
    for (auto it = vFilters.rbegin(); it != vFilters.rend(); ++it) {
        const bool bPresent = std::find(m_vFilters.begin(), m_vFilters.end(), *it) != m_vFilters.end();
        if (bPresent && (*it)->PreTranslateMessage(msg)) return true;
    }
    return false;
}

bool CMessageLoop::OnIdle(int nCount) {
    bool bMore = false;
    const std::vector<IIdleHandler*> vHandlers = m_vIdleHandlers;
    for (IIdleHandler* pHandler : vHandlers) {
        if (std::find(m_vIdleHandlers.begin(), m_vIdleHandlers.end(), pHandler) == m_vIdleHandlers.end())
            continue;
        if (pHandler->OnIdle(nCount)) bMore = true;
    }
    return bMore;
}

bool CMessageLoop::IsIdleMessage(EMessage id) {
    return id != EMessage::MouseMove && id != EMessage::NcMouseMove && id != EMessage::Paint &&
           id != EMessage::SysTimer;
}

void CMessageLoop::Run(IMessageQueue& queue) {
    bool bDoIdle = true;
    int nIdleCount = 0;
    const auto turn = [&] {
        while (bDoIdle && !queue.Peek()) {
            bDoIdle = false; // idle work that fails waits for the next message
            bDoIdle = OnIdle(nIdleCount++);
        }
        TMessage msg;
        const int nGot = queue.Get(msg);
        if (nGot == 0) return true;
        if (nGot == -1) return false;
        if (IsIdleMessage(msg.id)) {
            bDoIdle = true;
            nIdleCount = 0;
        }
        if (!PreTranslateMessage(msg)) queue.Dispatch(msg);
        return false;
    };
    // Nothing that fails once ends the session: there may be unsaved work in it.
    while (!Guarded(turn)) {
    }
}

void CMessageLoop::Clear() {
    m_vFilters = {};
    m_vIdleHandlers = {};
}
