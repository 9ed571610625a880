#include "core/PathToolBase/PathToolBase.h"

#include "core/Base/FixedMath.h"
#include "core/IniConfig/GlobalSwitches.h"
#include "core/Platform/System.h"
#include "core/Tools/OverlayBox.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <span>
#include <utility>

namespace {

constexpr int32_t MARK_REACH = MARK_HALF + 3; ///< a mark's square stands out so far, with a margin

int32_t ToDevice(int32_t n, int32_t nDpi) { return MulDiv(n, nDpi, DPI_NORMAL); }

// The client rectangle that marks and lines inside a box of path units can touch.
CRect ShownRect(const CRect& rcPath, const TOverlayMapper& mapper) {
    return rcPath.IsEmpty() ? CRect()
                            : Inflated(MappedBox(rcPath, mapper), ToDevice(MARK_REACH, mapper.GetDpi()));
}

// Draws paths into an overlay.
class COverlayDevice : public IPathDevice {
public:
    explicit COverlayDevice(COverlay& overlay) : m_overlay(overlay) {}

    void Line(CPoint from, CPoint to, TColor color, bool bDashed) override {
        m_overlay.DrawLine(from, to, {.color = color, .bDashed = bDashed});
    }
    void Square(CPoint center, int nHalf, TColor color, TColor fill) override {
        m_overlay.DrawSquare(center, nHalf, fill, {.color = color});
    }
    // Draws runs of the curves that meet the clip only: an outline may have thousands of others.
    void PolyBezier(const std::vector<CPoint>& vPoints, TColor color) override {
        const auto begin = vPoints.begin();
        std::ptrdiff_t nRun = 0; // points of the run before this curve
        for (std::ptrdiff_t n = 0; n + 3 < std::ssize(vPoints); n += 3) {
            CRect rc;
            for (const CPoint pt : std::span(begin + n, 4)) rc = rc.Union({pt.x, pt.y, pt.x + 1, pt.y + 1});
            const bool bMeets = !rc.Intersect(m_rcClip).IsEmpty();
            if (bMeets) nRun += 3;
            const bool bEnds = !bMeets || n + 6 >= std::ssize(vPoints);
            if (nRun == 0 || !bEnds) continue;
            const auto end = begin + n + (bMeets ? 4 : 1);
            m_overlay.DrawCurves(std::span(end - nRun - 1, end), {.color = color});
            nRun = 0;
        }
    }

private:
    COverlay& m_overlay;
    const CRect m_rcClip = Inflated(m_overlay.GetClip(), ToDevice(MARK_REACH, DPI_NORMAL));
};

} // namespace

CPathToolBase::~CPathToolBase() {
    if (const auto spLayer = m_wpShownLayer.lock()) spLayer->SetLivePath({});
}

uint32_t CPathToolBase::GetHeldFlags() const { return GetHeldKeys() | (m_bPen ? POINTER_TABLET : 0u); }

TRegisterHistory CPathToolBase::GetRegister() const {
    return [spCanvas = GetCanvas()](const boost::shared_ptr<CHistory>& spHistory) {
        spCanvas->GetHistory().Register(spHistory);
    };
}

void CPathToolBase::Select(CVectorLayerBuffer& layer, const boost::shared_ptr<CPathObject>& spPath,
                           const boost::shared_ptr<CPathControlPoint>& spPoint) {
    layer.SelectPath(spPath, spPoint);
    GetOutside().fnNotify(EToolNotice::ToolChanged);
}

TPathTarget CPathToolBase::FindTarget(CVectorLayerBuffer& layer, CPoint pt, uint32_t flags,
                                      const TPathKinds& kinds) const {
    const auto spView = GetView();
    if (!spView) return {};
    const CPoint ptWindow = spView->ToClient(pt);
    TPathPick pick{[spView](CPoint ptPath) { return spView->ToClient(ptPath); }, ptWindow, pt};
    pick.nReach = GetReach(flags);
    const CRect rcWindow = Inflated({ptWindow.x, ptWindow.y, ptWindow.x + 1, ptWindow.y + 1}, pick.nReach);
    const auto vPaths =
        layer.FindPaths(MappedBox(rcWindow, [&](CPoint ptClient) { return spView->ToCanvas(ptClient); }));
    const auto spSelected = layer.GetSelectedPath();
    // The nearest part of these kinds; the topmost path's at the same distance.
    const auto nearest = [&](bool bSelected, bool bAnchor, bool bHandle, bool bLine, bool bTerm) {
        TPathTarget best;
        for (auto it = vPaths.rbegin(); it != vPaths.rend(); ++it) {
            if ((*it == spSelected) != bSelected) continue;
            pick.selection = SelectionOf(**it, layer);
            const TPathHit hit = (*it)->HitTestEx(pick, bAnchor, bHandle, bLine, bTerm);
            if (hit && (!best || hit.nDistance < best.hit.nDistance)) best = {*it, hit};
        }
        return best;
    };
    for (const bool bSelected : {true, false}) {
        if (kinds.bAnchor)
            if (const auto target = nearest(bSelected, true, false, false, false)) return target;
        if (kinds.bAnchor)
            if (const auto target = nearest(bSelected, false, true, false, false)) return target;
        if (kinds.bTerm)
            if (const auto target = nearest(bSelected, false, false, false, true)) return target;
    }
    if (!kinds.bLine) return {};
    for (const bool bSelected : {true, false})
        if (const auto target = nearest(bSelected, false, false, true, false)) return target;
    for (auto it = vPaths.rbegin(); it != vPaths.rend(); ++it)
        if ((*it)->HasInkAt(pt)) return {*it, {HIT_INK, {}, 0, 0}};
    return {};
}

bool CPathToolBase::OnMouseMove(int32_t x, int32_t y, uint32_t, uint32_t flags) {
    m_ptPointer = {x, y};
    m_bPointer = true;
    m_bPen = flags & POINTER_TABLET;
    if (!m_spHandle) {
        RefreshHover();
        return false;
    }
    const int32_t nThreshold = GetThreshold(flags);
    m_bBeyond |= WindowDistance(m_ptPress, m_ptPointer) >= int64_t{nThreshold} * nThreshold;
    if (!m_bBeyond) return false;
    try {
        m_spHandle->OnDrag(m_ptPointer - m_ptPress, flags);
        OnDragged(m_ptPointer, flags);
    } catch (...) {
        EndDrag(false);
        throw;
    }
    return true;
}

bool CPathToolBase::OnLButtonDown(int32_t x, int32_t y, uint32_t flags) {
    if (m_state != STATE_IDLE) return false;
    m_ptPress = m_ptPointer = {x, y};
    m_bPointer = true;
    m_bPen = flags & POINTER_TABLET;
    m_bBeyond = false;
    SetState(m_bPen ? STATE_TABLET : STATE_MOUSE);
    try {
        const auto spLayer = GetVectorLayer();
        m_spHandle = OnPress(spLayer, FindPressed(*spLayer, m_ptPress, flags), m_ptPress, flags);
        if (m_spHandle) {
            spLayer->SetLivePath(m_spHandle->GetPath());
            SetHistoryCancel();
            return true;
        }
    } catch (...) {
        if (m_spHandle) EndDrag(false);
        SetState(STATE_IDLE);
        throw;
    }
    SetState(STATE_IDLE);
    RefreshHover();
    return true;
}

bool CPathToolBase::OnLButtonUp(int32_t x, int32_t y, uint32_t flags) {
    if (!m_spHandle) return false;
    OnMouseMove(x, y, 0, flags);
    return EndDrag(true);
}

bool CPathToolBase::OnProximityLeave() {
    m_bPointer = m_bPointer && !m_bPen;
    RefreshHover();
    return m_state == STATE_TABLET && EndDrag(true);
}

bool CPathToolBase::OnMouseLeave() {
    m_bPointer = false;
    RefreshHover();
    return false;
}

bool CPathToolBase::OnPointerOver(CPoint pt) {
    m_ptPointer = pt;
    RefreshHover();
    return false;
}

bool CPathToolBase::OnPenEnd(bool bEraser) {
    m_bDeleteMode = bEraser;
    RefreshHover();
    return true;
}

bool CPathToolBase::OnKeyDown(int) {
    RefreshHover();
    return false;
}

bool CPathToolBase::OnKeyUp(int) {
    RefreshHover();
    return false;
}

bool CPathToolBase::Cancel() { return EndDrag(false); }

void CPathToolBase::SetHistoryCancel() {
    const boost::weak_ptr<CPathToolBase> wpThis =
        boost::static_pointer_cast<CPathToolBase>(shared_from_this());
    RegisterHistoryCancel([wpThis] {
        const auto spThis = wpThis.lock();
        return spThis && spThis->OnUndo();
    });
}

bool CPathToolBase::OnUndo() {
    Cancel();
    return false;
}

void CPathToolBase::CommitHandle() { m_spHandle->OnCommit(); }

bool CPathToolBase::EndDrag(bool bCommit) {
    if (!m_spHandle) return false;
    const auto spHandle = m_spHandle;
    // The drag ends whether it can be committed or not.
    const auto end = [&] {
        m_spHandle.reset();
        EndHistoryCancel();
        SetState(STATE_IDLE);
        RefreshHover();
        GetOutside().fnNotify(EToolNotice::ToolChanged);
    };
    try {
        bCommit ? CommitHandle() : spHandle->OnCancel();
    } catch (...) {
        end();
        throw;
    }
    end();
    return true;
}

void CPathToolBase::SetHover(const TPathTarget& target) {
    const bool bSame = m_hover.IsSame(target);
    if (!bSame) m_rcHoverChange = m_rcHoverChange.Union(HoverReach());
    m_hover = target;
    if (!bSame) m_rcHoverChange = m_rcHoverChange.Union(HoverReach());
}

void CPathToolBase::RefreshHover() {
    if (m_spHandle) return;
    const auto spLayer = m_bPointer && IsEnabled() ? GetVectorLayer() : nullptr;
    SetHover(spLayer ? FindPressed(*spLayer, m_ptPointer, GetHeldFlags()) : TPathTarget());
}

CRect CPathToolBase::HoverReach() const {
    if (!m_hover) return {};
    // Of a path only the lines change their colour, which lie in its ink.
    return m_hover.hit.spPoint ? ReachOf(*m_hover.hit.spPoint)
                               : m_hover.spPath->RectIncludingPath(STATE_LIVE);
}

TPathSelection CPathToolBase::SelectionOf(const CPathObject& path, const CVectorLayerBuffer& layer) const {
    TPathSelection selection;
    const TPathHit part = m_spHandle ? m_spHandle->GetPart() : m_hover.hit;
    const CPathObject* pPath = m_spHandle ? m_spHandle->GetPath().get() : m_hover.spPath.get();
    if (pPath == &path) {
        selection.pHover = part.spPoint.get();
        selection.hover = part.kind;
    }
    if (layer.GetSelectedPath().get() == &path)
        if (const auto spPoint = layer.GetSelectedPoint()) selection.setSelected.insert(spPoint.get());
    selection.bAllHandles = GetOutside().switches.m_bShowAllCtl != 0;
    selection.bNoHandles = !GetKinds(0).bAnchor;
    return selection;
}

void CPathToolBase::DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const {
    const auto spLayer = GetVectorLayer();
    const auto spView = GetView();
    if (!spLayer || !spView || !IsEnabled()) return;
    COverlayDevice device(overlay);
    const CRect rcClip = Inflated(overlay.GetClip(), ToDevice(MARK_REACH, mapper.GetDpi()));
    const CRect rcPaths = MappedBox(rcClip, [&](CPoint pt) { return spView->ToCanvas(pt); });
    const auto spSelected = spLayer->GetSelectedPath();
    // A line a pixel wide lies on the pixels that its curve goes through.
    const TPathMapper pixelAt = [&](CPoint pt) { return spView->ToClientPixel(pt); };
    for (const auto& spPath : spLayer->FindPaths(rcPaths)) {
        const bool bHover = m_hover.spPath == spPath && !m_hover.hit.spPoint && !m_spHandle;
        const TColor color = bHover                 ? PATH_COLOR_HOVER
                             : spPath == spSelected ? PATH_COLOR_SELECTED
                                                    : PATH_COLOR_NORMAL;
        spPath->DrawOutline(device, pixelAt, SelectionOf(*spPath, *spLayer), color,
                            GetOutside().switches.m_bShowOutline != 0);
    }
    DrawMore(overlay, mapper);
}

CRect CPathToolBase::GetOverlayRect(const TOverlayMapper& mapper) const {
    const auto spLayer = GetVectorLayer();
    if (!spLayer || !IsEnabled()) return {};
    return ShownRect(spLayer->GetPathsReach(), mapper).Union(GetMoreRect(mapper));
}

std::optional<std::vector<CRect>> CPathToolBase::TakeOverlayChanges(const TOverlayMapper& mapper) {
    const auto spLayer = IsEnabled() ? GetVectorLayer() : nullptr;
    const auto spShown = m_wpShownLayer.lock();
    if (spShown != spLayer) {
        if (spShown) spShown->SetLivePath({});
        m_wpShownLayer = spLayer;
        return std::nullopt;
    }
    if (!spLayer) return std::nullopt;
    const CRect rcMore = GetMoreRect(mapper);
    return std::vector<CRect>{ShownRect(spLayer->TakeReachChange(), mapper),
                              ShownRect(std::exchange(m_rcHoverChange, CRect()), mapper),
                              std::exchange(m_rcMoreShown, rcMore), rcMore};
}

ECursor CPathToolBase::GetCursor(CPoint) const {
    return GetTargetCursor(m_spHandle ? TPathTarget{m_spHandle->GetPath(), m_spHandle->GetPart()} : m_hover,
                           GetHeldFlags());
}
