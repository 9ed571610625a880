#include "ui/QtKeyFilter.h"

#include "core/AppModule/ErrorBox.h"
#include "core/Platform/System.h"
#include "ui/QtEventPump.h"
#include "ui/QtKeys.h"
#include "ui/QtPanel.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QScopedValueRollback>

#include <algorithm>

CQtKeyFilter::CQtKeyFilter(CQtEventPump& pump, CQtKeyState& keys) : m_pump(pump), m_keys(keys) {
    qApp->installEventFilter(this);
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state != Qt::ApplicationActive) m_keys.Clear();
    });
}

void CQtKeyFilter::SetWindow(QWidget* pWindow, std::function<IWindow*()> receiver) {
    m_pWindow = pWindow;
    m_fnReceiver = std::move(receiver);
    m_deqTyped.clear();
}

bool CQtKeyFilter::IsKeyDown(int nVirtualKey) const { return m_keys.IsKeyDown(nVirtualKey); }

namespace {

// In a panel a control comes first, text with every key and the others with those that no shortcut has; what
// it declines goes up to the panel and from there to the application.
bool IsForControl(const QWidget& widget, const QKeyEvent& event) {
    const CQtPanel* pPanel = CQtPanel::Of(widget);
    if (!pPanel || pPanel == &widget) return false;
    return qobject_cast<const QLineEdit*>(&widget) || qobject_cast<const QAbstractSpinBox*>(&widget) ||
           !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
}

} // namespace

bool CQtKeyFilter::Takes(const QWidget& widget) const {
    // An open menu, a list that has dropped down and a dialog keep their keys.
    const QWidget* pModal = QApplication::activeModalWidget();
    const CQtPanel* pPanel = CQtPanel::Of(widget);
    const QWidget* pWindow = pPanel ? pPanel->parentWidget() : widget.window();
    return m_pWindow && pWindow == m_pWindow && !QApplication::activePopupWidget() &&
           (!pModal || pModal == m_pWindow) && !qobject_cast<const QMenuBar*>(&widget);
}

bool CQtKeyFilter::eventFilter(QObject* pWatched, QEvent* pEvent) {
    const QEvent::Type type = pEvent->type();
    if (type != QEvent::KeyPress && type != QEvent::KeyRelease) {
        if (pEvent->isPointerEvent()) m_keys.SyncModifiers(static_cast<QInputEvent*>(pEvent)->modifiers());
        return false;
    }
    if (pEvent == m_pResent) return false;
    // Wherever a key goes to, that it is down is known to all.
    auto& event = static_cast<QKeyEvent&>(*pEvent);
    if (!event.isAutoRepeat()) m_keys.Press(VirtualKeyOf(event), type == QEvent::KeyPress);
    auto* pWidget = qobject_cast<QWidget*>(pWatched);
    if (!pWidget || m_pResent || !Takes(*pWidget) || IsForControl(*pWidget, event)) return false;
    Guarded([&] { return OnKey(*pWidget, event), true; });
    event.accept();
    return true;
}

void CQtKeyFilter::OnKey(QWidget& widget, const QKeyEvent& event) {
    const int nVirtualKey = VirtualKeyOf(event);
    const bool bDown = event.type() == QEvent::KeyPress;
    // A held key comes as presses with a release between each two; the application knows presses only.
    if (!bDown && event.isAutoRepeat()) return;
    IWindow* pReceiver = m_fnReceiver ? m_fnReceiver() : nullptr;
    if (!pReceiver) return;
    const bool bAlt = event.modifiers().testFlag(Qt::AltModifier) || nVirtualKey == VK_Alt;
    const EMessage id = bDown ? (bAlt ? EMessage::SysKeyDown : EMessage::KeyDown)
                              : (bAlt ? EMessage::SysKeyUp : EMessage::KeyUp);
    TTyped typed{{pReceiver, id, nVirtualKey, event.isAutoRepeat() ? 1 : 0, {}},
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
    // Those before it have been handled: messages keep their order.
    m_deqTyped.erase(m_deqTyped.begin(), it + 1);
    if (!typed.pWidget) return;
    const QScopedValueRollback<const QEvent*> guard(m_pResent, typed.pEvent.get());
    QCoreApplication::sendEvent(typed.pWidget, typed.pEvent.get());
}
