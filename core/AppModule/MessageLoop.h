// The filters and idle handlers around the one message loop of a session.
#pragma once

#include "core/Platform/Message.h"

#include <boost/noncopyable.hpp>

#include <vector>

/// Sees every message before it is dispatched.
class IMessageFilter {
public:
    virtual ~IMessageFilter() = default;
    /// True consumes the message.
    virtual bool PreTranslateMessage(const TMessage& msg) = 0;
};

/// Works while no message waits.
class IIdleHandler {
public:
    virtual ~IIdleHandler() = default;
    /// `nCount` passes since the last message; true asks for another pass.
    virtual bool OnIdle(int nCount) = 0;
};

/// The registered filters and handlers. Neither is owned; who registers must remove itself before it dies.
class CMessageLoop : boost::noncopyable {
public:
    void AddMessageFilter(IMessageFilter* pFilter);
    void RemoveMessageFilter(IMessageFilter* pFilter);
    void AddIdleHandler(IIdleHandler* pHandler);
    void RemoveIdleHandler(IIdleHandler* pHandler);

    /// Offers the message from the filter registered last to the first; true when one consumed it.
    bool PreTranslateMessage(const TMessage& msg);
    /// Calls every idle handler in order; true when any asked for more.
    bool OnIdle(int nCount);
    /// False for the messages that are no reason to do idle work again.
    static bool IsIdleMessage(EMessage id);

    /// Takes messages until the session's end: idle handlers run whenever none waits, filters come before
    /// dispatch. Exceptions of filters and idle handlers pass through.
    void Run(IMessageQueue& queue);
    /// Frees both lists.
    void Clear();

private:
    std::vector<IMessageFilter*> m_vFilters;
    std::vector<IIdleHandler*> m_vIdleHandlers;
};
