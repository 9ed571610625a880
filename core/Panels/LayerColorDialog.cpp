#include "core/Panels/LayerColorDialog.h"

#include <algorithm>
#include <iterator>

CLayerColorDialog::CLayerColorDialog(TColor color, boost::function<void(TColor)> fnShow)
    : m_clrLayer(color), m_fnShow(std::move(fnShow)) {
    m_vControls = {m_color.MakeCircle(), CColorControls::MakeText()};
    std::ranges::move(CColorControls::MakeSliders(), std::back_inserter(m_vControls));
    m_color.Show(m_vControls, m_clrLayer);
}

void CLayerColorDialog::Take(std::optional<TColor> color) {
    if (color && *color != m_clrLayer) m_fnShow(m_clrLayer = *color);
    m_color.Show(m_vControls, m_clrLayer);
}
