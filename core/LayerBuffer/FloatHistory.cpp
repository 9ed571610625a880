#include "core/LayerBuffer/FloatHistory.h"

#include "core/Base/Failure.h"
#include "core/LayerBuffer/RasterGuard.h"
#include "core/LayerBuffer/RasterLayerBuffer.h"

#include <boost/make_shared.hpp>

CRasterMoveHistory::CRasterMoveHistory(std::wstring strName, const TCanvasPtr& spCanvas,
                                       const TFloatState& before, CRasterBuffer* pRasterBefore,
                                       const boost::shared_ptr<CRasterBuffer>& spRaster)
    : CHistory(std::move(strName)), m_wpCanvas(spCanvas), m_state(before), m_wpRaster(spRaster) {
    if (!pRasterBefore) return;
    spRaster->ForEachBlock([&](CPoint pt) {
        const auto spOld = pRasterBefore->GetBlock(pt, false);
        if (spOld != spRaster->GetBlock(pt, false)) m_vTiles.emplace_back(pt, spOld);
    });
}

void CRasterMoveHistory::Swap() {
    const auto spCanvas = m_wpCanvas.lock();
    if (!spCanvas) return;
    if (const auto spRaster = m_wpRaster.lock())
        for (auto& [pt, spTile] : m_vTiles) spTile = spRaster->SetBlock(pt, spTile);
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
    for (const auto& [pt, spTile] : m_vTiles)
        if (spTile && !(now.spFloat && now.spFloat->HoldsCutTile(pt, spTile.get())))
            nBytes += spTile->GetBytes();
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
