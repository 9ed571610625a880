#include "ui/QtEventPump.h"

#include "ui/QtApplication.h"

#include <QCoreApplication>
#include <QEvent>

CQtEventPump::~CQtEventPump() {
    for (const QPointer<QObject>& pObject : m_vDead) delete pObject.data();
}

bool CQtEventPump::Pump(bool bWait) {
    if (!QCoreApplication::instance()) return false;
    if (m_deqHeld.empty()) {
        ++m_uRound;
        QEventLoop::ProcessEventsFlags flags = QEventLoop::AllEvents;
        if (bWait) flags |= QEventLoop::WaitForMoreEvents;
        QCoreApplication::processEvents(flags);
        Free();
    }
    Release();
    return true;
}

void CQtEventPump::Post(const TMessage& msg) { m_deqHeld.push_back({msg, m_keys.GetPresent()}); }

void CQtEventPump::Release() {
    m_keys.Follow(m_deqHeld.empty() ? m_keys.GetPresent() : m_deqHeld.front().keys);
    const CQtKeyState::TKeys keys = m_deqHeld.empty() ? CQtKeyState::TKeys() : m_deqHeld.front().keys;
    while (!m_deqHeld.empty() && m_deqHeld.front().keys == keys) {
        m_queue.Post(m_deqHeld.front().msg);
        m_deqHeld.pop_front();
    }
}

void CQtEventPump::Forget(const IWindow* pWindow) {
    std::erase_if(m_deqHeld, [&](const THeld& held) { return held.msg.pWindow == pWindow; });
    m_queue.Forget(pWindow);
}

void CQtEventPump::FreeLater(QObject* pObject) {
    pObject->deleteLater();
    m_vDead.emplace_back(pObject);
}

void CQtEventPump::Free() {
    // Without QApplication::exec nobody takes up what deleteLater leaves at this level. In a host's program
    // that may be the host's objects too, in use further down the stack: there only ours are freed. What was
    // left at a deeper level Qt frees itself; what belongs to an outer one has to wait for it.
    if (OwnsApplication()) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    } else {
        const std::vector<QPointer<QObject>> vDead = m_vDead;
        for (const QPointer<QObject>& pObject : vDead)
            if (pObject) QCoreApplication::sendPostedEvents(pObject.data(), QEvent::DeferredDelete);
    }
    std::erase_if(m_vDead, [](const QPointer<QObject>& pObject) { return pObject.isNull(); });
}
