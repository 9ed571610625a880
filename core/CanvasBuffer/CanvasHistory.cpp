#include "core/CanvasBuffer/CanvasHistory.h"

namespace {

CCanvasBuffer::FullBackup TakeOriginal(const boost::shared_ptr<CCanvasBuffer>& spCanvas) {
    CCanvasBuffer::FullBackup backup = spCanvas->CreateFullBackup();
    CCanvasBuffer::SwapFullBackup(spCanvas, &backup);
    return backup;
}

} // namespace

CanvasBufferHistoryHelper::CanvasBufferHistoryHelper(std::wstring strName,
                                                     const boost::shared_ptr<CCanvasBuffer>& spCanvas)
    : m_strName(std::move(strName)), m_spCanvas(spCanvas),
      m_helper(spCanvas, TakeOriginal(spCanvas), CCanvasBuffer::SwapFullBackup) {}

void CanvasBufferHistoryHelper::Commit() { m_spCanvas->GetHistory().Register(m_helper.Commit(m_strName)); }

bool ChangeColorMode(const boost::shared_ptr<CCanvasBuffer>& spCanvas, bool bColor, bool bColorRaster) {
    if (spCanvas->IsColor() == bColor && spCanvas->IsColorRaster() == bColorRaster) return false;
    CanvasBufferHistoryHelper helper(L"カラーモード変更", spCanvas);
    spCanvas->ConvertColorMode(bColor, bColorRaster);
    helper.Commit();
    return true;
}
