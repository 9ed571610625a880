#include "core/ImageDialogs/FrameView.h"

#include "core/AppModule/ErrorBox.h"
#include "core/GDIBuffer/RowPicture.h"
#include "core/PanelViews/PanelDraw.h"
#include "core/RasterBuffer/PlaneKind.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int32_t MOST_SIDE = 640;
constexpr double MARGIN = 4;     ///< around what is shown, in pixels of 96 to the inch
constexpr double CUT_PART = 0.6; ///< of black in what is cut off
constexpr TColor PAPER = 0xFFFFFF, BLACK = 0, EDGE = MakeColor(0x90, 0x90, 0x90);
constexpr TColor FRAME = MakeColor(0x2E, 0x7D, 0xC8);

int ReductionOf(CSize sz) {
    const int32_t nSide = std::max(sz.cx, sz.cy);
    int n = 1;
    while (n < DEFAULT_BLOCKSIZE.cx && (DEFAULT_BLOCKSIZE.cx % n != 0 || nSide > n * MOST_SIDE)) ++n;
    return n;
}

CSize DividedUp(CSize sz, int n) { return {(sz.cx + n - 1) / n, (sz.cy + n - 1) / n}; }

// The mean of the picture's pixels in a part of it, at least one pixel.
TColor MeanOf(const TPicture& picture, double dLeft, double dTop, double dRight, double dBottom) {
    const auto first = [](double d, int32_t nSide) {
        return std::clamp(static_cast<int32_t>(d), 0, nSide - 1);
    };
    const int32_t x0 = first(dLeft, picture.sz.cx), y0 = first(dTop, picture.sz.cy);
    const int32_t x1 = std::clamp(static_cast<int32_t>(std::ceil(dRight)), x0 + 1, picture.sz.cx);
    const int32_t y1 = std::clamp(static_cast<int32_t>(std::ceil(dBottom)), y0 + 1, picture.sz.cy);
    uint32_t aSum[3] = {};
    for (int32_t y = y0; y < y1; ++y)
        for (int32_t x = x0; x < x1; ++x) {
            const uint8_t* p = picture.vPixels.data() + (int64_t{y} * picture.sz.cx + x) * 4;
            for (size_t i = 0; i < 3; ++i) aSum[i] += p[i];
        }
    const auto nCount = static_cast<uint32_t>((x1 - x0) * (y1 - y0));
    const auto mean = [&](size_t i) { return static_cast<uint8_t>(aSum[i] / nCount); };
    return MakeColor(mean(2), mean(1), mean(0));
}

void FrameWide(CGDIBuffer& buffer, const CRect& rc, int32_t nWidth, TColor color) {
    for (int32_t n = 0; n < nWidth; ++n)
        FrameColor(buffer, {rc.left - n, rc.top - n, rc.right + n, rc.bottom + n}, color);
}

// From canvas pixels to the view's.
struct TFit {
    double dScale, dX, dY;

    TFit(const CRect& rcAll, CSize szView, double dMargin) {
        const auto scale = [&](int32_t nView, int32_t nAll) {
            return std::max(1.0, nView - 2 * dMargin) / nAll;
        };
        const CSize sz = rcAll.Size();
        dScale = std::min(scale(szView.cx, sz.cx), scale(szView.cy, sz.cy));
        dX = szView.cx / 2.0 - (rcAll.left + sz.cx / 2.0) * dScale;
        dY = szView.cy / 2.0 - (rcAll.top + sz.cy / 2.0) * dScale;
    }
    CRect Map(const CRect& rc) const {
        const auto at = [this](int32_t n, double d) {
            return static_cast<int32_t>(std::lround(n * dScale + d));
        };
        const CPoint pt{at(rc.left, dX), at(rc.top, dY)};
        return {pt.x, pt.y, std::max(pt.x + 1, at(rc.right, dX)), std::max(pt.y + 1, at(rc.bottom, dY))};
    }
};

} // namespace

boost::shared_ptr<const TPicture> MakeSmallPicture(CCanvasBuffer& canvas, IProgress& progress) {
    canvas.FlushCanvasUpdates();
    CRasterBuffer& composite = canvas.GetComposite();
    CLayerPicture& root = canvas.GetRoot().GetPicture();
    const int n = ReductionOf(canvas.GetSize());
    const auto spSmall =
        CreatePlane(canvas.IsColor(), DividedUp(canvas.GetSize(), n), DividedUp(DEFAULT_BLOCKSIZE, n));
    progress.Begin(L"画像を準備しています", composite.GetBlockCount());
    composite.ForEachBlock([&](CPoint pt) {
        progress.Advance();
        auto spTile = composite.DirtyAt(pt) ? nullptr : composite.GetBlock(pt, false);
        if (composite.DirtyAt(pt) && root.HasPicture(pt)) {
            spTile = composite.CreateBlock(pt);
            root.PaintPicture(*spTile);
        }
        if (!spTile) return;
        const CSize szInside = CRect(pt, DEFAULT_BLOCKSIZE).Intersect(composite.GetRect()).Size();
        const CPoint ptSmall{pt.x / n, pt.y / n};
        spSmall->SetBlock(ptSmall, spTile->CreateReduced(spSmall->GetBlockSize(), n, szInside));
        spSmall->ClearDirty(ptSmall);
    });
    CGDIBuffer buffer(spSmall->GetSize());
    spSmall->DrawToScreen(buffer, {0, 0}, {});
    return MakePicture(buffer);
}

void CFrameView::OnPaint(IPaintTarget& target, const TPanelPaint& paint) {
    Guarded([&] {
        const CRect rcCanvas({0, 0}, m_szCanvas);
        const TFit fit(m_frame ? m_frame->Union(rcCanvas) : rcCanvas, paint.sz, MARGIN * paint.dScale);
        const CRect rcView({0, 0}, paint.sz);
        const CRect rcOld = fit.Map(rcCanvas);
        const CRect rcNew = m_frame ? fit.Map(*m_frame) : rcOld;
        CGDIBuffer buffer(paint.sz);
        FillColor(buffer, rcView, paint.clrBack);
        FillColor(buffer, rcNew, PAPER);
        const TPicture& picture = *m_spPicture;
        const double dStepX = 1.0 * picture.sz.cx / rcOld.Size().cx;
        const double dStepY = 1.0 * picture.sz.cy / rcOld.Size().cy;
        const CRect rcShown = rcOld.Intersect(rcView);
        for (int32_t y = rcShown.top; y < rcShown.bottom; ++y)
            for (int32_t x = rcShown.left; x < rcShown.right; ++x) {
                const double dLeft = (x - rcOld.left) * dStepX, dTop = (y - rcOld.top) * dStepY;
                const TColor color = MeanOf(picture, dLeft, dTop, dLeft + dStepX, dTop + dStepY);
                const bool bCut = x < rcNew.left || y < rcNew.top || x >= rcNew.right || y >= rcNew.bottom;
                FillColor(buffer, CRect({x, y}, {1, 1}), bCut ? MixColors(color, BLACK, CUT_PART) : color);
            }
        const auto nLine = static_cast<int32_t>(std::lround(std::max(1.0, paint.dScale)));
        FrameWide(buffer, rcOld, nLine, EDGE);
        if (m_frame) FrameWide(buffer, rcNew, 2 * nLine, FRAME);
        target.Blit(buffer.GetPixelPtr({0, 0}), buffer.GetStride(), paint.sz, rcView);
    });
}
