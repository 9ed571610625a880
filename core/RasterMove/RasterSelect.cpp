#include "core/RasterMove/RasterSelect.h"

#include "core/CanvasBuffer/CanvasHistory.h"
#include "core/IniConfig/IniConfig.h"
#include "core/Platform/System.h"

#include <algorithm>
#include <array>
#include <exception>
#include <span>
#include <utility>

namespace {

constexpr wchar_t SECTION[] = L"RasterSelect";
constexpr int32_t UNIT = 8;           ///< steps of a position in a pixel
constexpr int32_t FURTHEST = 1 << 24; ///< pixels; sizes in steps stay far within 32 bits
constexpr TOverlayPen GROUND{.color = 0xFFFFFF};
constexpr TOverlayPen DASHES{.color = 0, .bDashed = true}; ///< visible on every ground

// Rounded down, also beyond the canvas's left and top.
CPoint PixelOf(CPoint pt) {
    const auto pixel = [](int32_t n) { return std::clamp(n >> 3, -FURTHEST, FURTHEST); };
    return {pixel(pt.x), pixel(pt.y)};
}

ESelectShape ShapeOf(int nMode) {
    const bool bKnown =
        nMode > static_cast<int>(ESelectShape::Rectangle) && nMode <= static_cast<int>(ESelectShape::Polygon);
    return bKnown ? static_cast<ESelectShape>(nMode) : ESelectShape::Rectangle;
}

EShapeMode ModeOf(uint32_t flags) {
    switch (flags & (POINTER_SHIFT | POINTER_ALT)) {
    case POINTER_SHIFT:
        return EShapeMode::Add;
    case POINTER_ALT:
        return EShapeMode::Subtract;
    default:
        return EShapeMode::Replace;
    }
}

// The client pixels of a rectangle of canvas pixels, the last column and row included; at least one.
CRect ClientBox(const CRect& rc, const TOverlayMapper& mapper) {
    const CPoint pt1 = mapper({rc.left * UNIT, rc.top * UNIT});
    const CPoint pt2 = mapper({rc.right * UNIT, rc.bottom * UNIT});
    const auto [nLeft, nRight] = std::minmax(pt1.x, pt2.x);
    const auto [nTop, nBottom] = std::minmax(pt1.y, pt2.y);
    return {nLeft, nTop, std::max(nLeft, nRight - 1), std::max(nTop, nBottom - 1)};
}

// The client pixel at the centre of a canvas pixel.
CPoint ClientCentre(CPoint pt, const TOverlayMapper& mapper) {
    const CRect rc = ClientBox(SpanOf(pt, pt), mapper);
    return {(rc.left + rc.right + 1) >> 1, (rc.top + rc.bottom + 1) >> 1};
}

std::vector<CPoint> ClientCentres(std::span<const CPoint> points, const TOverlayMapper& mapper) {
    std::vector<CPoint> vCentres;
    for (const CPoint pt : points) vCentres.push_back(ClientCentre(pt, mapper));
    return vCentres;
}

} // namespace

CRasterSelect::CRasterSelect(const TToolOutside& outside)
    : CRasterMove(outside), m_bShift(m_setKeys.count(VK_Shift) != 0) {
    const auto spSection = outside.config.GetSection(SECTION);
    m_nMode = m_nModeRead = ShapeOf(spSection->GetInt(L"Mode", 0));
    m_bAntialias = m_bAntialiasRead = spSection->GetInt(L"Antialias", 0) != 0;
}

CRasterSelect::~CRasterSelect() {
    try {
        CRasterSelect::KeepSettings();
    } catch (const std::exception&) {
        // If even that runs out of memory, the next tool has the previously saved settings.
    }
}

void CRasterSelect::KeepSettings() {
    // The store may be shared: values that this tool did not change are not written.
    std::vector<std::pair<std::wstring, int32_t>> vChanged;
    if (m_nMode != m_nModeRead) vChanged.emplace_back(L"Mode", static_cast<int32_t>(m_nMode));
    if (m_bAntialias != m_bAntialiasRead) vChanged.emplace_back(L"Antialias", m_bAntialias);
    if (vChanged.empty()) return;
    GetOutside().config.GetSection(SECTION)->SetInts(vChanged);
    m_nModeRead = m_nMode;
    m_bAntialiasRead = m_bAntialias;
}

bool CRasterSelect::IsSelected(CPoint pt) const {
    const auto spCanvas = GetCanvas();
    const TSelectPtr spSelect = spCanvas ? spCanvas->GetSelect() : TSelectPtr();
    if (!spSelect || !CRect({0, 0}, spSelect->GetCanvasSize()).Contains(pt)) return false;
    const CRasterBlockBuffer* pTile = spSelect->GetMaskTile(pt);
    return pTile && pTile->GetPixelAlpha({pt.x % DEFAULT_BLOCKSIZE.cx, pt.y % DEFAULT_BLOCKSIZE.cy}) != 0;
}

bool CRasterSelect::StartsDrag(CPoint pt, uint32_t flags) const {
    if (flags & (POINTER_SHIFT | POINTER_ALT)) return false;
    return (flags & POINTER_CONTROL) || IsSelected(PixelOf(pt));
}

bool CRasterSelect::AddPoint(int32_t x, int32_t y) {
    m_ptCursor = {x, y};
    const CPoint pt = PixelOf(m_ptCursor);
    if (m_lstPoints.back() == pt) return false;
    m_lstPoints.push_back(pt);
    return true;
}

bool CRasterSelect::OnLButtonDown(int32_t x, int32_t y, uint32_t flags) {
    if (m_state != STATE_IDLE) return false;
    if (StartsDrag({x, y}, flags)) return BeginMove(x, y, flags, false);
    SetState(flags & POINTER_TABLET ? STATE_TABLET : STATE_MOUSE);
    m_byFlags = flags;
    m_ptCursor = {x, y};
    m_lstPoints.assign(1, PixelOf(m_ptCursor));
    m_nShown = 0;
    return true;
}

bool CRasterSelect::OnMouseMove(int32_t x, int32_t y, uint32_t pressure, uint32_t altitude, uint32_t flags) {
    if (IsMoving()) return CRasterMove::OnMouseMove(x, y, pressure, altitude, flags);
    return m_state != STATE_IDLE && AddPoint(x, y);
}

bool CRasterSelect::OnLButtonUp(int32_t x, int32_t y, uint32_t flags) {
    if (IsMoving()) return CRasterMove::OnLButtonUp(x, y, flags);
    if (m_state == STATE_IDLE) return false;
    AddPoint(x, y);
    // The shape ends whether it can be made or not.
    const auto vPoints = std::exchange(m_lstPoints, {});
    const auto spCanvas = m_spCanvas;
    SetState(STATE_IDLE);
    const EShapeMode mode = ModeOf(m_byFlags);
    const TSelectPtr spShape = MakeShapeSelect(m_nMode, vPoints, m_bAntialias, spCanvas->GetSize());
    const TSelectPtr spOld = spCanvas->GetSelect();
    const TSelectPtr spNew = CombineSelect(spOld, spShape, mode);
    // A shape that replaces the selection merges what floats, even if the selection stays the same.
    const bool bDrops = mode == EShapeMode::Replace && spCanvas->GetFloatState().spFloat;
    if (!bDrops && IsSameSelection(spOld, spNew)) return true;
    ChangeSelection(spCanvas, spNew, spShape ? GetName() : L"選択範囲の解除");
    return true;
}

bool CRasterSelect::OnProximityLeave() {
    if (IsMoving() || m_state != STATE_TABLET) return CRasterMove::OnProximityLeave();
    return OnLButtonUp(m_ptCursor.x, m_ptCursor.y, POINTER_TABLET);
}

bool CRasterSelect::OnKeyDown(int nKey) {
    if (nKey == VK_Shift) m_bShift = true;
    return CRasterMove::OnKeyDown(nKey);
}

bool CRasterSelect::OnKeyUp(int nKey) {
    if (nKey == VK_Shift) m_bShift = false;
    return CRasterMove::OnKeyUp(nKey);
}

bool CRasterSelect::Cancel() {
    if (IsMoving()) return CRasterMove::Cancel();
    if (m_state == STATE_IDLE) return false;
    SetState(STATE_IDLE);
    m_lstPoints.clear();
    return true;
}

void CRasterSelect::DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const {
    if (m_lstPoints.size() < 2) return;
    const CRect rc = ClientBox(SpanOf(m_lstPoints.front(), m_lstPoints.back()), mapper);
    const auto vCentres = ClientCentres(m_lstPoints, mapper);
    for (const TOverlayPen& pen : {GROUND, DASHES}) {
        if (m_nMode == ESelectShape::Rectangle) overlay.DrawRect(rc, pen);
        if (m_nMode == ESelectShape::Ellipse) overlay.DrawEllipse(rc, pen);
        if (m_nMode == ESelectShape::Polygon) overlay.DrawPolyline(vCentres, pen);
    }
}

// A polygon only grows: where it has been drawn it stays.
std::optional<std::vector<CRect>> CRasterSelect::TakeOverlayChanges(const TOverlayMapper& mapper) {
    if (m_lstPoints.empty() || m_nMode != ESelectShape::Polygon) return std::nullopt;
    const size_t nFrom = m_nShown == 0 ? 0 : m_nShown - 1;
    m_nShown = m_lstPoints.size();
    COverlay overlay(mapper.GetDpi());
    overlay.DrawPolyline(ClientCentres(std::span(m_lstPoints).subspan(nFrom), mapper), GROUND);
    return std::vector<CRect>{overlay.GetBounds()};
}

uint32_t CRasterSelect::GetHeldFlags() const {
    IKeyState& keys = GetOutside().keys;
    return (m_bShift ? POINTER_SHIFT : 0u) | (keys.IsKeyDown(VK_Control) ? POINTER_CONTROL : 0u) |
           (keys.IsKeyDown(VK_Alt) ? POINTER_ALT : 0u);
}

ECursor CRasterSelect::GetCursor(CPoint pt) const {
    const bool bIdle = m_state == STATE_IDLE;
    const uint32_t flags = bIdle ? GetHeldFlags() : m_byFlags;
    if (IsMoving() || (bIdle && IsSelected(PixelOf(pt)) && StartsDrag(pt, flags))) return ECursor::Move;
    switch (ModeOf(flags)) {
    case EShapeMode::Add:
        return ECursor::Add;
    case EShapeMode::Subtract:
        return ECursor::Remove;
    case EShapeMode::Replace:
        break;
    }
    return ECursor::Cross;
}
