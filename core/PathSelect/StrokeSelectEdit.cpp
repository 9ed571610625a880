// The stroke selection tool's keys and commands, the values of the selected strokes, and the clipboard.
#include "core/Base/Failure.h"
#include "core/CanvasBuffer/NewLayer.h"
#include "core/Commands/CommandIds.h"
#include "core/ImageFile/SvgLayers.h"
#include "core/LayerBuffer/LayerHistory.h"
#include "core/PathSelect/StrokeForms.h"
#include "core/PathSelect/StrokeSelect.h"
#include "core/Platform/System.h"
#include "core/Tools/PictureExchange.h"

#include <boost/pointer_cast.hpp>

namespace {

constexpr int32_t PIXEL = 8; ///< path units

TStrokeMap MovedBy(CPoint pt) {
    TStrokeMap map;
    map.dToX = pt.x;
    map.dToY = pt.y;
    return map;
}

CPoint MiddleOf(const CRect& rc) { return {rc.left + rc.Width() / 2, rc.top + rc.Height() / 2}; }

// The way to where pasted strokes can be seen: none where their middle lies on the canvas, else to the middle
// of what the view shows, in whole pixels.
CPoint PasteMove(const TStrokes& vPaths, const IActiveView& view) {
    const CPoint ptMiddle = MiddleOf(BoundsOfPaths(vPaths));
    const CSize sz = view.GetCanvas()->GetSize();
    if (CRect({0, 0}, {sz.cx * PIXEL, sz.cy * PIXEL}).Contains(ptMiddle)) return {};
    const CPoint ptShown = MiddleOf(view.GetShownRect());
    const CPoint away = CPoint{ptShown.x * PIXEL, ptShown.y * PIXEL} - ptMiddle;
    const auto toPixels = [](int32_t n) { return ((n + PIXEL / 2) & -PIXEL); };
    return {toPixels(away.x), toPixels(away.y)};
}

} // namespace

// Keys and commands.

bool CStrokeSelect::OnKeyDown(int nKey) {
    const bool bControl = GetOutside().keys.IsKeyDown(VK_Control);
    if (bControl && nKey == 'A') return OnCommand(ID_SELECT_ALL);
    if (bControl && nKey == 'D') return OnCommand(ID_SELECT_NONE);
    if (nKey == VK_Delete) return OnCommand(ID_EDIT_CLEAR);
    if (!bControl && Nudge(nKey)) return true;
    RefreshHover();
    return false;
}

bool CStrokeSelect::OnKeyUp(int) {
    RefreshHover();
    return false;
}

bool CStrokeSelect::OnEscape() { return m_state == STATE_IDLE && Deselect(); }

bool CStrokeSelect::CanCommand(int nId) const {
    if (m_state != STATE_IDLE || !IsEnabled()) return false;
    if (nId == ID_SELECT_ALL || nId == ID_SELECT_NONE) return true;
    return nId == ID_EDIT_CLEAR && !GetSelected().empty();
}

bool CStrokeSelect::OnCommand(int nId) {
    if (!CanCommand(nId)) return false;
    if (nId == ID_SELECT_ALL) return SelectAllStrokes();
    return nId == ID_SELECT_NONE ? Deselect() : DeleteSelected(L"線の削除");
}

bool CStrokeSelect::DeleteSelected(const wchar_t* pszLabel) {
    const TStrokes vPaths = GetSelected();
    if (vPaths.empty()) return false;
    const auto spHistory =
        boost::make_shared<CStrokesAddDelHistory<false>>(pszLabel, GetVectorLayer(), vPaths);
    RegisterHistory(spHistory);
    spHistory->Redo();
    RefreshHover();
    GetOutside().fnNotify(EToolNotice::ToolChanged);
    return true;
}

bool CStrokeSelect::Nudge(int nKey) {
    const CPoint ptStep = GetArrowStep(nKey);
    const TStrokes vPaths = GetSelected();
    if (ptStep == CPoint() || vPaths.empty() || m_state != STATE_IDLE) return false;
    const CStrokesBefore before(vPaths);
    try {
        const TStrokeMap map = MovedBy({ptStep.x * PIXEL, ptStep.y * PIXEL});
        for (const auto& spPath : vPaths) spPath->Transform(map);
    } catch (...) {
        before.Restore();
        throw;
    }
    Register(before, LABEL_MOVE, EFold::Move);
    return true;
}

// Values.

std::vector<boost::shared_ptr<COpenPathObject>> CStrokeSelect::GetStrokes() const {
    std::vector<boost::shared_ptr<COpenPathObject>> vStrokes;
    for (const auto& spPath : GetSelected())
        if (auto spStroke = boost::dynamic_pointer_cast<COpenPathObject>(spPath))
            vStrokes.push_back(std::move(spStroke));
    return vStrokes;
}

void CStrokeSelect::ChangeStrokes(const boost::function<void(COpenPathStream&)>& fnChange, bool bFold) {
    const auto vStrokes = GetStrokes();
    if (vStrokes.empty() || m_state != STATE_IDLE) return;
    const CStrokesBefore before(TStrokes(vStrokes.begin(), vStrokes.end()));
    try {
        for (const auto& spStroke : vStrokes) {
            fnChange(spStroke->GetStream());
            spStroke->Update();
        }
    } catch (...) {
        before.Restore();
        throw;
    }
    Register(before, L"線の変更", bFold ? EFold::Values : EFold::None);
}

void CStrokeSelect::Register(const CStrokesBefore& before, const wchar_t* pszLabel, EFold fold) {
    try {
        const auto spStep = before.MakeHistory(pszLabel);
        if (!spStep) return;
        CHistoryStream& history = GetVectorLayer()->GetCanvas()->GetHistory();
        const auto spLast = m_wpFoldable.lock();
        if (fold != EFold::None && fold == m_fold && spLast && spLast == history.GetFoldable() &&
            spLast->IsOf(before.GetPaths())) {
            spLast->Extend(*spStep);
            return history.SetModified(true);
        }
        RegisterHistory(spStep);
        m_wpFoldable = spStep;
        m_fold = fold;
    } catch (...) {
        before.Restore();
        throw;
    }
}

// The clipboard.

bool CStrokeSelect::CanCopy() const { return m_state == STATE_IDLE && !GetSelected().empty(); }

bool CStrokeSelect::Copy() {
    if (!CanCopy()) return false;
    const auto spLayer = GetVectorLayer();
    GetOutside().exchange.CopyStrokes(
        MakeStrokeForms({GetCanvas()->GetSize(), GetShownColor(*spLayer), spLayer->GetSelectedPaths()}));
    return false;
}

bool CStrokeSelect::Cut() {
    if (!CanCut()) return false;
    Copy();
    return DeleteSelected(L"切り取り");
}

bool CStrokeSelect::CanPaste() const {
    return CVectorTool::CanPaste() ||
           (m_state == STATE_IDLE && GetView() && GetOutside().exchange.HasStrokes());
}

bool CStrokeSelect::Paste() {
    if (!CanPaste()) return false;
    const TStrokeBytes spStrokes = GetOutside().exchange.GetStrokes();
    if (!spStrokes) return CVectorTool::Paste();
    TCopiedStrokes strokes;
    try {
        strokes = ReadStrokes(spStrokes);
        if (const CPoint away = PasteMove(strokes.vPaths, *GetView()); away != CPoint())
            for (const auto& spPath : strokes.vPaths) spPath->Transform(MovedBy(away));
    } catch (const deserialize_error&) {
        throw refused_error(
            L"クリップボードの線を貼り付けられませんでした。\n\n線をもう一度コピーしてください。");
    }
    const auto spCanvas = GetCanvas();
    auto spLayer = IsEnabled() ? GetVectorLayer() : nullptr;
    boost::shared_ptr<CHistory> spNew;
    const TNewPlace place = FindNewPlace(*spCanvas);
    if (!spLayer) {
        spLayer = CreateVectorLayer(spCanvas);
        spLayer->SetLayerColor(strokes.color);
        spLayer->setName(UniqueLayerName(*place.spParent, NEW_VECTOR_LAYER));
        spNew = boost::make_shared<CAddDelLayerHistory<true>>(place.spParent, place.idxLayer, spLayer);
    }
    const auto spStrokesHistory =
        boost::make_shared<CStrokesAddDelHistory<true>>(L"貼り付け", spLayer, strokes.vPaths);
    boost::shared_ptr<CHistory> spHistory = spStrokesHistory;
    if (spNew) spHistory = JoinHistories(spNew, spStrokesHistory);
    RegisterHistory(spHistory);
    if (spNew) {
        place.spParent->AddLayer(spLayer, place.idxLayer, false);
        spCanvas->SelectLayer(spLayer);
    }
    spStrokesHistory->Redo();
    Select(*spLayer, strokes.vPaths);
    return true;
}
