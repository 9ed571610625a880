#include "core/PathObject/PathControlPointBase.h"

#include "core/Base/Failure.h"

namespace {

constexpr TColor COLOR_EMPTY = 0xFFFFFF;

} // namespace

TPathHit TPathPick::At(CPoint pt, EPathHit kind, const boost::shared_ptr<CPathControlPointBase>& spPoint,
                       uint32_t t) const {
    const CPoint away = mapper(pt) - ptWindow;
    const int64_t nDistance = Dot(away, away);
    if (nDistance > int64_t{nReach} * nReach) return {};
    return {kind, spPoint, t, nDistance};
}

TColor CPathControlPointBase::GetColor(const TPathSelection& selection, EPathHit part) const {
    if (selection.Hovers(*this, part)) return PATH_COLOR_HOVER;
    return selection.setSelected.contains(this) ? PATH_COLOR_SELECTED : PATH_COLOR_NORMAL;
}

void CPathControlPointBase::DrawMark(IPathDevice& device, CPoint ptWindow,
                                     const TPathSelection& selection) const {
    const TColor color = GetColor(selection, HIT_ANCHOR);
    const bool bHover = selection.Hovers(*this, HIT_ANCHOR);
    device.Square(ptWindow, MARK_HALF + (bHover ? 1 : 0), color,
                  selection.setSelected.contains(this) ? color : COLOR_EMPTY);
}

void CPathControlPointBase::DrawDottedMark(IPathDevice& device, CPoint ptWindow,
                                           const TPathSelection& selection) const {
    DrawMark(device, ptWindow, selection);
    const TColor color = GetColor(selection, HIT_ANCHOR);
    device.Square(ptWindow, MARK_DOT_HALF, color, color);
}

void CPathControlPointBase::DrawHandle(IPathDevice& device, CPoint ptFrom, CPoint ptTo,
                                       const TPathSelection& selection, EPathHit part) const {
    const bool bHover = selection.Hovers(*this, part);
    device.Line(ptFrom, ptTo, GetColor(selection, part), !bHover);
    device.Square(ptTo, MARK_HALF - (bHover ? 0 : 1), GetColor(selection, part), COLOR_EMPTY);
}

CPoint CheckedCoordinates(CPoint pt) {
    if (!IsStorablePoint(pt)) throw deserialize_error();
    return pt;
}
