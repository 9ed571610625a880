#include "core/LayerBuffer/StrokeOverlay.h"

#include <algorithm>

namespace {

// The blocks of a layer that a block of a stroke's plane shows in: a finer plane is reduced by a window that
// reaches into the blocks on the right and below, so each shows on the left and above too.
template <class Function>
void ForEachReached(const CAlphaBufferBase& plane, CPoint ptBlock, Function fn) {
    const int nReach = plane.GetResolutionScale() == 1 ? 0 : 1;
    for (int32_t y = std::max(0, ptBlock.y - nReach); y <= ptBlock.y; ++y)
        for (int32_t x = std::max(0, ptBlock.x - nReach); x <= ptBlock.x; ++x) fn(x, y);
}

// True when the plane may have coverage in the layer's block at `pt`.
bool HasCoverage(const CAlphaBufferBase& plane, CPoint pt) {
    const int nScale = plane.GetResolutionScale();
    const CSize szBlock = plane.GetBlockSize();
    for (int n = 0; n < (nScale == 1 ? 1 : 4); ++n)
        if (plane.HasBlock({pt.x * nScale + n % 2 * szBlock.cx, pt.y * nScale + n / 2 * szBlock.cy}))
            return true;
    return false;
}

} // namespace

void CStrokeOverlay::Complete() {
    const auto spCanvas = m_wpCanvas.lock();
    if (!spCanvas) return;
    m_spSelect = spCanvas->GetSelect();
    m_uNumber = spCanvas->TakeStrokeNumber();
    m_wpCanvas.reset();
}

boost::shared_ptr<CSelectBuffer> CStrokeOverlay::GetSelect() const {
    const auto spCanvas = m_wpCanvas.lock();
    return spCanvas ? spCanvas->GetSelect() : m_spSelect;
}

bool CStrokeOverlay::CoversBlock(CPoint pt) const { return HasCoverage(m_spStroke->GetDisplay(), pt); }

// Paint stays inside its selection: where that has no tile nothing is painted.
void CStrokeOverlay::PaintInto(CRasterBlockBuffer& work) const {
    const auto spSelect = GetSelect();
    const CRasterBlockBuffer* pSelected = spSelect ? spSelect->GetMaskTile(work.GetPosition()) : nullptr;
    if (!spSelect || pSelected) m_spStroke->GetDisplay().BlendBlockInto(work, pSelected);
}

bool CStrokeOverlay::MergeInto(CRasterBuffer& raster, CPoint pt) const {
    const CAlphaBufferBase& plane = m_spStroke->GetMain();
    const auto spSelect = GetSelect();
    const CRasterBlockBuffer* pSelected = spSelect ? spSelect->GetMaskTile(pt) : nullptr;
    if (!HasCoverage(plane, pt) || (spSelect && !pSelected)) return false;
    if (plane.IsErase() && !raster.HasBlock(pt)) return false;
    plane.BlendBlockInto(*raster.GetWritableBlock(pt), pSelected);
    return true;
}

void CStrokeOverlay::PassFlags(CBoolMatrix& matrix) {
    CAlphaBufferBase& plane = m_spStroke->GetDisplay();
    plane.GetDirty().TakeNew([&](int32_t x, int32_t y) {
        ForEachReached(plane, {x, y}, [&](int32_t nX, int32_t nY) { matrix.Add(nX, nY); });
    });
}

void CStrokeOverlay::ClearFlag(CPoint pt) {
    CAlphaBufferBase& plane = m_spStroke->GetDisplay();
    const int n = plane.GetResolutionScale();
    plane.ClearDirty({pt.x * n, pt.y * n});
}
