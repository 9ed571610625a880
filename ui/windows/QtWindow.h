// The life of the application's windows, the same for the main window, the canvases and the panels: made
// hidden, opened to its client, destroyed once, freed on return to the message loop.
#pragma once

#include "core/Platform/Window.h"

#include <QCloseEvent>
#include <QString>
#include <QWidget>

#include <boost/noncopyable.hpp>

#include <functional>
#include <vector>

class CQtEventPump;
class CQtKeyFilter;

/// The part of the life that does not depend on the kind of window.
class CQtWindowLife : boost::noncopyable {
public:
    /// `window` and `widget` are one object, of which this is a member. `pOwner` destroys it with its own
    /// window; null for none. `pump` and `keys` outlive it.
    CQtWindowLife(IWindow& window, QWidget& widget, IWindowClient& client, CQtEventPump& pump,
                  CQtKeyFilter& keys, CQtWindowLife* pOwner);
    ~CQtWindowLife();

    /// The window is complete: its client is told of everything from now on until Destroy begins.
    void Open() { m_state = EState::Open; }
    bool IsOpen() const { return m_state == EState::Open; }
    bool IsDestroyed() const { return m_state == EState::Destroyed; }
    IWindowClient& GetClient() const { return *m_pClient; }
    CQtEventPump& GetPump() const { return m_pump; }

    /// Posts and sends nothing unless the window is open. False for a message that was not posted.
    bool Post(EMessage id, int64_t wParam = 0, int64_t lParam = 0, const QString& strText = {});
    void Send(EMessage id, int64_t wParam = 0, int64_t lParam = 0);
    /// Default handling: Close destroys the window, a key goes to the widget that it was typed into.
    void Default(const TMessage& msg);
    /// Destroys the window and those that it owns; a second call has no effect, so any handler may call it.
    /// `fnLeave` takes the window out of the lists of others before its client gets Destroy.
    void Destroy(const std::function<void()>& fnLeave);
    /// Detaches the windows from their clients, which may be gone, after the session has failed.
    void Abandon();

private:
    enum class EState { Made, Open, Destroyed };

    void LeaveOwner();

    IWindow& m_window;
    QWidget& m_widget;
    IWindowClient* m_pClient; ///< null after its final message
    CQtEventPump& m_pump;
    CQtKeyFilter& m_keys;
    CQtWindowLife* m_pOwner;
    std::vector<CQtWindowLife*> m_vOwned; ///< in the order of their creation
    EState m_state = EState::Made;
};

/// A window: a widget that implements the window interface. The constructor of a derived class ends with
/// `m_life.Open()`.
template <class Widget, class Interface>
class CQtWindow : public Widget, public Interface {
public:
    CQtWindow(IWindowClient& client, CQtEventPump& pump, CQtKeyFilter& keys, CQtWindowLife* pOwner = nullptr,
              QWidget* pParent = nullptr)
        : Widget(pParent), m_life(*this, *this, client, pump, keys, pOwner) {}

    IWindowClient& GetClient() override { return m_life.GetClient(); }
    void DefaultMessage(const TMessage& msg) override { m_life.Default(msg); }
    void Destroy() final {
        m_life.Destroy([this] { OnLeave(); });
    }
    void Show() final {
        if (!m_life.IsDestroyed()) OnShow();
    }
    void SetRect(const CRect& rc) override {
        this->move(rc.left, rc.top);
        this->resize(rc.Width(), rc.Height());
    }
    void Invalidate(const CRect&) override { this->update(); }

    CQtWindowLife& GetLife() { return m_life; }
    /// True once Destroy has begun: then nothing may be created in the window.
    bool IsDestroyed() const { return m_life.IsDestroyed(); }

protected:
    /// Called first when the window is destroyed.
    virtual void OnLeave() = 0;
    virtual void OnShow() = 0;
    /// True for a window that the user only hides; otherwise the client decides whether it closes.
    virtual bool HidesOnClose() const { return false; }
    void closeEvent(QCloseEvent* pEvent) override {
        if (HidesOnClose()) return Widget::closeEvent(pEvent);
        pEvent->ignore();
        m_life.Post(EMessage::Close);
    }

    CQtWindowLife m_life;
};
