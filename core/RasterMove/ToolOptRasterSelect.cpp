#include "core/RasterMove/ToolOptRasterSelect.h"

#include "core/Base/Failure.h"

#include <boost/pointer_cast.hpp>

#include <iterator>

namespace {

enum ESelectControl : int {
    SELECT_SHAPE_FIRST = 1171, ///< a button for each ESelectShape
    SELECT_ANTIALIAS = 1174,
};

constexpr const wchar_t* SHAPE_NAMES[] = {L"矩形", L"楕円", L"自由"};

} // namespace

CToolOptRasterSelect::CToolOptRasterSelect() {
    using EKind = TPanelControl::EKind;
    for (int n = 0; n < std::ssize(SHAPE_NAMES); ++n)
        m_vControls.push_back({.kind = EKind::Radio,
                               .nId = SELECT_SHAPE_FIRST + n,
                               .strLabel = n == 0 ? L"形" : L"",
                               .strText = SHAPE_NAMES[n],
                               .bSameLine = n != 0});
    m_vControls.push_back({.kind = EKind::Check, .nId = SELECT_ANTIALIAS, .strText = L"アンチエイリアス"});
}

void CToolOptRasterSelect::RefreshView(const boost::shared_ptr<CTools>& spTool) {
    const auto spSelect = boost::dynamic_pointer_cast<CRasterSelect>(spTool);
    if (!spSelect) throw internal_error(L"RefreshView: CRasterSelect not found");
    m_wpTool = spSelect;
    for (int n = 0; n < std::ssize(SHAPE_NAMES); ++n)
        Find(SELECT_SHAPE_FIRST + n).nValue = n == static_cast<int>(spSelect->GetShape());
    Find(SELECT_ANTIALIAS).nValue = spSelect->IsAntialias();
}

void CToolOptRasterSelect::OnControl(const TPanelControl& control) {
    const auto spTool = m_wpTool.lock();
    if (!spTool) return;
    if (control.nId == SELECT_ANTIALIAS)
        spTool->SetAntialias(control.nValue != 0);
    else
        spTool->SetShape(static_cast<ESelectShape>(control.nId - SELECT_SHAPE_FIRST));
}
