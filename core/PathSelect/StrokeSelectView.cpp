// The overlay of the stroke selection tool.
#include "core/PathSelect/StrokeSelect.h"
#include "core/Tools/OverlayBox.h"

#include <utility>

namespace {

constexpr TOverlayPen GROUND{.color = 0xFFFFFF};
constexpr TOverlayPen DASHES{.color = 0, .bDashed = true}; ///< visible on every ground
constexpr int32_t HANDLE_MARGIN = MARK_HALF + 3;           ///< a handle's square stands out so far
constexpr TColor WHITE = 0xFFFFFF;

CRect BoxAround(std::span<const CPoint> points) {
    CRect rc;
    for (const CPoint pt : points) rc = WithPoint(rc, pt);
    return rc;
}

// The lines a pixel wide through the middle of a path.
void DrawCentre(COverlay& overlay, const CPathObject& path, const IActiveView& view, TColor color) {
    TPolyBezier vCurve = path.GetStream().BezierPoints(STATE_LIVE);
    for (CPoint& pt : vCurve) pt = view.ToClientPixel(pt);
    overlay.DrawCurves(vCurve, {.color = color});
}

} // namespace

bool CStrokeSelect::IsDrawingShape() const {
    return m_state != STATE_IDLE && m_bBeyond && m_press.part == BOX_NONE && !m_press.spPath;
}

// The closed line of the shape that is drawn.
std::vector<CPoint> CStrokeSelect::GetShape(const TOverlayMapper& mapper) const {
    if (!IsDrawingShape()) return {};
    std::vector<CPoint> vShape = m_vLasso;
    if (m_param.shape == STROKE_RECT)
        vShape = {m_ptPress, {m_ptPointer.x, m_ptPress.y}, m_ptPointer, {m_ptPress.x, m_ptPointer.y}};
    vShape.push_back(m_ptPress);
    for (CPoint& pt : vShape) pt = mapper(pt);
    return vShape;
}

std::array<CPoint, BOX_HANDLES> CStrokeSelect::GetHandles(const TOverlayMapper& mapper) const {
    const CRect rcBox = m_pDrag ? m_rcDragBox : GetBox();
    const TStrokeMap map = m_pDrag ? m_pDrag->GetMap() : TStrokeMap();
    std::array<CPoint, BOX_HANDLES> aHandles;
    for (size_t n = 0; n < aHandles.size(); ++n)
        aHandles[n] = mapper(map(BoxHandleAt(rcBox, static_cast<EBoxPart>(n))));
    return aHandles;
}

CRect CStrokeSelect::GetBoxRect(const TOverlayMapper& mapper) const {
    if (!m_pDrag && GetBox().IsEmpty()) return {};
    return Inflated(BoxAround(GetHandles(mapper)), ToWindowPixels(HANDLE_MARGIN));
}

CRect CStrokeSelect::GetShapeRect(const TOverlayMapper& mapper) const {
    const std::vector<CPoint> vShape = GetShape(mapper);
    return vShape.empty() ? CRect() : Inflated(BoxAround(vShape), ToWindowPixels(2));
}

void CStrokeSelect::DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const {
    const auto spLayer = IsEnabled() ? GetVectorLayer() : nullptr;
    const auto spView = GetView();
    if (!spLayer || !spView) return;
    const CRect rcClip = Inflated(overlay.GetClip(), ToWindowPixels(HANDLE_MARGIN));
    const auto spHover = m_state == STATE_IDLE ? m_wpHover.lock() : nullptr;
    for (const auto& spPath :
         spLayer->FindPaths(MappedBox(rcClip, [&](CPoint pt) { return spView->ToCanvas(pt); })))
        if (spPath == spHover || spLayer->IsSelected(*spPath))
            DrawCentre(overlay, *spPath, *spView, spPath == spHover ? PATH_COLOR_HOVER : PATH_COLOR_SELECTED);
    const std::vector<CPoint> vShape = GetShape(mapper);
    for (const TOverlayPen& pen : {GROUND, DASHES})
        if (!vShape.empty()) overlay.DrawPolyline(vShape, pen);
    if (GetBoxRect(mapper).IsEmpty()) return;
    const auto aHandles = GetHandles(mapper);
    const std::array<CPoint, 5> aCorners{aHandles[BOX_LEFT_TOP], aHandles[BOX_RIGHT_TOP],
                                         aHandles[BOX_RIGHT_BOTTOM], aHandles[BOX_LEFT_BOTTOM],
                                         aHandles[BOX_LEFT_TOP]};
    for (const TOverlayPen& pen : {GROUND, DASHES}) overlay.DrawPolyline(aCorners, pen);
    const EBoxPart held = m_state == STATE_IDLE ? m_hoverPart : m_press.part;
    for (size_t n = 0; n < aHandles.size(); ++n) {
        const auto part = static_cast<EBoxPart>(n);
        const bool bHeld = part == held || (held == BOX_TURN && IsBoxCorner(part));
        overlay.DrawSquare(aHandles[n], MARK_HALF, bHeld ? PATH_COLOR_HOVER : WHITE,
                           {.color = bHeld ? PATH_COLOR_HOVER : PATH_COLOR_SELECTED});
    }
}

CRect CStrokeSelect::GetOverlayRect(const TOverlayMapper& mapper) const {
    if (!IsEnabled()) return {};
    CRect rc = GetBoxRect(mapper).Union(GetShapeRect(mapper));
    if (const auto spHover = m_wpHover.lock())
        rc = rc.Union(Inflated(MappedBox(spHover->RectIncludingPath(STATE_LIVE), mapper), ToWindowPixels(2)));
    return rc;
}

std::optional<std::vector<CRect>> CStrokeSelect::TakeOverlayChanges(const TOverlayMapper& mapper) {
    const auto spLayer = IsEnabled() ? GetVectorLayer() : nullptr;
    const auto spShown = m_wpShownLayer.lock();
    if (spShown != spLayer) {
        if (spShown) spShown->SetLivePaths({});
        m_wpShownLayer = spLayer;
        return std::nullopt;
    }
    if (!spLayer) return std::nullopt;
    const auto toClient = [&](const CRect& rc) {
        return rc.IsEmpty() ? CRect() : Inflated(MappedBox(rc, mapper), ToWindowPixels(HANDLE_MARGIN));
    };
    std::vector<CRect> vChanges{toClient(spLayer->TakeReachChange()),
                                toClient(std::exchange(m_rcHoverChange, CRect()))};
    const CRect rcBox = GetBoxRect(mapper), rcShape = GetShapeRect(mapper);
    const EBoxPart part = m_state == STATE_IDLE ? m_hoverPart : m_press.part;
    // While it is turned the box may keep its bounds.
    if (rcBox != m_rcBoxShown || part != m_partShown || m_pDrag)
        vChanges.insert(vChanges.end(), {std::exchange(m_rcBoxShown, rcBox), rcBox});
    m_partShown = part;
    if (rcShape != m_rcShapeShown || !rcShape.IsEmpty())
        vChanges.insert(vChanges.end(), {std::exchange(m_rcShapeShown, rcShape), rcShape});
    return vChanges;
}

ECursor CStrokeSelect::GetCursor(CPoint) const {
    const bool bIdle = m_state == STATE_IDLE;
    const EBoxPart part = bIdle ? m_hoverPart : m_press.part;
    if (IsBoxHandle(part) || (part == BOX_INSIDE && (m_pDrag || !bIdle))) return ECursor::Move;
    if (part == BOX_INSIDE) {
        const auto spHover = m_wpHover.lock();
        const auto spLayer = GetVectorLayer();
        return spHover && spLayer && !spLayer->IsSelected(*spHover) ? ECursor::Select : ECursor::Move;
    }
    return bIdle && part == BOX_NONE && m_wpHover.lock() ? ECursor::Select : ECursor::Cross;
}
