#include "core/ImageDialogs/LevelPreview.h"

#include "core/AppModule/ErrorBox.h"
#include "core/Base/Failure.h"
#include "core/Base/Parallel.h"
#include "core/GDIBuffer/ScreenMap.h"
#include "core/GDIBuffer/Surround.h"
#include "core/ImageOperation/RescalePlane.h"
#include "core/RasterBuffer/SelectBuffer.h"
#include "core/RasterKernel/ResolveKernel.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr size_t MASK = COLOR_CHANNELS; ///< the selection's place among the planes
constexpr int32_t BAND = 64;            ///< rows that one thread reduces at a time
constexpr double FULL_ZOOM = 48;

// Limits the point in the view's middle on one axis, so that the picture fills the view as far as it can.
double LimitCentre(double dCentre, int32_t nPicture, double dShown) {
    if (dShown >= nPicture) return nPicture / 2.0;
    return std::clamp(dCentre, dShown / 2, nPicture - dShown / 2);
}

size_t AreaOf(const CRect& rc) { return static_cast<size_t>(rc.Width()) * static_cast<size_t>(rc.Height()); }

} // namespace

CLevelPreview::CLevelPreview(const TPreviewSource& source)
    : m_rstPreview(source.rstPreview), m_rstSelect(source.rstSelect), m_dCentreX(source.ptCentre.x),
      m_dCentreY(source.ptCentre.y) {
    const auto& rstPreview = m_rstPreview;
    SELF_CHECK(illegal_data, rstPreview.get() != NULL);
    const CSize szPreview = rstPreview->GetSize();
    const auto* rstSelect = m_rstSelect ? &m_rstSelect->GetMask() : nullptr;
    if (rstSelect) SELF_CHECK(illegal_data, szPreview == rstSelect->GetSize());
    m_nChannels = ChannelsOf(*m_rstPreview);
}

void CLevelPreview::SetOperation(TPixelOperation fnOperation) {
    m_fnOperation = std::move(fnOperation);
    m_pPicture.reset();
}

void CLevelPreview::ShowBefore(bool bBefore) {
    m_bBefore = bBefore;
    m_pPicture.reset();
}

void CLevelPreview::SetZoom(uint16_t uZoom) {
    m_uZoom = uZoom;
    m_pMap.reset();
    m_rcShown = {};
    m_pPicture.reset();
}

void CLevelPreview::OnPointer(EMessage id, CPoint pt) {
    if (id == EMessage::LButtonDown) m_bDrag = true;
    if (m_bDrag && id != EMessage::LButtonDown) {
        const CSize sz = m_rstPreview->GetSize();
        const double dPixel = FULL_ZOOM / m_uZoom;
        const CPoint ptMove = pt - m_ptPointer;
        m_dCentreX = LimitCentre(m_dCentreX - ptMove.x * dPixel, sz.cx, m_szView.cx * dPixel);
        m_dCentreY = LimitCentre(m_dCentreY - ptMove.y * dPixel, sz.cy, m_szView.cy * dPixel);
        m_pPicture.reset();
    }
    if (id == EMessage::LButtonUp) m_bDrag = false;
    m_ptPointer = pt;
}

CRect CLevelPreview::GetPlace(CSize szView) const {
    const CSize sz = m_rstPreview->GetSize();
    const CSize szScaled = ScaledSize(sz, {m_uZoom});
    const auto place = [&](double dCentre, int32_t nPicture, int32_t nScaled, int32_t nView) {
        if (nScaled <= nView) return (nView - nScaled) / 2;
        const double dInside = LimitCentre(dCentre, nPicture, nView * FULL_ZOOM / m_uZoom);
        const auto nFirst =
            static_cast<int32_t>(std::floor(dInside * m_uZoom / FULL_ZOOM - nView / 2.0 + 0.5));
        return -std::clamp(nFirst, 0, nScaled - nView);
    };
    return CRect(
        {place(m_dCentreX, sz.cx, szScaled.cx, szView.cx), place(m_dCentreY, sz.cy, szScaled.cy, szView.cy)},
        szScaled);
}

void CLevelPreview::TakeShown(const CRect& rcShown) {
    if (m_rcShown == rcShown) return;
    const CSize sz = m_rstPreview->GetSize();
    // Pixels are seen as squares where they are enlarged, and reduced smoothly.
    const bool bSmooth = m_uZoom < FULL_ZOOM;
    if (!m_pMap)
        m_pMap = std::make_unique<CRescaleMap>(sz, ScaledSize(sz, {m_uZoom}),
                                               bSmooth ? ERescaleMode::Bilinear : ERescaleMode::Nearest);
    m_rcShown = {}; // until all of it stands
    const size_t nChannels = m_nChannels;
    for (size_t n = 0; n < nChannels; ++n) m_bufPreview[n].assign(AreaOf(rcShown), 0);
    if (m_rstSelect) m_bufPreview[MASK].assign(AreaOf(rcShown), 0);
    const auto nBands = static_cast<size_t>((rcShown.Height() + BAND - 1) / BAND);
    ForEachIndex(nBands, AvailableThreads(), [&](size_t nBand) {
        const int32_t nTop = rcShown.top + static_cast<int32_t>(nBand) * BAND;
        const CRect rcBand(rcShown.left, nTop, rcShown.right, std::min(nTop + BAND, rcShown.bottom));
        const size_t nFirst = nBand * BAND * static_cast<size_t>(rcShown.Width());
        std::array<uint8_t*, COLOR_CHANNELS> apTo{};
        for (size_t n = 0; n < nChannels; ++n) apTo[n] = m_bufPreview[nChannels - 1 - n].data() + nFirst;
        RescaleRect(*m_rstPreview, *m_pMap, rcBand, apTo.data(), rcShown.Width());
        uint8_t* const pMask = m_rstSelect ? m_bufPreview[MASK].data() + nFirst : nullptr;
        if (pMask) RescaleRect(m_rstSelect->GetMask(), *m_pMap, rcBand, &pMask, rcShown.Width());
    });
    m_rcShown = rcShown;
}

void CLevelPreview::Draw(CSize szView) {
    auto pPicture = std::make_unique<CGDIBuffer>(szView);
    const CRect rcPlace = GetPlace(szView);
    const CRect rcSeen = rcPlace.Intersect(CRect({0, 0}, szView));
    DrawSurround(*pPicture, rcPlace);
    if (!rcSeen.IsEmpty()) {
        TakeShown(CRect(rcSeen.TopLeft() - rcPlace.TopLeft(), rcSeen.Size()));
        TFlatPixels pixels{.pMask = m_rstSelect ? m_bufPreview[MASK].data() : nullptr,
                           .nCount = AreaOf(rcSeen)};
        for (size_t n = 0; n < m_nChannels; ++n) {
            m_bufWork[n] = m_bufPreview[n];
            pixels.apPlanes[n] = m_bufWork[n].data();
        }
        if (m_fnOperation && !m_bBefore) m_fnOperation(pixels);
        const auto nWidth = static_cast<size_t>(rcSeen.Width());
        for (int32_t y = rcSeen.top; y < rcSeen.bottom; ++y) {
            uint8_t* pScreen = pPicture->GetPixelPtr({rcSeen.left, y});
            auto& ap = pixels.apPlanes;
            if (pixels.IsColor())
                ResolveRow(pScreen,
                           TConstColorPixels{ap[CHANNEL_RED], ap[CHANNEL_GREEN], ap[CHANNEL_BLUE],
                                             ap[CHANNEL_ALPHA]},
                           nWidth);
            else
                ResolveRow(pScreen, TConstGreyPixels{ap[CHANNEL_GREY], ap[CHANNEL_ALPHA]}, nWidth);
            for (uint8_t*& p : ap)
                if (p) p += nWidth;
        }
    }
    m_pPicture = std::move(pPicture);
}

void CLevelPreview::OnPaint(IPaintTarget& target, const TPanelPaint& paint) {
    Guarded([&] {
        m_szView = paint.sz;
        if (!m_pPicture || !(m_pPicture->GetSize() == paint.sz)) Draw(paint.sz);
        target.Blit(m_pPicture->GetPixelPtr({0, 0}), m_pPicture->GetStride(), paint.sz,
                    CRect({0, 0}, paint.sz));
    });
}
