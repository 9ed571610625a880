#include "core/PathToolBase/PathTool.h"

#include "core/Commands/CommandIds.h"
#include "core/PathCtlPtHandle/AnchorDrag.h"
#include "core/PathCtlPtHandle/ControlPointDrag.h"
#include "core/PathCtlPtHandle/PathHistory.h"
#include "core/PathToolBase/PathToolHistory.h"
#include "core/Platform/System.h"

#include <boost/pointer_cast.hpp>

namespace {

const boost::function<bool()> NO_HANDLER;

} // namespace

CPathTool::CPathTool(const TToolOutside& outside)
    : CPathToolBase(outside), m_param(TPathParam::Read(outside.config)), m_kept(m_param) {}

CPathTool::~CPathTool() {
    try {
        CPathTool::KeepSettings();
    } catch (const std::exception&) {
        // The settings of the last time stay.
    }
}

void CPathTool::KeepSettings() {
    if (m_param == m_kept) return;
    m_param.Write(GetOutside().config);
    m_kept = m_param;
}

TOpenPathPtr CPathTool::GetTargetPath() const {
    const auto spLayer = GetVectorLayer();
    return spLayer ? boost::dynamic_pointer_cast<COpenPathObject>(spLayer->GetSelectedPath())
                   : TOpenPathPtr();
}

void CPathTool::ChangeTarget(const boost::function<void(COpenPathStream&)>& fnChange, bool bFold) {
    const auto pOpenPath = GetTargetPath();
    if (!pOpenPath || m_state != STATE_IDLE || m_spInstallPath) return;
    const auto spBefore = pOpenPath->CreateSnapshot();
    fnChange(pOpenPath->GetStream());
    pOpenPath->Update();
    const auto spAfter = pOpenPath->CreateSnapshot();
    if (spAfter->chunk.GetWhole() == spBefore->chunk.GetWhole()) return;
    CHistoryStream& history = GetVectorLayer()->GetCanvas()->GetHistory();
    const auto spLast = m_wpFoldable.lock();
    if (bFold && spLast && spLast == history.GetFoldable() && spLast->IsOf(*pOpenPath)) {
        spLast->SetAfter(spAfter);
        return history.SetModified(true);
    }
    try {
        const auto spStep = boost::make_shared<CPathHistory>(L"パスの変更", pOpenPath, spBefore, spAfter);
        RegisterHistory(spStep);
        m_wpFoldable = bFold ? spStep : nullptr;
    } catch (...) {
        pOpenPath->ApplySnapshot(*spBefore);
        throw;
    }
}

const wchar_t* CPathTool::GetHint(uint32_t uModifiers) const {
    if (m_spInstallPath)
        return L"クリック: 次の点　Ctrlを離す・Esc: 描き終える　Ctrl+Z: 一つ戻す　端をクリック: 接続";
    if (m_bDeleteMode) return L"クリック: 点を消す";
    return CPathToolBase::GetHint(uModifiers);
}

// The tool's presses.

boost::shared_ptr<CVectorHandle> CPathTool::OnPress(const TLayerRef& spLayer, const TPathTarget& target,
                                                    CPoint pt, uint32_t flags) {
    const bool bControl = GetOutside().keys.IsKeyDown(VK_Control);
    if (m_spInstallPath)
        return bControl ? OnLButtonDown_Connect(spLayer, pt, flags) : OnLButtonDown_Append(pt);
    return bControl ? OnLButtonDown_Create(spLayer, pt) : OnLButtonDown_EditMode(spLayer, target, flags);
}

boost::shared_ptr<CVectorHandle> CPathTool::OnLButtonDown_Create(const TLayerRef& pInstallLayer, CPoint pt) {
    SELF_CHECK(defect_logic, pInstallLayer != nullptr);
    const auto spPath = m_param.CreatePath();
    const auto spPoint = spPath->AppendControlPoint(pt);
    pInstallLayer->InsertPath(spPath);
    m_spInstallPath = spPath;
    m_spInstallLayer = pInstallLayer;
    Select(*pInstallLayer, spPath, spPoint);
    return boost::make_shared<CAnchorHandleDrag>(spPath, spPoint);
}

boost::shared_ptr<CVectorHandle> CPathTool::OnLButtonDown_Append(CPoint pt) {
    const auto spPoint = m_spInstallPath->AppendControlPoint(pt);
    m_spInstallLayer->SelectPath(m_spInstallPath, spPoint);
    return boost::make_shared<CAnchorHandleDrag>(m_spInstallPath, spPoint);
}

boost::shared_ptr<CVectorHandle> CPathTool::OnLButtonDown_Connect(const TLayerRef& spLayer, CPoint pt,
                                                                  uint32_t flags) {
    if (IsDeleteMode(flags)) return {};
    const auto spDrawn = boost::dynamic_pointer_cast<COpenPathObject>(m_spInstallPath);
    const TPathEnd end = spDrawn ? FindEnd(*spLayer, pt, flags, spDrawn.get()) : TPathEnd();
    if (!end.spPath) return OnLButtonDown_Append(pt);
    const TOpenPathPtr spJoined = ConnectPaths(*spDrawn, end);
    const auto spHistory = boost::make_shared<CCombinePathHistory>(
        L"パスの接続", spLayer, CReplacePathsHistory::TPaths{end.spPath}, spJoined);
    DropInstall();
    spHistory->Redo();
    RegisterHistory(spHistory);
    Select(*spLayer, spJoined);
    return {};
}

boost::shared_ptr<CVectorHandle>
CPathTool::OnLButtonDown_EditMode(const TLayerRef& spLayer, const TPathTarget& target, uint32_t flags) {
    const auto pPathCtlPt = boost::dynamic_pointer_cast<CPathControlPoint>(target.hit.spPoint);
    if (IsDeleteMode(flags)) {
        if (target.hit.kind == HIT_ANCHOR && pPathCtlPt) RemoveAnchor(*spLayer, target.spPath, pPathCtlPt);
        return {};
    }
    const auto spSelected = spLayer->GetSelectedPath();
    if (target.hit.spPoint) {
        Select(*spLayer, target.spPath, pPathCtlPt);
        return CreateHandle(target.spPath, target.hit, flags, GetRegister());
    }
    if (target.hit.kind != HIT_PATH || target.spPath != spSelected) {
        if (target.spPath != spSelected || spLayer->GetSelectedPoint()) Select(*spLayer, target.spPath);
        return {};
    }
    const auto spBefore = target.spPath->CreateSnapshot();
    const auto spPoint = target.spPath->Divide(target.hit.t);
    if (!spPoint) return {};
    Select(*spLayer, target.spPath, spPoint);
    return boost::make_shared<CAnchorInstallDrag>(target.spPath, spPoint, spBefore, GetRegister());
}

// The path that is drawn.

void CPathTool::DropInstall() {
    m_spInstallLayer->GetCanvas()->GetHistory().SetCancelHandler(NO_HANDLER);
    m_spInstallLayer->RemovePath(m_spInstallPath);
    m_spInstallPath.reset();
    m_spInstallLayer.reset();
}

void CPathTool::FinishInstall() {
    if (!m_spInstallPath) return;
    if (m_spInstallPath->GetStream().ControlPointCount() < 2) return DropInstall();
    const auto spPath = m_spInstallPath;
    const auto spLayer = m_spInstallLayer;
    const auto spHistory = boost::make_shared<CAddDelPathHistory<0>>(
        spLayer, spPath, static_cast<int>(spLayer->GetPaths().size()) - 1);
    CHistoryStream& history = spLayer->GetCanvas()->GetHistory();
    history.SetCancelHandler(NO_HANDLER);
    history.Register(spHistory);
    m_spInstallPath.reset();
    m_spInstallLayer.reset();
    Select(*spLayer, spPath);
    RefreshHover();
}

void CPathTool::EndOpen(EOpenEnd) {
    EndDrag(false); // without the handle that is being pulled
    FinishInstall();
}

bool CPathTool::Cancel() {
    const bool bDrawing = m_spInstallPath != nullptr;
    const bool bDragging = EndDrag(false);
    FinishInstall();
    return bDrawing || bDragging;
}

// Control was released while the button was held.
bool CPathTool::FinishIfReleased(bool bRedraw) {
    if (!m_spInstallPath || IsDragging() || GetOutside().keys.IsKeyDown(VK_Control)) return bRedraw;
    FinishInstall();
    return true;
}

bool CPathTool::OnLButtonUp(int32_t x, int32_t y, uint32_t flags) {
    return FinishIfReleased(CPathToolBase::OnLButtonUp(x, y, flags));
}

bool CPathTool::OnProximityLeave() { return FinishIfReleased(CPathToolBase::OnProximityLeave()); }

bool CPathTool::OnRButtonDown(int32_t, int32_t, uint32_t) {
    if (!m_spInstallPath) return false;
    EndOpen(EOpenEnd::Commit);
    return true;
}

// Takes the last anchor back.
bool CPathTool::OnUndo() {
    if (!m_spInstallPath) return CPathToolBase::OnUndo();
    EndDrag(false);
    const size_t nCount = m_spInstallPath->GetStream().ControlPointCount();
    if (nCount > 1) {
        m_spInstallPath->RemoveControlPoint(*m_spInstallPath->GetStream().GetControlPoint(nCount - 1));
        return true;
    }
    DropInstall();
    return false;
}

void CPathTool::EndHistoryCancel() {
    if (!m_spInstallPath) CPathToolBase::EndHistoryCancel();
}

// Keys and commands.

bool CPathTool::OnKeyDown(int nKey) {
    if (nKey == VK_Delete && !m_spInstallPath && !IsDragging())
        return DeleteSelected(GetOutside().keys.IsKeyDown(VK_Control));
    return CPathToolBase::OnKeyDown(nKey);
}

bool CPathTool::OnKeyUp(int nKey) {
    // While the button is held the drag goes on to its release.
    return FinishIfReleased(CPathToolBase::OnKeyUp(nKey));
}

bool CPathTool::CanCommand(int nId) const {
    if (nId != ID_EDIT_CLEAR) return CPathToolBase::CanCommand(nId);
    const auto spLayer = IsEnabled() ? GetVectorLayer() : nullptr;
    return spLayer && spLayer->GetSelectedPath() && !m_spInstallPath && !IsDragging();
}

bool CPathTool::OnCommand(int nId) {
    return nId == ID_EDIT_CLEAR ? DeleteSelected(false) : CPathToolBase::OnCommand(nId);
}

bool CPathTool::DeleteSelected(bool bDivide) {
    const auto spLayer = IsEnabled() ? GetVectorLayer() : nullptr;
    const auto spPath = spLayer ? spLayer->GetSelectedPath() : nullptr;
    if (!spPath) return false;
    const auto spPoint = spLayer->GetSelectedPoint();
    if (bDivide)
        DivideSelected(spLayer);
    else if (spPoint)
        RemoveAnchor(*spLayer, spPath, spPoint);
    else
        RemovePath(spLayer, spPath);
    RefreshHover();
    return true;
}

void CPathTool::RemoveAnchor(CVectorLayerBuffer& layer, const boost::shared_ptr<CPathObject>& spPath,
                             const boost::shared_ptr<CPathControlPoint>& spPoint) {
    if (spPath->GetStream().ControlPointCount() <= 2)
        return RemovePath(boost::static_pointer_cast<CVectorLayerBuffer>(layer.shared_from_this()), spPath);
    const auto spBefore = spPath->CreateSnapshot();
    spPath->RemoveControlPoint(*spPoint);
    try {
        RegisterHistory(
            boost::make_shared<CPathHistory>(L"制御点の削除", spPath, spBefore, spPath->CreateSnapshot()));
    } catch (...) {
        spPath->ApplySnapshot(*spBefore);
        throw;
    }
    Select(layer, spPath);
}

void CPathTool::RemovePath(const TLayerRef& spLayer, const boost::shared_ptr<CPathObject>& spPath) {
    const auto& lstPaths = spLayer->GetPaths();
    const auto idx = static_cast<int>(
        std::distance(lstPaths.begin(), std::find(lstPaths.begin(), lstPaths.end(), spPath)));
    const auto spHistory = boost::make_shared<CAddDelPathHistory<1>>(spLayer, spPath, idx);
    RegisterHistory(spHistory);
    spHistory->Redo();
    Select(*spLayer, {});
}

void CPathTool::DivideSelected(const TLayerRef& spLayer) {
    const auto spPath = spLayer->GetSelectedPath();
    const auto spPoint = spLayer->GetSelectedPoint();
    if (!spPoint) return;
    const size_t idx = spPath->GetStream().IndexOf(*spPoint);
    CReplacePathsHistory::TPaths vPieces;
    if (const auto spOpen = boost::dynamic_pointer_cast<COpenPathObject>(spPath)) {
        if (idx == 0 || idx + 1 == spOpen->GetStream().ControlPointCount()) return;
        const auto [spHead, spTail] = DividePath(*spOpen, idx);
        vPieces = {spHead, spTail};
    } else {
        vPieces = {OpenClosedPath(dynamic_cast<const CClosedPathObject&>(*spPath), idx, m_param)};
    }
    const auto spHistory = boost::make_shared<CDividePathHistory>(spLayer, spPath, vPieces);
    spHistory->Redo();
    RegisterHistory(spHistory);
    Select(*spLayer, vPieces.front());
}

// Display.

TPathKinds CPathTool::GetKinds(uint32_t flags) const {
    if (m_spInstallPath || (flags & POINTER_CONTROL)) return {false, false, false};
    if (IsDeleteMode(flags)) return {true, false, false};
    return {};
}

ECursor CPathTool::GetTargetCursor(const TPathTarget& target, uint32_t flags) const {
    if (IsDragging()) return m_join.spPath ? ECursor::Join : ECursor::Move;
    if (m_spInstallPath) {
        const auto pDrawn = dynamic_cast<const COpenPathObject*>(m_spInstallPath.get());
        const bool bJoins = pDrawn && FindEnd(*m_spInstallLayer, m_ptPointer, flags, pDrawn).spPath;
        return bJoins ? ECursor::Join : ECursor::Add;
    }
    if (flags & POINTER_CONTROL) return ECursor::Cross;
    if (IsDeleteMode(flags)) return target.hit.kind == HIT_ANCHOR ? ECursor::Remove : ECursor::Arrow;
    if (!target) return ECursor::Arrow;
    if (target.hit.spPoint) return ECursor::Move;
    const auto spLayer = GetVectorLayer();
    const bool bSelected = spLayer && spLayer->GetSelectedPath() == target.spPath;
    return bSelected && target.hit.kind == HIT_PATH ? ECursor::Add : ECursor::Select;
}

// The curve that a press at the pointer would add.
std::vector<CPoint> CPathTool::GetPreview() const {
    if (!m_spInstallPath || IsDragging() || !m_bPointer) return {};
    const CPathStream& stream = m_spInstallPath->GetStream();
    const auto spLast = stream.GetControlPoint(stream.ControlPointCount() - 1);
    const CPoint ptLast = spLast->GetAnchor()[STATE_LIVE];
    return {ptLast, ptLast + spLast->GetFore(STATE_LIVE), m_ptPointer, m_ptPointer};
}

void CPathTool::DrawMore(COverlay& overlay, const TOverlayMapper& mapper) const {
    std::vector<CPoint> vCurve = GetPreview();
    for (CPoint& pt : vCurve) pt = mapper(pt);
    if (!vCurve.empty()) overlay.DrawCurves(vCurve, {.color = PATH_COLOR_HOVER});
}

CRect CPathTool::GetMoreRect(const TOverlayMapper& mapper) const {
    CRect rc;
    for (const CPoint& pt : GetPreview()) {
        const CPoint ptClient = mapper(pt);
        rc = rc.Union({ptClient.x - 2, ptClient.y - 2, ptClient.x + 3, ptClient.y + 3});
    }
    return rc;
}
