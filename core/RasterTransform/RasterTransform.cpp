#include "core/RasterTransform/RasterTransform.h"

#include "core/Base/Failure.h"
#include "core/Base/Parallel.h"
#include "core/IniConfig/IniConfig.h"
#include "core/LayerBuffer/RasterGuard.h"
#include "core/Platform/System.h"
#include "core/RasterBuffer/PaintBounds.h"
#include "core/Tools/PenContact.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <exception>

namespace {

constexpr wchar_t SECTION[] = L"RasterTransform";
constexpr wchar_t MODE_KEY[] = L"Mode";
constexpr int VK_ENTER = 0x0D;
constexpr int UNITS_OF_PIXEL = 8;
/// Sizes in pixels at 96 dpi.
constexpr int32_t HANDLE = 4;
constexpr int32_t REACH_MOUSE = 8;
constexpr int32_t REACH_PEN = 12;
constexpr int32_t THRESHOLD = 3;
constexpr TColor LIGHT = 0xFFFFFF;
constexpr TColor DARK = 0x000000;

TPosition ToPosition(int32_t x, int32_t y) {
    return {static_cast<double>(x) / UNITS_OF_PIXEL, static_cast<double>(y) / UNITS_OF_PIXEL};
}

CPoint ToUnits(TPosition pt) {
    const auto round = [](double d) { return static_cast<int32_t>(std::floor(d * UNITS_OF_PIXEL + 0.5)); };
    return {round(pt.x), round(pt.y)};
}

bool IsInside(const TQuad& quad, TPosition pt) {
    int nInside = 0;
    for (size_t n = 0; n < 4; ++n) nInside += Cross(quad[(n + 1) % 4] - quad[n], pt - quad[n]) >= 0 ? 1 : -1;
    return std::abs(nInside) == 4;
}

} // namespace

CRasterTransform::CRasterTransform(const TToolOutside& outside) : CRasterToolBase(outside) {
    const int nMode = outside.config.GetSection(SECTION)->GetInt(MODE_KEY, TRANSFORM_SCALE);
    if (nMode >= 0 && nMode < TRANSFORM_MODES) m_mode = static_cast<ETransformMode>(nMode);
    m_modeRead = m_mode;
}

CRasterTransform::~CRasterTransform() {
    try {
        CRasterTransform::KeepSettings();
        Close();
    } catch (const std::exception&) {
        // The settings of the last time stay.
    }
}

void CRasterTransform::KeepSettings() {
    if (m_mode == m_modeRead) return;
    GetOutside().config.GetSection(SECTION)->SetInt(MODE_KEY, m_mode);
    m_modeRead = m_mode;
}

const wchar_t* CRasterTransform::GetHint(uint32_t uModifiers) const {
    if (!IsWorking() && IsOpen() && uModifiers == 0) return L"Enter: 決定　Esc: やめる";
    return IsWorking() || !IsOpen() ? CTools::GetHint(uModifiers) : L"";
}

CRasterTransform::TTarget CRasterTransform::FindTarget() const {
    using TMask = TTransformSource::TMask;
    const auto spCanvas = GetCanvas();
    const auto spLayer = GetRasterLayer();
    if (!spCanvas || !spLayer) return {};
    if (const auto spFloat = spLayer->GetFloat()) {
        TTarget target{{boost::shared_ptr<CRasterBuffer>(spFloat, &spFloat->GetPlane()),
                        spFloat->GetMask(),
                        {},
                        spFloat->GetOffset()},
                       spFloat};
        if (const auto& spMask = spFloat->GetMask()) {
            CSelectBuffer select(spMask->GetSize(), *spMask, {0, 0});
            select.UpdateOutline();
            target.source.rc = select.GetBound();
        } else {
            target.source.rc = PaintBoundsOf(spFloat->GetPlane());
        }
        return target;
    }
    TTarget target{{spLayer->GetRaster(), {}, {}, {}}, {}};
    if (const auto spSelect = spCanvas->GetSelect()) {
        target.source.spMask = boost::shared_ptr<const TMask>(spSelect, &spSelect->GetMask());
        target.source.rc = spSelect->GetBound().Intersect(spLayer->GetRaster()->GetRect());
    } else {
        target.source.rc = PaintBoundsOf(*spLayer->GetRaster());
    }
    return target;
}

const CRect& CRasterTransform::GetIdleRect() const {
    const auto spCanvas = GetCanvas();
    const auto spLayer = GetRasterLayer();
    const uint32_t uChanges = spCanvas ? spCanvas->GetHistory().GetChangeCount() : 0;
    const auto spSelect = spCanvas ? spCanvas->GetSelect() : boost::shared_ptr<CSelectBuffer>();
    const auto spFloat = spLayer ? spLayer->GetFloat() : boost::shared_ptr<CFloatingPixels>();
    if (!spLayer || spLayer != m_idle.wpLayer.lock() || spSelect != m_idle.wpSelect.lock() ||
        spFloat != m_idle.wpFloat.lock() || uChanges != m_idle.uChanges)
        m_idle = {spLayer, spSelect, spFloat, uChanges, FindTarget().source.GetHome()};
    return m_idle.rc;
}

std::optional<TQuad> CRasterTransform::GetQuad() const {
    if (m_spOverlay) return m_spOverlay->GetMap().GetQuad();
    if (!IsEnabled() || GetIdleRect().IsEmpty()) return std::nullopt;
    return QuadOf(GetIdleRect());
}

bool CRasterTransform::Open() {
    if (m_spOverlay) return true;
    if (!IsEnabled()) return false;
    const auto spCanvas = GetCanvas();
    spCanvas->CompleteWork();
    TTarget target = FindTarget();
    if (target.source.rc.IsEmpty()) return false;
    const auto spLayer = GetRasterLayer();
    if (!target.spFloat) target.source.spPlane = target.source.spPlane->ShallowCopy();
    m_spOverlay = boost::make_shared<CTransformOverlay>(target.source, spLayer->GetRaster(), target.spFloat);
    m_spOpenCanvas = spCanvas;
    m_spTarget = spLayer;
    m_spTarget->SetOverlay(m_spOverlay);
    m_spOpenCanvas->GetHistory().SetCancelHandler([this] {
        SetState(STATE_IDLE);
        Close();
        return false;
    });
    GetOutside().fnNotify(EToolNotice::ToolChanged);
    return true;
}

void CRasterTransform::Close() {
    if (!m_spOverlay) return;
    const boost::function<bool()> fnNone;
    m_spOpenCanvas->GetHistory().SetCancelHandler(fnNone);
    m_spTarget->SetOverlay({});
    m_spOverlay.reset();
    m_spTarget.reset();
    m_spOpenCanvas.reset();
    GetOutside().fnNotify(EToolNotice::ToolChanged);
}

void CRasterTransform::SetQuad(const TQuad& quad) {
    if (IsQuadUsable(quad) && quad != m_spOverlay->GetMap().GetQuad()) m_spOverlay->SetQuad(quad);
}

void CRasterTransform::Settle() {
    if (m_spOverlay && m_spOverlay->IsIdentity()) Close();
    RedrawActiveView();
}

int32_t CRasterTransform::ToDevice(int32_t nPixels) const {
    const auto spView = GetView();
    return COverlay(spView ? spView->GetDpi() : DPI_NORMAL).ToDevice(nPixels);
}

TTransformGrip CRasterTransform::FindGrip(CPoint ptCanvas, uint32_t flags) const {
    using EKind = TTransformGrip::EKind;
    const auto quad = GetQuad();
    const auto spView = GetView();
    if (!quad || !spView) return {};
    const int64_t nReach = ToDevice(flags & POINTER_TABLET ? REACH_PEN : REACH_MOUSE);
    const CPoint pt = spView->ToClient(ptCanvas);
    TTransformGrip grip{EKind::Corner, 0};
    int64_t nNearest = nReach * nReach + 1;
    for (size_t n = 0; n < 4; ++n) {
        const CPoint away = spView->ToClient(ToUnits((*quad)[n])) - pt;
        const int64_t nDistance = int64_t{away.x} * away.x + int64_t{away.y} * away.y;
        if (nDistance >= nNearest) continue;
        nNearest = nDistance;
        grip.nCorner = n;
    }
    if (nNearest <= nReach * nReach) return grip;
    return {IsInside(*quad, ToPosition(ptCanvas.x, ptCanvas.y)) ? EKind::Inside : EKind::Outside};
}

bool CRasterTransform::OnLButtonDown(int32_t x, int32_t y, uint32_t flags) {
    if (IsWorking()) return false;
    const TTransformGrip grip = FindGrip({x, y}, flags);
    if (!Open()) {
        if (flags & POINTER_TABLET) GetContact().Drop();
        return false;
    }
    SetState(flags & POINTER_TABLET ? STATE_TABLET : STATE_MOUSE);
    m_drag = {m_mode, grip, m_spOverlay->GetMap().GetQuad(), ToPosition(x, y)};
    m_ptPress = {x, y};
    m_bBeyond = false;
    return true;
}

bool CRasterTransform::OnMouseMove(int32_t x, int32_t y, uint32_t, uint32_t flags) {
    if (!IsWorking()) {
        m_hover = FindGrip({x, y}, flags);
        return false;
    }
    const auto spView = GetView();
    if (!m_bBeyond && spView) {
        const CPoint away = spView->ToClient({x, y}) - spView->ToClient(m_ptPress);
        m_bBeyond = std::max(std::abs(away.x), std::abs(away.y)) >= ToDevice(THRESHOLD);
    }
    if (m_bBeyond) SetQuad(DragQuad(m_drag, ToPosition(x, y), flags));
    return m_bBeyond;
}

bool CRasterTransform::OnLButtonUp(int32_t x, int32_t y, uint32_t flags) {
    if (!IsWorking()) return false;
    OnMouseMove(x, y, 0, flags);
    return EndDrag();
}

bool CRasterTransform::EndDrag() {
    if (!IsWorking()) return false;
    SetState(STATE_IDLE);
    Settle();
    return true;
}

bool CRasterTransform::Cancel() {
    if (!IsWorking()) return false;
    SetQuad(m_drag.quad);
    return EndDrag();
}

bool CRasterTransform::OnKeyDown(int nKey) {
    IKeyState& keys = GetOutside().keys;
    if (IsWorking() || keys.IsKeyDown(VK_Control) || keys.IsKeyDown(VK_Alt))
        return CRasterToolBase::OnKeyDown(nKey);
    if (nKey == VK_ENTER && IsOpen()) return Accept(), true;
    return Nudge(nKey) || CRasterToolBase::OnKeyDown(nKey);
}

bool CRasterTransform::Nudge(int nKey) {
    const CPoint ptStep = GetArrowStep(nKey);
    if (IsWorking() || ptStep == CPoint() || !Open()) return false;
    TQuad quad = m_spOverlay->GetMap().GetQuad();
    for (TPosition& pt : quad) pt = pt + TPosition{double(ptStep.x), double(ptStep.y)};
    SetQuad(quad);
    Settle();
    return true;
}

void CRasterTransform::ChangeFixed(EFixedTransform fixed) {
    SELF_CHECK(illegal_data, !IsWorking());
    if (!Open()) return;
    SetQuad(FixedQuad(m_spOverlay->GetMap().GetQuad(), fixed));
    Settle();
}

void CRasterTransform::CancelPreview() {
    SELF_CHECK(illegal_data, !IsWorking());
    Close();
    RedrawActiveView();
}

boost::shared_ptr<CSelectBuffer> CRasterTransform::MakeSelect() const {
    const TTransformSource& source = m_spOverlay->GetSource();
    if (!source.spMask) return {};
    const auto spSelect = boost::make_shared<CSelectBuffer>(m_spOpenCanvas->GetSize());
    auto& mask = spSelect->GetMask();
    // The mask alone, by the mapping of the pixels.
    const TTransformSource sourceMask{
        boost::const_pointer_cast<TTransformSource::TMask>(source.spMask), {}, source.rc, source.ptOffset};
    const CTransformMap& map = m_spOverlay->GetMap();
    std::vector<CPoint> vBlocks;
    mask.ForEachBlockIn(BoundsOf(map.GetQuad(), mask.GetRect()), [&](CPoint pt) { vBlocks.push_back(pt); });
    std::vector<boost::shared_ptr<CAlphaBlock8>> vTiles(vBlocks.size());
    ForEachIndex(vBlocks.size(), AvailableThreads(), [&](size_t i) {
        const auto spTile = boost::static_pointer_cast<CAlphaBlock8>(mask.CreateBlock(vBlocks[i]));
        if (RenderTransform(sourceMask, map, mask.GetRect(), *spTile))
            vTiles[i] = spTile->IsAll(255) ? FullSelectTile() : spTile;
    });
    for (size_t i = 0; i < vBlocks.size(); ++i)
        if (vTiles[i]) mask.ShareBlock(vBlocks[i], vTiles[i]);
    spSelect->UpdateOutline();
    return spSelect->GetBound().left < 0 ? boost::shared_ptr<CSelectBuffer>() : spSelect;
}

void CRasterTransform::Accept() {
    SELF_CHECK(illegal_data, !IsWorking());
    if (!m_spOverlay) return;
    const auto& pTargetLayer = m_spTarget;
    SELF_CHECK(illegal_data, pTargetLayer != nullptr);
    const auto spRaster = pTargetLayer->GetRaster();
    const auto vTiles =
        m_spOverlay->IsIdentity() ? TTransformTiles() : m_spOverlay->MakeTiles(AvailableThreads());
    const bool bSelected = m_spOverlay->GetSource().spMask != nullptr;
    if (!m_spOverlay->IsIdentity() && (!vTiles.empty() || bSelected)) {
        const auto spSelect = MakeSelect();
        // Pixels that float above another layer.
        std::optional<CFloatDrop> drop;
        if (!pTargetLayer->GetFloat()) drop.emplace(m_spOpenCanvas);
        const TFloatState before = m_spOpenCanvas->GetFloatState();
        CRasterGuard guard(spRaster);
        for (const auto& [pt, spTile] : vTiles) spRaster->SetBlock(pt, spTile);
        const auto spHistory = boost::make_shared<TransformHistory>(GetName(), m_spOpenCanvas, before,
                                                                    &guard.GetBefore(), spRaster);
        m_spOpenCanvas->SetFloatState({{}, {}, spSelect});
        try {
            m_spOpenCanvas->GetHistory().Register(spHistory);
        } catch (...) {
            m_spOpenCanvas->SetFloatState(before);
            throw;
        }
        guard.Keep();
    }
    Close();
    RedrawActiveView();
}

void CRasterTransform::EndOpen(EOpenEnd why) {
    if (IsWorking()) SetState(STATE_IDLE);
    if (why == EOpenEnd::Commit)
        Accept();
    else
        CancelPreview();
}

bool CRasterTransform::ShowPreview(bool bShow) {
    if (m_spOverlay) m_spTarget->SetOverlay(bShow ? m_spOverlay : boost::shared_ptr<CTransformOverlay>());
    return true;
}

ECursor CRasterTransform::GetCursor(CPoint) const {
    using EKind = TTransformGrip::EKind;
    const EKind kind = IsWorking() ? m_drag.grip.kind : m_hover.kind;
    return kind == EKind::Outside ? ECursor::Cross : ECursor::Move;
}

std::array<CPoint, 5> CRasterTransform::GetOutline(const TOverlayMapper& mapper) const {
    std::array<CPoint, 5> aPoints{};
    if (const auto quad = GetQuad())
        for (size_t n = 0; n < aPoints.size(); ++n) aPoints[n] = mapper(ToUnits((*quad)[n % 4]));
    return aPoints;
}

void CRasterTransform::DrawOverlay(COverlay& overlay, const TOverlayMapper& mapper) const {
    if (!GetQuad()) return;
    const auto aPoints = GetOutline(mapper);
    overlay.DrawPolyline(aPoints, {.color = LIGHT});
    overlay.DrawPolyline(aPoints, {.color = DARK, .bDashed = true});
    for (size_t n = 0; n < 4; ++n) overlay.DrawSquare(aPoints[n], HANDLE, LIGHT, {.color = DARK});
}

std::optional<std::vector<CRect>> CRasterTransform::TakeOverlayChanges(const TOverlayMapper& mapper) {
    const auto aPoints = GetOutline(mapper);
    if (aPoints == m_aShown) return std::vector<CRect>{};
    m_aShown = aPoints;
    return std::nullopt;
}
