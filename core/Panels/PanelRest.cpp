#include "core/Panels/PanelRest.h"

void CPanelRest::Follow(const TMessage& msg, bool bPanel, uint32_t uTick) {
    if (bPanel) return End();
    switch (msg.id) {
    case EMessage::MouseMove:
    case EMessage::LButtonDown:
    case EMessage::LButtonUp:
    case EMessage::RButtonDown:
    case EMessage::RButtonUp:
    case EMessage::MButtonDown:
    case EMessage::MButtonUp:
    case EMessage::PenPacket:
        m_bMoving = true;
        m_uMoveTick = uTick;
        break;
    case EMessage::MouseLeave:
    case EMessage::PenProximity:
        End();
        break;
    default:
        break;
    }
}
