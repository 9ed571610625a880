// Qt's events as a source of messages, without QApplication::exec: the session's own loop turns it.
#pragma once

#include "core/Platform/Message.h"
#include "ui/QtKeys.h"

#include <QPointer>

#include <boost/noncopyable.hpp>

#include <cstdint>
#include <deque>
#include <vector>

/// What Qt tells is held here and handed to the queue one by one. The queue asks only when it is empty: a
/// message is handed over after the one before has been handled, and all that the application then posted to
/// itself. So IKeyState answers for the message being handled, and a burst of events is the same as events
/// at leisure.
class CQtEventPump : public IEventPump, boost::noncopyable {
public:
    CQtEventPump(IMessageQueue& queue, CQtKeyState& keys) : m_queue(queue), m_keys(keys) {}
    /// Frees what FreeLater still holds.
    ~CQtEventPump() override;

    bool Pump(bool bWait) override;

    /// Posts a message that comes from Qt, behind those before it. Qt's calls let no exception through:
    /// without memory the message is lost, and the user is told.
    void Post(const TMessage& msg);
    /// Drops every waiting message of a window, here and in the queue.
    void Forget(const IWindow* pWindow);
    /// Counts the moments at which nothing was waiting: a message posted in an earlier round has been
    /// handled.
    uint64_t GetRound() const { return m_uRound; }

    /// Frees an object when control is back in the message loop. Never throws.
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
