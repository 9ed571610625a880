// Routing of keys: the application gets every key first, as a message; a key that it declines is sent back
// to the widget with the focus. Text typed into a panel stays there.
#pragma once

#include "core/Platform/Message.h"

#include <QKeyEvent>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <deque>
#include <functional>
#include <memory>
#include <set>

class CQtEventPump;
class CQtKeyState;

class CQtKeyFilter : public QObject {
public:
    /// Filters the events of the whole application for as long as it lives.
    CQtKeyFilter(CQtEventPump& pump, CQtKeyState& keys);

    /// Handles the keys of a window. `receiver` returns the window that gets their messages, null for none.
    void SetWindow(QWidget* pWindow, std::function<IWindow*()> receiver);
    /// Sends a declined key message's event to the widget that it was typed into.
    void Default(const TMessage& msg);
    /// True while a key is down, as of the message being handled.
    bool IsKeyDown(int nVirtualKey) const;

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    struct TTyped {
        TMessage msg;
        uint64_t uRound = 0;
        QPointer<QWidget> pWidget;
        std::unique_ptr<QKeyEvent> pEvent;
    };

    static void CompleteModifiers(QInputEvent& event);
    const QWidget* PanelOf(const QWidget& widget) const;
    bool IsForControl(const QWidget& widget, const QKeyEvent& event) const;
    bool IsPanelText(const QWidget* pWidget) const;
    const QWidget* TextOf(const QWidget* pWidget) const;
    bool Takes(const QWidget& widget) const;
    void OnKey(QWidget& widget, const QKeyEvent& event);
    bool OnText(const QWidget& widget, const QWidget& text, const QKeyEvent& event);
    void PostKey(IWindow* pReceiver, int nVirtualKey, bool bDown, bool bAlt);
    void PostRelease(int nVirtualKey);
    void OnInactive();

    CQtEventPump& m_pump;
    CQtKeyState& m_keys;
    QPointer<QWidget> m_pWindow;
    std::function<IWindow*()> m_fnReceiver;
    std::set<int> m_setTold;           ///< keys reported as pressed and not yet released
    std::deque<TTyped> m_deqTyped;     ///< events whose messages may still be declined
    const QEvent* m_pResent = nullptr; ///< the event being sent back, null for none
};
