#include "core/ImageDialogs/LevelViews.h"

#include "core/AppModule/ErrorBox.h"
#include "core/Base/Failure.h"
#include "core/PanelViews/PanelDraw.h"
#include "core/Platform/System.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace {

constexpr uint8_t PAPER = 255, INK = 0;
constexpr int TOP_LEVEL = 255;
constexpr int PINS = 3;
/// Sizes in pixels of 96 to the inch.
constexpr double PIN_HALF = 5, REACH = 12;

int32_t Scaled(double dPixels, double dScale) { return static_cast<int32_t>(std::lround(dPixels * dScale)); }

} // namespace

void CLevelHistogram::SetCounts(const TLevelCounts& aCounts) {
    m_aCounts = aCounts;
    m_gdiHgram.reset();
}

void CLevelHistogram::Draw(CGDIBuffer& gdiHgram, int32_t nMargin) const {
    const CSize szHgram = gdiHgram.GetSize();
    gdiHgram.FillGrey(CRect({0, 0}, szHgram), PAPER);
    const double Hscale = double{TOP_LEVEL} / (szHgram.cx - 2 * nMargin);
    SELF_CHECK(illegal_data, Hscale <= 1.0);
    const double dLargest = std::max<double>(1, *std::ranges::max_element(m_aCounts));
    const auto height = [&](int n) {
        const double dHeight = m_aCounts[static_cast<size_t>(n)] * szHgram.cy / dLargest;
        return std::min(szHgram.cy, static_cast<int32_t>(dHeight));
    };
    for (int32_t x = nMargin; x <= szHgram.cx - nMargin; ++x) {
        const double p = std::min((x - nMargin) * Hscale, double{TOP_LEVEL});
        const bool bLast = x == szHgram.cx - nMargin;
        const int xl = bLast ? TOP_LEVEL - 1 : static_cast<int>(std::floor(p));
        SELF_CHECK(illegal_data, 0 <= xl && xl <= 254);
        const double decim = p - xl;
        SELF_CHECK(illegal_data, 0.0 <= decim && decim <= 1.0);
        const int32_t nLeft = szHgram.cy - height(bLast ? TOP_LEVEL : xl),
                      nRight = szHgram.cy - height(xl + 1);
        const int32_t iPosL = std::min(nLeft, nRight), iPosH = std::max(nLeft, nRight);
        SELF_CHECK(illegal_data, 0 <= iPosL && iPosL <= iPosH && iPosH <= szHgram.cy);
        // The curve falls where its right end is lower on the screen.
        const double dGrey = nRight > nLeft ? 1 - decim : decim;
        gdiHgram.FillGrey({x, iPosL, x + 1, iPosH}, static_cast<uint8_t>(dGrey * TOP_LEVEL));
        gdiHgram.FillGrey({x, iPosH, x + 1, szHgram.cy}, INK);
    }
}

void CLevelHistogram::OnPaint(IPaintTarget& target, const TPanelPaint& paint) {
    Guarded([&] {
        const int32_t nMargin = Scaled(LEVEL_MARGIN, paint.dScale);
        // Narrower ones would have levels without a column.
        const CSize rcHgram{std::max(paint.sz.cx, TOP_LEVEL + 2 * nMargin), paint.sz.cy};
        if (!m_gdiHgram || !(m_gdiHgram->GetSize() == rcHgram)) {
            auto gdiHgram = std::make_unique<CGDIBuffer>(rcHgram);
            Draw(*gdiHgram, nMargin);
            m_gdiHgram = std::move(gdiHgram);
        }
        target.Blit(m_gdiHgram->GetPixelPtr({0, 0}), m_gdiHgram->GetStride(), rcHgram,
                    CRect({0, 0}, paint.sz));
    });
}

int32_t CLevelSlider::GetMargin() const { return Scaled(LEVEL_MARGIN, m_dScale); }

double CLevelSlider::GetPlace(int nPin) const {
    const double dRange = m_size.cx - 2.0 * GetMargin();
    const double dLow = m_levels.byLow, dHigh = m_levels.byHigh;
    const double dLevel = nPin == 1   ? dLow
                          : nPin == 3 ? dHigh
                                      : dLow + PlaceOfGamma(m_levels.fGamma) * (dHigh - dLow);
    return GetMargin() + dLevel * dRange / TOP_LEVEL;
}

int CLevelSlider::FindPin(int32_t x) const {
    int nNearest = 0;
    double dNearest = REACH * m_dScale;
    for (int nPin = 1; nPin <= PINS; ++nPin) {
        const double dAway = std::abs(GetPlace(nPin) - (x + 0.5));
        if (dAway >= dNearest) continue;
        dNearest = dAway;
        nNearest = nPin;
    }
    return nNearest;
}

boost::any CLevelSlider::GetValue(int nPin) const {
    if (nPin == 2) return m_levels.fGamma;
    return nPin == 1 ? m_levels.byLow : m_levels.byHigh;
}

void CLevelSlider::Move(int nPin, const boost::any& vOrg, int nLevels) {
    const auto* pLevel = boost::any_cast<uint8_t>(&vOrg);
    const auto* pGamma = boost::any_cast<float>(&vOrg);
    if (nPin == 2 ? !pGamma : !pLevel) throw internal_error(L"broken vDragOrg");
    if (nPin == 1)
        m_levels.byLow = static_cast<uint8_t>(std::clamp(*pLevel + nLevels, 0, m_levels.byHigh - 1));
    else if (nPin == 3)
        m_levels.byHigh = static_cast<uint8_t>(std::clamp(*pLevel + nLevels, m_levels.byLow + 1, TOP_LEVEL));
    else
        m_levels.fGamma = GammaOfPlace(std::clamp(
            PlaceOfGamma(*pGamma) + double(nLevels) / (m_levels.byHigh - m_levels.byLow), 0.0, 1.0));
}

bool CLevelSlider::OnPointer(EMessage id, CPoint pt) {
    if (id == EMessage::LButtonDown) {
        m_nDrag = FindPin(pt.x);
        if (m_nDrag == 0) return false;
        m_nSelected = m_nDrag;
        m_xPress = pt.x;
        vDragOrg = GetValue(m_nDrag);
        return true;
    }
    if (m_nDrag == 0) return false;
    const int32_t nRange = std::max(1, m_size.cx - 2 * GetMargin());
    Move(m_nDrag, vDragOrg, (pt.x - m_xPress) * TOP_LEVEL / nRange);
    if (id == EMessage::LButtonUp) m_nDrag = 0;
    return true;
}

bool CLevelSlider::OnKey(int nKey) {
    if (nKey == VK_Space)
        m_nSelected = m_nSelected % PINS + 1;
    else if (nKey == VK_Left || nKey == VK_Right)
        Move(m_nSelected, GetValue(m_nSelected), nKey == VK_Left ? -1 : 1);
    else
        return false;
    return true;
}

void CLevelSlider::OnPaint(IPaintTarget& target, const TPanelPaint& paint) {
    Guarded([&] {
        m_size = paint.sz;
        m_dScale = paint.dScale;
        const CRect rc({0, 0}, paint.sz);
        CGDIBuffer buffer(paint.sz);
        FillColor(buffer, rc, paint.clrBack);
        const int32_t nBar = Scaled(PIN_HALF, m_dScale);
        const int32_t nRange = paint.sz.cx - 2 * GetMargin();
        for (int32_t x = 0; x <= nRange; ++x) {
            const auto uLevel = static_cast<uint8_t>(x * TOP_LEVEL / std::max(1, nRange));
            buffer.FillGrey({GetMargin() + x, 0, GetMargin() + x + 1, nBar}, uLevel);
        }
        constexpr std::array<TColor, PINS> FILLS{MakeColor(0, 0, 0), MakeColor(128, 128, 128),
                                                 MakeColor(255, 255, 255)};
        for (int nPin = 1; nPin <= PINS; ++nPin) {
            const double dTop = nBar, dHeight = 2 * PIN_HALF * m_dScale, dPlace = GetPlace(nPin);
            const TDrawPoint ptTop{dPlace, dTop}, ptLeft{dPlace - dHeight / 2, dTop + dHeight},
                ptRight{dPlace + dHeight / 2, dTop + dHeight};
            for (double y = 0; y < dHeight; y += 0.5)
                DrawLine(buffer, {dPlace - y / 2, dTop + y}, {dPlace + y / 2, dTop + y}, 1,
                         FILLS[static_cast<size_t>(nPin - 1)]);
            const TColor clrEdge = paint.clrText;
            const double dEdge = paint.bFocus && nPin == m_nSelected ? 2 * m_dScale : m_dScale;
            DrawLine(buffer, ptTop, ptLeft, dEdge, clrEdge);
            DrawLine(buffer, ptTop, ptRight, dEdge, clrEdge);
            DrawLine(buffer, ptLeft, ptRight, dEdge, clrEdge);
        }
        target.Blit(buffer.GetPixelPtr({0, 0}), buffer.GetStride(), paint.sz, rc);
    });
}
