// Fingers on a touch screen: one is the pointer, two move and zoom the picture.
#pragma once

#include "core/Base/Geometry.h"
#include "core/Platform/Message.h"

#include <QPointF>

#include <cstdint>
#include <functional>
#include <utility>

class QTouchEvent;

/// Sums up magnifications to lines of the zoom list.
class CPinchSteps {
public:
    void Begin() { m_dPinch = 1; }
    /// The line that the next magnification completes: 1, -1 or 0.
    int Add(qreal dFactor);

private:
    static constexpr qreal STEP = 1.25; ///< the fingers' magnification for a line
    qreal m_dPinch = 1;                 ///< since the last line
};

/// Positions are client pixels.
class CQtTouch {
public:
    /// A second finger that comes later, in milliseconds, does not take away what the first has drawn.
    static constexpr uint64_t PINCH_MS = 300;

    struct TEvents {
        /// The first finger as the left mouse button; CaptureChanged when a second one takes its place.
        std::function<void(EMessage id, CPoint pt)> pointer;
        std::function<void(int nSteps, CPoint pt)> pinch; ///< positive magnifies
        /// The picture is to be moved; false when it cannot be at present: the distance is added to the next.
        std::function<bool(CPoint ptDistance)> move;
    };

    explicit CQtTouch(TEvents events) : m_events(std::move(events)) {}
    /// Handles an event of the view with that scale; false for those of a touch pad, which are no pointer.
    bool OnEvent(const QTouchEvent& event, qreal dScale);

private:
    enum class EState {
        Up,
        Pointer, ///< one finger draws
        Pinch,   ///< two fingers move the picture
        Spent,   ///< it has drawn, a hand that came late is left: until all are lifted
    };
    void BeginPinch(const QTouchEvent& event, qreal dScale);
    void FollowPointer(const QTouchEvent& event, qreal dScale);
    void FollowPinch(const QTouchEvent& event, qreal dScale);

    TEvents m_events;
    EState m_state = EState::Up;
    int m_nFirst = 0, m_nSecond = 0; ///< the fingers' numbers
    uint64_t m_uBegin = 0;           ///< when the first finger came, in milliseconds
    QPointF m_ptMiddle;              ///< of both fingers, where the picture was moved to
    qreal m_dDistance = 0;           ///< between them
    CPinchSteps m_steps;
};
