// The message queue over any event pump. The application defines the order of messages, so that it is the
// same in a real window and in a replayed session.
#pragma once

#include "core/Platform/Message.h"

#include <boost/noncopyable.hpp>

#include <deque>

class CMessageQueue : public IMessageQueue, boost::noncopyable {
public:
    /// Without a pump only posted messages are delivered, and Get returns -1 when there are none.
    CMessageQueue() = default;
    /// Must be called before Peek or Get waits; the pump must outlive the use of the queue.
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

/// Delivers a message immediately, bypassing the queue: first the window's client, then its default
/// handling.
void SendMessage(const TMessage& msg);
