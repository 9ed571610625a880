#include "core/PathSelect/StrokeSelect.h"

#include "core/Base/FixedMath.h"
#include "core/PathSelect/StrokeForms.h"
#include "core/PathSelect/StrokeRegion.h"
#include "core/Tools/OverlayBox.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <exception>
#include <unordered_set>

namespace {

constexpr int32_t TURN_REACH = 22; ///< pixels at 96 dpi from a corner
constexpr int32_t LASSO_STEP = 2;  ///< pixels between the corners of a lasso
constexpr uint32_t CHOOSERS = POINTER_SHIFT | POINTER_ALT;

} // namespace

CStrokeSelect::CStrokeSelect(const TToolOutside& outside)
    : CVectorTool(outside), m_param(TStrokeSelectParam::Read(outside.config)), m_kept(m_param) {}

CStrokeSelect::~CStrokeSelect() {
    if (const auto spLayer = m_wpShownLayer.lock()) spLayer->SetLivePaths({});
    try {
        CStrokeSelect::KeepSettings();
    } catch (const std::exception&) {
        // The settings of the last time stay.
    }
}

void CStrokeSelect::KeepSettings() {
    if (m_param == m_kept) return;
    m_param.Write(GetOutside().config);
    m_kept = m_param;
}

// The handles and strokes under the pointer.

TStrokes CStrokeSelect::GetSelected() const {
    const auto spLayer = IsEnabled() ? GetVectorLayer() : nullptr;
    return spLayer ? spLayer->GetSelectedPaths() : TStrokes();
}

CRect CStrokeSelect::GetBox() const {
    const auto spLayer = IsEnabled() ? GetVectorLayer() : nullptr;
    if (!spLayer) return {};
    const uint32_t uChanges = spLayer->GetPathsChangeCount();
    if (m_box.wpLayer.lock() != spLayer || m_box.uChanges != uChanges)
        m_box = {spLayer, uChanges, BoundsOfPaths(spLayer->GetSelectedPaths())};
    return m_box.rc;
}

EBoxPart CStrokeSelect::FindPart(CPoint pt, uint32_t flags) const {
    const CRect rcBox = GetBox();
    const auto spView = GetView();
    if (rcBox.IsEmpty() || !spView) return BOX_NONE;
    const int64_t nReach = GetReach(flags), nTurn = ToWindowPixels(TURN_REACH);
    EBoxPart nearest = BOX_NONE;
    int64_t nNearest = nTurn * nTurn + 1;
    // Corners come first: on a short side they leave no room for its handle.
    for (const int nFirst : {BOX_LEFT_TOP, BOX_TOP}) {
        for (int n = nFirst; n < BOX_HANDLES; n += 2) {
            const auto part = static_cast<EBoxPart>(n);
            const int64_t nDistance = WindowDistance(BoxHandleAt(rcBox, part), pt);
            if (nDistance > nReach * nReach && !IsBoxCorner(part)) continue;
            if (nDistance >= nNearest || (nFirst == BOX_TOP && nNearest <= nReach * nReach)) continue;
            nearest = part;
            nNearest = nDistance;
        }
    }
    if (nearest != BOX_NONE && nNearest <= nReach * nReach) return nearest;
    if (rcBox.Contains(pt)) return BOX_INSIDE;
    return nearest == BOX_NONE ? BOX_NONE : BOX_TURN;
}

// The topmost one whose ink lies there, or else the nearest line within reach.
CStrokeSelect::TPathRef CStrokeSelect::FindStroke(const CVectorLayerBuffer& layer, CPoint pt,
                                                  uint32_t flags) const {
    const auto spView = GetView();
    if (!spView) return {};
    const CPoint ptWindow = spView->ToClient(pt);
    TPathPick pick{[spView](CPoint ptPath) { return spView->ToClient(ptPath); }, ptWindow, pt};
    pick.nReach = GetReach(flags);
    const CRect rcWindow = Inflated({ptWindow.x, ptWindow.y, ptWindow.x + 1, ptWindow.y + 1}, pick.nReach);
    const TStrokes vPaths =
        layer.FindPaths(MappedBox(rcWindow, [&](CPoint ptClient) { return spView->ToCanvas(ptClient); }));
    for (auto it = vPaths.rbegin(); it != vPaths.rend(); ++it)
        if ((*it)->HasInkAt(pt)) return *it;
    TPathRef spNearest;
    TPathHit nearest;
    for (auto it = vPaths.rbegin(); it != vPaths.rend(); ++it) {
        const TPathHit hit = (*it)->HitTestEx(pick, false, false, true, false);
        if (!hit || (nearest && hit.nDistance >= nearest.nDistance)) continue;
        nearest = hit;
        spNearest = *it;
    }
    return spNearest;
}

CStrokeSelect::TPress CStrokeSelect::FindPress(const CVectorLayerBuffer& layer, CPoint pt,
                                               uint32_t flags) const {
    const EBoxPart part = FindPart(pt, flags);
    if (IsBoxHandle(part)) return {part, {}};
    const TPathRef spPath = FindStroke(layer, pt, flags);
    const bool bChooses = flags & CHOOSERS;
    if (part == BOX_TURN && !(bChooses && spPath) && !(flags & POINTER_ALT)) return {part, {}};
    if (bChooses) return {BOX_NONE, spPath};
    return {part == BOX_INSIDE || spPath ? BOX_INSIDE : BOX_NONE, spPath};
}

void CStrokeSelect::RefreshHover() {
    if (m_state != STATE_IDLE) return;
    const auto spLayer = m_bPointer && IsEnabled() ? GetVectorLayer() : nullptr;
    const uint32_t flags = GetHeldKeys() | (m_uFlags & POINTER_TABLET);
    const TPress press = spLayer ? FindPress(*spLayer, m_ptPointer, flags) : TPress();
    const TPathRef spBefore = m_wpHover.lock();
    m_hoverPart = press.part;
    if (spBefore == press.spPath) return;
    for (const auto& spPath : {spBefore, press.spPath})
        if (spPath) m_rcHoverChange = m_rcHoverChange.Union(spPath->RectIncludingPath(STATE_LIVE));
    m_wpHover = press.spPath;
}

// Presses and drags.

const wchar_t* CStrokeSelect::LabelOf(EBoxPart part) {
    if (part == BOX_INSIDE) return LABEL_MOVE;
    return part == BOX_TURN ? L"線の回転" : L"線の拡大・縮小";
}

bool CStrokeSelect::OnLButtonDown(int32_t x, int32_t y, uint32_t flags) {
    if (m_state != STATE_IDLE) return false;
    m_ptPress = m_ptPointer = {x, y};
    m_bPointer = true;
    m_bBeyond = false;
    m_uPressFlags = m_uFlags = flags;
    const auto spLayer = GetVectorLayer();
    m_press = FindPress(*spLayer, m_ptPress, flags);
    SetState(flags & POINTER_TABLET ? STATE_TABLET : STATE_MOUSE);
    try {
        const boost::weak_ptr<CStrokeSelect> wpThis =
            boost::static_pointer_cast<CStrokeSelect>(shared_from_this());
        RegisterHistoryCancel([wpThis] {
            if (const auto spThis = wpThis.lock()) spThis->Cancel();
            return false;
        });
        // Outside the box the pressed stroke is what a drag moves.
        if (m_press.part == BOX_INSIDE && m_press.spPath && !GetBox().Contains(m_ptPress) &&
            !spLayer->IsSelected(*m_press.spPath))
            Select(*spLayer, {m_press.spPath});
        m_vLasso.assign(1, m_ptPress);
    } catch (...) {
        EndPress();
        throw;
    }
    return true;
}

void CStrokeSelect::BeginDrag(const TLayerRef& spLayer) {
    m_rcDragBox = GetBox();
    m_pDrag = std::make_unique<CStrokesDrag>(*spLayer, spLayer->GetSelectedPaths());
    m_wpShownLayer = spLayer;
}

bool CStrokeSelect::OnMouseMove(int32_t x, int32_t y, uint32_t, uint32_t flags) {
    m_ptPointer = {x, y};
    m_bPointer = true;
    m_uFlags = flags;
    if (m_state == STATE_IDLE) {
        RefreshHover();
        return false;
    }
    const int64_t nThreshold = GetThreshold(flags);
    m_bBeyond |= WindowDistance(m_ptPress, m_ptPointer) >= nThreshold * nThreshold;
    if (!m_bBeyond || (m_press.part == BOX_NONE && m_press.spPath)) return false;
    if (m_press.part == BOX_NONE) {
        const int64_t nStep = ToWindowPixels(LASSO_STEP);
        if (WindowDistance(m_vLasso.back(), m_ptPointer) >= nStep * nStep) m_vLasso.push_back(m_ptPointer);
        return false;
    }
    try {
        if (!m_pDrag) BeginDrag(GetVectorLayer());
        TStrokeMap map = DragBox(m_rcDragBox, m_press.part, m_ptPress, m_ptPointer, flags);
        if (!m_param.bScaleWidths) map.dWidth = 1;
        m_pDrag->Show(map);
    } catch (...) {
        EndDrag(false);
        throw;
    }
    return true;
}

bool CStrokeSelect::OnLButtonUp(int32_t x, int32_t y, uint32_t flags) {
    if (m_state == STATE_IDLE) return false;
    OnMouseMove(x, y, 0, flags);
    return EndDrag(true);
}

bool CStrokeSelect::OnProximityLeave() {
    if (m_state == STATE_TABLET) return OnLButtonUp(m_ptPointer.x, m_ptPointer.y, m_uFlags);
    m_bPointer = m_bPointer && !(m_uFlags & POINTER_TABLET);
    RefreshHover();
    return false;
}

bool CStrokeSelect::Cancel() { return EndDrag(false); }

// The press ends whether the drag can be committed or not.
bool CStrokeSelect::EndDrag(bool bCommit) {
    if (m_state == STATE_IDLE) return false;
    try {
        if (m_pDrag && bCommit) {
            if (const auto spHistory = m_pDrag->Commit(LabelOf(m_press.part))) {
                try {
                    RegisterHistory(spHistory);
                } catch (...) {
                    m_pDrag->Cancel();
                    throw;
                }
            }
        } else if (m_pDrag) {
            m_pDrag->Cancel();
        } else if (bCommit) {
            const auto spLayer = GetVectorLayer();
            m_bBeyond&& m_press.part == BOX_NONE && !m_press.spPath ? SelectRegion(*spLayer)
                                                                    : Click(*spLayer);
        }
    } catch (...) {
        EndPress();
        throw;
    }
    EndPress();
    return true;
}

void CStrokeSelect::EndPress() {
    RegisterHistoryCancel({});
    m_pDrag.reset();
    m_press = {};
    m_vLasso.clear();
    SetState(STATE_IDLE);
    RefreshHover();
    GetOutside().fnNotify(EToolNotice::ToolChanged);
}

// Selecting.

void CStrokeSelect::Select(CVectorLayerBuffer& layer, const TStrokes& vPaths) {
    layer.SelectPaths(vPaths);
    GetOutside().fnNotify(EToolNotice::ToolChanged);
}

void CStrokeSelect::Click(CVectorLayerBuffer& layer) {
    // A handle, or a place beside the corners, is no choice.
    if (IsBoxHandle(m_press.part) || m_press.part == BOX_TURN) return;
    if (m_press.spPath)
        Combine(layer, {m_press.spPath});
    else if (!(m_uPressFlags & CHOOSERS))
        Select(layer, {});
}

void CStrokeSelect::SelectRegion(CVectorLayerBuffer& layer) {
    const CStrokeRegion region =
        m_param.shape == STROKE_RECT ? CStrokeRegion(m_ptPress, m_ptPointer) : CStrokeRegion(m_vLasso);
    TStrokes vPaths;
    for (const auto& spPath : layer.FindPaths(region.GetBounds()))
        if (m_param.bTouched ? region.Touches(*spPath) : region.Holds(*spPath)) vPaths.push_back(spPath);
    const bool bAdds = (m_uPressFlags & CHOOSERS) == POINTER_SHIFT;
    if (bAdds) std::erase_if(vPaths, [&](const auto& spPath) { return layer.IsSelected(*spPath); });
    Combine(layer, vPaths);
}

// With Shift those that are selected already are taken away.
void CStrokeSelect::Combine(CVectorLayerBuffer& layer, const TStrokes& vPaths) {
    const uint32_t uMode = m_uPressFlags & CHOOSERS;
    if (uMode != POINTER_SHIFT && uMode != POINTER_ALT) return Select(layer, vPaths);
    TStrokes vSelected = layer.GetSelectedPaths();
    std::unordered_set<const CPathObject*> setGiven;
    for (const auto& spPath : vPaths) setGiven.insert(spPath.get());
    std::erase_if(vSelected, [&](const auto& spPath) { return setGiven.contains(spPath.get()); });
    if (uMode == POINTER_SHIFT)
        for (const auto& spPath : vPaths)
            if (!layer.IsSelected(*spPath)) vSelected.push_back(spPath);
    Select(layer, vSelected);
}

bool CStrokeSelect::SelectAllStrokes() {
    const auto spLayer = GetVectorLayer();
    Select(*spLayer, {spLayer->GetPaths().begin(), spLayer->GetPaths().end()});
    return true;
}

bool CStrokeSelect::Deselect() {
    if (GetSelected().empty()) return false;
    Select(*GetVectorLayer(), {});
    return true;
}

bool CStrokeSelect::OnPointerOver(CPoint pt) {
    m_ptPointer = pt;
    m_bPointer = true;
    RefreshHover();
    return false;
}

bool CStrokeSelect::OnMouseLeave() {
    m_bPointer = false;
    RefreshHover();
    return false;
}
