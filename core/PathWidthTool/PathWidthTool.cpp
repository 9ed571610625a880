#include "core/PathWidthTool/PathWidthTool.h"

#include "core/IniConfig/IniConfig.h"
#include "core/PathCtlPtHandle/ControlPointDrag.h"
#include "core/Tools/OverlayCircle.h"

#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <exception>

namespace {

constexpr wchar_t SECTION[] = L"PathWidthTool";
constexpr int32_t DEFAULT_RADIUS = 120;
constexpr int32_t DEFAULT_COEF = 20;
constexpr int32_t ZOOM_NORMAL = 48;
constexpr int32_t UNITS_OF_PIXEL = 8;

constexpr wchar_t MARK_HINT[] = L"ドラッグ: 記号を動かす　Shift: 記号を消す　Alt: 記号の片側だけ";
constexpr wchar_t SELECT_HINT[] = L"クリック: パスを選ぶ";
/// By kind, on a line.
constexpr const wchar_t* LINE_HINTS[WIDTH_KINDS] = {
    L"線に沿ってドラッグ: 太さの点を置く　Shift: 記号を消す",
    L"線に沿ってドラッグ: 太さを変える　Shift: 記号を消す",
    L"線に沿ってドラッグ: 太さの点を消す　Shift: 記号を消す",
    L"線に沿ってドラッグ: 透明にする　Shift: 記号を消す",
    L"線に沿ってドラッグ: 不透明度を変える　Shift: 記号を消す"};

bool IsEnd(const TPathTarget& target) {
    return dynamic_cast<const COpenPathTermBase*>(target.hit.spPoint.get()) != nullptr;
}

} // namespace

CPathWidthTool::CPathWidthTool(const TToolOutside& outside) : CPathToolBase(outside) {
    const auto spSection = outside.config.GetSection(SECTION);
    SetRadius(spSection->GetInt(L"Radius", DEFAULT_RADIUS));
    m_list.Read(outside.config);
    for (int n = 0; n < WIDTH_KINDS; ++n) {
        const auto it = std::ranges::find(m_list.GetItems(), n,
                                          [](const TPathWidthItem& item) { return int{KindOf(item.nType)}; });
        m_aLast[static_cast<size_t>(n)] = it == m_list.GetItems().end() ? FirstOf(EWidthKind(n)) : *it;
    }
    m_item.nCoef = Normalized({WIDTH_POINTS_1, spSection->GetInt(L"Coef", DEFAULT_COEF)}).nCoef;
    SetItem({spSection->GetInt(L"Type", WIDTH_POINTS_3), m_item.nCoef});
    m_itemRead = m_item;
    m_nRadiusRead = m_nRadius;
}

CPathWidthTool::~CPathWidthTool() {
    try {
        CPathWidthTool::KeepSettings();
    } catch (const std::exception&) {
        // If even that runs out of memory, the next tool has the previously saved settings.
    }
}

void CPathWidthTool::KeepSettings() {
    CIniConfig& config = GetOutside().config;
    m_list.Write(config);
    // The store may be shared: values that this tool did not change are not written.
    std::vector<std::pair<std::wstring, int32_t>> vChanged;
    const auto note = [&](const wchar_t* pszKey, int nValue, int& nRead) {
        if (nValue != nRead) vChanged.emplace_back(pszKey, nValue);
        nRead = nValue;
    };
    note(L"Radius", m_nRadius, m_nRadiusRead);
    note(L"Coef", m_item.nCoef, m_itemRead.nCoef);
    note(L"Type", m_item.nType, m_itemRead.nType);
    if (!vChanged.empty()) config.GetSection(SECTION)->SetInts(vChanged);
}

const wchar_t* CPathWidthTool::GetHint(uint32_t uModifiers) const {
    if (m_bDeleteMode) uModifiers = POINTER_SHIFT; // the eraser end
    if (uModifiers != 0 || !m_hover || !IsEnabled() || IsDragging())
        return CPathToolBase::GetHint(uModifiers);
    switch (GetTargetCursor(m_hover, uModifiers)) {
    case ECursor::Move:
        return MARK_HINT;
    case ECursor::Width:
        return LINE_HINTS[KindOf(m_item.nType)];
    default:
        return SELECT_HINT;
    }
}

void CPathWidthTool::SetItem(const TPathWidthItem& item) {
    const bool bPlain = IsSupported(item.nType) && !HasCoef(item.nType);
    m_item = {item.nType, bPlain ? m_item.nCoef : Normalized(item).nCoef};
    if (IsSupported(item.nType)) m_aLast[static_cast<size_t>(KindOf(item.nType))] = m_item;
}

void CPathWidthTool::SetKind(EWidthKind kind) {
    if (kind != KindOf(m_item.nType)) SetItem(m_aLast[static_cast<size_t>(kind)]);
}

void CPathWidthTool::SetRadius(int nRadius) { m_nRadius = std::clamp(nRadius, 0, MAX_RADIUS); }

TPathKinds CPathWidthTool::GetKinds(uint32_t) const {
    return {.bAnchor = false, .bTerm = true, .bLine = false};
}

uint32_t CPathWidthTool::ToPath(int32_t nPixels) const {
    const auto spView = GetView();
    const int32_t nZoom = spView && spView->GetZoom() != 0 ? spView->GetZoom() : ZOOM_NORMAL;
    return static_cast<uint32_t>((nPixels * UNITS_OF_PIXEL * ZOOM_NORMAL + nZoom - 1) / nZoom);
}

TPathTarget CPathWidthTool::FindLine(CVectorLayerBuffer& layer, CPoint pt, uint32_t flags) const {
    const int64_t nReach = std::max<int64_t>(m_nRadius, ToPath(GetReach(flags)));
    const auto n = static_cast<int32_t>(nReach);
    const auto spSelected = layer.GetSelectedPath();
    TPathTarget best;
    const auto vPaths = layer.FindPaths({pt.x - n, pt.y - n, pt.x + n + 1, pt.y + n + 1});
    for (auto it = vPaths.rbegin(); it != vPaths.rend(); ++it) {
        const auto spOpen = boost::dynamic_pointer_cast<COpenPathObject>(*it);
        if (!spOpen) continue;
        const TPathPlace place = spOpen->GetStream().SearchNearPointOnPath(pt, STATE_COMMITTED);
        if (place.nDistanceSquared > nReach * nReach) continue;
        const bool bNearer = !best || place.nDistanceSquared < best.hit.nDistance ||
                             (place.nDistanceSquared == best.hit.nDistance && spOpen == spSelected);
        if (bNearer) best = {spOpen, {HIT_PATH, {}, place.t, place.nDistanceSquared}};
    }
    return best;
}

TPathTarget CPathWidthTool::FindPressed(CVectorLayerBuffer& layer, CPoint pt, uint32_t flags) const {
    TPathTarget target = CPathToolBase::FindPressed(layer, pt, flags);
    if (target || IsDeleteMode(flags)) return target;
    target = FindLine(layer, pt, flags);
    return target ? target : FindTarget(layer, pt, flags, {.bAnchor = false, .bTerm = false, .bLine = true});
}

boost::shared_ptr<CVectorHandle> CPathWidthTool::OnPress(const boost::shared_ptr<CVectorLayerBuffer>& spLayer,
                                                         const TPathTarget& target, CPoint pt,
                                                         uint32_t flags) {
    if (!target) return {};
    Select(*spLayer, target.spPath);
    const auto spOpen = boost::dynamic_pointer_cast<COpenPathObject>(target.spPath);
    if (target.hit.spPoint && IsDeleteMode(flags)) {
        RemoveMark(spOpen, *target.hit.spPoint, GetRegister());
        return {};
    }
    if (target.hit.spPoint) return CreateHandle(target.spPath, target.hit, flags, GetRegister());
    return spOpen && target.hit.kind == HIT_PATH ? BeginRange(spOpen, pt, flags)
                                                 : boost::shared_ptr<CVectorHandle>();
}

boost::shared_ptr<CVectorHandle> CPathWidthTool::BeginRange(const boost::shared_ptr<COpenPathObject>& spPath,
                                                            CPoint pt, uint32_t flags) const {
    return BeginRangeDrag(m_item.nType,
                          {spPath, pt, m_item.nCoef, ToPath(GetThreshold(flags)), GetRegister()});
}

ECursor CPathWidthTool::GetTargetCursor(const TPathTarget& target, uint32_t flags) const {
    if (!target) return ECursor::Arrow;
    if (target.hit.spPoint) {
        if (IsDragging() || !IsDeleteMode(flags)) return ECursor::Move;
        return IsEnd(target) ? ECursor::Arrow : ECursor::Remove;
    }
    const bool bOpen = dynamic_cast<const COpenPathObject*>(target.spPath.get()) != nullptr;
    if (!bOpen || target.hit.kind != HIT_PATH) return ECursor::Select;
    return IsSupported(m_item.nType) ? ECursor::Width : ECursor::Select;
}

TPolyBezier CPathWidthTool::GetStretch(const TOverlayMapper& mapper) const {
    const auto pRange = dynamic_cast<const CPathRangeDrag*>(m_spHandle.get());
    TPolyBezier vStretch = pRange ? pRange->GetStretch() : TPolyBezier();
    for (CPoint& pt : vStretch) pt = mapper(pt);
    return vStretch;
}

// Two lines beside each other: the stretch stands out and does not hide a thin stroke.
void CPathWidthTool::DrawMore(COverlay& overlay, const TOverlayMapper& mapper) const {
    TPolyBezier vStretch = GetStretch(mapper);
    for (int n = 0; n < 2 && !vStretch.empty(); ++n) {
        overlay.DrawCurves(vStretch, {.color = PATH_COLOR_HOVER});
        for (CPoint& pt : vStretch) pt = pt + CPoint{overlay.ToDevice(1), overlay.ToDevice(1)};
    }
    if (m_bPointer) DrawCircle(overlay, mapper, m_ptPointer, m_nRadius);
}

CRect CPathWidthTool::GetMoreRect(const TOverlayMapper& mapper) const {
    COverlay overlay(mapper.GetDpi());
    DrawMore(overlay, mapper);
    return overlay.GetBounds();
}
