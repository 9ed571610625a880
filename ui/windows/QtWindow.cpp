#include "ui/windows/QtWindow.h"

#include "core/AppModule/ErrorBox.h"
#include "core/AppModule/MessageQueue.h"
#include "ui/base/QtScopes.h"
#include "ui/base/QtText.h"
#include "ui/input/QtEventPump.h"
#include "ui/input/QtKeyFilter.h"

#include <utility>

CQtWindowLife::CQtWindowLife(IWindow& window, QWidget& widget, IWindowClient& client, CQtEventPump& pump,
                             CQtKeyFilter& keys, CQtWindowLife* pOwner)
    : m_window(window), m_widget(widget), m_pClient(&client), m_pump(pump), m_keys(keys), m_pOwner(pOwner) {
    if (m_pOwner) m_pOwner->m_vOwned.push_back(this);
}

CQtWindowLife::~CQtWindowLife() { Abandon(); }

void CQtWindowLife::LeaveOwner() {
    if (CQtWindowLife* pOwner = std::exchange(m_pOwner, nullptr)) std::erase(pOwner->m_vOwned, this);
}

bool CQtWindowLife::Post(EMessage id, int64_t wParam, int64_t lParam, const QString& strText) {
    return IsOpen() && Guarded([&] { return m_pump.Post({&m_window, id, wParam, lParam, FromQt(strText)}); });
}

void CQtWindowLife::Send(EMessage id, int64_t wParam, int64_t lParam) {
    if (CWorkScope::IsOpen()) {
        Post(id, wParam, lParam);
    } else if (IsOpen()) {
        SendMessage({&m_window, id, wParam, lParam, {}});
    }
}

void CQtWindowLife::Default(const TMessage& msg) {
    switch (msg.id) {
    case EMessage::Close:
        m_window.Destroy();
        break;
    case EMessage::KeyDown:
    case EMessage::KeyUp:
    case EMessage::SysKeyDown:
    case EMessage::SysKeyUp:
        m_keys.Default(msg);
        break;
    default:
        break;
    }
}

void CQtWindowLife::Destroy(const std::function<void()>& fnLeave) {
    if (IsDestroyed()) return;
    m_state = EState::Destroyed;
    LeaveOwner(); // which may be destroyed by what follows
    fnLeave();
    SendMessage({&m_window, EMessage::Destroy, 0, 0, {}});
    m_widget.hide();
    while (!m_vOwned.empty()) m_vOwned.front()->m_window.Destroy();
    std::exchange(m_pClient, nullptr)->OnFinalMessage();
    m_pump.Forget(&m_window);
    m_pump.FreeLater(&m_widget);
}

void CQtWindowLife::Abandon() {
    m_state = EState::Destroyed;
    while (!m_vOwned.empty()) m_vOwned.front()->Abandon();
    LeaveOwner();
    m_pClient = nullptr;
    m_pump.Forget(&m_window);
}
