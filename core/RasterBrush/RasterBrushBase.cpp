#include "core/RasterBrush/RasterBrushBase.h"

#include "core/Base/Failure.h"
#include "core/Commands/CommandIds.h"

#include <algorithm>

namespace {

constexpr size_t MAX_HISTORY = 30;
constexpr uint64_t SCREEN_PIXEL = 384 * 384; ///< (8 units times 48 of the zoom) squared
constexpr uint64_t CANVAS_PIXEL = 64;
constexpr uint32_t SIZE_STEPS = 8;

} // namespace

// The minimum distance of two points: a screen or canvas pixel, or more with slow-movement smoothing.
bool CRasterBrushBase::IsAway(CPoint ptFrom, CPoint pt) const {
    const int64_t dx = int64_t{pt.x} - ptFrom.x;
    const int64_t dy = int64_t{pt.y} - ptFrom.y;
    uint64_t uDistance = static_cast<uint64_t>(dx * dx + dy * dy);
    uint64_t uThreshold = CANVAS_PIXEL;
    if (!m_freehand.m_bSlowScale) {
        const auto spView = GetView();
        const uint64_t uZoom = spView ? spView->GetZoom() : 0;
        if (uZoom == 0) return false;
        uDistance *= uZoom * uZoom;
        uThreshold = SCREEN_PIXEL;
    }
    if (m_freehand.m_uSlowSmooth) uThreshold *= uint64_t{m_freehand.m_uSlowSmooth} * m_freehand.m_uSlowSmooth;
    return uDistance > uThreshold;
}

// The distance filter: false when the event adds no point.
bool CRasterBrushBase::TakePosition(CPoint pt, bool bAlways) {
    if (!bAlways && m_bHasLast && !IsAway(m_ptLast, pt)) return false;
    m_ptLast = pt;
    m_bHasLast = true;
    return true;
}

bool CRasterBrushBase::OnMouseMove(int32_t x, int32_t y, uint32_t pressure, uint32_t altitude,
                                   uint32_t flags) {
    const CPoint pt{x, y};
    m_ptCursor = pt;
    m_bCursorValid = true;
    if (IsMoving()) return CRasterMove::OnMouseMove(x, y, pressure, altitude, flags);
    // A contact that begins with Control does not draw.
    const bool bDraws = !m_bPick && (m_state != STATE_IDLE || !(flags & POINTER_CONTROL));
    if (flags & POINTER_TABLET) return MovePen({x, y, bDraws ? pressure : 0, altitude});
    if (!TakePosition(pt, false) || m_state != STATE_MOUSE || !m_spStroke) return false;
    NotePlace(pt);
    AddSample({x, y, FULL_PRESSURE, UPRIGHT}, 1);
    return true;
}

bool CRasterBrushBase::MovePen(const TCtlPoint& sample) {
    const CPoint pt{sample.x, sample.y};
    const uint32_t pressure = sample.pressure;
    const bool bTurns = m_bTapDot && m_bContact != (pressure != 0); // contact began or ended
    m_bContact = pressure != 0;
    // A tap's pressure is the highest of all events, including those that add no point.
    if (m_state == STATE_TABLET && pressure > m_tap.pressure)
        m_tap.pressure = pressure, m_tap.altitude = sample.altitude;
    const bool bInPlace = m_bHasLast && !IsAway(m_ptLast, pt);
    if (!TakePosition(pt, bTurns)) return false;
    if (m_state == STATE_IDLE && pressure != 0) BeginTabletStroke(sample);
    m_lstHistory.push_back(sample);
    while (m_lstHistory.size() > MAX_HISTORY) m_lstHistory.pop_front();
    if (m_state != STATE_TABLET || !m_spStroke) return false;
    if (pressure != 0) NotePlace(pt);
    AddSample(sample, GetRepeats());
    const bool bLiftedInPlace = bTurns && bInPlace && pressure == 0;
    if (!bLiftedInPlace && !IsPenUp()) return true;
    // Flushes the points still held back by the smoothing window.
    m_input.bLifted = true;
    for (int n = RepeatsOfLift(m_param.CurveStrength); n > 0; --n) AddPoint({pt.x, pt.y, 0, sample.altitude});
    CommitStroke();
    SetState(STATE_IDLE);
    return true;
}

// The pen's movement above the tablet becomes the tapered entry of the line. If it is too short, the first
// points are repeated until the smoothing window is full.
void CRasterBrushBase::BeginTabletStroke(const TCtlPoint& first) {
    const size_t nWanted =
        static_cast<size_t>(RepeatsOfEnd(m_param.CurveStrength)) * m_freehand.m_uStrokeIn / 2;
    const size_t n = std::min(nWanted, m_lstHistory.size());
    const std::vector<TCtlPoint> vEntry(m_lstHistory.end() - static_cast<ptrdiff_t>(n), m_lstHistory.end());
    m_vRepeats = RepeatsOfStart(static_cast<uint32_t>(n), m_param.CurveStrength);
    SetState(STATE_TABLET);
    BeginStroke(first);
    m_input.bPen = true;
    m_input.uEntry = static_cast<uint32_t>(n);
    for (uint32_t k = 0; k < n; ++k) {
        const uint32_t p = ((k + 1) * first.pressure / (static_cast<uint32_t>(n) + 1) + first.pressure) >> 1;
        AddSample({vEntry[k].x, vEntry[k].y, p, first.altitude}, GetRepeats());
    }
}

// A contact away from the first position turns a possible tap into a line.
void CRasterBrushBase::NotePlace(CPoint pt) {
    if (m_bLine || !IsAway({m_tap.x, m_tap.y}, pt)) return;
    for (; !m_deqHeld.empty(); m_deqHeld.pop_front()) {
        const TCtlPoint& held = m_deqHeld.front();
        m_spStroke->AddCtlPoint({held.x, held.y}, held.pressure, held.altitude);
    }
    m_bLine = true;
}

void CRasterBrushBase::AddPoint(const TCtlPoint& point) {
    if (m_bTapDot && !m_bLine)
        m_deqHeld.push_back(point);
    else
        m_spStroke->AddCtlPoint({point.x, point.y}, point.pressure, point.altitude);
}

int CRasterBrushBase::GetRepeats() const {
    const size_t n = m_input.vPoints.size();
    return n < m_vRepeats.size() ? m_vRepeats[n] : 1;
}

void CRasterBrushBase::AddSample(const TCtlPoint& sample, int nTimes) {
    m_input.vPoints.push_back(sample);
    for (; nTimes > 0; --nTimes) AddPoint(sample);
}

bool CRasterBrushBase::IsPenUp() const {
    const size_t nTest = std::max<size_t>(1, static_cast<size_t>(RepeatsOfEnd(m_param.CurveStrength)) *
                                                 m_freehand.m_uStrokeOut / 2);
    const size_t n = std::min(nTest, m_lstHistory.size());
    return std::all_of(m_lstHistory.end() - static_cast<ptrdiff_t>(n), m_lstHistory.end(),
                       [](const TCtlPoint& sample) { return sample.pressure == 0; });
}

bool CRasterBrushBase::OnLButtonDown(int32_t x, int32_t y, uint32_t flags) {
    if (flags & POINTER_CONTROL) return BeginMove(x, y, flags, false);
    if (m_state != STATE_IDLE) return false;
    if (m_bPick) return PickColor({x / 8, y / 8});
    if (flags & POINTER_TABLET) return false;
    SetState(STATE_MOUSE);
    BeginStroke({x, y, FULL_PRESSURE, UPRIGHT});
    AddSample({x, y, FULL_PRESSURE, UPRIGHT}, RepeatsOfEnd(m_param.CurveStrength));
    return true;
}

bool CRasterBrushBase::OnLButtonUp(int32_t x, int32_t y, uint32_t flags) {
    if (IsMoving()) return CRasterMove::OnLButtonUp(x, y, flags);
    if ((flags & POINTER_TABLET) || m_state != STATE_MOUSE) return false;
    if (m_spStroke) {
        NotePlace({x, y});
        const CPoint pt = m_bLine ? CPoint{x, y} : CPoint{m_tap.x, m_tap.y};
        AddSample({pt.x, pt.y, FULL_PRESSURE, UPRIGHT}, RepeatsOfEnd(m_param.CurveStrength));
    }
    CommitStroke();
    SetState(STATE_IDLE);
    return true;
}

bool CRasterBrushBase::PickColor(CPoint pt) {
    // The colour is that of the finished picture, including strokes not rendered yet.
    const auto spCanvas = GetCanvas();
    const bool bRedraw = spCanvas->HasPendingWork();
    spCanvas->CompleteWork();
    SetState(STATE_MOUSE);
    const auto spLayer = GetRasterLayer();
    SetState(STATE_IDLE);
    const CSize sz = spLayer ? spLayer->GetSize() : CSize();
    if (pt.x >= 0 && pt.y >= 0 && pt.x < sz.cx && pt.y < sz.cy) {
        const auto spTile = spLayer->GetRaster()->GetBlock(pt, false);
        if (spTile && spTile->GetPixelAlpha(pt - spTile->GetPosition()) != 0)
            m_freehand.m_clrBrush = spTile->GetPixelColor(pt - spTile->GetPosition());
    }
    GetOutside().fnNotify(EToolNotice::ColorChanged);
    return bRedraw;
}

bool CRasterBrushBase::OnProximityLeave() {
    if (IsMoving()) return CRasterMove::OnProximityLeave();
    if (m_state == STATE_MOUSE) return false;
    const bool bStroke = m_state == STATE_TABLET;
    if (bStroke) {
        if (!m_lstHistory.empty()) EndAtLast();
        CommitStroke();
        SetState(STATE_IDLE);
    }
    ForgetWay();
    return bStroke;
}

// The pen is lifted at its last known position.
void CRasterBrushBase::EndAtLast() {
    const TCtlPoint& last = m_lstHistory.back();
    AddSample({last.x, last.y, 0, UPRIGHT}, 1);
}

// Earlier positions do not affect the next contact.
void CRasterBrushBase::ForgetWay() {
    m_lstHistory.clear();
    m_bContact = false;
}

bool CRasterBrushBase::OnMouseLeave() {
    m_bCursorValid = false;
    return false;
}

bool CRasterBrushBase::CanCommand(int nId) const {
    const bool bSize = nId == ID_BRUSH_SMALLER || nId == ID_BRUSH_LARGER;
    return (bSize && m_state == STATE_IDLE) || CRasterMove::CanCommand(nId);
}

bool CRasterBrushBase::OnCommand(int nId) {
    if (nId != ID_BRUSH_SMALLER && nId != ID_BRUSH_LARGER) return CRasterMove::OnCommand(nId);
    const uint32_t uStep = std::max(1u, m_param.BrushRadius / SIZE_STEPS);
    const uint32_t uSize = nId == ID_BRUSH_LARGER
                               ? m_param.BrushRadius + uStep
                               : m_param.BrushRadius - std::min(uStep, m_param.BrushRadius);
    m_param.BrushRadius = std::clamp(uSize, 1u, MAX_BRUSH_RADIUS);
    GetOutside().fnNotify(EToolNotice::ToolChanged);
    return true;
}

void CRasterBrushBase::SetParams(const TBrushParam& param, const TFreehandParam& freehand) {
    m_param = param;
    m_freehand = freehand;
    Constrain();
}

bool CRasterBrushBase::Cancel() {
    if (m_state == STATE_IDLE) return false;
    if (IsMoving()) return CRasterMove::Cancel();
    const bool bLifted =
        m_state == STATE_TABLET && !m_lstHistory.empty() && m_lstHistory.back().pressure == 0;
    if (bLifted && m_spStroke) {
        EndAtLast();
        CommitStroke();
        m_bContact = false;
    } else {
        CancelStroke();
        ForgetWay();
    }
    SetState(STATE_IDLE);
    return true;
}

void CRasterBrushBase::ShowStroke(const boost::shared_ptr<CRasterStroke>& spStroke) {
    const auto spLayer = GetRasterLayer();
    if (!spLayer && spStroke) throw internal_error(L"BeginStroke: RasterBuffer not found");
    if (spLayer) spLayer->SetStroke(spStroke);
}

void CRasterBrushBase::FinishStroke(const boost::shared_ptr<CRasterStroke>&, const TStrokeInput&) {
    const auto spLayer = GetRasterLayer();
    if (!spLayer) throw internal_error(L"CommitStroke: RasterBuffer not found");
    spLayer->QueueStroke();
}

void CRasterBrushBase::BeginStroke(const TCtlPoint& first) {
    m_tap = first;
    m_input = {};
    m_deqHeld.clear();
    m_bLine = false;
    try {
        const auto spStroke = CreateStroke(*GetCanvas());
        ShowStroke(spStroke);
        m_spStroke = spStroke;
    } catch (...) {
        // The tool is unchanged.
        m_spStroke.reset();
        SetState(STATE_IDLE);
        throw;
    }
    GetOutside().fnNotify(EToolNotice::StrokeBegun);
}

void CRasterBrushBase::CommitStroke() {
    if (!m_spStroke) return;
    if (m_bTapDot && !m_bLine) {
        m_spStroke->AddTap({m_tap.x, m_tap.y}, m_tap.pressure, m_tap.altitude);
        m_input = {.vPoints = {m_tap}, .bPen = m_input.bPen, .bTap = true};
    }
    m_spStroke->AddCtlPoint({0, 0}, FINAL_PRESSURE, UPRIGHT);
    FinishStroke(m_spStroke, m_input);
    m_spStroke.reset();
}

void CRasterBrushBase::CancelStroke() {
    ShowStroke({});
    m_spStroke.reset();
}
