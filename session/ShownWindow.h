// A real window that shows what a session's own window holds.
#pragma once

#include "core/Platform/Window.h"

#include <boost/noncopyable.hpp>

#include <functional>

/// The real window belongs to its window system; here is its client, which keeps from the application what is
/// done to it: a session's outcome must not depend on real pointers, sizes and moments. Only closing is told.
template <class Interface>
class CShownWindow : public IWindowClient, boost::noncopyable {
public:
    /// `fnCreate` makes the window for this client; null from it leaves nothing to show in.
    void Open(const std::function<Interface*(IWindowClient&)>& fnCreate) { m_pWindow = fnCreate(*this); }
    ~CShownWindow() override {
        if (m_pWindow) m_pWindow->Destroy();
    }

    /// Calls `fn` with the real window, if there is one.
    template <class Function>
    void Do(Function fn) {
        if (m_pWindow) fn(*m_pWindow);
    }
    /// Null when there is none.
    Interface* Get() const { return m_pWindow; }

    std::function<void()> m_fnClose;                               ///< the user wants it closed
    std::function<void(IPaintTarget&, const CRect& rc)> m_fnPaint; ///< may be empty

    bool OnMessage(const TMessage& msg) override {
        if (msg.id == EMessage::Close && m_fnClose) m_fnClose();
        return true;
    }
    void OnPaint(IPaintTarget& target, const CRect& rc) override {
        if (m_fnPaint) m_fnPaint(target, rc);
    }
    void OnFinalMessage() override { m_pWindow = nullptr; }

private:
    Interface* m_pWindow = nullptr;
};
