#include "ui/input/QtTouch.h"

#include <QLineF>
#include <QPointingDevice>
#include <QTouchEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr qreal LEAST_DISTANCE = 1; ///< in pixels: fingers on one place magnify nothing

CPoint PixelOf(QPointF pt) {
    return {static_cast<int32_t>(std::floor(pt.x())), static_cast<int32_t>(std::floor(pt.y()))};
}

bool IsDown(const QEventPoint& point) { return point.state() != QEventPoint::Released; }

} // namespace

int CPinchSteps::Add(qreal dFactor) {
    m_dPinch *= dFactor;
    const int nSteps = m_dPinch >= STEP ? 1 : m_dPinch <= 1 / STEP ? -1 : 0;
    if (nSteps != 0) m_dPinch = 1;
    return nSteps;
}

bool CQtTouch::OnEvent(const QTouchEvent& event, qreal dScale) {
    if (event.pointingDevice()->type() != QInputDevice::DeviceType::TouchScreen) return false;
    const auto nDown = std::ranges::count_if(event.points(), IsDown);
    const bool bPointer = m_state == EState::Pointer;
    if (event.type() == QEvent::TouchCancel) {
        if (bPointer) m_events.pointer(EMessage::CaptureChanged, {});
        m_state = EState::Up;
        return true;
    }
    if (nDown >= 2 && (m_state == EState::Up || (bPointer && event.timestamp() - m_uBegin <= PINCH_MS))) {
        if (bPointer) m_events.pointer(EMessage::CaptureChanged, {});
        BeginPinch(event, dScale);
    } else if (m_state == EState::Pinch) {
        FollowPinch(event, dScale);
    } else {
        FollowPointer(event, dScale);
    }
    if (nDown == 0) m_state = EState::Up;
    return true;
}

void CQtTouch::FollowPointer(const QTouchEvent& event, qreal dScale) {
    for (const QEventPoint& point : event.points()) {
        const CPoint pt = PixelOf(point.position() * dScale);
        if (m_state == EState::Up && point.state() == QEventPoint::Pressed) {
            m_state = EState::Pointer;
            m_nFirst = point.id();
            m_uBegin = event.timestamp();
            m_events.pointer(EMessage::LButtonDown, pt);
        } else if (m_state == EState::Pointer && point.id() == m_nFirst) {
            if (point.state() == QEventPoint::Updated) m_events.pointer(EMessage::MouseMove, pt);
            if (IsDown(point)) continue;
            m_events.pointer(EMessage::LButtonUp, pt);
            m_state = EState::Spent;
        }
    }
}

void CQtTouch::BeginPinch(const QTouchEvent& event, qreal dScale) {
    m_state = EState::Pinch;
    m_nFirst = m_nSecond = -1;
    for (const QEventPoint& point : event.points())
        if (IsDown(point)) (m_nFirst < 0 ? m_nFirst : m_nSecond) = point.id();
    m_steps.Begin();
    m_dDistance = 0;
    FollowPinch(event, dScale);
}

void CQtTouch::FollowPinch(const QTouchEvent& event, qreal dScale) {
    const QEventPoint* aFingers[2] = {};
    for (const QEventPoint& point : event.points()) {
        if (!IsDown(point)) continue;
        if (point.id() == m_nFirst) aFingers[0] = &point;
        if (point.id() == m_nSecond) aFingers[1] = &point;
    }
    if (!aFingers[0] || !aFingers[1]) {
        m_state = EState::Up; // the one that is left draws nothing; with another one it goes on
        return;
    }
    const QLineF line(aFingers[0]->position() * dScale, aFingers[1]->position() * dScale);
    const qreal dBefore = std::exchange(m_dDistance, std::max(line.length(), LEAST_DISTANCE));
    if (dBefore == 0) {
        m_ptMiddle = line.center();
        return;
    }
    const CPoint ptDistance{qRound(line.center().x() - m_ptMiddle.x()),
                            qRound(line.center().y() - m_ptMiddle.y())};
    if (!(ptDistance == CPoint()) && m_events.move(ptDistance))
        m_ptMiddle += QPointF(ptDistance.x, ptDistance.y);
    if (const int nSteps = m_steps.Add(m_dDistance / dBefore)) m_events.pinch(nSteps, PixelOf(line.center()));
}
