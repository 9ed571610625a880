#include "core/PathPen/ToolOptPathPen.h"

#include "core/Base/Decimal.h"
#include "core/PathFit/InkCorrection.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>

namespace {

constexpr int FIRST_ID = 1340;
constexpr int PEN_TOLERANCE = 1365;
constexpr int PEN_UNIT = 1366;
constexpr int HUNDREDTHS = 100;

} // namespace

CToolOptPathPen::CToolOptPathPen() : CToolOptFreehand(FIRST_ID, L"RefreshView: CPathPen not found") {
    using enum TPanelControl::EKind;
    AddPressure();
    AddCourse();
    AddSlow();
    m_vControls.push_back(
        {.kind = Number, .nId = PEN_TOLERANCE, .strLabel = L"あと補正", .vStops = TOLERANCE_STOPS});
    m_vControls.push_back({.kind = Label, .nId = PEN_UNIT, .strText = L"px", .bSameLine = true});
}

bool CToolOptPathPen::Serves(const CRasterBrushBase& tool) const {
    return dynamic_cast<const CPathPen*>(&tool) != nullptr;
}

void CToolOptPathPen::RefreshView(const boost::shared_ptr<CTools>& spTool) {
    CToolOptFreehand::RefreshView(spTool);
    const auto spPen = boost::static_pointer_cast<CPathPen>(spTool);
    m_wpPen = spPen;
    Find(PEN_TOLERANCE).strText = FormatParts(static_cast<int>(spPen->GetPenParam().uTolerance), HUNDREDTHS);
}

void CToolOptPathPen::OnControl(const TPanelControl& control) {
    const auto spPen = m_wpPen.lock();
    if (!spPen || control.nId != PEN_TOLERANCE) return CToolOptFreehand::OnControl(control);
    const auto n = ParseParts(control.strText, HUNDREDTHS);
    if (n)
        spPen->GetPenParam().uTolerance =
            std::clamp(static_cast<uint32_t>(*n), TPathPenParam::MIN_TOLERANCE, TPathPenParam::MAX_TOLERANCE);
}
