#include "core/CanvasFrame/CanvasScreen.h"

#include "core/GDIBuffer/Surround.h"

namespace {

// Calls `fn(column, row)` for every block that a canvas rectangle touches.
template <class Function>
void ForEachBlockUnder(const CRect& rc, Function fn) {
    if (rc.IsEmpty()) return;
    for (int32_t y = rc.top / DEFAULT_BLOCKSIZE.cy; y <= (rc.bottom - 1) / DEFAULT_BLOCKSIZE.cy; ++y)
        for (int32_t x = rc.left / DEFAULT_BLOCKSIZE.cx; x <= (rc.right - 1) / DEFAULT_BLOCKSIZE.cx; ++x)
            fn(x, y);
}

} // namespace

void CCanvasScreen::NoteChanges(const CCanvasBuffer& canvas) {
    const UpdateCounterMatrix& counters = canvas.GetCounters();
    const CSize szBlocks = counters.GetSize();
    // Canvases of other sizes may have grids of one size.
    if (!m_counters || !(m_szCanvas == canvas.GetSize())) {
        m_spDirty = std::make_unique<CBoolMatrix>(szBlocks);
        m_spDirty->Fill(true);
        m_pBuffer.reset();
    } else {
        if (m_counters->GetChanges() == counters.GetChanges()) return;
        for (int32_t y = 0; y < szBlocks.cy; ++y)
            for (int32_t x = 0; x < szBlocks.cx; ++x)
                if (m_counters->At(x, y) != counters.At(x, y)) m_spDirty->Set(x, y);
    }
    m_counters = counters;
    m_szCanvas = canvas.GetSize();
}

void CCanvasScreen::MarkDirty(const CScreenMap& map, const CRect& rcTarget) {
    ForEachBlockUnder(map.ToCanvas(rcTarget), [&](int32_t x, int32_t y) { m_spDirty->Set(x, y); });
}

void CCanvasScreen::Scroll(const CScreenMap& map, CPoint ptOrigin) {
    const CPoint ptMove = ptOrigin - m_ptOrigin;
    const CSize sz = m_pBuffer->GetSize();
    m_pBuffer->Scroll(ptMove);
    m_ptOrigin = ptOrigin;
    MarkDirty(map, ptMove.x > 0 ? CRect(0, 0, ptMove.x, sz.cy) : CRect(sz.cx + ptMove.x, 0, sz.cx, sz.cy));
    MarkDirty(map, ptMove.y > 0 ? CRect(0, 0, sz.cx, ptMove.y) : CRect(0, sz.cy + ptMove.y, sz.cx, sz.cy));
}

std::vector<CRect> CCanvasScreen::Refresh(CCanvasBuffer& canvas, const CCanvasView& view) {
    const CSize szClient = view.GetClient();
    if (szClient.cx <= 0 || szClient.cy <= 0) {
        m_pBuffer.reset();
        return {};
    }
    canvas.FlushCanvasUpdates();
    NoteChanges(canvas);
    const bool bNew = !m_pBuffer || !(m_pBuffer->GetSize() == szClient) || !(m_state == view.GetState());
    if (!bNew && m_ptOrigin == view.GetOrigin() && !m_spDirty->HasNew()) return {};
    const CScreenMap map(canvas.GetSize(), view.GetOrigin(), view.GetState(), szClient);
    std::vector<CRect> vChanged;
    const auto changed = [&](const CRect& rc) {
        if (rc.IsEmpty()) return;
        if (!vChanged.empty() && vChanged.back().top == rc.top && vChanged.back().bottom == rc.bottom &&
            (vChanged.back().right == rc.left || vChanged.back().left == rc.right))
            vChanged.back() = vChanged.back().Union(rc);
        else
            vChanged.push_back(rc);
    };
    bool bAll = false;
    if (bNew) {
        m_pBuffer = std::make_unique<CGDIBuffer>(szClient);
        m_spDirty->Fill(true);
        m_ptOrigin = view.GetOrigin();
        m_state = view.GetState();
        bAll = true;
    } else if (!(m_ptOrigin == view.GetOrigin())) {
        Scroll(map, view.GetOrigin());
        bAll = true;
    }
    if (bAll) DrawSurround(*m_pBuffer, map.GetTargetRect());
    std::vector<CPoint> vBlocks;
    ForEachBlockUnder(map.ToCanvas(map.GetTargetRect()), [&](int32_t x, int32_t y) {
        if (m_spDirty->At(x, y)) vBlocks.push_back(canvas.GetComposite().BlockCorner(x, y));
    });
    // The target pixels of distinct blocks are distinct.
    const auto draw = [&](CPoint pt) { canvas.GetComposite().DrawBlockToScreen(*m_pBuffer, map, pt); };
    ComposeBlocks(canvas, vBlocks, ThreadsForBlocks(vBlocks.size()), draw);
    for (const CPoint pt : vBlocks) {
        m_spDirty->Clear(pt.x / DEFAULT_BLOCKSIZE.cx, pt.y / DEFAULT_BLOCKSIZE.cy);
        changed(map.ToTarget(CRect(pt, DEFAULT_BLOCKSIZE)));
    }
    m_spDirty->ForgetNew(); // what is out of sight is flagged until it is scrolled into it
    if (bAll) return {CRect({0, 0}, szClient)};
    return vChanged;
}
