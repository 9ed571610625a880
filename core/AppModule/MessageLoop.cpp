#include "core/AppModule/MessageLoop.h"

#include <boost/container/small_vector.hpp>

#include <algorithm>

namespace {

// The loop itself allocates nothing: a failure here would end the session.
template <class Handler>
using TCopy = boost::container::small_vector<Handler*, 16>;

} // namespace

void CMessageLoop::AddMessageFilter(IMessageFilter* pFilter) { m_vFilters.push_back(pFilter); }
void CMessageLoop::RemoveMessageFilter(IMessageFilter* pFilter) { std::erase(m_vFilters, pFilter); }
void CMessageLoop::AddIdleHandler(IIdleHandler* pHandler) { m_vIdleHandlers.push_back(pHandler); }
void CMessageLoop::RemoveIdleHandler(IIdleHandler* pHandler) { std::erase(m_vIdleHandlers, pHandler); }

bool CMessageLoop::PreTranslateMessage(const TMessage& msg) {
    // A filter may remove itself or others while it is called: iterate over a copy, skip removed ones.
    const TCopy<IMessageFilter> vFilters(m_vFilters.begin(), m_vFilters.end());
    for (auto it = vFilters.rbegin(); it != vFilters.rend(); ++it) {
        const bool bPresent = std::find(m_vFilters.begin(), m_vFilters.end(), *it) != m_vFilters.end();
        if (bPresent && (*it)->PreTranslateMessage(msg)) return true;
    }
    return false;
}

bool CMessageLoop::OnIdle(int nCount) {
    bool bMore = false;
    const TCopy<IIdleHandler> vHandlers(m_vIdleHandlers.begin(), m_vIdleHandlers.end());
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
    for (;;) {
        while (bDoIdle && !queue.Peek()) {
            if (!OnIdle(nIdleCount++)) bDoIdle = false;
        }
        TMessage msg;
        const int nGot = queue.Get(msg);
        if (nGot == -1) continue;
        if (nGot == 0) return;
        if (!PreTranslateMessage(msg)) queue.Dispatch(msg);
        if (IsIdleMessage(msg.id)) {
            bDoIdle = true;
            nIdleCount = 0;
        }
    }
}

void CMessageLoop::Clear() {
    m_vFilters = {};
    m_vIdleHandlers = {};
}
