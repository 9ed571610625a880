#include "core/PathErase/ToolOptPathEraser.h"

#include "core/Base/Failure.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>

namespace {

enum EPathEraserControl : int {
    PATH_ERASER_MODE_FIRST = 1361, ///< one button for each EEraseMode
    PATH_ERASER_RADIUS = 1364,
};

constexpr const wchar_t* MODE_NAMES[ERASE_MODES] = {L"線全体", L"交点まで", L"触れた部分"};
constexpr const wchar_t* MODE_TIPS[ERASE_MODES] = {L"触れた線を一本まるごと消す",
                                                   L"触れたところを、ほかの線と交わるところまで消す",
                                                   L"触れたところだけを消す"};
constexpr int UNITS_OF_PIXEL = 8;

} // namespace

CToolOptPathEraser::CToolOptPathEraser() {
    using EKind = TPanelControl::EKind;
    for (int n = 0; n < ERASE_MODES; ++n)
        m_vControls.push_back({.kind = EKind::Toggle,
                               .nId = PATH_ERASER_MODE_FIRST + n,
                               .strText = MODE_NAMES[n],
                               .strTip = MODE_TIPS[n],
                               .bSameLine = n != 0});
    m_vControls.push_back({.kind = EKind::Slider,
                           .nId = PATH_ERASER_RADIUS,
                           .strLabel = L"半径",
                           .strUnit = L" px",
                           .nMin = 1,
                           .nMax = CPathEraser::MAX_RADIUS / UNITS_OF_PIXEL});
}

void CToolOptPathEraser::RefreshView(const boost::shared_ptr<CTools>& spTool) {
    const auto spEraser = boost::dynamic_pointer_cast<CPathEraser>(spTool);
    SELF_CHECK(defect_logic, spEraser);
    m_wpTool = spEraser;
    for (int n = 0; n < ERASE_MODES; ++n) Find(PATH_ERASER_MODE_FIRST + n).nValue = n == spEraser->GetMode();
    Find(PATH_ERASER_RADIUS).nValue = std::max(spEraser->GetRadius() / UNITS_OF_PIXEL, 1);
}

void CToolOptPathEraser::OnControl(const TPanelControl& control) {
    const auto spTool = m_wpTool.lock();
    if (!spTool) return;
    if (control.nId == PATH_ERASER_RADIUS)
        spTool->SetRadius(control.nValue * UNITS_OF_PIXEL);
    else
        spTool->SetMode(static_cast<EEraseMode>(control.nId - PATH_ERASER_MODE_FIRST));
}
