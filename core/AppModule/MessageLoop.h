// The message loop of a session, with its filters and idle handlers.
#pragma once

#include "core/Platform/Message.h"

#include <boost/noncopyable.hpp>

#include <vector>

/// Receives every message before it is dispatched.
class IMessageFilter {
public:
    virtual ~IMessageFilter() = default;
    /// Returns true to consume the message.
    virtual bool PreTranslateMessage(const TMessage& msg) = 0;
};

/// Called while the message queue is empty.
class IIdleHandler {
public:
    virtual ~IIdleHandler() = default;
    /// `nCount` is the number of passes since the last message; returns true to request another pass.
    virtual bool OnIdle(int nCount) = 0;
};

/// The registered filters and handlers. They are not owned: each must unregister before it is destroyed.
class CMessageLoop : boost::noncopyable {
public:
    void AddMessageFilter(IMessageFilter* pFilter);
    void RemoveMessageFilter(IMessageFilter* pFilter);
    void AddIdleHandler(IIdleHandler* pHandler);
    void RemoveIdleHandler(IIdleHandler* pHandler);

    /// Passes the message to the filters, the last registered first; true when one consumed it.
    bool PreTranslateMessage(const TMessage& msg);
    /// Calls every idle handler in order; true when any requested another pass.
    bool OnIdle(int nCount);
    /// False for messages that do not restart idle work.
    static bool IsIdleMessage(EMessage id);

    /// Processes messages until the session ends: idle handlers run while the queue is empty, filters run
    /// before dispatch. Exceptions of filters and idle handlers propagate.
    void Run(IMessageQueue& queue);
    /// Removes all filters and handlers.
    void Clear();

private:
    std::vector<IMessageFilter*> m_vFilters;
    std::vector<IIdleHandler*> m_vIdleHandlers;
};
