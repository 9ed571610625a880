#include "ui/input/QtEventPump.h"

#include "core/AppModule/ErrorBox.h"
#include "ui/base/QtApplication.h"

#include <QCoreApplication>
#include <QEvent>

#include <new>

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
    // Messages that could not be passed on stay for the next time.
    Guarded([&] { Release(); });
    return true;
}

bool CQtEventPump::Post(const TMessage& msg) {
    return Guarded([&] { m_deqHeld.push_back({msg, m_keys.GetPresent()}); });
}

void CQtEventPump::Release() {
    m_keys.Follow(m_deqHeld.empty() ? m_keys.GetPresent() : m_deqHeld.front().keys);
    if (m_deqHeld.empty()) return;
    m_queue.Post(m_deqHeld.front().msg);
    m_deqHeld.pop_front();
}

void CQtEventPump::Forget(const IWindow* pWindow) {
    std::erase_if(m_deqHeld, [&](const THeld& held) { return held.msg.pWindow == pWindow; });
    m_queue.Forget(pWindow);
}

void CQtEventPump::FreeLater(QObject* pObject) noexcept {
    pObject->deleteLater();
    try {
        m_vDead.emplace_back(pObject);
    } catch (const std::bad_alloc&) {
        // Qt then frees the remaining objects itself.
    }
}

void CQtEventPump::Free() {
    // Without QApplication::exec nothing handles deleteLater at this level. In a host's program these may
    // also be the host's objects, in use further down the stack: there only ours are freed. Qt frees
    // objects of deeper levels itself; those of outer levels have to wait for their level.
    if (OwnsApplication()) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    } else {
        for (size_t idx = 0; idx < m_vDead.size(); ++idx)
            if (QObject* pObject = m_vDead[idx].data())
                QCoreApplication::sendPostedEvents(pObject, QEvent::DeferredDelete);
    }
    std::erase_if(m_vDead, [](const QPointer<QObject>& pObject) { return pObject.isNull(); });
}
