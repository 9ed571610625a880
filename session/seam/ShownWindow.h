// A real window that shows the content of a session's own window.
#pragma once

#include "core/Platform/Window.h"

#include <boost/noncopyable.hpp>

#include <functional>

/// The client of a real window that is owned by its window system. It does not forward input to the
/// application: a session's result must not depend on real pointers, sizes and timing. Only closing is
/// reported.
template <class Interface>
class CShownWindow : public IWindowClient, boost::noncopyable {
public:
    /// `fnCreate` creates the window for this client; null from it: nothing is shown.
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

    std::function<void()> m_fnClose;                               ///< called when the user closes the
                                                                   ///< window
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
