#include "core/CanvasFrame/ViewPlace.h"

bool CViewPlace::IsStale(const CCanvasBuffer& canvas, const CCanvasView& view) const {
    return !(view.GetCanvasSize() == canvas.GetSize() && m_place == canvas.GetPlace());
}

void CViewPlace::Follow(const CCanvasBuffer& canvas, CCanvasView& view) {
    if (!(view.GetCentre() == m_ptShown)) {
        m_first = m_place;
        m_ptFirst = view.GetCentre();
    }
    m_place = canvas.GetPlace();
    view.SetCanvasSize(canvas.GetSize(), m_first.MapTo(m_place, m_ptFirst));
    m_ptShown = view.GetCentre();
}
