#include "ui/input/QtKeyFilter.h"

#include "core/AppModule/ErrorBox.h"
#include "core/Platform/System.h"
#include "core/Platform/Window.h"
#include "ui/base/QtApplication.h"
#include "ui/input/QtEventPump.h"
#include "ui/input/QtKeys.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QDockWidget>
#include <QLineEdit>
#include <QMenuBar>
#include <QScopedValueRollback>

#include <algorithm>

CQtKeyFilter::CQtKeyFilter(CQtEventPump& pump, CQtKeyState& keys) : m_pump(pump), m_keys(keys) {
    qApp->installEventFilter(this);
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state != Qt::ApplicationActive) OnInactive();
    });
}

void CQtKeyFilter::SetWindow(QWidget* pWindow, std::function<IWindow*()> receiver) {
    m_pWindow = pWindow;
    m_fnReceiver = std::move(receiver);
    m_deqTyped.clear();
    m_setTold.clear();
}

// Key events are not reported while another program has the keyboard: all keys count as released.
void CQtKeyFilter::OnInactive() {
    m_keys.Clear();
    while (!m_setTold.empty()) PostRelease(*m_setTold.begin());
}

bool CQtKeyFilter::IsKeyDown(int nVirtualKey) const { return m_keys.IsKeyDown(nVirtualKey); }

// Qt's Wayland plug-in reports a pen, and the mouse events that it makes of it, as if no key was held.
void CQtKeyFilter::CompleteModifiers(QInputEvent& event) {
    if (event.deviceType() == QInputDevice::DeviceType::Stylus && PlacesWindowsItself())
        event.setModifiers(QGuiApplication::queryKeyboardModifiers());
}

// The window's panel that a widget stands in, null for none. A host's own docks are no panels.
const QWidget* CQtKeyFilter::PanelOf(const QWidget& widget) const {
    for (const QWidget* p = &widget; p; p = p->parentWidget())
        if (qobject_cast<const QDockWidget*>(p) && p->parentWidget() == m_pWindow) return p;
    return nullptr;
}

// A panel's control gets keys without a shortcut first; a key that it ignores goes to the panel and then to
// the application.
bool CQtKeyFilter::IsForControl(const QWidget& widget, const QKeyEvent& event) const {
    const QWidget* pPanel = PanelOf(widget);
    return pPanel && pPanel != &widget && !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
}

bool CQtKeyFilter::IsPanelText(const QWidget* pWidget) const {
    return (qobject_cast<const QLineEdit*>(pWidget) || qobject_cast<const QAbstractSpinBox*>(pWidget)) &&
           PanelOf(*pWidget);
}

// The text field of a panel that gets a key sent to `pWidget`; null for none. A key that the field ignores
// goes on to its parent widgets. `pWidget` is null while Qt's window has the key.
const QWidget* CQtKeyFilter::TextOf(const QWidget* pWidget) const {
    if (IsPanelText(pWidget)) return pWidget;
    const QWidget* pFocus = QApplication::focusWidget();
    return IsPanelText(pFocus) && (!pWidget || pWidget->isAncestorOf(pFocus)) ? pFocus : nullptr;
}

namespace {

bool IsModifier(int nVirtualKey) {
    return nVirtualKey == VK_Shift || nVirtualKey == VK_Control || nVirtualKey == VK_Alt;
}

EMessage KeyMessage(bool bDown, bool bAlt) {
    return bDown ? (bAlt ? EMessage::SysKeyDown : EMessage::KeyDown)
                 : (bAlt ? EMessage::SysKeyUp : EMessage::KeyUp);
}

// True for keys that no text field uses.
bool IsShortcut(const QKeyEvent& event) {
    const int nKey = event.key();
    return (nKey >= Qt::Key_F1 && nKey <= Qt::Key_F35) ||
           (event.modifiers() == Qt::ControlModifier && nKey >= Qt::Key_A && nKey <= Qt::Key_Z);
}

} // namespace

bool CQtKeyFilter::Takes(const QWidget& widget) const {
    // An open menu, an open list and a dialog keep their keys.
    const QWidget* pModal = QApplication::activeModalWidget();
    return m_pWindow && (PanelOf(widget) || widget.window() == m_pWindow) &&
           !QApplication::activePopupWidget() && (!pModal || pModal == m_pWindow) &&
           !qobject_cast<const QMenuBar*>(&widget);
}

bool CQtKeyFilter::eventFilter(QObject* pWatched, QEvent* pEvent) {
    const QEvent::Type type = pEvent->type();
    if (type != QEvent::KeyPress && type != QEvent::KeyRelease) {
        if (pEvent->isPointerEvent()) {
            auto& event = static_cast<QInputEvent&>(*pEvent);
            CompleteModifiers(event);
            m_keys.SyncModifiers(event.modifiers());
        }
        return false;
    }
    if (pEvent == m_pResent) return false;
    auto& event = static_cast<QKeyEvent&>(*pEvent);
    const int nVirtualKey = VirtualKeyOf(event);
    const bool bDown = type == QEvent::KeyPress;
    auto* pWidget = qobject_cast<QWidget*>(pWatched);
    const QWidget* pText = TextOf(pWidget);
    // The state of every key is tracked wherever it is sent; but a typed key must not count as held at the
    // pointer's next event.
    if (!event.isAutoRepeat() && (!bDown || !pText || IsModifier(nVirtualKey)))
        m_keys.Press(nVirtualKey, bDown);
    // Sticky keys and keyboards on the screen hold Shift, Ctrl and Alt without a key event of theirs.
    if (bDown && !IsModifier(nVirtualKey)) m_keys.SyncModifiers(event.modifiers());
    if (!pWidget || m_pResent) return false;
    const bool bTaken = !pText && Takes(*pWidget) && !IsForControl(*pWidget, event);
    // The release of a key whose press was reported may arrive at another widget.
    if (!bTaken && !bDown && !event.isAutoRepeat()) PostRelease(nVirtualKey);
    if (!bTaken && !(pText && OnText(*pWidget, *pText, event))) return false;
    if (bTaken) Guarded([&] { OnKey(*pWidget, event); });
    event.accept();
    return true;
}

// True for a key that the text field ignored and that is not passed on. The panel handles the keys that end
// typing; a shortcut goes to the main window instead of the picture.
bool CQtKeyFilter::OnText(const QWidget& widget, const QWidget& text, const QKeyEvent& event) {
    const int nKey = event.key();
    const bool bEnds = nKey == Qt::Key_Escape || nKey == Qt::Key_Return || nKey == Qt::Key_Enter;
    if (&widget == &text || (bEnds && PanelOf(widget))) return false;
    auto* pMain = dynamic_cast<IWindow*>(m_pWindow.data());
    if (event.type() == QEvent::KeyPress && !event.isAutoRepeat() && IsShortcut(event) && pMain &&
        Takes(text))
        PostKey(pMain, VirtualKeyOf(event), true, false);
    return true;
}

void CQtKeyFilter::PostKey(IWindow* pReceiver, int nVirtualKey, bool bDown, bool bAlt) {
    m_pump.Post({pReceiver, KeyMessage(bDown, bAlt), nVirtualKey, 0, {}});
}

void CQtKeyFilter::PostRelease(int nVirtualKey) {
    if (m_setTold.erase(nVirtualKey) == 0) return;
    if (IWindow* pReceiver = m_fnReceiver ? m_fnReceiver() : nullptr)
        PostKey(pReceiver, nVirtualKey, false, nVirtualKey == VK_Alt);
}

void CQtKeyFilter::OnKey(QWidget& widget, const QKeyEvent& event) {
    const int nVirtualKey = VirtualKeyOf(event);
    const bool bDown = event.type() == QEvent::KeyPress;
    // Auto-repeat sends a release between presses; the application expects presses only.
    if (!bDown && event.isAutoRepeat()) return;
    IWindow* pReceiver = m_fnReceiver ? m_fnReceiver() : nullptr;
    if (!pReceiver) return;
    if (bDown)
        m_setTold.insert(nVirtualKey);
    else
        m_setTold.erase(nVirtualKey);
    const bool bAlt = event.modifiers().testFlag(Qt::AltModifier) || nVirtualKey == VK_Alt;
    TTyped typed{{pReceiver, KeyMessage(bDown, bAlt), nVirtualKey, event.isAutoRepeat() ? 1 : 0, {}},
                 m_pump.GetRound(),
                 &widget,
                 std::unique_ptr<QKeyEvent>(static_cast<QKeyEvent*>(event.clone()))};
    m_pump.Post(typed.msg);
    while (!m_deqTyped.empty() && m_deqTyped.front().uRound != typed.uRound) m_deqTyped.pop_front();
    m_deqTyped.push_back(std::move(typed));
}

void CQtKeyFilter::Default(const TMessage& msg) {
    const auto it = std::find_if(m_deqTyped.begin(), m_deqTyped.end(), [&](const TTyped& typed) {
        return typed.msg.pWindow == msg.pWindow && typed.msg.id == msg.id && typed.msg.wParam == msg.wParam &&
               typed.msg.lParam == msg.lParam;
    });
    if (it == m_deqTyped.end()) return;
    const TTyped typed = std::move(*it);
    // Messages keep their order, so those before it have been handled.
    m_deqTyped.erase(m_deqTyped.begin(), it + 1);
    if (!typed.pWidget) return;
    const QScopedValueRollback<const QEvent*> guard(m_pResent, typed.pEvent.get());
    QCoreApplication::sendEvent(typed.pWidget, typed.pEvent.get());
}
