#include "core/PathErase/PathEraser.h"

#include "core/Commands/CommandIds.h"
#include "core/IniConfig/IniConfig.h"
#include "core/PathErase/EraseHistory.h"
#include "core/PathErase/ErasePreview.h"
#include "core/Tools/OverlayCircle.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <exception>

namespace {

constexpr wchar_t SECTION[] = L"PathEraser";
constexpr int DEFAULT_RADIUS = 40;
constexpr int SIZE_STEPS = 8; ///< a step is this part of the radius
constexpr TColor COLOR_ERASED = 0x0000FF;

EEraseMode ToMode(int n) { return n >= 0 && n < ERASE_MODES ? EEraseMode(n) : ERASE_TO_CROSSING; }

TVector ToVector(CPoint pt) { return {double(pt.x), double(pt.y)}; }

} // namespace

CPathEraser::CPathEraser(const TToolOutside& outside) : CVectorTool(outside) {
    const auto spSection = outside.config.GetSection(SECTION);
    m_mode = ToMode(spSection->GetInt(L"Mode", ERASE_TO_CROSSING));
    m_nRadius = std::clamp(spSection->GetInt(L"Radius", DEFAULT_RADIUS), 1, MAX_RADIUS);
    m_modeRead = m_mode;
    m_nRadiusRead = m_nRadius;
}

CPathEraser::~CPathEraser() {
    try {
        CPathEraser::KeepSettings();
    } catch (const std::exception&) {
        // If even that runs out of memory, the next tool has the previously saved settings.
    }
}

void CPathEraser::KeepSettings() {
    std::vector<std::pair<std::wstring, int32_t>> vChanged;
    if (m_mode != m_modeRead) vChanged.emplace_back(L"Mode", m_mode);
    if (m_nRadius != m_nRadiusRead) vChanged.emplace_back(L"Radius", m_nRadius);
    if (vChanged.empty()) return;
    GetOutside().config.GetSection(SECTION)->SetInts(vChanged);
    m_modeRead = m_mode;
    m_nRadiusRead = m_nRadius;
}

void CPathEraser::SetMode(EEraseMode mode) {
    m_mode = mode;
    RefreshPreview();
}

void CPathEraser::SetRadius(int nRadius) {
    m_nRadius = std::clamp(nRadius, 1, MAX_RADIUS);
    RefreshPreview();
}

bool CPathEraser::CanCommand(int nId) const {
    const bool bSize = nId == ID_BRUSH_SMALLER || nId == ID_BRUSH_LARGER;
    return (bSize && m_state == STATE_IDLE) || CVectorTool::CanCommand(nId);
}

bool CPathEraser::OnCommand(int nId) {
    if (nId != ID_BRUSH_SMALLER && nId != ID_BRUSH_LARGER) return CVectorTool::OnCommand(nId);
    const int nStep = std::max(m_nRadius / SIZE_STEPS, 1);
    SetRadius(nId == ID_BRUSH_LARGER ? m_nRadius + nStep : m_nRadius - nStep);
    GetOutside().fnNotify(EToolNotice::ToolChanged);
    return true;
}

// The pointer.

bool CPathEraser::OnMouseMove(int32_t x, int32_t y, uint32_t, uint32_t flags) {
    m_bPointer = true;
    m_bPen = flags & POINTER_TABLET;
    if (m_spErased) return EraseOnWay({x, y});
    m_ptPointer = {x, y};
    RefreshPreview();
    return false;
}

bool CPathEraser::OnLButtonDown(int32_t x, int32_t y, uint32_t flags) {
    if (m_state != STATE_IDLE) return false;
    m_ptPointer = {x, y};
    m_bPointer = true;
    m_bPen = flags & POINTER_TABLET;
    const auto spErased = boost::make_shared<CErasePathsHistory>(GetName(), GetVectorLayer());
    SetState(m_bPen ? STATE_TABLET : STATE_MOUSE);
    m_spErased = spErased;
    SetPreview({});
    RegisterHistoryCancel(
        [wpThis = boost::weak_ptr<CPathEraser>(boost::static_pointer_cast<CPathEraser>(shared_from_this()))] {
            if (const auto spThis = wpThis.lock()) spThis->Cancel();
            return false;
        });
    EraseOnWay({x, y});
    return true;
}

bool CPathEraser::OnLButtonUp(int32_t x, int32_t y, uint32_t) {
    if (!m_spErased) return false;
    EraseOnWay({x, y});
    return End(true);
}

bool CPathEraser::OnProximityLeave() {
    m_bPointer = m_bPointer && !m_bPen;
    const bool bEnded = m_state == STATE_TABLET && End(true);
    RefreshPreview();
    return bEnded;
}

bool CPathEraser::OnPointerOver(CPoint pt) {
    if (m_spErased) return false;
    m_ptPointer = pt;
    RefreshPreview();
    return false;
}

bool CPathEraser::OnMouseLeave() {
    m_bPointer = false;
    RefreshPreview();
    return false;
}

bool CPathEraser::Cancel() { return End(false); }

// Erasing.

std::vector<TErasedPath> CPathEraser::Plan(const CVectorLayerBuffer& layer, CPoint ptFrom, CPoint ptTo) {
    return PlanErase(layer, m_lines, {{ToVector(ptFrom), ToVector(ptTo)}, double(m_nRadius)}, m_mode);
}

bool CPathEraser::EraseOnWay(CPoint ptTo) {
    const CPoint ptFrom = std::exchange(m_ptPointer, ptTo);
    try {
        const auto vErased = Plan(*GetVectorLayer(), ptFrom, ptTo);
        for (const TErasedPath& erased : vErased) m_spErased->Erase(erased.spPath, MakeRest(erased));
        return !vErased.empty();
    } catch (...) {
        End(false);
        throw;
    }
}

bool CPathEraser::End(bool bCommit) {
    if (!m_spErased) return false;
    const auto spErased = m_spErased;
    // The drag ends whether it can be registered or not.
    const auto end = [&] {
        m_spErased.reset();
        RegisterHistoryCancel({});
        SetState(STATE_IDLE);
        m_lines.Clear();
        RefreshPreview();
        GetOutside().fnNotify(EToolNotice::ToolChanged);
    };
    try {
        spErased->Finish();
        if (bCommit && !spErased->IsEmpty())
            RegisterHistory(spErased);
        else
            spErased->Undo();
    } catch (...) {
        spErased->Undo();
        end();
        throw;
    }
    end();
    return true;
}

// Display.

void CPathEraser::RefreshPreview() {
    const auto spLayer = m_bPointer && !m_spErased && IsEnabled() ? GetVectorLayer() : nullptr;
    if (!spLayer) return SetPreview({});
    const uint32_t uChange = spLayer->GetCanvas()->GetHistory().GetChangeCount();
    if (m_wpLinesLayer.lock() != spLayer || m_uLinesChange != uChange) m_lines.Clear();
    m_wpLinesLayer = spLayer;
    m_uLinesChange = uChange;
    SetPreview(Plan(*spLayer, m_ptPointer, m_ptPointer));
}

void CPathEraser::SetPreview(std::vector<TErasedPath> vPreview) {
    if (IsSamePreview(vPreview, m_vPreview)) return;
    m_vPreview = std::move(vPreview);
    m_vPreviewLines = GetErasedLines(m_vPreview);
    m_bPreviewChanged = true;
}

void CPathEraser::DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const {
    if (!IsEnabled()) return;
    for (TLine vLine : m_vPreviewLines) {
        for (CPoint& pt : vLine) pt = mapper(pt);
        overlay.DrawPolyline(vLine, {.color = COLOR_ERASED});
    }
    if (m_bPointer) DrawCircle(overlay, mapper, m_ptPointer, m_nRadius);
}

std::optional<std::vector<CRect>> CPathEraser::TakeOverlayChanges(const TOverlayMapper& mapper) {
    const auto spLayer = IsEnabled() ? GetVectorLayer() : nullptr;
    const bool bStale = spLayer != m_wpLinesLayer.lock() ||
                        (spLayer && spLayer->GetCanvas()->GetHistory().GetChangeCount() != m_uLinesChange);
    if (bStale) RefreshPreview();
    COverlay circle(mapper.GetDpi());
    if (m_bPointer && spLayer) DrawCircle(circle, mapper, m_ptPointer, m_nRadius);
    std::vector<CRect> vChanges{std::exchange(m_rcCircleShown, circle.GetBounds()), circle.GetBounds()};
    if (!std::exchange(m_bPreviewChanged, false)) return vChanges;
    vChanges.insert(vChanges.end(), m_vShown.begin(), m_vShown.end());
    m_vShown = BoxesOfLines(m_vPreviewLines, mapper);
    vChanges.insert(vChanges.end(), m_vShown.begin(), m_vShown.end());
    return vChanges;
}
