#include "core/RasterTransform/ToolOptRasterTransform.h"

#include "core/Base/Failure.h"

#include <boost/pointer_cast.hpp>

namespace {

enum ETransformControl : int {
    TRANSFORM_MODE_FIRST = 1321, ///< one button for each ETransformMode
    TRANSFORM_TURN_RIGHT = 1325,
    TRANSFORM_TURN_HALF,
    TRANSFORM_TURN_LEFT,
    TRANSFORM_FLIP_ACROSS,
    TRANSFORM_FLIP_DOWN,
    TRANSFORM_ACCEPT,
    TRANSFORM_CANCEL,
};

constexpr const wchar_t* MODE_NAMES[TRANSFORM_MODES] = {L"拡大縮小", L"ゆがみ", L"回転", L"自由変形"};

} // namespace

CToolOptRasterTransform::CToolOptRasterTransform() {
    using EKind = TPanelControl::EKind;
    for (int n = 0; n < TRANSFORM_MODES; ++n)
        m_vControls.push_back({.kind = EKind::Radio,
                               .nId = TRANSFORM_MODE_FIRST + n,
                               .strText = MODE_NAMES[n],
                               .bSameLine = n % 2 != 0});
    const auto add = [&](int nId, const wchar_t* pszText, bool bSameLine) {
        m_vControls.push_back(
            {.kind = EKind::Button, .nId = nId, .strText = pszText, .bSameLine = bSameLine});
    };
    add(TRANSFORM_TURN_HALF, L"180度回転", false);
    add(TRANSFORM_TURN_RIGHT, L"90度回転(時計回り)", false);
    add(TRANSFORM_TURN_LEFT, L"90度回転(反時計回り)", false);
    add(TRANSFORM_FLIP_DOWN, L"上下反転", false);
    add(TRANSFORM_FLIP_ACROSS, L"左右反転", true);
    add(TRANSFORM_ACCEPT, L"決定", false);
    add(TRANSFORM_CANCEL, L"キャンセル", true);
}

void CToolOptRasterTransform::RefreshView(const boost::shared_ptr<CTools>& spTool) {
    const auto spTransform = boost::dynamic_pointer_cast<CRasterTransform>(spTool);
    if (!spTransform) throw internal_error(L"RefreshView: CRasterTransform not found");
    m_wpTool = spTransform;
    for (int n = 0; n < TRANSFORM_MODES; ++n)
        Find(TRANSFORM_MODE_FIRST + n).nValue = n == spTransform->GetMode();
    for (const int nId : {TRANSFORM_ACCEPT, TRANSFORM_CANCEL}) Find(nId).bEnabled = spTransform->IsOpen();
}

void CToolOptRasterTransform::OnControl(const TPanelControl& control) {
    const auto spTool = m_wpTool.lock();
    if (!spTool) return;
    switch (control.nId) {
    case TRANSFORM_TURN_RIGHT:
        return spTool->ChangeFixed(EFixedTransform::TurnRight);
    case TRANSFORM_TURN_HALF:
        return spTool->ChangeFixed(EFixedTransform::TurnHalf);
    case TRANSFORM_TURN_LEFT:
        return spTool->ChangeFixed(EFixedTransform::TurnLeft);
    case TRANSFORM_FLIP_ACROSS:
        return spTool->ChangeFixed(EFixedTransform::FlipAcross);
    case TRANSFORM_FLIP_DOWN:
        return spTool->ChangeFixed(EFixedTransform::FlipDown);
    case TRANSFORM_ACCEPT:
        return spTool->Accept();
    case TRANSFORM_CANCEL:
        return spTool->CancelPreview();
    default:
        spTool->SetMode(static_cast<ETransformMode>(control.nId - TRANSFORM_MODE_FIRST));
    }
}
