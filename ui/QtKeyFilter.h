// The keyboard's road: every key goes to the application first, as a message, and back to the widget that it
// was typed into when the application has no use for it. What is typed into a panel's text stays there.
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
    /// Watches the whole application for as long as the filter lives.
    CQtKeyFilter(CQtEventPump& pump, CQtKeyState& keys);

    /// Takes the keys typed into a window. `receiver` names who gets their messages, null for nobody.
    void SetWindow(QWidget* pWindow, std::function<IWindow*()> receiver);
    /// Hands a declined key message's event to the widget that it was typed into.
    void Default(const TMessage& msg);
    /// True while a key is down, by the message being handled.
    bool IsKeyDown(int nVirtualKey) const;

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    struct TTyped {
        TMessage msg;
        uint64_t uRound = 0;
        QPointer<QWidget> pWidget;
        std::unique_ptr<QKeyEvent> pEvent;
    };

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
    std::set<int> m_setTold;           ///< keys whose press the application was told of, but no release yet
    std::deque<TTyped> m_deqTyped;     ///< events whose messages may still be declined
    const QEvent* m_pResent = nullptr; ///< the event on its way back, null when none is
};
