// Qt's events as a source of messages, without QApplication::exec: the session's own message loop runs it.
#pragma once

#include "core/Platform/Message.h"
#include "ui/input/QtKeys.h"

#include <QPointer>

#include <boost/noncopyable.hpp>

#include <cstdint>
#include <deque>
#include <vector>

/// Messages from Qt are held here and passed to the queue one by one. The queue requests one only when it
/// is empty, after the previous message and all that the application posted to itself have been handled. So
/// IKeyState matches the message being handled, and a burst of events has the same result as slow events.
class CQtEventPump : public IEventPump, boost::noncopyable {
public:
    CQtEventPump(IMessageQueue& queue, CQtKeyState& keys) : m_queue(queue), m_keys(keys) {}
    /// Frees the objects that FreeLater holds.
    ~CQtEventPump() override;

    bool Pump(bool bWait) override;

    /// Appends a message that comes from Qt. No exception may pass through Qt's calls: without memory the
    /// message is lost, the user is notified, and the result is false.
    bool Post(const TMessage& msg);
    /// Removes all pending messages of a window, here and in the queue.
    void Forget(const IWindow* pWindow);
    /// Incremented whenever no message is pending: a message posted in an earlier round has been handled.
    uint64_t GetRound() const { return m_uRound; }

    /// Frees an object when control returns to the message loop. Never throws.
    void FreeLater(QObject* pObject) noexcept;

private:
    struct THeld {
        TMessage msg;
        CQtKeyState::TKeys keys;
    };

    void Release();
    void Free();

    IMessageQueue& m_queue;
    CQtKeyState& m_keys;
    std::deque<THeld> m_deqHeld;
    std::vector<QPointer<QObject>> m_vDead;
    uint64_t m_uRound = 1;
};
