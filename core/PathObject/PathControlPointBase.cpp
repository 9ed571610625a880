#include "core/PathObject/PathControlPointBase.h"

#include "core/Base/Failure.h"

#include <cstdlib>

namespace {

constexpr TColor COLOR_NORMAL = 0xFF8000;
constexpr TColor COLOR_HOVER = 0x0000FF;
constexpr TColor COLOR_SELECTED = 0xFF00A0;
constexpr TColor COLOR_EMPTY = 0xFFFFFF;

} // namespace

bool TPathPick::IsNear(CPoint pt) const {
    const CPoint d = mapper(pt) - ptWindow;
    return std::abs(d.x) <= MARK_HALF + 1 && std::abs(d.y) <= MARK_HALF + 1;
}

TColor CPathControlPointBase::GetColor(const TPathSelection& selection) const {
    if (selection.pHover == this) return COLOR_HOVER;
    return selection.setSelected.contains(this) ? COLOR_SELECTED : COLOR_NORMAL;
}

void CPathControlPointBase::DrawMark(IPathDevice& device, CPoint ptWindow,
                                     const TPathSelection& selection) const {
    const TColor color = GetColor(selection);
    const bool bHover = selection.pHover == this;
    device.Square(ptWindow, MARK_HALF + (bHover ? 1 : 0), color,
                  selection.setSelected.contains(this) ? color : COLOR_EMPTY);
}

void CPathControlPointBase::DrawHandle(IPathDevice& device, CPoint ptFrom, CPoint ptTo,
                                       const TPathSelection& selection) const {
    device.Line(ptFrom, ptTo, GetColor(selection), selection.pHover != this);
    device.Square(ptTo, MARK_HALF - 1, GetColor(selection), COLOR_EMPTY);
}

CPoint CheckedCoordinates(CPoint pt) {
    if (!IsStorablePoint(pt)) throw deserialize_error();
    return pt;
}
