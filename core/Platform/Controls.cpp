#include "core/Platform/Controls.h"

#include "core/Base/Failure.h"

#include <algorithm>

bool CControlModel::OnControlMessage(const TMessage& msg) {
    using enum TPanelControl::EKind;
    const int nId = static_cast<int>(msg.wParam);
    const int nView = PackedView(msg.wParam);
    const int nRow = static_cast<int>(msg.lParam);
    switch (msg.id) {
    case EMessage::PanelChange: {
        TPanelControl& control = Find(nId);
        const auto idx = static_cast<size_t>(&control - m_vControls.data());
        TPanelControl before = control;
        control.nValue = nRow;
        if (control.kind == Text || control.kind == Number) control.strText = msg.strText;
        try {
            OnControl(control);
        } catch (...) {
            if (idx < m_vControls.size()) m_vControls[idx] = std::move(before);
            throw;
        }
        return true;
    }
    case EMessage::PanelActivate:
        OnActivateRow(nId, nRow);
        return false;
    case EMessage::PanelRename:
        OnRenameRow(nId, nRow, msg.strText);
        return true;
    case EMessage::PanelMove:
        OnMoveRow(nId, PackedX(msg.lParam), PackedY(msg.lParam));
        return true;
    case EMessage::PanelEye:
        OnEye(nId, PackedX(msg.lParam), static_cast<EEyeAct>(std::clamp(PackedY(msg.lParam), 0, 2)));
        return true;
    case EMessage::PanelFold:
        OnFold(nId, PackedX(msg.lParam), PackedY(msg.lParam) != 0);
        return true;
    case EMessage::PanelDrop: {
        const int32_t nDrop = PackedY(msg.lParam);
        OnDrop(nId, PackedX(msg.lParam), DroppedRow(nDrop),
               static_cast<EDropAt>(std::min(DroppedAt(nDrop), 2)));
        return true;
    }
    case EMessage::PanelMenu:
        OnMenu(nId, nRow);
        return true;
    case EMessage::LButtonDown:
    case EMessage::MouseMove:
    case EMessage::LButtonUp:
        OnPointer(nView, msg.id, {PackedX(msg.lParam), PackedY(msg.lParam)});
        return false;
    case EMessage::KeyDown:
        if (nView) OnKey(nView, static_cast<int>(msg.wParam & 0xFF));
        return false;
    default:
        return false;
    }
}

TPanelControl& CControlModel::Find(int nId) {
    const auto it = std::find_if(m_vControls.begin(), m_vControls.end(),
                                 [&](const TPanelControl& control) { return control.nId == nId; });
    SELF_CHECK(invalid_argument, it != m_vControls.end());
    return *it;
}
