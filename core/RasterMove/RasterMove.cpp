#include "core/RasterMove/RasterMove.h"

#include "core/Base/Failure.h"
#include "core/Commands/CommandIds.h"
#include "core/LayerBuffer/RasterGuard.h"
#include "core/Platform/System.h"
#include "core/RasterMove/SelectionCommands.h"
#include "core/Tools/PenContact.h"
#include "core/Tools/PictureExchange.h"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace {

constexpr int32_t FAR_AWAY = 1 << 24; ///< offsets stay below, so that no sum overflows

// The canvas pixel that holds a position in eighths.
CPoint PixelOf(int32_t x, int32_t y) { return {x >> 3, y >> 3}; }

CPoint Clamp(CPoint pt) {
    return {std::clamp(pt.x, -FAR_AWAY, FAR_AWAY), std::clamp(pt.y, -FAR_AWAY, FAR_AWAY)};
}

} // namespace

bool CRasterMove::HasTarget(bool bWhole) const {
    const auto spLayer = GetRasterLayer();
    const auto spCanvas = GetCanvas();
    if (!spLayer || !spCanvas) return false;
    if (spLayer->GetFloat() || spCanvas->GetSelect()) return true;
    CBoolMatrix tiles(spLayer->GetRaster()->GetBufferSize());
    spLayer->GetRaster()->AddTilesTo(tiles);
    return bWhole && tiles.FindSet() != tiles.GetCount();
}

bool CRasterMove::BeginMove(int32_t x, int32_t y, uint32_t flags, bool bWhole) {
    if (m_state != STATE_IDLE) return false;
    GetCanvas()->CompleteWork(); // strokes still waiting were drawn before
    if (!HasTarget(bWhole)) {
        if (flags & POINTER_TABLET) GetContact().Drop();
        return false;
    }
    SetState(flags & POINTER_TABLET ? STATE_TABLET : STATE_MOUSE);
    m_byDragFlags = flags;
    m_bCut = !(flags & POINTER_CONTROL);
    m_ptDown = m_ptMove = PixelOf(x, y);
    m_bMoving = true;
    // Undo in the middle of a drag takes the drag back.
    GetCanvas()->GetHistory().SetCancelHandler([this] { return CancelOperation(), false; });
    return true;
}

void CRasterMove::EndMove() {
    const boost::function<bool()> fnNone;
    GetCanvas()->GetHistory().SetCancelHandler(fnNone);
    m_bMoving = false;
    SetState(STATE_IDLE);
}

// Prepares the undo step of the whole drag. When this fails, nothing has changed.
void CRasterMove::Lift() {
    const auto pRasterLayer = GetRasterLayer();
    const auto pCanvas = GetCanvas();
    SELF_CHECK(illegal_data, pCanvas);
    SELF_CHECK(illegal_data, pRasterLayer);
    const TFloatState now = pCanvas->GetFloatState();
    const wchar_t* pszName = m_bCut ? L"ラスタ移動" : L"ラスタ複製";
    const auto spOwn = pRasterLayer->GetFloat();
    if (spOwn && m_bCut) {
        m_spHistory = boost::make_shared<CRasterMoveHistory>(pszName, pCanvas, now, nullptr, nullptr);
        m_spFloat = spOwn;
        return;
    }
    auto pDrop = std::make_unique<CFloatDrop>(pCanvas);
    const auto spRaster = pRasterLayer->GetRaster();
    CRasterGuard guard(spRaster);
    const auto spFloat = spOwn ? spOwn->Copy() : TakePixels(*spRaster, now.spSelect.get(), m_bCut);
    const auto spHistory = boost::make_shared<CRasterMoveHistory>(pszName, pCanvas, pCanvas->GetFloatState(),
                                                                  &guard.GetBefore(), spRaster);
    pCanvas->SetFloatState({spFloat, pRasterLayer, now.spSelect});
    guard.Keep();
    m_spHistory = spHistory;
    m_spFloat = spFloat;
    m_pDrop = std::move(pDrop);
}

void CRasterMove::ShowAt(CPoint ptDelta) {
    const auto spCanvas = GetCanvas();
    const auto spFloat = m_spFloat->MoveTo(Clamp(m_spFloat->GetOffset() + ptDelta));
    spCanvas->SetFloatState({spFloat, GetRasterLayer(), spFloat->CreateSelect(spCanvas->GetSize())});
}

bool CRasterMove::OnMouseMove(int32_t x, int32_t y, uint32_t, uint32_t, uint32_t) {
    if (!m_bMoving || PixelOf(x, y) == m_ptMove) return false;
    m_ptMove = PixelOf(x, y);
    if (!m_spHistory) Lift();
    ShowAt(m_ptMove - m_ptDown);
    return true;
}

bool CRasterMove::OnLButtonUp(int32_t x, int32_t y, uint32_t) {
    if (!m_bMoving) return false;
    OnMouseMove(x, y, 0, 0, m_byDragFlags);
    if (m_ptMove == m_ptDown) return Cancel();
    try {
        Finish();
    } catch (...) {
        EndMove();
        throw;
    }
    EndMove();
    return true;
}

bool CRasterMove::OnProximityLeave() {
    return m_state == STATE_TABLET && OnLButtonUp(m_ptMove.x * 8, m_ptMove.y * 8, m_byDragFlags);
}

bool CRasterMove::Cancel() {
    if (!m_bMoving) return false;
    Revert();
    EndMove();
    return true;
}

void CRasterMove::Finish() {
    const auto& spHistory = m_spHistory;
    SELF_CHECK(defect_logic, spHistory);
    try {
        GetCanvas()->GetHistory().Register(spHistory);
    } catch (...) {
        Revert();
        throw;
    }
    Forget();
}

void CRasterMove::Revert() {
    if (m_spHistory) m_spHistory->Undo();
    Forget();
}

void CRasterMove::Forget() {
    m_spHistory.reset();
    m_spFloat.reset();
    m_pDrop.reset();
}

bool CRasterMove::Nudge(int nKey) {
    const CPoint ptStep = GetArrowStep(nKey);
    const EArrowKeys keys = GetArrowKeys();
    if (ptStep == CPoint() || keys == EArrowKeys::Nothing || m_state != STATE_IDLE) return false;
    GetCanvas()->CompleteWork();
    if (!HasTarget(keys == EArrowKeys::Whole)) return false;
    CHistoryStream& history = GetCanvas()->GetHistory();
    const auto spLast = m_wpNudge.lock();
    // The step of the keys before puts the pixels back to where the first one found them.
    const bool bFold = spLast && spLast == history.GetFoldable();
    m_bCut = true;
    try {
        Lift();
        ShowAt(ptStep);
    } catch (...) {
        Revert();
        throw;
    }
    if (bFold) {
        Forget();
        history.SetModified(true);
    } else {
        Finish();
        m_wpNudge = history.GetUndoList().front();
    }
    return true;
}

bool CRasterMove::CanCommand(int nId) const {
    const auto spCanvas = GetCanvas();
    if (m_state != STATE_IDLE || !spCanvas || !IsEnabled()) return false;
    return nId == ID_SELECT_ALL || nId == ID_SELECT_NONE || (nId == ID_EDIT_CLEAR && CanClear(*spCanvas));
}

bool CRasterMove::OnCommand(int nId) {
    if (!CanCommand(nId)) return false;
    const auto spCanvas = GetCanvas();
    if (nId == ID_SELECT_ALL) return SelectAll(spCanvas);
    if (nId == ID_SELECT_NONE) return Deselect(spCanvas);
    return ClearSelected(spCanvas, L"選択範囲を消去");
}

bool CRasterMove::CanCopy() const {
    const auto spCanvas = GetCanvas();
    return m_state == STATE_IDLE && spCanvas && CanClear(*spCanvas);
}

bool CRasterMove::Copy() { return CanCopy() && GetOutside().exchange.Copy(GetCanvas()); }
bool CRasterMove::Cut() { return Copy() && ClearSelected(GetCanvas(), L"切り取り"); }
