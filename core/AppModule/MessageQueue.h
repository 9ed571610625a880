// The message queue over any event pump: the order of messages is the application's own, so that it is the
// same in a real window and in a played session.
#pragma once

#include "core/Platform/Message.h"

#include <boost/noncopyable.hpp>

#include <deque>

class CMessageQueue : public IMessageQueue, boost::noncopyable {
public:
    /// Without a pump only posted messages come, and Get answers -1 when there are none.
    CMessageQueue() = default;
    /// The pump must be set before Peek or Get waits for it, and outlive the queue's use.
    void SetPump(IEventPump* pPump) { m_pPump = pPump; }

    bool Peek() override;
    int Get(TMessage& msg) override;
    void Dispatch(const TMessage& msg) override;
    void Post(const TMessage& msg) override { m_deqMessages.push_back(msg); }
    void PostQuit() override { m_bQuit = true; }
    void Forget(const IWindow* pWindow) override;

private:
    IEventPump* m_pPump = nullptr;
    std::deque<TMessage> m_deqMessages;
    bool m_bQuit = false;
};

/// Delivers a message at once, past the queue: the window's client first, its default handling after.
void SendMessage(const TMessage& msg);
