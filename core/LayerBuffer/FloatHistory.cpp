#include "core/LayerBuffer/FloatHistory.h"

#include "core/Base/Failure.h"
#include "core/LayerBuffer/RasterGuard.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"

#include <boost/make_shared.hpp>

CRasterMoveHistory::CRasterMoveHistory(std::wstring strName, const TCanvasPtr& spCanvas,
                                       const TFloatState& before, CRasterBuffer* pRasterBefore,
                                       const boost::shared_ptr<CRasterBuffer>& spRaster)
    : CHistory(std::move(strName)), m_wpCanvas(spCanvas), m_state(before),
      m_tiles(pRasterBefore ? CTileSwap(*pRasterBefore, spRaster) : CTileSwap()) {}

void CRasterMoveHistory::Swap() {
    const auto spCanvas = m_wpCanvas.lock();
    if (!spCanvas) return;
    m_tiles.Swap();
    TFloatState state = spCanvas->GetFloatState();
    spCanvas->SetFloatState(m_state);
    std::swap(m_state, state);
}

size_t CRasterMoveHistory::CountBytes() const {
    const auto spCanvas = m_wpCanvas.lock();
    if (!spCanvas) return 0;
    const TFloatState now = spCanvas->GetFloatState();
    size_t nBytes = m_state.spFloat ? m_state.spFloat->GetBytes(now.spFloat.get()) : 0;
    if (m_state.spSelect && m_state.spSelect != now.spSelect)
        nBytes += m_state.spSelect->GetBytes(now.spSelect.get());
    nBytes += m_tiles.CountBytes([&](CPoint pt, const CRasterBlockBuffer& tile) {
        return !now.spFloat || !now.spFloat->HoldsCutTile(pt, &tile);
    });
    return nBytes;
}

CFloatDrop::CFloatDrop(const TCanvasPtr& spCanvas, const CLayerBuffer* pLayer) : m_spCanvas(spCanvas) {
    const TFloatState before = spCanvas->GetFloatState();
    const auto spLayer = before.wpLayer.lock();
    if (!before.spFloat || !spLayer || (pLayer && pLayer != spLayer.get())) return;
    const boost::shared_ptr<CRasterBuffer> spRaster = spLayer->GetRaster();
    CRasterGuard guard(spRaster);
    spRaster->ForEachBlockIn(before.spFloat->GetRect(),
                             [&](CPoint pt) { before.spFloat->MergeInto(*spRaster, pt); });
    m_spHistory = boost::make_shared<CRasterMoveHistory>(L"", spCanvas, before, &guard.GetBefore(), spRaster);
    guard.Keep();
    spCanvas->SetFloatState({{}, {}, before.spSelect});
    spCanvas->GetHistory().Prepend(m_spHistory);
}

CFloatDrop::~CFloatDrop() {
    if (m_spHistory && m_spCanvas->GetHistory().TakePrepended()) m_spHistory->Undo();
}
