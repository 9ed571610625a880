#include "core/PathWidthTool/PathRangeDrag.h"

#include <algorithm>

namespace {

template <class TPoint>
bool IsInside(const boost::shared_ptr<TPoint>& spMark, uint32_t tMin, uint32_t tMax) {
    const uint32_t t = spMark->GetParameter()[STATE_COMMITTED];
    return t >= tMin && t <= tMax;
}

} // namespace

CPathRangeDrag::CPathRangeDrag(const TRangePress& press)
    : CVectorHandleImpl(press.spPath, press.fnRegister), m_ptPress(press.pt), m_nCoef(press.nCoef),
      m_uDeadZone(std::max(press.uDeadZone, 1u)), m_line(GetStream().GetSegments(STATE_COMMITTED)),
      m_t0(GetStream().SearchNearPointOnPath(press.pt, STATE_COMMITTED).t), m_tNow(m_t0) {}

void CPathRangeDrag::Begin() {
    try {
        OnBegin();
    } catch (...) {
        OnCancel();
        throw;
    }
}

bool CPathRangeDrag::IsSpot() const {
    const auto [tMin, tMax] = std::minmax(m_t0, m_tNow);
    return m_line.LengthTo(tMax) - m_line.LengthTo(tMin) < m_uDeadZone;
}

void CPathRangeDrag::OnDrag(CPoint delta, unsigned) {
    m_tNow = GetStream().SearchNearPointOnPath(m_ptPress + delta, STATE_COMMITTED).t;
    if (NeedsRange() && IsSpot()) return OnCancel();
    OnRange(m_tNow, std::min(m_t0, m_tNow), std::max(m_t0, m_tNow));
}

TPolyBezier CPathRangeDrag::GetStretch() const {
    return m_line.Part(std::min(m_t0, m_tNow), std::max(m_t0, m_tNow));
}

template <class TPoint>
void CRangeInstallDragBase<TPoint>::OnRange(uint32_t tNow, uint32_t tMin, uint32_t tMax) {
    m_vNew.clear();
    Install(tNow, tMin, tMax);
    TPathMarks<TPoint> vMarks = GetStream().template GetMarks<TPoint>();
    std::erase_if(vMarks, [&](const auto& spMark) { return IsInside(spMark, tMin, tMax); });
    vMarks.insert(vMarks.end(), m_vNew.begin(), m_vNew.end());
    m_spObject->GetStream().SetLiveMarks(std::move(vMarks));
    m_spObject->UpdateDrag();
}

template <class TPoint>
TPathMarks<TPoint> CRangeInstallDragBase<TPoint>::GetOld(uint32_t tMin, uint32_t tMax) const {
    TPathMarks<TPoint> vOld = GetStream().template GetMarks<TPoint>();
    std::erase_if(vOld, [&](const auto& spMark) { return !IsInside(spMark, tMin, tMax); });
    return vOld;
}

template <class TPoint>
boost::shared_ptr<TPoint> CRangeInstallDragBase<TPoint>::MarkAt(uint32_t t) {
    const auto it = std::ranges::find_if(
        m_vNew, [&](const auto& spMark) { return spMark->GetParameter()[STATE_COMMITTED] == t; });
    if (it != m_vNew.end()) return *it;
    m_vNew.push_back(GetStream().template MakeMark<TPoint>(t));
    return m_vNew.back();
}

template class CRangeInstallDragBase<CPathWidthControlPoint>;
template class CRangeInstallDragBase<CPathTransControlPoint>;
template class CRangeInstallDragBase<CPathAlphaControlPoint>;
