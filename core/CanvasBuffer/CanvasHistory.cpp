#include "core/CanvasBuffer/CanvasHistory.h"

#include "core/Base/Failure.h"
#include "core/LayerBuffer/FloatHistory.h"

#include <algorithm>

namespace {

CCanvasBuffer::FullBackup TakeOriginal(const boost::shared_ptr<CCanvasBuffer>& spCanvas) {
    CCanvasBuffer::FullBackup backup = spCanvas->CreateFullBackup();
    CCanvasBuffer::SwapFullBackup(spCanvas, &backup);
    return backup;
}

void SwapSelect(const boost::shared_ptr<CCanvasBuffer>& spCanvas, boost::shared_ptr<CSelectBuffer>* pState) {
    if (!spCanvas) return;
    const boost::shared_ptr<CSelectBuffer> spNow = spCanvas->GetSelect();
    spCanvas->SetSelect(*pState);
    *pState = spNow;
}

size_t CountSelect(const boost::shared_ptr<CCanvasBuffer>& spCanvas,
                   const boost::shared_ptr<CSelectBuffer>& spState) {
    if (!spCanvas || !spState) return 0;
    return spState->GetBytes(spCanvas->GetSelect().get());
}

} // namespace

CanvasBufferHistoryHelper::CanvasBufferHistoryHelper(std::wstring strName,
                                                     const boost::shared_ptr<CCanvasBuffer>& spCanvas)
    : m_strName(std::move(strName)), m_spCanvas(spCanvas),
      m_helper(spCanvas, TakeOriginal(spCanvas),
               {CCanvasBuffer::SwapFullBackup, CCanvasBuffer::GetBytesBeside}) {}

void CanvasBufferHistoryHelper::Commit() { m_helper.Commit(m_strName, m_spCanvas->GetHistory()); }

void ChangeSelection(const boost::shared_ptr<CCanvasBuffer>& spCanvas,
                     const boost::shared_ptr<CSelectBuffer>& spSelect, std::wstring strName) {
    // Pending strokes were drawn before this change, so their undo steps must precede it.
    spCanvas->CompleteWork();
    const CFloatDrop drop(spCanvas);
    CSymmetricHistoryHelper<CCanvasBuffer, boost::shared_ptr<CSelectBuffer>> helper(
        spCanvas, spCanvas->GetSelect(), {SwapSelect, CountSelect});
    spCanvas->SetSelect(spSelect);
    helper.Commit(std::move(strName), spCanvas->GetHistory());
}

bool ChangeColorMode(const boost::shared_ptr<CCanvasBuffer>& spCanvas, bool bColor, bool bColorRaster,
                     IProgress& progress) {
    if (spCanvas->IsColor() == bColor && spCanvas->IsColorRaster() == bColorRaster) return false;
    const CFloatDrop drop(spCanvas);
    CanvasBufferHistoryHelper helper(L"カラーモード変更", spCanvas);
    spCanvas->ConvertColorMode(bColor, bColorRaster, progress);
    helper.Commit();
    return true;
}

void ResizeCanvas(const boost::shared_ptr<CCanvasBuffer>& spCanvas, CSize sz, const TLayerChange& change,
                  std::wstring strName, IProgress& progress) {
    SELF_CHECK(invalid_argument, std::min(sz.cx, sz.cy) >= 1 && std::max(sz.cx, sz.cy) <= MAX_CANVAS_SIDE);
    spCanvas->CompleteWork();
    const CFloatDrop drop(spCanvas);
    CanvasBufferHistoryHelper helper(std::move(strName), spCanvas);
    spCanvas->Resize(sz, change, progress);
    helper.Commit();
}
